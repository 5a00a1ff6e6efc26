#pragma once

#include <QObject>

namespace tallowby {

/// The curtain of the desktop: a screen saver, a lock, or the machine going to sleep. Main thread only.
class ScreenLock : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    /// Whether it is drawn now.
    [[nodiscard]] bool isDrawn() const { return m_isDrawn; }

Q_SIGNALS:
    void drawn();

protected:
    void setIsDrawn(bool isDrawn) {
        if (m_isDrawn != isDrawn) {
            m_isDrawn = isDrawn;
            if (isDrawn) {
                Q_EMIT drawn();
            }
        }
    }

private:
    bool m_isDrawn = false;
};

} // namespace tallowby
