#pragma once

#include <QByteArray>

namespace tallowby {

/// The payload with `member`, which is `"key":value` in compact JSON, in the place of the member under `key`, which is
/// written with its quotes; at the end when there is none. An empty member takes the key out. The other members stay as
/// they are, so a picture beside a small value is not taken apart. A payload that is no JSON object counts as empty.
[[nodiscard]] QByteArray payloadWith(const QByteArray &payload, const QByteArray &key, const QByteArray &member);

/// One past the closing quote of the string that begins at `from` in valid JSON.
[[nodiscard]] qsizetype endOfJsonString(QByteArrayView text, qsizetype from);

} // namespace tallowby
