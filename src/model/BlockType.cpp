#include "model/BlockType.h"

#include <algorithm>
#include <array>

namespace tallowby {

namespace {

constexpr std::array<QLatin1StringView, kBlockTypeCount> kBlockTypeNames{
    QLatin1StringView("text"),       QLatin1StringView("table"),       QLatin1StringView("automation"),
    QLatin1StringView("checklist"),  QLatin1StringView("image"),       QLatin1StringView("code"),
    QLatin1StringView("divider"),    QLatin1StringView("sticky_note"), QLatin1StringView("shape"),
    QLatin1StringView("voice_note"), QLatin1StringView("video_note"),  QLatin1StringView("sketch"),
    QLatin1StringView("icon"),
};

constexpr std::array<QLatin1StringView, 7> kShapeTypeNames{
    QLatin1StringView("rectangle"),     QLatin1StringView("circle"),  QLatin1StringView("arrow"),
    QLatin1StringView("line"),          QLatin1StringView("diamond"), QLatin1StringView("triangle"),
    QLatin1StringView("speech_bubble"),
};

template <typename Enum, std::size_t Count>
std::optional<Enum> enumFromName(const std::array<QLatin1StringView, Count> &names, QStringView name) {
    const auto found = std::ranges::find_if(names, [name](QLatin1StringView known) { return name == known; });
    return found == names.end() ? std::nullopt : std::optional(static_cast<Enum>(found - names.begin()));
}

} // namespace

QLatin1StringView rawValue(BlockType type) {
    return kBlockTypeNames.at(static_cast<std::size_t>(type));
}

std::optional<BlockType> blockTypeFromRawValue(QStringView raw) {
    return enumFromName<BlockType>(kBlockTypeNames, raw);
}

QLatin1StringView rawValue(ShapeType type) {
    return kShapeTypeNames.at(static_cast<std::size_t>(type));
}

std::optional<ShapeType> shapeTypeFromRawValue(QStringView raw) {
    return enumFromName<ShapeType>(kShapeTypeNames, raw);
}

} // namespace tallowby
