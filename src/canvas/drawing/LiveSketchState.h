#pragma once

#include "model/SketchStroke.h"

#include <QObject>
#include <QPointF>
#include <QQmlEngine>

#include <vector>

namespace tallowby {

/// The stroke that is being drawn. Its settled beginning is smoothed once and frozen, so that a further point costs the
/// same however long the stroke is; the newest points stay as they came, since each further one bends the curve
/// through them.
class LiveSketchState : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The canvas view holds it")

public:
    /// So many points beyond the frozen ones make a further piece freeze, …
    static constexpr std::size_t kFreezingCount = 41;
    /// … which starts this far back in the frozen ones, so that the curve is the same across the seam …
    static constexpr std::size_t kBackStep = 3;
    /// … and leaves out this many at the tip.
    static constexpr std::size_t kUnfrozenTip = 20;
    static constexpr int kSamplesPerSegment = 8;

    using QObject::QObject;

    /// In canvas points; what is no finite number is left out.
    void append(double x, double y, double pressure);
    void reset();

    /// Raw, in order.
    [[nodiscard]] const std::vector<SketchPoint> &currentStrokePoints() const { return m_currentStrokePoints; }
    /// Pieces one behind the other; each starts a little before the end of the one before it.
    [[nodiscard]] const std::vector<QPointF> &frozenSmoothedPoints() const { return m_frozenSmoothedPoints; }
    /// How many raw points are frozen.
    [[nodiscard]] std::size_t frozenRawIndex() const { return m_frozenRawIndex; }
    /// The raw points that are smoothed afresh each time they are drawn, with their context.
    [[nodiscard]] std::vector<SketchPoint> unfrozenTail() const;

Q_SIGNALS:
    void changed();

private:
    [[nodiscard]] std::size_t tailStart() const;
    void freeze();

    std::vector<SketchPoint> m_currentStrokePoints;
    std::vector<QPointF> m_frozenSmoothedPoints;
    std::size_t m_frozenRawIndex = 0;
};

} // namespace tallowby
