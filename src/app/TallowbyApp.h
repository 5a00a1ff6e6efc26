#pragma once

namespace tallowby {

/// The program: reads the command line, hands over to the instance that runs already or becomes it, and runs until it
/// is asked to end. Returns the exit code: 0, 1 when the self-test fails, 2 for arguments that are not understood.
int runTallowby(int argc, char **argv);

} // namespace tallowby
