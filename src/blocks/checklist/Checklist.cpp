#include "blocks/checklist/Checklist.h"

#include "model/json/JsonText.h"

#include <algorithm>

namespace tallowby {

namespace {

const QString kText = QStringLiteral("text");
const QString kIsDone = QStringLiteral("isDone");

} // namespace

Checklist::Checklist(const Block &block) {
    const auto items = block.contentField(QStringLiteral("items"));
    if (const auto *values = items ? std::get_if<AnyCodable::Array>(&items->value()) : nullptr) {
        std::ranges::transform(*values, std::back_inserter(m_items), itemFrom);
        return;
    }
    // A payload with a strange member elsewhere may still have items that can be read.
    for (const ChecklistItemPtr &item : block.checklistItems()) {
        m_items.push_back(freshItem(item->text()));
        setIsDone(count() - 1, item->isDone());
    }
}

Checklist::Item Checklist::itemFrom(const AnyCodable &value) {
    if (const QString *text = std::get_if<QString>(&value.value())) {
        return freshItem(*text);
    }
    Item item;
    if (const auto *object = std::get_if<AnyCodable::Object>(&value.value())) {
        item.source = *object;
    }
    for (const AnyCodable::Member &member : item.source.members()) {
        if (const QString *text = std::get_if<QString>(&member.value.value()); text && member.key == kText) {
            item.text = *text;
        } else if (const bool *isDone = std::get_if<bool>(&member.value.value()); isDone && member.key == kIsDone) {
            item.isDone = *isDone;
        }
    }
    return item;
}

Checklist::Item Checklist::freshItem(const QString &text) {
    const auto id = uuidText(QUuid::createUuid());
    Item item{.source = {}, .text = text, .isDone = false};
    item.source.set(QStringLiteral("id"), QString::fromLatin1(id.data(), qsizetype(id.size())));
    item.source.set(kText, text);
    item.source.set(kIsDone, false);
    return item;
}

int Checklist::doneCount() const {
    return int(std::ranges::count(m_items, true, &Item::isDone));
}

void Checklist::setText(int item, const QString &text) {
    Item &changed = m_items.at(std::size_t(item));
    changed.text = text;
    changed.source.set(kText, text);
}

void Checklist::setIsDone(int item, bool isDone) {
    Item &changed = m_items.at(std::size_t(item));
    changed.isDone = isDone;
    changed.source.set(kIsDone, isDone);
}

void Checklist::insert(int item, const QString &text) {
    m_items.insert(m_items.begin() + item, freshItem(text));
}

void Checklist::remove(int item) {
    m_items.erase(m_items.begin() + item);
}

void Checklist::move(int from, int to) {
    const auto place = m_items.begin();
    if (from < to) {
        std::rotate(place + from, place + from + 1, place + to + 1);
    } else {
        std::rotate(place + to, place + from, place + from + 1);
    }
}

AnyCodable Checklist::toPayload() const {
    AnyCodable::Array items;
    items.reserve(m_items.size());
    for (const Item &item : m_items) {
        items.emplace_back(item.source);
    }
    return items;
}

} // namespace tallowby
