#pragma once

#include <QString>

#include <cstdint>

struct xcb_connection_t;

namespace tallowby::test {

/// Somebody else's program on the same desktop: a window that takes the keyboard when it appears and remembers what is
/// typed into it.
class OtherApplication {
public:
    /// One word.
    explicit OtherApplication(const QString &display, const QByteArray &name = QByteArrayLiteral("Ledger"));
    ~OtherApplication();
    OtherApplication(const OtherApplication &) = delete;
    OtherApplication &operator=(const OtherApplication &) = delete;

    /// Whether its window has the keyboard.
    [[nodiscard]] bool hasFocus();
    /// The letters, digits and blanks that arrived so far, without Shift.
    [[nodiscard]] QString typed();
    /// Comes to the front and takes the keyboard, as when it is clicked.
    void takeKeyboard();
    /// Takes Alt+Space for itself, as a window manager might.
    void grabAltSpace();

private:
    xcb_connection_t *m_connection;
    std::uint32_t m_window = 0;
    QString m_typed;
};

} // namespace tallowby::test
