#include "sync/SyncState.h"

#include <QCoreApplication>

namespace tallowby {

namespace {

struct Words {
    Q_DECLARE_TR_FUNCTIONS(tallowby::SyncError)
};

} // namespace

QString description(SyncError error) {
    switch (error) {
    case SyncError::networkError:
        return Words::tr("Network request failed");
    case SyncError::authenticationRequired:
        return Words::tr("Authentication required");
    case SyncError::conflictResolutionFailed:
        return Words::tr("Failed to resolve sync conflict");
    }
    return {};
}

} // namespace tallowby
