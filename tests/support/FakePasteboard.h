#pragma once

#include "platform/desktop/Pasteboard.h"

namespace tallowby::test {

/// A pasteboard that holds what tests put on it. What is written replaces everything.
struct FakePasteboard final : Pasteboard {
    QList<QUrl> files;
    QByteArray picture;
    PasteboardContent content;

    [[nodiscard]] QList<QUrl> fileUrls() const override { return files; }
    [[nodiscard]] QByteArray imageBytes() const override { return picture; }
    [[nodiscard]] QString text() const override { return content.text; }
    [[nodiscard]] QByteArray data(const QString &mimeType) const override {
        for (const auto &[type, bytes] : content.data) {
            if (type == mimeType) {
                return bytes;
            }
        }
        return {};
    }
    void write(const PasteboardContent &written) override {
        files.clear();
        picture.clear();
        content = written;
    }
};

} // namespace tallowby::test
