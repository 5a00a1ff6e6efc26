#include "model/json/PayloadText.h"

#include "model/json/JsonReading.h"

#include <utility>

namespace tallowby {

namespace {

/// One past the value that begins at `from` in compact JSON.
qsizetype endOfValue(QByteArrayView text, qsizetype from) {
    int depth = 0;
    for (qsizetype place = from;;) {
        const char character = text[place];
        if (character == '"') {
            place = endOfJsonString(text, place);
            if (depth == 0) {
                return place;
            }
            continue;
        }
        if (depth == 0 && (character == ',' || character == '}')) {
            return place;
        }
        depth += character == '{' || character == '[' ? 1 : 0;
        depth -= character == '}' || character == ']' ? 1 : 0;
        ++place;
    }
}

/// Hands over key, with its quotes, and whole text of each member of an object in compact form.
template <typename Take>
void forEachMember(QByteArrayView object, Take take) {
    for (qsizetype start = 1; start < object.size() - 1;) {
        const qsizetype keyEnd = endOfJsonString(object, start);
        const qsizetype end = endOfValue(object, keyEnd + 1);
        take(object.sliced(start, keyEnd - start), object.sliced(start, end - start));
        start = end + 1;
    }
}

} // namespace

qsizetype endOfJsonString(QByteArrayView text, qsizetype from) {
    qsizetype place = from + 1;
    while (text[place] != '"') {
        place += text[place] == '\\' ? 2 : 1;
    }
    return place + 1;
}

QByteArray payloadWith(const QByteArray &payload, const QByteArray &key, const QByteArray &member) {
    const auto object = json::TextParser().compactObject(payload);
    if (!object && member.isEmpty()) {
        return payload;
    }
    const QByteArray current = object.value_or(QByteArrayLiteral("{}"));
    QByteArray result;
    result.reserve(current.size() + member.size() + 2);
    result += '{';
    const auto append = [&result](QByteArrayView text) {
        if (result.size() > 1) {
            result += ',';
        }
        result += text;
    };
    bool isPlaced = member.isEmpty();
    forEachMember(current, [&](QByteArrayView name, QByteArrayView text) {
        if (name != key) {
            append(text);
        } else if (!std::exchange(isPlaced, true)) {
            append(member);
        }
    });
    if (!isPlaced) {
        append(member);
    }
    result += '}';
    return result;
}

} // namespace tallowby
