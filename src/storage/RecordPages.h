#pragma once

#include "model/Block.h"

#include <memory>
#include <vector>

namespace tallowby {

/// The records of all blocks by place, in pages: a snapshot rebuilds the pages in which something changed and copies
/// one reference for each of the others, so that it costs next to nothing however many blocks there are. Main thread
/// only; the pages of a snapshot never change and may be read anywhere.
class RecordPages {
public:
    static constexpr std::size_t kPageSize = 256;
    using Page = std::vector<SharedBlockFields>;
    using Snapshot = std::vector<std::shared_ptr<const Page>>;

    /// The records of places 0 and up, as just loaded.
    explicit RecordPages(std::vector<SharedBlockFields> records = {});

    /// The record at `place` has changed or is new.
    void markChanged(std::size_t place);
    [[nodiscard]] const Snapshot &snapshot(const std::vector<BlockPtr> &blocks);

private:
    Snapshot m_pages;
    std::vector<bool> m_isChanged;
    std::vector<std::size_t> m_changed;
};

} // namespace tallowby
