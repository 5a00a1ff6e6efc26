#pragma once

#include <QString>

namespace tallowby::test {

/// Announces that the running test expects a Qt warning that contains `part`; any other fails the test.
void expectWarning(const QString &part);

} // namespace tallowby::test
