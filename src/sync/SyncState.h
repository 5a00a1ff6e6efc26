#pragma once

#include <QString>

#include <variant>

namespace tallowby {

/// How it stands with the backend.
struct SyncState {
    enum class Kind {
        /// The last initial sync or push failed.
        error,
        /// Not configured, or disconnected.
        idle,
        /// An initial sync or a push is running.
        syncing,
        /// The last initial sync or push succeeded.
        connected,
    };

    Kind kind = Kind::idle;
    /// Of an error, for people.
    QString text = {};

    friend bool operator==(const SyncState &, const SyncState &) = default;
};

enum class SyncError { networkError, authenticationRequired, conflictResolutionFailed };

[[nodiscard]] QString description(SyncError error);

/// Why an operation of the backend came to nothing.
struct SyncFailure {
    /// For people, in logs and views.
    QString description;
    /// There was no answer at all, as opposed to one that cannot be used.
    bool isUnreachable = false;
};

/// It was done, and there is nothing more to say.
struct SyncDone {};

/// Whoever waited has gone, or the engine has disconnected: nothing of it may be touched.
struct SyncAbandoned {};

template <typename Result>
using SyncOutcome = std::variant<Result, SyncFailure, SyncAbandoned>;

} // namespace tallowby
