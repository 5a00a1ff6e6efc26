#pragma once

namespace tallowby {

/// Loads every QML type of the program off-screen, without touching the user's files. Returns 0, or 1 when a type does
/// not load or anything warns; each fault is one line on standard error.
int runSelfTest(int argc, char **argv);

} // namespace tallowby
