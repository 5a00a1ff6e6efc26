#include "canvas/pasteboard/PasteboardBlocks.h"

#include "canvas/model/ReadingOrder.h"
#include "model/AnyCodable.h"
#include "model/BlockRecordReader.h"
#include "model/BlockRecordWriter.h"
#include "model/TimestampCoding.h"
#include "storage/PictureQueue.h"

#include <QMimeDatabase>

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <cstring>
#include <future>

namespace tallowby {

namespace {

const QString &recordsType() {
    static const QString type = QStringLiteral("application/x-tallowby-blocks+json");
    return type;
}

const QString &stylesType() {
    static const QString type = QStringLiteral("application/x-tallowby-block-styles+json");
    return type;
}

/// In canvas points. Farther out, neighbouring numbers are too far apart to draw with.
constexpr double kFarthest = 1e9;
/// In pixels, of what other programs get that do not take the file itself.
constexpr int kLongestCopiedSide = 4096;
/// Meanwhile this program does nothing else.
constexpr std::chrono::seconds kMaxWaitForPixels{1};

QString textOf(const Block &block) {
    QStringList lines;
    switch (block.blockType()) {
    case BlockType::checklist:
        lines << block.checklistTitle();
        for (const ChecklistItemPtr &item : block.checklistItems()) {
            lines << item->text();
        }
        lines.removeAll(QString());
        break;
    case BlockType::table:
        for (const QStringList &row : block.tableData()) {
            lines << row.join(u'\t');
        }
        break;
    default:
        return block.rawTextOrEmpty();
    }
    return lines.join(u'\n');
}

QString textsOf(const std::vector<BlockPtr> &blocks) {
    QStringList texts;
    for (const BlockPtr &block : inReadingOrder(blocks)) {
        texts << textOf(*block);
    }
    texts.removeIf([](const QString &text) { return text.trimmed().isEmpty(); });
    return texts.join(QStringLiteral("\n\n"));
}

/// The records as one document, or why there is none.
std::optional<QString> writeRecords(const std::vector<BlockPtr> &blocks, QByteArray &document) {
    if (qsizetype(blocks.size()) > kMostPasteboardBlocks) {
        return QStringLiteral("there are more than %1 of them").arg(kMostPasteboardBlocks);
    }
    BlockRecordWriter writer(kFileTimestamps);
    writer.startArray();
    for (const BlockPtr &block : blocks) {
        if (auto refusal = writer.write(*block->fields())) {
            return refusal;
        }
        if (qsizetype(writer.text().size()) > kLargestPasteboardDocument) {
            return QStringLiteral("they take more than 64 MiB");
        }
    }
    writer.endArray();
    document = QByteArray(writer.text().data(), qsizetype(writer.text().size()));
    return std::nullopt;
}

QByteArray writeStyles(const std::vector<BlockPtr> &blocks) {
    AnyCodable::Array styles;
    for (const BlockPtr &block : blocks) {
        styles.emplace_back(AnyCodable::Array{block->stickyColor(), block->codeLanguage()});
    }
    return AnyCodable(std::move(styles)).toJson().value_or(QByteArray());
}

/// What does not fit leaves the blocks as they are.
void applyStyles(const QByteArray &document, const std::vector<BlockPtr> &blocks) {
    if (document.size() > kLargestPasteboardDocument) {
        return;
    }
    const auto styles = AnyCodable::fromJson(document);
    const auto *const each = styles ? std::get_if<AnyCodable::Array>(&styles->value()) : nullptr;
    if (!each || each->size() != blocks.size()) {
        return;
    }
    for (std::size_t i = 0; i < blocks.size(); ++i) {
        const auto *const style = std::get_if<AnyCodable::Array>(&(*each)[i].value());
        const auto *const color = style && style->size() == 2 ? std::get_if<QString>(&(*style)[0].value()) : nullptr;
        const auto *const language = color ? std::get_if<QString>(&(*style)[1].value()) : nullptr;
        if (language) {
            blocks[i]->setStickyColor(*color);
            blocks[i]->setCodeLanguage(*language);
        }
    }
}

bool isWithinReach(const BlockFields &fields) {
    return std::ranges::all_of(std::array{fields.xPosition, fields.yPosition, fields.width, fields.height},
                               [](double number) { return std::abs(number) <= kFarthest; });
}

BlockPtr newBlock(SharedBlockFields fields, QUuid ownerId) {
    const Timestamp now = Timestamp::from(std::chrono::system_clock::now());
    fields->id = QUuid::createUuid();
    fields->userId = ownerId;
    fields->embedding.reset();
    fields->createdAt = now;
    fields->updatedAt = now;
    fields->syncedAt.reset();
    fields->deletedAt.reset();
    return std::make_shared<Block>(std::move(fields));
}

} // namespace

std::optional<PasteboardPicture> pictureOf(const Block &block) {
    const QByteArray file = block.imageData().value_or(QByteArray());
    const QString mimeType = QMimeDatabase().mimeTypeForData(file).name();
    if (!mimeType.startsWith(u"image/")) {
        return std::nullopt;
    }
    if (mimeType == u"image/png") {
        return PasteboardPicture{file, mimeType, nullptr}; // Every program reads it as it is.
    }
    // Begun now, since the other program does not wait long once it has asked.
    const auto decode = [pixels = PictureQueue::shared().pixelsOf(file, kLongestCopiedSide)] {
        try {
            return pixels.wait_for(kMaxWaitForPixels) == std::future_status::ready ? pixels.get() : QImage();
        } catch (const std::future_error &) {
            return QImage(); // The program is ending.
        }
    };
    return PasteboardPicture{file, mimeType, decode};
}

PasteboardWriting pasteboardContentOf(const std::vector<BlockPtr> &blocks) {
    PasteboardWriting writing;
    writing.content.text = textsOf(blocks);
    if (blocks.size() == 1 && blocks.front()->blockType() == BlockType::image) {
        writing.content.picture = pictureOf(*blocks.front());
    }
    QByteArray document;
    if (const auto refusal = writeRecords(blocks, document)) {
        writing.refusal = *refusal;
        return writing;
    }
    writing.content.data = {{recordsType(), document}, {stylesType(), writeStyles(blocks)}};
    return writing;
}

PasteboardReading blocksOn(const Pasteboard &pasteboard, QUuid ownerId) {
    const QByteArray document = pasteboard.data(recordsType());
    if (document.isEmpty()) {
        return {};
    }
    if (document.size() > kLargestPasteboardDocument) {
        return {.blocks = {}, .refusal = QStringLiteral("they take more than 64 MiB")};
    }
    JsonBuffer buffer{std::size_t(document.size())};
    std::memcpy(buffer.data(), document.constData(), buffer.size());
    PasteboardReading reading;
    qsizetype count = 0;
    bool isTooFar = false;
    const auto refusal = BlockRecordReader(kFileTimestamps).read(buffer, [&](BlockDTO record) {
        if (++count > kMostPasteboardBlocks) {
            return;
        }
        SharedBlockFields fields = std::move(record).toFields();
        isTooFar = isTooFar || !isWithinReach(*fields);
        reading.blocks.push_back(newBlock(std::move(fields), ownerId));
    });
    if (refusal) {
        return {.blocks = {}, .refusal = *refusal};
    }
    if (count > kMostPasteboardBlocks) {
        return {.blocks = {}, .refusal = QStringLiteral("there are more than %1 of them").arg(kMostPasteboardBlocks)};
    }
    if (isTooFar) {
        return {.blocks = {}, .refusal = QStringLiteral("one of them is out of all reach")};
    }
    applyStyles(pasteboard.data(stylesType()), reading.blocks);
    return reading;
}

} // namespace tallowby
