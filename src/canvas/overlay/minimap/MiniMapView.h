#pragma once

#include "canvas/overlay/minimap/MiniMapGeometry.h"
#include "canvas/view/InfiniteCanvasView.h"
#include "platform/Scheduler.h"

#include <QImage>
#include <QPointer>
#include <QQuickItem>

#include <optional>

namespace tallowby {

/// The whole canvas in a corner of the view. The blocks are painted into one picture a moment after some have changed,
/// and only while the map is shown; pan and zoom move the picture and the viewport's outline.
class MiniMapView : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(tallowby::InfiniteCanvasView *canvas READ canvas WRITE setCanvas NOTIFY canvasChanged REQUIRED)
    Q_PROPERTY(qreal padding READ padding WRITE setPadding NOTIFY paddingChanged)
    /// Whether some part of a block is out of sight.
    Q_PROPERTY(bool isNeeded READ isNeeded NOTIFY mapChanged)
    /// Whether the map is there: while it is needed, or a newcomer is told about it.
    Q_PROPERTY(bool isShown READ isShown NOTIFY mapChanged)
    /// Where the viewport lies on the map.
    Q_PROPERTY(QRectF viewportOutline READ viewportOutline NOTIFY mapChanged)

public:
    explicit MiniMapView(QQuickItem *parent = nullptr);

    [[nodiscard]] InfiniteCanvasView *canvas() const { return m_canvas; }
    void setCanvas(InfiniteCanvasView *canvas);
    [[nodiscard]] qreal padding() const { return m_geometry.padding; }
    void setPadding(qreal padding);
    [[nodiscard]] bool isNeeded() const { return m_geometry.hasBlocksOutside(); }
    [[nodiscard]] bool isShown() const { return m_isIntroduced || isNeeded(); }
    /// Shows the map although nothing is out of sight.
    void setIsIntroduced(bool isIntroduced);
    [[nodiscard]] QRectF viewportOutline() const { return m_geometry.toMap(m_geometry.visibleRect()); }

Q_SIGNALS:
    void canvasChanged();
    void paddingChanged();
    void mapChanged();
    /// The viewport's offset that a click or a drag asks for.
    void jump(QPointF offset);

protected:
    void geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) override;
    void itemChange(ItemChange change, const ItemChangeData &data) override;
    QSGNode *updatePaintNode(QSGNode *node, UpdatePaintNodeData *data) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseUngrabEvent() override;

private:
    void blocksChanged();
    void refreshSoon();
    void refresh();
    void followViewport();
    void moveViewport(QPointF mapPoint);

    QPointer<InfiniteCanvasView> m_canvas;
    MiniMapGeometry m_geometry;
    QImage m_picture;
    /// The picture is older than the blocks.
    bool m_isStale = false;
    bool m_isIntroduced = false;
    ScheduledCall m_refresh;
    bool m_hasNewPicture = false;
    /// While the pointer is down, the world stays as it was at the press, so that it does not move away under it. The
    /// distance is from the pointer to the viewport's centre on the map.
    std::optional<MiniMapGeometry> m_pressed;
    QPointF m_grip;
};

} // namespace tallowby
