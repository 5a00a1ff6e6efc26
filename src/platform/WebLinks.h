#pragma once

class QUrl;

namespace tallowby {

/// Whether a person may be sent there from a text that anybody may have written: http, https and mailto, and nothing
/// that opens a file or runs a program.
[[nodiscard]] bool isWebLink(const QUrl &url);

/// Hands the link to the desktop's browser or mail program, or to whoever handles its scheme in QDesktopServices. A
/// link that is none of the above stays closed. False when it was not opened.
bool openWebLink(const QUrl &url);

} // namespace tallowby
