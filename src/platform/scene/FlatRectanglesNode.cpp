#include "platform/scene/FlatRectanglesNode.h"

#include "platform/scene/NodePainter.h"
#include "platform/scene/SceneGraph.h"

#include <QPainter>
#include <QQuickWindow>
#include <QSGFlatColorMaterial>
#include <QSGGeometryNode>
#include <QSGRenderNode>

namespace tallowby {

namespace {

constexpr int kVerticesPerRectangle = 6;

class GeometryRectangles final : public QSGGeometryNode {
public:
    GeometryRectangles()
        : m_geometry(QSGGeometry::defaultAttributes_Point2D(), 0) {
        m_geometry.setDrawingMode(QSGGeometry::DrawTriangles);
        setGeometry(&m_geometry);
        setMaterial(&m_material);
    }

    void setColor(const QColor &color) {
        if (m_material.color() != color) {
            m_material.setColor(color);
            markDirty(DirtyMaterial);
        }
    }

    void setRectangles(const QList<QRectF> &rectangles) {
        m_geometry.allocate(int(rectangles.size()) * kVerticesPerRectangle);
        QSGGeometry::Point2D *vertex = m_geometry.vertexDataAsPoint2D();
        for (const QRectF &rectangle : rectangles) {
            const auto left = float(rectangle.left());
            const auto right = float(rectangle.right());
            const auto top = float(rectangle.top());
            const auto bottom = float(rectangle.bottom());
            (vertex++)->set(left, top);
            (vertex++)->set(right, top);
            (vertex++)->set(left, bottom);
            (vertex++)->set(left, bottom);
            (vertex++)->set(right, top);
            (vertex++)->set(right, bottom);
        }
        m_geometry.markVertexDataDirty();
        markDirty(DirtyGeometry);
    }

private:
    QSGGeometry m_geometry;
    QSGFlatColorMaterial m_material;
};

/// Painted whole or in part, as the painter's clip says.
class PaintedRectangles final : public QSGRenderNode {
public:
    explicit PaintedRectangles(QQuickWindow &window)
        : m_window(window) {}

    void setColor(const QColor &color) {
        if (m_color != color) {
            m_color = color;
            markDirty(DirtyMaterial);
        }
    }

    void setRectangles(const QList<QRectF> &rectangles) {
        m_rectangles = rectangles;
        m_bounds = {};
        for (const QRectF &rectangle : rectangles) {
            m_bounds |= rectangle;
        }
        markDirty(DirtyGeometry);
    }

    [[nodiscard]] QRectF rect() const override { return m_bounds; }
    [[nodiscard]] RenderingFlags flags() const override { return BoundedRectRendering; }

    void render(const RenderState *state) override {
        const auto painting = painterFor(*this, *state, m_window);
        if (!painting) {
            return;
        }
        const auto &[painter, dirty] = *painting;
        painter.setRenderHint(QPainter::Antialiasing, painter.transform().isRotating());
        // One letter typed must not cost a pass over all dots of the paper.
        const QRectF seen = painter.transform().inverted().mapRect(QRectF(dirty.boundingRect()));
        for (const QRectF &rectangle : m_rectangles) {
            if (rectangle.intersects(seen)) {
                painter.fillRect(rectangle, m_color);
            }
        }
    }

private:
    QQuickWindow &m_window;
    QList<QRectF> m_rectangles;
    QRectF m_bounds;
    QColor m_color;
};

/// Puts a drawing node under the transform.
template <typename Drawing>
class RectanglesNode final : public FlatRectanglesNode {
public:
    template <typename... Arguments>
    explicit RectanglesNode(Arguments &...arguments)
        : m_drawing(arguments...) {
        m_drawing.setFlag(OwnedByParent, false);
        appendChildNode(&m_drawing);
    }
    ~RectanglesNode() override { removeAllChildNodes(); }

    void setColor(const QColor &color) override { m_drawing.setColor(color); }
    void setRectangles(const QList<QRectF> &rectangles) override { m_drawing.setRectangles(rectangles); }

private:
    Drawing m_drawing;
};

} // namespace

std::unique_ptr<FlatRectanglesNode> FlatRectanglesNode::create(QQuickWindow &window) {
    if (sceneGraphHasShaders()) {
        return std::make_unique<RectanglesNode<GeometryRectangles>>();
    }
    return std::make_unique<RectanglesNode<PaintedRectangles>>(window);
}

} // namespace tallowby
