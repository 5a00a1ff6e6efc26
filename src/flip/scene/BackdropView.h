#pragma once

#include <QColor>
#include <QImage>
#include <QQuickItem>

namespace tallowby {

/// What lies behind the card: the desktop as it was, blurred under a milky veil, or the veil alone without a capture.
class BackdropView : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QImage capture READ capture WRITE setCapture NOTIFY captureChanged FINAL)
    Q_PROPERTY(bool hasCapture READ hasCapture NOTIFY captureChanged FINAL)
    Q_PROPERTY(bool usesShaders READ usesShaders CONSTANT FINAL)
    Q_PROPERTY(QColor veilColor READ veilColor CONSTANT FINAL)
    Q_PROPERTY(qreal veilStrength READ veilStrength CONSTANT FINAL)

public:
    using QQuickItem::QQuickItem;

    /// A reduced picture of the display; null for none.
    [[nodiscard]] const QImage &capture() const { return m_capture; }
    void setCapture(const QImage &capture);
    [[nodiscard]] bool hasCapture() const { return !m_capture.isNull(); }

    /// False where the scene graph paints without a graphics interface; the reduced picture then stands in for its
    /// blur.
    [[nodiscard]] static bool usesShaders();
    [[nodiscard]] static QColor veilColor();
    /// How much of the veil covers the picture, 0 … 1.
    [[nodiscard]] static qreal veilStrength() { return 0.62; }

Q_SIGNALS:
    void captureChanged();

private:
    QImage m_capture;
};

} // namespace tallowby
