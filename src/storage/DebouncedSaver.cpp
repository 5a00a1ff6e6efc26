#include "storage/DebouncedSaver.h"

#include "storage/BlockStorage.h"

#include <utility>

namespace tallowby {

DebouncedSaver::DebouncedSaver(Scheduler &scheduler, BlockStorage &storage)
    : m_scheduler(scheduler)
    , m_storage(storage) {}

void DebouncedSaver::requestSave(std::function<void()> action) {
    if (action) {
        m_pendingAction = std::move(action);
    }
    m_saveCall = m_scheduler.after(kDebounceInterval, [this] { saveNow(); });
}

void DebouncedSaver::flush() {
    if (m_saveCall.isPending()) {
        m_saveCall.cancel();
        saveNow();
    }
}

void DebouncedSaver::saveNow() {
    if (const auto action = std::exchange(m_pendingAction, nullptr)) {
        action();
    }
    m_storage.save();
}

} // namespace tallowby
