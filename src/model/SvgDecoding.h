#pragma once

#include "model/ImageDecoding.h"

namespace tallowby {

/// In bytes. A drawing takes far longer to draw than pixels of the same size take to decode.
inline constexpr qsizetype kLargestSvgFile = 4 * 1024 * 1024;

/// Whether the file begins as an SVG drawing does, well-formed or not.
[[nodiscard]] bool looksLikeSvg(const QByteArray &file);

/// Draws an SVG file from outside, `longestSide` pixels long, or at its own size for 0. Refused before anything is
/// drawn: one that refers to anything outside itself (files, addresses, style sheets), declares entities, is larger
/// than a person's drawing, or repeats its parts more often than can be drawn in a moment. May run on any thread.
[[nodiscard]] DecodedPicture decodeSvg(const QByteArray &file, int longestSide);

} // namespace tallowby
