#include "canvas/model/BlockGeometry.h"
#include "canvas/model/UndoGroup.h"
#include "canvas/pasteboard/PasteboardBlocks.h"
#include "model/AnyCodable.h"
#include "model/ImageDecoding.h"
#include "platform/Log.h"
#include "platform/desktop/Pasteboard.h"
#include "storage/BlockStorage.h"

#include <QFile>
#include <QFileInfo>
#include <QUrl>

#include <algorithm>
#include <cmath>

namespace tallowby {

namespace {

constexpr qsizetype kMostDroppedFiles = 100;
/// In characters.
constexpr qsizetype kLongestPastedText = 10'000'000;
/// Enough of a picture to know that it decodes.
constexpr int kProbedSide = 64;
/// In points, where the picture itself is not narrower.
constexpr double kNarrowestFilledPicture = 50;
/// Blocks that lie closer than this on one another cannot be told apart.
constexpr double kCoveringDistance = 1;
constexpr int kMostSteps = 100;

/// The bytes of a file that may be a picture, or why it is refused.
std::optional<QString> readPictureFile(const QUrl &url, QByteArray &bytes) {
    const QFileInfo info(url.toLocalFile());
    // Anything else, a pipe or a device, might never end.
    if (!url.isLocalFile() || !info.isFile()) {
        return QStringLiteral("it is no file of this machine");
    }
    if (info.size() > kLargestPictureFile) {
        return QStringLiteral("it is larger than 32 MiB");
    }
    QFile file(info.filePath());
    if (!file.open(QIODevice::ReadOnly)) {
        return QStringLiteral("it cannot be read: ") + file.errorString();
    }
    bytes = file.read(kLargestPictureFile + 1);
    return std::nullopt;
}

void logRefusal(const QString &what, const QString &why) {
    logLine(u"[Canvas] ⚠️ %1 not inserted: %2"_qs.arg(what, why));
}

/// QRectF's own union leaves out rectangles without any size.
QRectF framesTogether(const std::vector<BlockPtr> &blocks) {
    QPointF topLeft = frameOf(*blocks.front()).topLeft();
    QPointF bottomRight = topLeft;
    for (const BlockPtr &block : blocks) {
        const QRectF frame = frameOf(*block);
        topLeft = {std::min(topLeft.x(), frame.left()), std::min(topLeft.y(), frame.top())};
        bottomRight = {std::max(bottomRight.x(), frame.right()), std::max(bottomRight.y(), frame.bottom())};
    }
    return {topLeft, bottomRight};
}

} // namespace

void CanvasViewModel::handlePaste(QPointF at) {
    recomputeZIndexes();
    if (pasteBlocks(at)) {
        return;
    }
    const BlockPtr picture = selectedPictureFrame();
    const QList<QUrl> files = m_pasteboard.fileUrls();
    if (!files.isEmpty() && (picture ? fillPicture(*picture, files.front()) : insertFile(files.front(), at))) {
        return;
    }
    if (const QByteArray bytes = m_pasteboard.imageBytes(); !bytes.isEmpty()) {
        const auto refusal = picture ? fillPicture(*picture, bytes) : insertImage(bytes, at);
        if (!refusal) {
            return;
        }
        logRefusal(QStringLiteral("The pasted picture was"), *refusal);
    }
    QString text = m_pasteboard.text();
    if (text.size() > kLongestPastedText) {
        logRefusal(QStringLiteral("The pasted text was"), QStringLiteral("it is longer than 10 million characters"));
    } else if (!text.isEmpty()) {
        spawnBlock(at, BlockType::text, text.replace(QStringLiteral("\r\n"), QStringLiteral("\n")));
    }
}

bool CanvasViewModel::pasteBlocks(QPointF at) {
    const PasteboardReading reading = blocksOn(m_pasteboard, ownerOfNewBlocks());
    if (!reading.refusal.isEmpty()) {
        logRefusal(QStringLiteral("The pasted blocks were"), reading.refusal);
    }
    if (reading.blocks.empty()) {
        return false;
    }
    endEditing();
    QPointF offset = at - framesTogether(reading.blocks).center();
    for (int step = 0; step < kMostSteps && isCovering(frameOf(*reading.blocks.front()).translated(offset)); ++step) {
        offset += QPointF(kDuplicateOffset, kDuplicateOffset);
    }
    const UndoGroup gesture(*this);
    for (const BlockPtr &block : reading.blocks) {
        block->setXPosition(block->xPosition() + offset.x());
        block->setYPosition(block->yPosition() + offset.y());
        shiftPoints(*block, offset);
        place(block);
        registerAction(AddAction{block});
    }
    setSelection(reading.blocks);
    return true;
}

bool CanvasViewModel::isCovering(const QRectF &frame) const {
    const auto isClose = [](double a, double b) { return std::abs(a - b) < kCoveringDistance; };
    return std::ranges::any_of(m_live.meeting(frame), [&](const BlockPtr &block) {
        const QRectF other = frameOf(*block);
        return isClose(frame.x(), other.x()) && isClose(frame.y(), other.y()) &&
               isClose(frame.width(), other.width()) && isClose(frame.height(), other.height());
    });
}

void CanvasViewModel::copySelected() {
    copyToPasteboard();
}

void CanvasViewModel::cutSelected() {
    if (copyToPasteboard()) {
        deleteSelected();
    }
}

bool CanvasViewModel::copyToPasteboard() {
    const std::vector<BlockPtr> selected = selectedInPaintOrder();
    if (selected.empty()) {
        return false;
    }
    const PasteboardWriting writing = pasteboardContentOf(selected);
    if (!writing.refusal.isEmpty()) {
        logLine(u"[Canvas] ⚠️ The selected blocks were not copied: %1"_qs.arg(writing.refusal));
        return false;
    }
    m_pasteboard.write(writing.content);
    return true;
}

void CanvasViewModel::copyPicture(const Block &block) {
    if (auto picture = pictureOf(block)) {
        m_pasteboard.write({.text = {}, .picture = std::move(picture), .data = {}});
    }
}

void CanvasViewModel::processAndInsertImage(const QByteArray &data, QPointF at) {
    if (const auto refusal = insertImage(data, at)) {
        logRefusal(QStringLiteral("A picture was"), *refusal);
    }
}

std::optional<QString> CanvasViewModel::insertImage(const QByteArray &data, QPointF at) {
    const DecodedPicture picture = decodePicture(data, kProbedSide);
    if (!picture.refusal.isEmpty()) {
        return picture.refusal;
    }
    const double width = std::min(double(picture.size.width()), kWidestPicture);
    QRectF frame(0, 0, width, picture.size.height() * width / picture.size.width());
    frame.moveCenter(at);
    const auto block = std::make_shared<Block>(ownerOfNewBlocks(), BlockType::image, frame);
    block->setContent("{\"image\":\"" + data.toBase64() + "\"}");
    place(block);
    return std::nullopt;
}

bool CanvasViewModel::insertFile(const QUrl &url, QPointF at) {
    QByteArray bytes;
    std::optional<QString> refusal = readPictureFile(url, bytes);
    if (!refusal) {
        refusal = insertImage(bytes, at);
    }
    if (refusal) {
        logRefusal(url.fileName() + u" was", *refusal);
    }
    return !refusal;
}

std::optional<QString> CanvasViewModel::fillPicture(Block &block, const QByteArray &data) {
    const DecodedPicture picture = decodePicture(data, kProbedSide);
    if (!picture.refusal.isEmpty()) {
        return picture.refusal;
    }
    const QRectF before = frameOf(block);
    const double width = std::min(double(picture.size.width()), std::max(before.width(), kNarrowestFilledPicture));
    QRectF frame(0, 0, width, picture.size.height() * width / picture.size.width());
    frame.moveCenter(before.center());
    applyFrame(block, frame);
    setPayloadValue(block, QStringLiteral("image"), QString::fromLatin1(data.toBase64()));
    return std::nullopt;
}

bool CanvasViewModel::fillPicture(Block &block, const QUrl &file) {
    QByteArray bytes;
    std::optional<QString> refusal = readPictureFile(file, bytes);
    if (!refusal) {
        refusal = fillPicture(block, bytes);
    }
    if (refusal) {
        logRefusal(file.fileName() + u" was", *refusal);
    }
    return !refusal;
}

BlockPtr CanvasViewModel::selectedPictureFrame() const {
    if (m_selectedBlocks.size() != 1 || m_selectedBlocks.front()->blockType() != BlockType::image) {
        return nullptr;
    }
    return m_selectedBlocks.front()->imageData() ? nullptr : m_selectedBlocks.front();
}

void CanvasViewModel::insertFiles(const QList<QUrl> &urls, QPointF at) {
    if (urls.size() > kMostDroppedFiles) {
        logRefusal(QStringLiteral("%1 of %2 files were").arg(urls.size() - kMostDroppedFiles).arg(urls.size()),
                   QStringLiteral("there are more than %1 of them").arg(kMostDroppedFiles));
    }
    for (const QUrl &url : urls.first(std::min(urls.size(), kMostDroppedFiles))) {
        if (insertFile(url, at)) {
            at += QPointF(kDuplicateOffset, kDuplicateOffset);
        }
    }
}

} // namespace tallowby
