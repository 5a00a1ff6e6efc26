#include "canvas/view/CanvasKeys.h"

#include "platform/VirtualKey.h"

#include <QKeyEvent>

#include <algorithm>

namespace tallowby {

namespace {

constexpr int kLastAsciiKey = 0x7f;

} // namespace

std::optional<std::uint32_t> virtualKeyOf(const QKeyEvent &event) {
    if (event.key() == Qt::Key_Enter) {
        return keycode::kReturn;
    }
    const auto named = virtualKeyFromQtKey(Qt::Key(event.key()));
    return named ? named : virtualKeyByPlace(event);
}

bool isShortcutKey(const QKeyEvent &event, Qt::Key character) {
    if (event.key() <= kLastAsciiKey) {
        return event.key() == character;
    }
    // A modifier has no place of its own here, and neither has "+".
    const auto place = virtualKeyByPlace(event);
    return place && place == virtualKeyFromQtKey(character);
}

bool isModifierKey(const QKeyEvent &event) {
    const auto isBetween = [key = event.key()](Qt::Key first, Qt::Key last) { return key >= first && key <= last; };
    return isBetween(Qt::Key_Shift, Qt::Key_ScrollLock) || isBetween(Qt::Key_Super_L, Qt::Key_Super_R) ||
           isBetween(Qt::Key_AltGr, Qt::Key_Multi_key) ||
           isBetween(Qt::Key_Dead_Grave, Qt::Key_Dead_Longsolidusoverlay);
}

bool isCommandHeld(Qt::KeyboardModifiers modifiers) {
    return modifiers.testAnyFlags(Qt::ControlModifier | Qt::MetaModifier);
}

QString printable(const QString &text) {
    QString result;
    for (const char32_t character : text.toUcs4()) {
        if (QChar::isPrint(character)) {
            result += QChar::fromUcs4(character);
        }
    }
    return result;
}

QString typedText(const QKeyEvent &event) {
    const auto commanding = Qt::ControlModifier | Qt::MetaModifier | Qt::AltModifier;
    return event.modifiers().testAnyFlags(commanding) ? QString() : printable(event.text());
}

} // namespace tallowby
