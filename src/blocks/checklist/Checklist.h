#pragma once

#include "model/AnyCodable.h"
#include "model/Block.h"

#include <vector>

namespace tallowby {

/// The items of a checklist, with all that their payload says beside what is known of them.
class Checklist {
public:
    Checklist() = default;
    explicit Checklist(const Block &block);

    [[nodiscard]] int count() const { return int(m_items.size()); }
    [[nodiscard]] int doneCount() const;
    [[nodiscard]] const QString &text(int item) const { return at(item).text; }
    [[nodiscard]] bool isDone(int item) const { return at(item).isDone; }

    void setText(int item, const QString &text);
    void setIsDone(int item, bool isDone);
    /// A new item that is not done.
    void insert(int item, const QString &text);
    void remove(int item);
    void move(int from, int to);

    /// For the payload.
    [[nodiscard]] AnyCodable toPayload() const;

private:
    struct Item {
        AnyCodable::Object source;
        QString text;
        bool isDone = false;
    };
    [[nodiscard]] static Item itemFrom(const AnyCodable &value);
    [[nodiscard]] static Item freshItem(const QString &text);
    [[nodiscard]] const Item &at(int item) const { return m_items.at(std::size_t(item)); }

    std::vector<Item> m_items;
};

} // namespace tallowby
