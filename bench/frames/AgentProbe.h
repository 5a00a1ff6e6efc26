#pragma once

#include <QJsonObject>
#include <QString>

namespace tallowby::bench {

/// Starts the built program as a user does and measures it from outside: start to its ready line, and what it uses at
/// rest, first with the canvas hidden, then with the canvas showing. The canvas file must be in place already.
/// `idleSeconds` is how long each rest is watched.
[[nodiscard]] QJsonObject probeAgent(const QString &program, int idleSeconds);

} // namespace tallowby::bench
