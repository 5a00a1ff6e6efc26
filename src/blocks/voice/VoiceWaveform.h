#pragma once

#include <QColor>
#include <QList>
#include <QQmlEngine>
#include <QQuickItem>

namespace tallowby {

/// How loud a recording is, as bars of a fixed pitch across the item: each as high as the loudest piece that it stands
/// for. Those of the part that was played have a colour of their own.
class VoiceWaveform : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    /// From 0 to 1, one after another.
    Q_PROPERTY(QList<float> loudness MEMBER m_loudness NOTIFY changed)
    /// The pieces are put in from the right as they come, one a bar, in place of being stretched over the item.
    Q_PROPERTY(bool isLive MEMBER m_isLive NOTIFY changed)
    /// From 0 to 1.
    Q_PROPERTY(qreal progress MEMBER m_progress NOTIFY changed)
    Q_PROPERTY(QColor color MEMBER m_color NOTIFY changed)
    Q_PROPERTY(QColor playedColor MEMBER m_playedColor NOTIFY changed)

public:
    explicit VoiceWaveform(QQuickItem *parent = nullptr);

    /// The height of each of that many bars, from 0 to 1.
    [[nodiscard]] static QList<float> bars(const QList<float> &loudness, int count, bool isLive);

Q_SIGNALS:
    void changed();

protected:
    void geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) override;
    QSGNode *updatePaintNode(QSGNode *node, UpdatePaintNodeData *data) override;

private:
    QList<float> m_loudness;
    bool m_isLive = false;
    double m_progress = 0;
    QColor m_color;
    QColor m_playedColor;
};

} // namespace tallowby
