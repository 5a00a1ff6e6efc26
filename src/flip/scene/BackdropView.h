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
    Q_PROPERTY(QSizeF captureSize READ captureSize NOTIFY captureChanged FINAL)
    Q_PROPERTY(bool hasCapture READ hasCapture NOTIFY captureChanged FINAL)
    /// Where shaders cannot run, the reduced picture stands in for its blur.
    Q_PROPERTY(bool usesShaders READ usesShaders CONSTANT FINAL)
    Q_PROPERTY(QColor veilColor READ veilColor CONSTANT FINAL)
    Q_PROPERTY(qreal veilStrength READ veilStrength CONSTANT FINAL)
    /// How dark the shadow over everything is now, 0 … 1.
    Q_PROPERTY(qreal shade READ shade WRITE setShade NOTIFY shadeChanged FINAL)
    Q_PROPERTY(QColor shadedVeil READ shadedVeil NOTIFY shadeChanged FINAL)

public:
    using QQuickItem::QQuickItem;

    /// A reduced picture of the display; null for none.
    [[nodiscard]] const QImage &capture() const { return m_capture; }
    void setCapture(const QImage &capture);
    [[nodiscard]] QSizeF captureSize() const { return m_capture.size(); }
    [[nodiscard]] bool hasCapture() const { return !m_capture.isNull(); }

    [[nodiscard]] static bool usesShaders();
    [[nodiscard]] static QColor veilColor();
    /// How much of the veil covers the picture, 0 … 1.
    [[nodiscard]] static qreal veilStrength() { return 0.62; }

    [[nodiscard]] qreal shade() const { return m_shade; }
    void setShade(qreal shade);
    [[nodiscard]] QColor shadedVeil() const;

Q_SIGNALS:
    void captureChanged();
    void shadeChanged();

private:
    QImage m_capture;
    qreal m_shade = 0;
};

} // namespace tallowby
