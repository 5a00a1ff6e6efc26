#include "blocks/text/StruckLines.h"

#include "blocks/text/TextMeasure.h"
#include "canvas/container/BlockBody.h"
#include "platform/scene/FlatRectanglesNode.h"

#include <QAbstractTextDocumentLayout>
#include <QFontMetricsF>
#include <QMetaProperty>
#include <QQuickTextDocument>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextLayout>

#include <algorithm>
#include <cmath>

namespace tallowby {

namespace {

/// In pixels. What is just as high as a pixel may miss the middle of each when its place is rounded.
constexpr double kSpare = 0.02;

/// What the place of the lines depends on, of either kind of item.
constexpr const char *kFollowed[] = {"text", "font", "color", "width", "contentWidth", "contentHeight"};

} // namespace

StruckLines::StruckLines(QQuickItem *parent)
    : QQuickItem(parent) {
    setFlag(ItemHasContents);
}

void StruckLines::setIsStruck(bool isStruck) {
    if (m_isStruck != isStruck) {
        m_isStruck = isStruck;
        follow();
        Q_EMIT isStruckChanged();
    }
}

void StruckLines::componentComplete() {
    QQuickItem::componentComplete();
    follow();
}

void StruckLines::follow() {
    if (!isComponentComplete()) {
        return;
    }
    // Few texts are struck out; the others have no connections.
    if (m_isStruck && !m_isFollowing) {
        m_isFollowing = true;
        const QQuickItem &text = *parentItem();
        const QMetaMethod changed = staticMetaObject.method(staticMetaObject.indexOfSlot("update()"));
        for (const char *name : kFollowed) {
            const QMetaProperty property = text.metaObject()->property(text.metaObject()->indexOfProperty(name));
            connect(&text, property.notifySignal(), this, changed);
        }
        for (const QQuickItem *item = &text; item && !m_body; item = item->parentItem()) {
            m_body = qobject_cast<const BlockBody *>(item);
        }
        connect(m_body, &BlockBody::detailChanged, this, &QQuickItem::update);
    }
    update();
}

void StruckLines::addLines(QList<QRectF> &lines, const QTextLayout &layout, QPointF origin) const {
    const QFontMetricsF metrics(layout.font());
    const double thickness = std::max(1.0, metrics.lineWidth());
    for (int i = 0; i < layout.lineCount() && lines.size() < kMostLines; ++i) {
        const QTextLine line = layout.lineAt(i);
        const QRectF used = line.naturalTextRect().translated(origin);
        if (used.width() > 0) {
            lines << QRectF(used.left(), std::round(used.top() + line.ascent() * 2 / 3), used.width(), thickness);
        }
    }
}

QList<QRectF> StruckLines::lines() const {
    const QQuickItem &item = *parentItem();
    const QPointF origin(item.property("leftPadding").toReal(), item.property("topPadding").toReal());
    QList<QRectF> lines;
    if (const auto *edit = item.property("textDocument").value<QQuickTextDocument *>()) {
        const QTextDocument &document = *edit->textDocument();
        for (QTextBlock block = document.begin(); block.isValid() && lines.size() < kMostLines; block = block.next()) {
            const QPointF corner = document.documentLayout()->blockBoundingRect(block).topLeft();
            addLines(lines, *block.layout(), origin + corner);
        }
    } else {
        QTextOption option(Qt::Alignment(item.property("effectiveHorizontalAlignment").toInt()));
        option.setWrapMode(QTextOption::WrapMode(item.property("wrapMode").toInt()));
        QTextLayout layout({}, item.property("font").value<QFont>());
        layOutText(layout, item.property("text").toString(), option,
                   item.width() - origin.x() - item.property("rightPadding").toReal());
        addLines(lines, layout, origin);
    }
    return lines;
}

QSGNode *StruckLines::updatePaintNode(QSGNode *old, UpdatePaintNodeData *) {
    QList<QRectF> struck = m_isStruck ? lines() : QList<QRectF>();
    if (struck.isEmpty()) {
        delete old;
        return nullptr;
    }
    for (QRectF &line : struck) {
        line.setHeight((std::max(1.0, std::round(line.height() * m_body->detail())) + kSpare) / m_body->detail());
    }
    auto *node = old ? static_cast<FlatRectanglesNode *>(old) : FlatRectanglesNode::create(*window()).release();
    node->setColor(parentItem()->property("color").value<QColor>());
    node->setRectangles(struck);
    return node;
}

} // namespace tallowby
