#pragma once

#include "platform/desktop/Pasteboard.h"

namespace tallowby {

/// The clipboard of the system, through Qt.
class QtPasteboard final : public Pasteboard {
public:
    [[nodiscard]] QList<QUrl> fileUrls() const override;
    [[nodiscard]] QByteArray imageBytes() const override;
    [[nodiscard]] QString text() const override;
    [[nodiscard]] QByteArray data(const QString &mimeType) const override;
    void write(const PasteboardContent &content) override;
};

} // namespace tallowby
