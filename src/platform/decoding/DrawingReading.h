#pragma once

#include "platform/desktop/PictureDecoder.h"

#include <QStringList>

namespace tallowby {

/// True for a file that begins as an SVG drawing does, well-formed or not.
[[nodiscard]] bool looksLikeDrawing(const QByteArray &file);

/// Draws an SVG file in this process, `longestSide` pixels long. Nothing outside the drawing is loaded, whatever it
/// refers to: it has no address that a reference could start from.
[[nodiscard]] DecodedPicture readDrawing(const QByteArray &file, int longestSide);

/// Loads the list of fonts, and whatever else is loaded for the first drawing.
void loadDrawingReader();

/// The folders from which drawings get their fonts.
[[nodiscard]] QStringList fontFolders();

} // namespace tallowby
