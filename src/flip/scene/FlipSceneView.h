#pragma once

#include "flip/scene/CardTransform.h"
#include "flip/scene/KeyframeCurve.h"
#include "platform/Scheduler.h"
#include "platform/theme/SpringCurve.h"

#include <QColor>
#include <QImage>
#include <QPointer>
#include <QQuickItem>

#include <functional>
#include <optional>

namespace tallowby {

/// How a turn is shown. Both take the same way through states and callbacks.
enum class TurnStyle {
    rotation,
    crossFade, ///< for people who asked for less movement
};

/// A card as large as the view that turns about its vertical centre line: the logo in front, a picture of the canvas on
/// the back, and a shadow that pulses over both. The items are given by the QML that builds on this type; the scene
/// moves them once a frame, on the main thread, and asks for frames only while it turns.
///
/// Without a graphics interface nothing can turn items; `PaintedTurn` then paints the same turn from what the scene
/// tells, with pictures of the canvas and of the front that are grabbed with the first frame.
class FlipSceneView : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(bool isOpen READ isOpen NOTIFY isOpenChanged FINAL)
    Q_PROPERTY(bool isAnimating READ isAnimating NOTIFY isAnimatingChanged FINAL)
    Q_PROPERTY(QQuickItem *frontFace READ frontFace WRITE setFrontFace NOTIFY facesChanged FINAL)
    Q_PROPERTY(QQuickItem *backFace READ backFace WRITE setBackFace NOTIFY facesChanged FINAL)
    /// A ShaderEffectSource that is not live; the scene tells it when to take the picture.
    /// What the front shows, in the middle of it; a picture of it stands in where items cannot be turned.
    Q_PROPERTY(QQuickItem *frontContent MEMBER m_frontContent NOTIFY facesChanged FINAL)
    Q_PROPERTY(QQuickItem *backPicture MEMBER m_backPicture NOTIFY facesChanged FINAL)
    /// How dark the layer over the whole view is, 0 … 1.
    Q_PROPERTY(qreal shadowOpacity READ shadowOpacity NOTIFY shadowOpacityChanged FINAL)
    /// What the picture is taken of; null while none is needed, so that no full-screen texture is kept.
    Q_PROPERTY(QQuickItem *pictureSource READ pictureSource NOTIFY pictureChanged FINAL)
    Q_PROPERTY(QRectF pictureRect READ pictureRect NOTIFY pictureChanged FINAL)
    Q_PROPERTY(QImage backImage READ backImage NOTIFY pictureChanged FINAL)
    Q_PROPERTY(bool showsImage READ showsImage NOTIFY pictureChanged FINAL)
    /// The back face is seen through while a turn is shown as a cross-fade.
    Q_PROPERTY(bool crossFades READ crossFades NOTIFY isAnimatingChanged FINAL)
    Q_PROPERTY(bool usesShaders READ usesShaders CONSTANT FINAL)
    Q_PROPERTY(QColor creamColor READ creamColor CONSTANT FINAL)
    Q_PROPERTY(QColor inkColor READ inkColor CONSTANT FINAL)

public:
    static constexpr std::chrono::milliseconds kCrossFadeDuration{150};
    /// A turn that has had no frame for this long ends without them: its window cannot be seen.
    static constexpr std::chrono::seconds kFrameGrace{1};

    explicit FlipSceneView(QQuickItem *parent = nullptr);

    /// The clock of the turns; must be set before the first `flip`.
    void setScheduler(Scheduler &scheduler) { m_scheduler = &scheduler; }
    void setTurnStyle(TurnStyle style) { m_style = style; }

    [[nodiscard]] bool isOpen() const { return m_isOpen; }
    [[nodiscard]] bool isAnimating() const { return m_turn.has_value(); }
    [[nodiscard]] QQuickItem *frontFace() const { return m_frontFace; }
    void setFrontFace(QQuickItem *face);
    [[nodiscard]] QQuickItem *backFace() const { return m_backFace; }
    void setBackFace(QQuickItem *face);
    [[nodiscard]] QQuickItem *pictureSource() const { return m_pictureSource; }
    [[nodiscard]] QRectF pictureRect() const { return m_pictureRect; }
    [[nodiscard]] QImage backImage() const { return m_backImage; }
    [[nodiscard]] bool crossFades() const { return m_turn && m_turn->style == TurnStyle::crossFade; }
    [[nodiscard]] static bool usesShaders();
    /// The turn of the card, in radians: 0 with the front and π with the back towards the viewer.
    [[nodiscard]] double angle() const { return m_angle; }
    /// How much of the back is seen while a turn is shown as a cross-fade.
    [[nodiscard]] double backOpacity() const { return m_backOpacity; }
    /// What is on the back, and the front's content with its transparency; null until they are there.
    [[nodiscard]] const QImage &backPictureImage() const { return m_backImage.isNull() ? m_viewImage : m_backImage; }
    [[nodiscard]] const QImage &frontPicture() const { return m_frontImage; }
    [[nodiscard]] qreal shadowOpacity() const { return m_shadowOpacity; }
    [[nodiscard]] bool showsImage() const { return !m_backImage.isNull(); }
    /// The back face's ground.
    [[nodiscard]] static QColor creamColor();
    [[nodiscard]] static QColor inkColor();

    void setBackContent(const QImage &image);
    /// The picture is taken of `view` as it stands when the next turn starts. An empty view changes nothing. The view
    /// stays where it is and is not owned.
    void setBackContent(QQuickItem *view);
    [[nodiscard]] bool hasBackContent() const { return !m_backImage.isNull() || m_hasBackView; }
    /// Frees the picture of a view; the next turn takes a new one.
    void releasePicture();

    /// Shows all at once that turns show in turn, with a picture of `view`, for a frame that nobody sees.
    void rehearse(QQuickItem *view);
    void endRehearsal();

    /// Turns the card over, or back, and calls `completion` at its end. Does nothing while a turn runs; without back
    /// content calls `completion` at once and leaves the card as it is.
    void flip(std::function<void()> completion);
    /// Ends everything, shows the front face and drops the back content. No completion is called.
    void cleanup();

    /// The card is put where it belongs now.
    void advanceFrame();
    /// A frame has reached the screen. The clock of a turn starts with its first, however long that took to draw.
    void noteFramePresented();

Q_SIGNALS:
    void isOpenChanged();
    void isAnimatingChanged();
    void facesChanged();
    void pictureChanged();
    void poseChanged();
    void shadowOpacityChanged();

protected:
    void geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) override;

private:
    struct Turn {
        TurnStyle style;
        Scheduler::Duration duration;
        Scheduler::Duration lastFrame;
        std::optional<Scheduler::Duration> start = std::nullopt;
        bool isFirstFramePrepared = false;
        bool isEndPrepared = false;
    };

    void updateLayerFrames();
    void updatePictureRect();
    void takePicture();
    void grabPictures();
    void prepareFrame();
    void showTurn(Scheduler::Duration elapsed);
    void showRest();
    void showRotation(double angle);
    void showCrossFade(double backOpacity);
    void setShadowOpacity(qreal opacity);
    void armFrameWatch(Scheduler::Duration delay);
    void checkFrames();
    void endTurn();
    void stopTurn();
    void requestFrame();

    Scheduler *m_scheduler = nullptr;
    TurnStyle m_style = TurnStyle::rotation;
    const SpringCurve m_spring;
    const KeyframeCurve m_shadowPulse;
    CardTransform m_frontTransform;
    CardTransform m_backTransform;
    QPointer<QQuickItem> m_frontFace;
    QPointer<QQuickItem> m_backFace;
    QQuickItem *m_frontContent = nullptr;
    QQuickItem *m_backPicture = nullptr;
    QPointer<QQuickItem> m_backView;
    QPointer<QQuickItem> m_pictureSource;
    QRectF m_pictureRect;
    QImage m_backImage;
    QImage m_viewImage;
    QImage m_frontImage;
    double m_angle = 0;
    double m_backOpacity = 0;
    bool m_hasBackView = false;
    qreal m_shadowOpacity = 0;
    bool m_isOpen = false;
    std::function<void()> m_completionBlock;
    std::optional<Turn> m_turn;
    ScheduledCall m_frameWatch;
    ScheduledCall m_nextFrame;
    std::vector<QMetaObject::Connection> m_frameSignals;
};

} // namespace tallowby
