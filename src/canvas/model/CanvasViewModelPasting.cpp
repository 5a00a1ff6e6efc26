#include "canvas/model/BlockGeometry.h"
#include "canvas/model/UndoGroup.h"
#include "canvas/pasteboard/PasteboardBlocks.h"
#include "model/AnyCodable.h"
#include "platform/Log.h"
#include "platform/desktop/Pasteboard.h"
#include "storage/BlockStorage.h"
#include "storage/ImageCacheService.h"

#include <QUrl>

#include <algorithm>
#include <cmath>

namespace tallowby {

namespace {

constexpr qsizetype kMostDroppedFiles = 100;
/// In characters.
constexpr qsizetype kLongestPastedText = 10'000'000;
/// In points, where the picture itself is not narrower.
constexpr double kNarrowestFilledPicture = 50;
/// Blocks that lie closer than this on one another cannot be told apart.
constexpr double kCoveringDistance = 1;
constexpr int kMostSteps = 100;

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
    // All of it is taken now: the pasteboard may hold something else by the time a picture has been looked at.
    std::vector<PictureSource> sources;
    if (const QList<QUrl> files = m_pasteboard.fileUrls(); !files.isEmpty()) {
        sources.emplace_back(files.front());
    }
    if (const QByteArray bytes = m_pasteboard.imageBytes(); !bytes.isEmpty()) {
        sources.emplace_back(bytes);
    }
    const QString text = m_pasteboard.text();
    if (sources.empty()) {
        pasteText(text, at);
        return;
    }
    const BlockPtr frame = selectedPictureFrame();
    const QUuid frameId = frame ? frame->id() : QUuid();
    m_pictureIntake.look(std::move(sources), [this, at, text, frameId](const PictureFinding &finding) {
        const bool isTaken = takePicture(finding, at, frameId) || pasteText(text, at);
        reportRefusals(finding, isTaken);
    });
}

bool CanvasViewModel::pasteText(QString text, QPointF at) {
    if (text.size() > kLongestPastedText) {
        logRefusal(QStringLiteral("The pasted text was"), QStringLiteral("it is longer than 10 million characters"));
        return false;
    }
    if (text.isEmpty()) {
        return false;
    }
    text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    if (!isAnyBlockEditing()) {
        spawnBlock(at, BlockType::text, text);
        return true;
    }
    // Whoever has gone on typing meanwhile keeps the keyboard.
    const BlockPtr block = makeSpawned(at, BlockType::text, text);
    place(block);
    registerAction(AddAction{block});
    return true;
}

bool CanvasViewModel::takePicture(const PictureFinding &finding, QPointF at, QUuid frameId) {
    if (finding.file.isEmpty()) {
        return false;
    }
    const auto frame = std::ranges::find_if(blocks(), [&](const BlockPtr &block) { return block->id() == frameId; });
    if (frame != blocks().end() && !(*frame)->imageData()) {
        const BlockPtr block = *frame;
        fillPicture(*block, finding);
    } else {
        insertPicture(finding, at);
    }
    return true;
}

void CanvasViewModel::reportRefusals(const PictureFinding &finding, bool isSomethingTaken) {
    for (const RefusedSource &refused : finding.refused) {
        logRefusal(refused.name.isEmpty() ? QStringLiteral("A picture was") : QString(refused.name + u" was"),
                   refused.reason);
    }
    // Something else that came in its place says enough, unless there was a picture to be had.
    const auto told = std::ranges::find_if(finding.refused, [isSomethingTaken](const RefusedSource &refused) {
        return !isSomethingTaken || !refused.isOtherContent;
    });
    if (told != finding.refused.end()) {
        Q_EMIT noticeRequested(told->name.isEmpty() ? tr("The picture was not inserted: %1").arg(told->reason)
                                                    : tr("“%1” was not inserted: %2").arg(told->name, told->reason));
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
    m_pictureIntake.look(
        {data}, [this, at](const PictureFinding &finding) { reportRefusals(finding, takePicture(finding, at, {})); });
}

void CanvasViewModel::insertPicture(const PictureFinding &picture, QPointF at) {
    const double width = std::min(double(picture.size.width()), kWidestPicture);
    QRectF frame(0, 0, width, picture.size.height() * width / picture.size.width());
    frame.moveCenter(at);
    const auto block = std::make_shared<Block>(ownerOfNewBlocks(), BlockType::image, frame);
    block->setContent("{\"image\":\"" + picture.file.toBase64() + "\"}");
    ImageCacheService::shared().setPictureSize(picture.size, block->id());
    place(block);
}

void CanvasViewModel::fillPicture(Block &block, const PictureFinding &picture) {
    const QRectF before = frameOf(block);
    const double width = std::min(double(picture.size.width()), std::max(before.width(), kNarrowestFilledPicture));
    QRectF frame(0, 0, width, picture.size.height() * width / picture.size.width());
    frame.moveCenter(before.center());
    applyFrame(block, frame);
    ImageCacheService::shared().setPictureSize(picture.size, block.id());
    setPayloadValue(block, QStringLiteral("image"), QString::fromLatin1(picture.file.toBase64()));
}

void CanvasViewModel::fillPicture(const Block &block, const QUrl &file) {
    m_pictureIntake.look({file}, [this, id = block.id(), at = frameOf(block).center()](const PictureFinding &finding) {
        reportRefusals(finding, takePicture(finding, at, id));
    });
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
        Q_EMIT noticeRequested(tr("Only the first %n files were inserted", nullptr, int(kMostDroppedFiles)));
    }
    const auto next = std::make_shared<QPointF>(at);
    for (const QUrl &url : urls.first(std::min(urls.size(), kMostDroppedFiles))) {
        m_pictureIntake.look({url}, [this, next](const PictureFinding &finding) {
            const bool isTaken = takePicture(finding, *next, {});
            reportRefusals(finding, isTaken);
            if (isTaken) {
                *next += QPointF(kDuplicateOffset, kDuplicateOffset);
            }
        });
    }
}

} // namespace tallowby
