#pragma once

#include <QObject>

namespace tallowby {

/// The place of the desktop where background programs show an item. It may come after the program does, and go and come
/// back; items that are there already follow it by themselves. Main thread only.
class StatusArea : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    /// Whether it has been there. An item that is made before is one that no area that comes later knows.
    [[nodiscard]] virtual bool hasAppeared() const = 0;

Q_SIGNALS:
    /// It is there for the first time.
    void appeared();
};

} // namespace tallowby
