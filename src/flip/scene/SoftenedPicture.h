#pragma once

#include <QColor>
#include <QImage>

namespace tallowby {

/// A small picture blurred at its own size (Gaussian, standard deviation 5 pixels), its colours made stronger, and a
/// veil laid over it: what the shaders make of the backdrop, on the processor. Null stays null.
[[nodiscard]] QImage softened(const QImage &picture, const QColor &veil, double veilStrength);

} // namespace tallowby
