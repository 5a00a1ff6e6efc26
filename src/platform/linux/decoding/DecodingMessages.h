#pragma once

#include "platform/desktop/PictureDecoder.h"

#include <cstdint>
#include <type_traits>

namespace tallowby {

/// The option that makes the program a decoder of pictures; for the program itself only.
inline constexpr char kDecodePicturesOption[] = "--decode-pictures";

inline constexpr std::uint32_t kDecodingMagic = 0x54414c31;
inline constexpr int kDecodedBytesPerPixel = 4;

/// What the program sends, before the bytes of the file.
struct DecodingRequest {
    std::uint32_t magic = kDecodingMagic;
    std::uint32_t fileSize = 0;
    std::int32_t longestSide = 0;
};

/// What the decoder sends back, before the rows of pixels, from the top and without gaps.
struct DecodingReply {
    std::uint32_t magic = kDecodingMagic;
    std::uint32_t refusal = 0;
    std::int32_t wholeWidth = 0;
    std::int32_t wholeHeight = 0;
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::uint32_t isScalable = 0;
    std::uint32_t hasAlpha = 0;
};

static_assert(std::is_trivially_copyable_v<DecodingRequest> && std::is_trivially_copyable_v<DecodingReply>);

/// The format of the pixels on their way.
[[nodiscard]] constexpr QImage::Format decodedFormat(bool hasAlpha) {
    return hasAlpha ? QImage::Format_ARGB32_Premultiplied : QImage::Format_RGB32;
}

/// Whoever sends the reply may have been broken into: true only for one that an honest decoder could have sent. A
/// refusal has nothing else in it.
[[nodiscard]] bool isPlausible(const DecodingReply &reply, int longestSide);

} // namespace tallowby
