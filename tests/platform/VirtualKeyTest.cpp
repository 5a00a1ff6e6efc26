#include "platform/VirtualKey.h"

#include <gtest/gtest.h>

#include <map>
#include <set>

namespace tallowby {

namespace {

TEST(VirtualKey, EveryKeyHasOnePlaceOnTheKeyboard) {
    std::set<std::uint32_t> places;
    for (std::uint32_t key = 0; key < 128; ++key) {
        const auto evdev = evdevFromVirtualKey(key);
        if (evdev) {
            EXPECT_TRUE(places.insert(*evdev).second) << "two keys at " << *evdev;
            EXPECT_EQ(virtualKeyFromEvdev(*evdev), key);
        }
    }
    EXPECT_GE(places.size(), 68U) << "a key that has a name has no place";
    EXPECT_EQ(evdevFromVirtualKey(10'000), std::nullopt);
    EXPECT_EQ(virtualKeyFromEvdev(29), std::nullopt) << "a modifier is no key of its own";
}

TEST(VirtualKey, KnowsTheKeysThatAreEasilyMistaken) {
    // Codes of the kernel's linux/input-event-codes.h.
    const std::map<std::uint32_t, std::pair<std::uint32_t, Qt::Key>> keys{
        {22, {7, Qt::Key_6}},          {23, {6, Qt::Key_5}},      {26, {8, Qt::Key_7}},  {28, {9, Qt::Key_8}},
        {25, {10, Qt::Key_9}},         {49, {57, Qt::Key_Space}}, {46, {50, Qt::Key_M}}, {16, {21, Qt::Key_Y}},
        {51, {14, Qt::Key_Backspace}}, {53, {1, Qt::Key_Escape}}, {6, {44, Qt::Key_Z}},  {111, {88, Qt::Key_F12}},
        {42, {43, Qt::Key_Backslash}}, {126, {103, Qt::Key_Up}},  {5, {34, Qt::Key_G}},  {4, {35, Qt::Key_H}},
        {117, {111, Qt::Key_Delete}},
    };
    for (const auto &[key, place] : keys) {
        EXPECT_EQ(evdevFromVirtualKey(key), place.first) << key;
        EXPECT_EQ(virtualKeyFromQtKey(place.second), key);
    }
}

TEST(VirtualKey, TranslatesModifiersAndDropsTheRest) {
    EXPECT_EQ(carbonModifierFlags(Qt::AltModifier | Qt::KeypadModifier | Qt::GroupSwitchModifier), 0x800U);
    EXPECT_EQ(carbonModifierFlags(Qt::ControlModifier | Qt::ShiftModifier | Qt::MetaModifier), 0x1300U);
    EXPECT_EQ(carbonModifierFlags(Qt::NoModifier), 0U);
}

} // namespace

} // namespace tallowby
