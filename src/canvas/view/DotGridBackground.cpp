#include "canvas/view/DotGridBackground.h"

#include "platform/scene/FlatRectanglesNode.h"

#include <QQuickWindow>

#include <cmath>
#include <vector>

namespace tallowby {

namespace {

/// Further out than each of these, half of the dots of a row are left out.
constexpr double kThinningZooms[] = {0.5, 0.35};

/// What the dots were made for; everything in device pixels.
struct Lattice {
    double spacing = 0;
    int dotSize = 0;
    QSize size;
    double pixelRatio = 1;

    friend bool operator==(const Lattice &, const Lattice &) = default;
};

/// Rectangles that together are a disc on whole pixels, as wide as `size`. The smallest are squares.
std::vector<QRect> disc(int size) {
    std::vector<QRect> rows;
    const double radius = size / 2.0;
    for (int row = 0; 2 * row < size; ++row) {
        const double fromMiddle = radius - row - 0.5;
        const int inset = int(std::round(radius - std::sqrt(radius * radius - fromMiddle * fromMiddle)));
        if (rows.empty() || inset < rows.back().left()) {
            rows.emplace_back(inset, row, size - 2 * inset, size - 2 * row);
        }
    }
    return rows;
}

class DotGridNode final : public QSGNode {
public:
    explicit DotGridNode(QQuickWindow &window)
        : m_dots(FlatRectanglesNode::create(window)) {
        m_dots->setFlag(OwnedByParent, false);
        appendChildNode(m_dots.get());
    }
    ~DotGridNode() override { removeAllChildNodes(); }

    void setColor(const QColor &color) { m_dots->setColor(color); }

    /// Dots from one spacing before the view's edge to one past the far one. Each is put on whole pixels, so that all
    /// look the same.
    void setLattice(const Lattice &lattice) {
        if (m_lattice == lattice) {
            return;
        }
        m_lattice = lattice;
        const int columns = int(lattice.size.width() / lattice.spacing) + 3;
        const int rows = int(lattice.size.height() / lattice.spacing) + 3;
        const std::vector<QRect> dot = disc(lattice.dotSize);
        QList<QRectF> dots;
        dots.reserve(columns * rows * qsizetype(dot.size()));
        for (int row = 0; row < rows; ++row) {
            const double top = std::round((row - 1) * lattice.spacing);
            for (int column = 0; column < columns; ++column) {
                const QPointF corner(std::round((column - 1) * lattice.spacing), top);
                for (const QRect &part : dot) {
                    dots << QRectF((corner + part.topLeft()) / lattice.pixelRatio,
                                   QSizeF(part.size()) / lattice.pixelRatio);
                }
            }
        }
        m_dots->setRectangles(dots);
    }

    void setTranslation(QPointF translation) {
        QMatrix4x4 translated;
        translated.translate(float(translation.x()), float(translation.y()));
        if (translated != m_dots->matrix()) {
            m_dots->setMatrix(translated);
        }
    }

private:
    std::unique_ptr<FlatRectanglesNode> m_dots;
    Lattice m_lattice;
};

double remainder(double value, double step) {
    return value - step * std::floor(value / step);
}

} // namespace

DotGridBackground::DotGridBackground(QQuickItem *parent)
    : QQuickItem(parent) {
    setFlag(ItemHasContents);
}

void DotGridBackground::setOrigin(QPointF origin) {
    if (m_origin != origin) {
        m_origin = origin;
        update();
        Q_EMIT originChanged();
    }
}

void DotGridBackground::setZoom(qreal zoom) {
    if (m_zoom != zoom) {
        m_zoom = zoom;
        update();
        Q_EMIT zoomChanged();
    }
}

void DotGridBackground::setColor(const QColor &color) {
    if (m_color != color) {
        m_color = color;
        update();
        Q_EMIT colorChanged();
    }
}

double DotGridBackground::drawnSpacing(double zoom) {
    double spacing = kSpacing * zoom;
    for (const double threshold : kThinningZooms) {
        if (zoom < threshold) {
            spacing *= 2;
        }
    }
    return spacing;
}

QSGNode *DotGridBackground::updatePaintNode(QSGNode *old, UpdatePaintNodeData *) {
    if (width() <= 0 || height() <= 0) {
        delete old;
        return nullptr;
    }
    auto *node = old ? static_cast<DotGridNode *>(old) : new DotGridNode(*window());
    const double ratio = window()->effectiveDevicePixelRatio();
    const double spacing = drawnSpacing(m_zoom);
    node->setColor(m_color);
    node->setLattice({.spacing = spacing * ratio,
                      .dotSize = int(std::ceil(kDotSize * m_zoom * ratio)),
                      .size = (size() * ratio).toSize(),
                      .pixelRatio = ratio});
    const auto snapped = [ratio, spacing](double origin) {
        return std::round(remainder(origin, spacing) * ratio) / ratio;
    };
    node->setTranslation({snapped(m_origin.x()), snapped(m_origin.y())});
    return node;
}

} // namespace tallowby
