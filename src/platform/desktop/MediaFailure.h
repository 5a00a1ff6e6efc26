#pragma once

#include <QString>

namespace tallowby {

/// Why something could not be recorded or played.
struct MediaFailure {
    enum class Kind {
        noDevice,
        /// Unplugged, or in use by another program.
        deviceFailed,
        diskFull,
        fileFailed,
        encoderFailed,
    };

    /// In words, for the log.
    QString text;
    Kind kind = Kind::encoderFailed;
};

} // namespace tallowby
