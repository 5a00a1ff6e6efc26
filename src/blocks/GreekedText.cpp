#include "blocks/GreekedText.h"

#include <QSGFlatColorMaterial>
#include <QSGGeometryNode>

#include <algorithm>

namespace tallowby {

namespace {

/// In parts of the font's size.
constexpr double kLineHeight = 1.2;
constexpr double kBarHeight = 0.45;
constexpr double kBarTop = 0.4;
constexpr double kMeanAdvance = 0.47;
constexpr int kVerticesPerBar = 6;

void putBar(QSGGeometry::Point2D *vertex, const QRectF &bar) {
    const auto left = float(bar.left());
    const auto right = float(bar.right());
    const auto top = float(bar.top());
    const auto bottom = float(bar.bottom());
    vertex[0].set(left, top);
    vertex[1].set(right, top);
    vertex[2].set(left, bottom);
    vertex[3].set(left, bottom);
    vertex[4].set(right, top);
    vertex[5].set(right, bottom);
}

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
    auto *node = static_cast<QSGGeometryNode *>(old);
    if (!node) {
        node = new QSGGeometryNode;
        node->setGeometry(new QSGGeometry(QSGGeometry::defaultAttributes_Point2D(), 0));
        node->geometry()->setDrawingMode(QSGGeometry::DrawTriangles);
        node->setMaterial(new QSGFlatColorMaterial);
        node->setFlags(QSGNode::OwnsGeometry | QSGNode::OwnsMaterial);
    }
    static_cast<QSGFlatColorMaterial *>(node->material())->setColor(m_color);
    node->geometry()->allocate(int(lines.size()) * kVerticesPerBar);
    for (qsizetype i = 0; i < lines.size(); ++i) {
        putBar(node->geometry()->vertexDataAsPoint2D() + i * kVerticesPerBar, lines.at(i));
    }
    node->markDirty(QSGNode::DirtyGeometry | QSGNode::DirtyMaterial);
    return node;
}

} // namespace tallowby
