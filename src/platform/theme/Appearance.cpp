#include "platform/theme/Appearance.h"

namespace tallowby {

QString appearanceName(Appearance appearance) {
    switch (appearance) {
    case Appearance::system:
        return QStringLiteral("system");
    case Appearance::light:
        return QStringLiteral("light");
    case Appearance::dark:
        return QStringLiteral("dark");
    }
    Q_UNREACHABLE();
}

Appearance appearanceNamed(const QString &name) {
    for (const Appearance appearance : {Appearance::light, Appearance::dark}) {
        if (name == appearanceName(appearance)) {
            return appearance;
        }
    }
    return Appearance::system;
}

} // namespace tallowby
