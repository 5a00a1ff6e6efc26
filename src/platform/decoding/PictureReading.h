#pragma once

#include "platform/desktop/PictureDecoder.h"

namespace tallowby {

/// Decodes a picture in this process. Only pixel formats and SVG are taken, and what a header claims is checked before
/// any pixel is decoded. For a process that has nothing to lose: the readers of the formats are not safe against files
/// that were made to break them.
[[nodiscard]] DecodedPicture readPicture(const QByteArray &file, int longestSide);

/// Loads whatever readers of pictures are loaded when they are first used.
void loadPictureReaders();

} // namespace tallowby
