#pragma once

#include "model/Block.h"

#include <QByteArray>
#include <QStringList>

#include <vector>

namespace tallowby {

class BlockStorage;

/// What can be found of a block by its words: its text, and the items of a checklist or the cells of a table.
[[nodiscard]] QStringList searchableTexts(const BlockFields &fields);

/// The words of all blocks of a storage in one folded text, so that a search is one pass over bytes that lie side by
/// side. A block that has changed is seen by its fields, which are copied on write, and read again at the next search.
/// Main thread only.
class SearchIndex {
public:
    /// The storage must outlive the index.
    explicit SearchIndex(const BlockStorage &storage);

    /// Reads up to so many blocks that are new or have changed; false once there are none left. So that a first search
    /// of many blocks need not read them all.
    bool prepare(std::size_t blockCount);
    /// The live blocks that contain the text, whatever its case, in the storage's order.
    [[nodiscard]] std::vector<SharedBlockFields> find(const QString &text);

private:
    struct Entry {
        SharedBlockFields fields;
        std::size_t offset = 0;
        std::size_t length = 0;
    };
    /// A part of the text, and the place of its block.
    struct Segment {
        std::size_t offset;
        std::size_t place;
    };

    void read(std::size_t place, const SharedBlockFields &fields);
    void compact();

    const BlockStorage &m_storage;
    std::vector<Entry> m_entries;
    /// In the order of the text. Those whose block has been read again since lead nowhere.
    std::vector<Segment> m_segments;
    QByteArray m_text;
    std::size_t m_deadLength = 0;
    /// From where `prepare` goes on.
    std::size_t m_preparedUntil = 0;
};

} // namespace tallowby
