#pragma once

#include "model/Block.h"

#include <QFont>
#include <QStringList>

#include <functional>

namespace tallowby {

/// A face at a size, bounded to what can be laid out: a record from elsewhere may claim any number. Letters that the
/// first family does not have come from the next one that does.
[[nodiscard]] QFont boundedFont(const QStringList &families, double pixelSize);
/// The same, bold, italic and struck through as the block's text is.
[[nodiscard]] QFont styledFont(const Block &block, const QStringList &families, double pixelSize);
/// Calls `changed` whenever the style or the size of the block's text has changed, for as long as `context` lives.
void followTextStyle(const Block &block, const QObject *context, const std::function<void()> &changed);

} // namespace tallowby
