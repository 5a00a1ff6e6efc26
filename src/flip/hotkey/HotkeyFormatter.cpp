#include "flip/hotkey/HotkeyFormatter.h"

#include "platform/VirtualKey.h"

#include <QHash>

#include <array>

namespace tallowby::HotkeyFormatter {

namespace {

struct Modifier {
    std::uint32_t bit;
    char16_t glyph;
    QLatin1StringView cap;
};

/// In the order in which they are written.
constexpr auto kModifiers = std::to_array<Modifier>({
    {carbon::controlKey, u'⌃', QLatin1StringView("Ctrl")},
    {carbon::optionKey, u'⌥', QLatin1StringView("Alt")},
    {carbon::shiftKey, u'⇧', QLatin1StringView("Shift")},
    {carbon::cmdKey, u'⌘', QLatin1StringView("Super")},
});

const QHash<std::uint32_t, QString> &keyNames() {
    using namespace Qt::StringLiterals;
    static const QHash<std::uint32_t, QString> names{
        {0, u"A"_s},     {1, u"S"_s},      {2, u"D"_s},       {3, u"F"_s},       {4, u"H"_s},    {5, u"G"_s},
        {6, u"Z"_s},     {7, u"X"_s},      {8, u"C"_s},       {9, u"V"_s},       {11, u"B"_s},   {12, u"Q"_s},
        {13, u"W"_s},    {14, u"E"_s},     {15, u"R"_s},      {16, u"Y"_s},      {17, u"T"_s},   {31, u"O"_s},
        {32, u"U"_s},    {34, u"I"_s},     {35, u"P"_s},      {37, u"L"_s},      {38, u"J"_s},   {40, u"K"_s},
        {45, u"N"_s},    {46, u"M"_s},     {18, u"1"_s},      {19, u"2"_s},      {20, u"3"_s},   {21, u"4"_s},
        {22, u"6"_s},    {23, u"5"_s},     {25, u"9"_s},      {26, u"7"_s},      {28, u"8"_s},   {29, u"0"_s},
        {24, u"="_s},    {27, u"-"_s},     {30, u"]"_s},      {33, u"["_s},      {39, u"'"_s},   {41, u";"_s},
        {42, u"\\"_s},   {43, u","_s},     {44, u"/"_s},      {47, u"."_s},      {50, u"`"_s},   {36, u"Return"_s},
        {48, u"Tab"_s},  {49, u"Space"_s}, {51, u"Delete"_s}, {53, u"Escape"_s}, {123, u"←"_s},  {124, u"→"_s},
        {125, u"↓"_s},   {126, u"↑"_s},    {122, u"F1"_s},    {120, u"F2"_s},    {99, u"F3"_s},  {118, u"F4"_s},
        {96, u"F5"_s},   {97, u"F6"_s},    {98, u"F7"_s},     {100, u"F8"_s},    {101, u"F9"_s}, {109, u"F10"_s},
        {103, u"F11"_s}, {111, u"F12"_s},
    };
    return names;
}

} // namespace

QString keyName(std::uint32_t keyCode) {
    const auto name = keyNames().constFind(keyCode);
    return name == keyNames().cend() ? QStringLiteral("Key %1").arg(keyCode) : *name;
}

QString string(std::uint32_t keyCode, std::uint32_t modifiers) {
    QString text;
    for (const Modifier &modifier : kModifiers) {
        if (modifiers & modifier.bit) {
            text += QChar(modifier.glyph);
        }
    }
    return text + keyName(keyCode);
}

QStringList keyCaps(std::uint32_t keyCode, std::uint32_t modifiers) {
    QStringList caps;
    for (const Modifier &modifier : kModifiers) {
        if (modifiers & modifier.bit) {
            caps << modifier.cap;
        }
    }
    return caps << keyName(keyCode);
}

} // namespace tallowby::HotkeyFormatter
