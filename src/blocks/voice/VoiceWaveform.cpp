#include "blocks/voice/VoiceWaveform.h"

#include "platform/scene/FlatRectanglesNode.h"

#include <QQuickWindow>

#include <algorithm>
#include <cmath>
#include <memory>

namespace tallowby {

namespace {

constexpr double kBarWidth = 2;
constexpr double kPitch = 4;
/// Of silence.
constexpr double kLeastHeight = 2;

class WaveformNode final : public QSGNode {
public:
    explicit WaveformNode(QQuickWindow &window)
        : played(FlatRectanglesNode::create(window))
        , rest(FlatRectanglesNode::create(window)) {
        for (FlatRectanglesNode *node : {played.get(), rest.get()}) {
            node->setFlag(OwnedByParent, false);
            appendChildNode(node);
        }
    }
    ~WaveformNode() override { removeAllChildNodes(); }

    const std::unique_ptr<FlatRectanglesNode> played;
    const std::unique_ptr<FlatRectanglesNode> rest;
};

} // namespace

VoiceWaveform::VoiceWaveform(QQuickItem *parent)
    : QQuickItem(parent) {
    setFlag(ItemHasContents);
    connect(this, &VoiceWaveform::changed, this, &QQuickItem::update);
}

QList<float> VoiceWaveform::bars(const QList<float> &loudness, int count, bool isLive) {
    QList<float> heights(std::max(0, count), 0);
    if (isLive) {
        const qsizetype shown = std::min(loudness.size(), heights.size());
        std::copy(loudness.end() - shown, loudness.end(), heights.end() - shown);
        return heights;
    }
    if (heights.isEmpty() || loudness.isEmpty()) {
        return heights;
    }
    for (qsizetype bar = 0; bar < heights.size(); ++bar) {
        const qsizetype from = bar * loudness.size() / heights.size();
        const qsizetype to = std::max(from + 1, (bar + 1) * loudness.size() / heights.size());
        heights[bar] = *std::max_element(loudness.begin() + from, loudness.begin() + to);
    }
    return heights;
}

void VoiceWaveform::geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) {
    QQuickItem::geometryChange(newGeometry, oldGeometry);
    update();
}

QSGNode *VoiceWaveform::updatePaintNode(QSGNode *old, UpdatePaintNodeData *) {
    auto *node = static_cast<WaveformNode *>(old);
    if (!node) {
        node = new WaveformNode(*window());
    }
    const QList<float> heights = bars(m_loudness, int((width() + kPitch - kBarWidth) / kPitch), m_isLive);
    QList<QRectF> played;
    QList<QRectF> rest;
    for (qsizetype bar = 0; bar < heights.size(); ++bar) {
        const double high = std::max(kLeastHeight, std::round(double(heights[bar]) * height()));
        const QRectF rect(double(bar) * kPitch, std::round((height() - high) / 2), kBarWidth, high);
        (rect.center().x() < m_progress * width() ? played : rest) << rect;
    }
    node->played->setColor(m_playedColor);
    node->played->setRectangles(played);
    node->rest->setColor(m_color);
    node->rest->setRectangles(rest);
    return node;
}

} // namespace tallowby
