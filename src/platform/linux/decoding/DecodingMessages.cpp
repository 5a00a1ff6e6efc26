#include "platform/linux/decoding/DecodingMessages.h"

#include <algorithm>

namespace tallowby {

bool isPlausible(const DecodingReply &reply, int longestSide) {
    if (reply.magic != kDecodingMagic || reply.refusal >= kPictureRefusalCount || reply.isScalable > 1 ||
        reply.hasAlpha > 1) {
        return false;
    }
    if (reply.refusal != 0) {
        return reply.width == 0 && reply.height == 0 && reply.wholeWidth == 0 && reply.wholeHeight == 0;
    }
    const bool isImageBounded = std::min(reply.width, reply.height) >= 1 &&
                                std::max(reply.width, reply.height) <= std::min(longestSide, kMaxDecodedSide);
    const bool hasSize = std::min(reply.wholeWidth, reply.wholeHeight) >= 1;
    const bool isWholeBounded = reply.isScalable == 1
                                    ? std::max(reply.wholeWidth, reply.wholeHeight) <= kMaxDrawingSide
                                    : std::int64_t(reply.wholeWidth) * reply.wholeHeight <= kMaxPicturePixels;
    return isImageBounded && hasSize && isWholeBounded;
}

} // namespace tallowby
