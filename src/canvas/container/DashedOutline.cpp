#include "canvas/container/DashedOutline.h"

#include <QQuickWindow>
#include <QSGRectangleNode>
#include <QSGTransformNode>

#include <algorithm>
#include <cmath>

namespace tallowby {

namespace {

constexpr double kThickness = 1;
constexpr double kDash = 5;
constexpr double kPeriod = 9;

} // namespace

DashedOutline::DashedOutline(QQuickItem *parent)
    : QQuickItem(parent) {
    setFlag(ItemHasContents);
}

void DashedOutline::setColor(const QColor &color) {
    if (m_color != color) {
        m_color = color;
        update();
        Q_EMIT colorChanged();
    }
}

QList<QRectF> DashedOutline::dashes(const QRectF &outline, const QRectF &room) {
    QList<QRectF> dashes;
    const auto alongEdge = [&](double start, double end, double from, double to, auto dashAt) {
        // From the first dash in sight to the last; the pattern hangs on the outline and not on the room.
        const double first = std::max(0.0, std::floor((from - start) / kPeriod));
        for (double at = start + first * kPeriod; at < std::min(end, to); at += kPeriod) {
            dashes << dashAt(at, std::min(kDash, end - at));
        }
    };
    for (const double y : {outline.top(), outline.bottom() - kThickness}) {
        if (y >= room.top() && y <= room.bottom()) {
            alongEdge(outline.left(), outline.right(), room.left(), room.right(),
                      [y](double x, double length) { return QRectF(x, y, length, kThickness); });
        }
    }
    for (const double x : {outline.left(), outline.right() - kThickness}) {
        if (x >= room.left() && x <= room.right()) {
            alongEdge(outline.top(), outline.bottom(), room.top(), room.bottom(),
                      [x](double y, double length) { return QRectF(x, y, kThickness, length); });
        }
    }
    return dashes;
}

void DashedOutline::geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) {
    QQuickItem::geometryChange(newGeometry, oldGeometry);
    update();
}

QSGNode *DashedOutline::updatePaintNode(QSGNode *old, UpdatePaintNodeData *) {
    // The painting renderer knows where children that are added later belong only below a node with a transform.
    QSGNode *const root = old ? old : new QSGTransformNode;
    const QRectF room = mapRectFromItem(parentItem(), QRectF({}, parentItem()->size()));
    const QList<QRectF> wanted = dashes(QRectF({}, size()), room);
    while (root->childCount() < wanted.size()) {
        root->appendChildNode(window()->createRectangleNode());
    }
    while (root->childCount() > wanted.size()) {
        QSGNode *const surplus = root->lastChild();
        root->removeChildNode(surplus);
        delete surplus;
    }
    QSGNode *node = root->firstChild();
    for (const QRectF &dash : wanted) {
        auto *rectangle = static_cast<QSGRectangleNode *>(node);
        rectangle->setRect(dash);
        rectangle->setColor(m_color);
        node = node->nextSibling();
    }
    return root;
}

} // namespace tallowby
