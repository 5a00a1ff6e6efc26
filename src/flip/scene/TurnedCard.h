#pragma once

#include <QImage>
#include <QRectF>

namespace tallowby {

/// One face of the card in the view that it fills, where nothing but the processor can draw it.
struct TurnedFace {
    /// RGB32, or ARGB32 premultiplied where it is seen through; null for nothing.
    QImage picture;
    /// Where on the card the picture lies, in pixels of the view.
    QRect place;
    /// The card's turn about its vertical centre line, in radians.
    double angle = 0;
    /// How dark the shadow over card and ground is, 0 … 1.
    double shade = 0;
};

/// Paints the face in perspective over `ground` into `target`: both RGB32, of the size of the view. The projection is
/// that of `CardTransform`; the picture is sampled bilinearly and its slanted edges are smooth. Takes a few
/// milliseconds for a screen of two million pixels.
void paintTurnedFace(const TurnedFace &face, const QImage &ground, QImage &target);

} // namespace tallowby
