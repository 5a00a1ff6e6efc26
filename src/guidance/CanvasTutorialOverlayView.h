#pragma once

#include "canvas/view/CanvasGlide.h"
#include "canvas/view/InfiniteCanvasView.h"
#include "guidance/CanvasTutorialModel.h"

#include <QPointer>
#include <QQuickItem>

class QQmlEngine;

namespace tallowby {

class MiniMapView;
class UserDefaults;

/// The cards over the canvas that show a newcomer around. They leave the keyboard to the canvas, so that what they say
/// can be tried at once, and step aside from where it is. Escape puts them away for good, Return goes on. Owns the
/// model.
class CanvasTutorialOverlayView : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(bool isActive READ isActive NOTIFY isActiveChanged)
    Q_PROPERTY(int step READ step NOTIFY stepChanged)
    Q_PROPERTY(int stepCount READ stepCount CONSTANT)
    Q_PROPERTY(bool isLast READ isLast NOTIFY stepChanged)
    Q_PROPERTY(QString symbol READ symbol NOTIFY stepChanged)
    Q_PROPERTY(QString title READ title NOTIFY stepChanged)
    Q_PROPERTY(QString body READ body NOTIFY stepChanged)
    Q_PROPERTY(QString hint READ hint NOTIFY stepChanged)
    Q_PROPERTY(QSizeF cardSize READ cardSize WRITE setCardSize NOTIFY placeChanged)
    Q_PROPERTY(QPointF cardPosition READ cardPosition NOTIFY placeChanged)
    /// Where the mini map stands, or will.
    Q_PROPERTY(QRectF miniMapFrame READ miniMapFrame NOTIFY placeChanged)
    /// There is something for the mini map to show.
    Q_PROPERTY(bool canShowMiniMap READ canShowMiniMap NOTIFY canShowMiniMapChanged)
    Q_PROPERTY(bool isMiniMapHighlighted READ isMiniMapHighlighted NOTIFY isMiniMapHighlightedChanged)
    /// Asked for at each step.
    Q_PROPERTY(bool reducesMotion READ reducesMotion NOTIFY stepChanged)

public:
    explicit CanvasTutorialOverlayView(QQuickItem *parent = nullptr);
    ~CanvasTutorialOverlayView() override;

    /// Makes the overlay over a canvas, which owns it from then on. `defaults` must outlive the canvas.
    static CanvasTutorialOverlayView *install(QQmlEngine &engine, InfiniteCanvasView &canvas, UserDefaults &defaults);

    [[nodiscard]] CanvasTutorialModel *model() const { return m_model.get(); }
    [[nodiscard]] bool isActive() const { return m_model->isActive(); }
    [[nodiscard]] int step() const { return int(m_model->step()); }
    [[nodiscard]] int stepCount() const { return kCanvasTutorialStepCount; }
    [[nodiscard]] bool isLast() const { return m_model->step() == CanvasTutorialStep::miniMap; }
    [[nodiscard]] QString symbol() const;
    [[nodiscard]] QString title() const { return canvasTutorialCard(m_model->step()).title; }
    [[nodiscard]] QString body() const { return canvasTutorialCard(m_model->step()).body; }
    [[nodiscard]] QString hint() const { return canvasTutorialCard(m_model->step()).hint; }
    [[nodiscard]] QSizeF cardSize() const { return m_cardSize; }
    void setCardSize(QSizeF size);
    [[nodiscard]] QPointF cardPosition() const;
    [[nodiscard]] QRectF miniMapFrame() const;
    [[nodiscard]] bool canShowMiniMap() const { return !m_canvas->viewModel().isEmpty(); }
    [[nodiscard]] bool isMiniMapHighlighted() const { return m_isMiniMapHighlighted; }
    [[nodiscard]] bool reducesMotion() const { return m_canvas->prefersReducedMotion(); }

    Q_INVOKABLE void advance() { m_model->advance(); }
    Q_INVOKABLE void finish() { m_model->finish(); }
    /// Moves the paper until a block lies out of sight, so that the mini map is there, and puts a ring around it.
    Q_INVOKABLE void showMiniMap();

    bool eventFilter(QObject *watched, QEvent *event) override;

Q_SIGNALS:
    void isActiveChanged();
    void stepChanged();
    void placeChanged();
    void canShowMiniMapChanged();
    void isMiniMapHighlightedChanged();

protected:
    void geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) override;

private:
    void attach(InfiniteCanvasView &canvas, UserDefaults &defaults);
    void typedAnywhere();
    [[nodiscard]] bool handleKey(const QKeyEvent &event);

    QPointer<InfiniteCanvasView> m_canvas;
    QPointer<MiniMapView> m_miniMap;
    std::unique_ptr<CanvasTutorialModel> m_model;
    CanvasGlide m_glide;
    QSizeF m_cardSize;
    /// The note that was begun last, on screen.
    QRectF m_keepClear;
    bool m_isMiniMapHighlighted = false;
};

} // namespace tallowby
