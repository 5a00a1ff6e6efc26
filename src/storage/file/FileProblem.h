#pragma once

#include <QString>

namespace tallowby {

/// Why something could not be done with a file.
struct FileProblem {
    /// For the log: names the step, the file and the cause.
    QString description;
    /// The number of the system's error (`errno`); 0 when it was not the system that refused.
    int cause = 0;
};

} // namespace tallowby
