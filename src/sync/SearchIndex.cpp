#include "sync/SearchIndex.h"

#include "storage/BlockStorage.h"

#include <QLocale>

#include <algorithm>
#include <cstring>

namespace tallowby {

namespace {

/// Between two texts; no query contains it.
constexpr char kSeparator = '\0';
/// Below this much waste it is not worth the copying.
constexpr std::size_t kWorthCompacting = std::size_t{1} << 20;

/// Texts that differ in case only give the same bytes. Where the language has letters of its own for that, such as the
/// dotless i, they are its own.
QByteArray folded(const QString &text) {
    static const QLocale locale;
    static const bool hasOwnCases = locale.language() == QLocale::Turkish || locale.language() == QLocale::Azerbaijani;
    QByteArray bytes = (hasOwnCases ? locale.toLower(text) : text.toCaseFolded()).toUtf8();
    bytes.replace(kSeparator, ' ');
    return bytes;
}

} // namespace

QStringList searchableTexts(const BlockFields &fields) {
    QStringList texts;
    if (fields.rawText && !fields.rawText->isEmpty()) {
        texts << *fields.rawText;
    }
    if (fields.blockType != BlockType::checklist && fields.blockType != BlockType::table) {
        return texts;
    }
    const Block reader{SharedBlockFields(new BlockFields(fields))};
    if (fields.blockType == BlockType::checklist) {
        for (const ChecklistItemPtr &item : reader.checklistItems()) {
            texts << item->text();
        }
    } else {
        for (const QStringList &row : reader.tableData()) {
            texts << row;
        }
    }
    texts.removeAll(QString());
    return texts;
}

SearchIndex::SearchIndex(const BlockStorage &storage)
    : m_storage(storage) {}

bool SearchIndex::prepare(std::size_t blockCount) {
    const auto &blocks = m_storage.blocks();
    m_entries.reserve(blocks.size());
    for (std::size_t read = 0; m_preparedUntil < blocks.size(); ++m_preparedUntil) {
        const SharedBlockFields &fields = blocks[m_preparedUntil]->fields();
        const bool isKnown =
            m_preparedUntil < m_entries.size() && m_entries[m_preparedUntil].fields.constData() == fields.constData();
        if (isKnown) {
            continue;
        }
        if (read++ == blockCount) {
            return true;
        }
        this->read(m_preparedUntil, fields);
    }
    m_preparedUntil = 0;
    return false;
}

void SearchIndex::read(std::size_t place, const SharedBlockFields &fields) {
    if (place == m_entries.size()) {
        m_entries.emplace_back();
    }
    Entry &entry = m_entries[place];
    m_deadLength += entry.length;
    entry = {fields, std::size_t(m_text.size()), 0};
    if (fields->deletedAt) {
        return;
    }
    for (const QString &text : searchableTexts(*fields)) {
        m_text += folded(text) + kSeparator;
    }
    entry.length = std::size_t(m_text.size()) - entry.offset;
    if (entry.length > 0) {
        m_segments.push_back({entry.offset, place});
    }
}

void SearchIndex::compact() {
    if (m_deadLength < kWorthCompacting || m_deadLength < std::size_t(m_text.size()) / 2) {
        return;
    }
    QByteArray text;
    text.reserve(m_text.size() - qsizetype(m_deadLength));
    m_segments.clear();
    for (std::size_t place = 0; place < m_entries.size(); ++place) {
        Entry &entry = m_entries[place];
        if (entry.length > 0) {
            const auto offset = std::size_t(text.size());
            text.append(m_text.constData() + entry.offset, qsizetype(entry.length));
            m_segments.push_back({offset, place});
            entry.offset = offset;
        }
    }
    m_text = text;
    m_deadLength = 0;
}

std::vector<SharedBlockFields> SearchIndex::find(const QString &text) {
    m_preparedUntil = 0;
    prepare(m_storage.blocks().size());
    compact();
    const QByteArray query = folded(text);
    std::vector<std::size_t> places;
    auto next = m_segments.cbegin();
    const char *const begin = m_text.constData();
    const char *const end = begin + m_text.size();
    for (const char *from = begin; !query.isEmpty() && from < end;) {
        const auto *hit = static_cast<const char *>(
            ::memmem(from, std::size_t(end - from), query.constData(), std::size_t(query.size())));
        if (!hit) {
            break;
        }
        const auto offset = std::size_t(hit - begin);
        while (next != m_segments.cend() && next->offset <= offset) {
            ++next;
        }
        const Segment &segment = *(next - 1);
        if (m_entries[segment.place].offset == segment.offset && m_entries[segment.place].length > 0) {
            places.push_back(segment.place);
        }
        // One match in a block is enough.
        from = next == m_segments.cend() ? end : begin + next->offset;
    }
    if (!std::ranges::is_sorted(places)) {
        std::ranges::sort(places);
    }
    std::vector<SharedBlockFields> found;
    found.reserve(places.size());
    for (const std::size_t place : places) {
        found.push_back(m_entries[place].fields);
    }
    return found;
}

} // namespace tallowby
