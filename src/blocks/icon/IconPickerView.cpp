#include "blocks/icon/IconPickerView.h"

#include "canvas/overlay/menu/ContextMenuView.h"
#include "platform/theme/SymbolTable.h"

#include <QCoreApplication>
#include <QKeyEvent>

#include <algorithm>

namespace tallowby {

namespace {

/// The names in the table are those of the program's own language.
[[maybe_unused]] constexpr const char *kCategoryNames[] = {
    QT_TRANSLATE_NOOP("SymbolCategories", "Shapes"), QT_TRANSLATE_NOOP("SymbolCategories", "Signs"),
    QT_TRANSLATE_NOOP("SymbolCategories", "Arrows"), QT_TRANSLATE_NOOP("SymbolCategories", "Time"),
    QT_TRANSLATE_NOOP("SymbolCategories", "Nature"), QT_TRANSLATE_NOOP("SymbolCategories", "People"),
    QT_TRANSLATE_NOOP("SymbolCategories", "Talk"),   QT_TRANSLATE_NOOP("SymbolCategories", "Work"),
    QT_TRANSLATE_NOOP("SymbolCategories", "Things"), QT_TRANSLATE_NOOP("SymbolCategories", "Media"),
};

bool isMeant(const SymbolEntry &symbol, const QStringList &words) {
    return std::ranges::all_of(words, [&symbol](const QString &word) { return symbol.words.contains(word); });
}

} // namespace

IconPickerView::IconPickerView(QQuickItem *parent)
    : QQuickItem(parent) {
    setAcceptedMouseButtons(Qt::AllButtons);
    setAcceptHoverEvents(true);
    offer();
}

QStringList IconPickerView::categories() {
    QStringList names;
    for (const SymbolCategory &category : symbolCategories()) {
        names << QCoreApplication::translate("SymbolCategories", category.name.toUtf8().constData());
    }
    return names;
}

QStringList IconPickerView::categorySymbols() {
    QStringList names;
    for (const SymbolCategory &category : symbolCategories()) {
        names << category.symbols.front().name;
    }
    return names;
}

void IconPickerView::setAside(const QRectF &aside) {
    if (m_aside != aside) {
        m_aside = aside;
        Q_EMIT asideChanged();
    }
}

void IconPickerView::setCategory(int category) {
    const int last = int(symbolCategories().size()) - 1;
    if (m_category != category && category >= -1 && category <= last) {
        m_category = category;
        m_searchText.clear();
        offer();
    }
}

void IconPickerView::setSearchText(const QString &text) {
    if (m_searchText != text) {
        m_searchText = text;
        offer();
    }
}

void IconPickerView::offer() {
    const QStringList words = m_searchText.toLower().split(u' ', Qt::SkipEmptyParts);
    m_symbols.clear();
    for (int i = 0; i < int(symbolCategories().size()); ++i) {
        if (words.isEmpty() && m_category >= 0 && i != m_category) {
            continue;
        }
        for (const SymbolEntry &symbol : symbolCategories()[std::size_t(i)].symbols) {
            if (isMeant(symbol, words)) {
                m_symbols << symbol.name;
            }
        }
    }
    Q_EMIT symbolsChanged();
    setCurrent(m_symbols.isEmpty() ? -1 : 0);
}

void IconPickerView::setCurrent(int index) {
    if (m_current != index) {
        m_current = index;
        Q_EMIT currentChanged();
    }
}

void IconPickerView::setCurrentName(const QString &name) {
    if (const auto index = m_symbols.indexOf(name); index >= 0) {
        setCurrent(int(index));
    }
}

void IconPickerView::choose(int index) {
    if (index >= 0 && index < m_symbols.size()) {
        Q_EMIT selected(m_symbols.at(index));
    }
}

QString IconPickerView::spoken(const QString &name) {
    return QString(name).replace(u'.', u' ');
}

QPointF IconPickerView::placed(QSizeF panel, const QRectF &aside, QSizeF room) {
    return ContextMenuView::placed(panel, aside, room);
}

void IconPickerView::keyPressEvent(QKeyEvent *event) {
    const int last = int(m_symbols.size()) - 1;
    const auto walk = [this, last](int steps) {
        if (m_current + steps >= 0 && m_current + steps <= last) {
            setCurrent(m_current + steps);
        }
    };
    switch (event->key()) {
    case Qt::Key_Left:
        walk(-1);
        break;
    case Qt::Key_Right:
        walk(1);
        break;
    case Qt::Key_Up:
        walk(-m_columns);
        break;
    case Qt::Key_Down:
        walk(m_columns);
        break;
    case Qt::Key_Tab:
    case Qt::Key_Backtab: {
        // All, then one after the other, and around.
        const int count = int(symbolCategories().size()) + 1;
        setCategory((m_category + 1 + (event->key() == Qt::Key_Tab ? 1 : count - 1)) % count - 1);
        break;
    }
    case Qt::Key_Return:
    case Qt::Key_Enter:
        choose(m_current);
        break;
    case Qt::Key_Escape:
        Q_EMIT dismissed();
        break;
    default:
        event->ignore();
        return;
    }
    event->accept();
}

void IconPickerView::mousePressEvent(QMouseEvent *) {
    Q_EMIT dismissed();
}

void IconPickerView::wheelEvent(QWheelEvent *event) {
    event->accept();
}

} // namespace tallowby
