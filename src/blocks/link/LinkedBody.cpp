#include "blocks/link/LinkedBody.h"

#include "blocks/link/LinkHighlighter.h"
#include "canvas/view/InfiniteCanvasView.h"
#include "platform/WebLinks.h"

#include <QCursor>
#include <QHoverEvent>
#include <QMouseEvent>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickTextDocument>

#include <algorithm>
#include <cmath>
#include <utility>

namespace tallowby {

namespace {

const QUrl kDisplayFile(QStringLiteral("qrc:/qt/qml/Tallowby/Blocks/LinkedText.qml"));

QTextDocument *documentOf(const QQuickItem &textEdit) {
    return textEdit.property("textDocument").value<QQuickTextDocument *>()->textDocument();
}

} // namespace

void LinkedBody::componentComplete() {
    EditedBody::componentComplete();
    connect(this, &EditedBody::isDisplayShownChanged, this, &LinkedBody::refreshLinks);
    connect(this, &BlockBody::isLegibleChanged, this, &LinkedBody::refreshLinks);
    refreshLinks();
}

void LinkedBody::editorOpened(AutoExpandingTextEditor &editor) {
    m_editedLinks = new LinkHighlighter(documentOf(*editor.textEdit()));
    m_editedLinks->setColor(display().linkColor);
    connect(m_editedLinks, &QObject::destroyed, this, [this, gone = m_editedLinks] {
        if (m_editedLinks == gone) {
            m_editedLinks = nullptr;
        }
    });
    editor.textEdit()->installEventFilter(this);
}

void LinkedBody::geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) {
    EditedBody::geometryChange(newGeometry, oldGeometry);
    if (m_shown) {
        refreshLinks();
    }
}

void LinkedBody::refreshLinks() {
    if (!isComponentComplete()) {
        return;
    }
    const Display wanted = display();
    if (m_editedLinks) {
        m_editedLinks->setColor(wanted.linkColor);
    }
    const bool wasShown = showsLinks();
    if (isDisplayShown() && isLegible() && !linksIn(wanted.text).isEmpty()) {
        show(wanted);
    } else {
        hide();
    }
    if (wasShown != showsLinks()) {
        Q_EMIT showsLinksChanged();
    }
}

void LinkedBody::show(const Display &display) {
    if (!m_shown) {
        QQmlComponent component(qmlEngine(this), kDisplayFile);
        m_shown = qobject_cast<QQuickItem *>(component.beginCreate(qmlContext(this)));
        if (!m_shown) {
            qFatal("The text with links could not be made: %s", qUtf8Printable(component.errorString()));
        }
        m_shown->setParent(this);
        m_shown->setParentItem(this);
        component.completeCreate();
        m_shownLinks = new LinkHighlighter(documentOf(*m_shown));
    }
    m_shown->setPosition(display.position);
    m_shown->setProperty("font", display.font);
    m_shown->setProperty("color", display.color);
    m_shown->setProperty("boundedWidth", display.width);
    m_shown->setProperty("room", display.room);
    m_shown->setProperty("breaksWords", display.breaksWords);
    m_shown->setProperty("text", display.text);
    m_shown->setProperty("isStruck", display.isStruck);
    m_shownLinks->setColor(display.linkColor);
}

void LinkedBody::hide() {
    if (m_shown) {
        m_shown->setVisible(false);
        std::exchange(m_shown, nullptr)->deleteLater();
        m_shownLinks = nullptr;
    }
}

QQuickItem *LinkedBody::textItem() const {
    return editor() ? editor()->textEdit() : m_shown;
}

std::optional<QUrl> LinkedBody::linkAt(QPointF point) const {
    QQuickItem *item = textItem();
    if (!item) {
        return std::nullopt;
    }
    const QPointF local = item->mapFromItem(this, point);
    int place = 0;
    QRectF caret;
    QMetaObject::invokeMethod(item, "positionAt", Q_RETURN_ARG(int, place), Q_ARG(qreal, local.x()),
                              Q_ARG(qreal, local.y()));
    QMetaObject::invokeMethod(item, "positionToRectangle", Q_RETURN_ARG(QRectF, caret), Q_ARG(int, place));
    // The place nearest to a point may be far from it, behind the end of a line or of the text.
    const bool isNear = local.y() >= caret.top() && local.y() <= caret.bottom() &&
                        std::abs(local.x() - caret.x()) <= caret.height() / 2;
    const QList<TextLink> links = linksIn(documentOf(*item)->toPlainText());
    const auto found = std::ranges::find_if(
        links, [place](const TextLink &link) { return place >= link.start && place <= link.start + link.length; });
    return isNear && found != links.end() ? std::optional(found->url) : std::nullopt;
}

bool LinkedBody::click(QPointF point, Qt::KeyboardModifiers modifiers) {
    const auto link = modifiers.testFlag(Qt::ControlModifier) ? linkAt(point) : std::nullopt;
    // The canvas covers what has been opened.
    if (link && openWebLink(*link)) {
        canvas().requestClose();
    }
    return link.has_value();
}

std::optional<Qt::CursorShape> LinkedBody::cursorAt(QPointF point, Qt::KeyboardModifiers modifiers) const {
    return modifiers.testFlag(Qt::ControlModifier) && linkAt(point) ? std::optional(Qt::PointingHandCursor)
                                                                    : std::nullopt;
}

/// The editor has the pointer while the text is edited.
bool LinkedBody::eventFilter(QObject *watched, QEvent *event) {
    if (!editor() || watched != editor()->textEdit()) {
        return EditedBody::eventFilter(watched, event);
    }
    QQuickItem *item = editor()->textEdit();
    if (event->type() == QEvent::MouseButtonPress) {
        const auto &press = *static_cast<QMouseEvent *>(event);
        return press.button() == Qt::LeftButton && click(mapFromItem(item, press.position()), press.modifiers());
    }
    if (event->type() == QEvent::HoverMove) {
        const auto &hover = *static_cast<QHoverEvent *>(event);
        item->setCursor(
            QCursor(cursorAt(mapFromItem(item, hover.position()), hover.modifiers()).value_or(Qt::IBeamCursor)));
    }
    return EditedBody::eventFilter(watched, event);
}

} // namespace tallowby
