#pragma once

#include <QRect>
#include <QString>

#include <cstdint>
#include <vector>

namespace tallowby {

/// One connected display.
struct Display {
    /// The same for the same monitor on the same connector from one session to the next.
    std::uint32_t id = 0;
    /// What the monitor calls itself, else its connector.
    QString name;
    /// In points, in the coordinates that all displays share. A display's place is not scaled, only its size is.
    QRect frame;
    double devicePixelRatio = 1.0;
    bool isMain = false;
    /// Where it is plugged in, as the desktop names it.
    QString connector = {};
};

/// The displays as they are connected now. Main thread only.
class Displays {
public:
    virtual ~Displays() = default;
    [[nodiscard]] virtual std::vector<Display> all() const = 0;
};

} // namespace tallowby
