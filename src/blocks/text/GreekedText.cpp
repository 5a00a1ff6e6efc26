#include "blocks/text/GreekedText.h"

#include "platform/scene/FlatRectanglesNode.h"

#include <algorithm>

namespace tallowby {

namespace {

/// In parts of the font's size.
constexpr double kLineHeight = 1.2;
constexpr double kBarHeight = 0.45;
constexpr double kBarTop = 0.4;
constexpr double kMeanAdvance = 0.47;

} // namespace

GreekedText::GreekedText(QQuickItem *parent)
    : QQuickItem(parent) {
    setFlag(ItemHasContents);
}

void GreekedText::setText(const QString &text) {
    if (m_text != text) {
        m_text = text;
        update();
        Q_EMIT textChanged();
    }
}

void GreekedText::setTextSize(qreal size) {
    if (m_textSize != size) {
        m_textSize = size;
        update();
        Q_EMIT textSizeChanged();
    }
}

void GreekedText::setColor(const QColor &color) {
    if (m_color != color) {
        m_color = color;
        update();
        Q_EMIT colorChanged();
    }
}

void GreekedText::geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) {
    QQuickItem::geometryChange(newGeometry, oldGeometry);
    update();
}

/// Lines that are longer than the item go on below, like wrapped ones; what is below the item is left out.
QList<QRectF> GreekedText::bars() const {
    QList<QRectF> result;
    if (m_textSize <= 0) {
        return result;
    }
    const double lineHeight = kLineHeight * m_textSize;
    double top = 0;
    for (const QStringView line : QStringView(m_text).split(u'\n')) {
        double rest = std::max(1.0, double(line.trimmed().size())) * kMeanAdvance * m_textSize;
        for (; rest > 0 && top + lineHeight <= height() + 1; rest -= width(), top += lineHeight) {
            if (!line.isEmpty()) {
                result << QRectF(0, top + kBarTop * m_textSize, std::min(rest, width()), kBarHeight * m_textSize);
            }
        }
    }
    return result;
}

QSGNode *GreekedText::updatePaintNode(QSGNode *old, UpdatePaintNodeData *) {
    const QList<QRectF> lines = bars();
    if (lines.isEmpty()) {
        delete old;
        return nullptr;
    }
    auto *node = old ? static_cast<FlatRectanglesNode *>(old) : FlatRectanglesNode::create(*window()).release();
    node->setColor(m_color);
    node->setRectangles(lines);
    return node;
}

} // namespace tallowby
