#include "blocks/image/ImageBlockContent.h"

#include "canvas/drawing/PathDrawingItem.h"
#include "canvas/view/InfiniteCanvasView.h"
#include "platform/Log.h"
#include "platform/theme/Theme.h"
#include "storage/ImageCacheService.h"

#include <QFileInfo>
#include <QMimeDatabase>
#include <QPointer>
#include <QQuickWindow>
#include <QSaveFile>

#include <algorithm>
#include <cmath>
#include <utility>

namespace tallowby {

namespace {

/// A picture whose proportions are those of its block but for this, in points, fills it.
constexpr double kFrameTolerance = 1;
constexpr int kMostNumbers = 1000;

int longestSide(QSize size) {
    return std::max(size.width(), size.height());
}

/// The ending that a picture's file gets by its contents; "png" where those say nothing.
QString suffixOf(const QByteArray &file) {
    const QString suffix = QMimeDatabase().mimeTypeForData(file).preferredSuffix();
    return suffix.isEmpty() || suffix == u"bin" ? QStringLiteral("png") : suffix;
}

/// The dialogue asks nobody before it names a file that is there already: that one stays, and the picture gets a
/// number.
QString freePath(const QString &path) {
    const QFileInfo wanted(path);
    QString free = path;
    for (int number = 2; QFileInfo::exists(free) && number < kMostNumbers; ++number) {
        free =
            u"%1/%2 %3.%4"_qs.arg(wanted.path(), wanted.completeBaseName(), QString::number(number), wanted.suffix());
    }
    return free;
}

} // namespace

ImageBlockContent::ImageBlockContent(QQuickItem *parent)
    : BlockBody(parent)
    , m_picture(new PathDrawingItem(PathDrawingItem::Keeping::picture, this)) {}

QString ImageBlockContent::message() const {
    return m_refusal == PictureRefusal::none ? QString()
                                             : tr("This picture could not be shown: %1").arg(describe(m_refusal));
}

void ImageBlockContent::componentComplete() {
    BlockBody::componentComplete();
    connect(block(), &Block::contentChanged, this, &ImageBlockContent::payloadChanged);
    connect(&Theme::shared(), &Theme::changed, this, &QQuickItem::polish);
    const QImage known = ImageCacheService::shared().image(block()->id());
    if (known.isNull()) {
        payloadChanged();
        return;
    }
    m_isPayloadNew = !isLoadedFrom(known, block()->content());
    show(known);
    updatePolish();
    requestPicture();
}

void ImageBlockContent::payloadChanged() {
    ++m_payloadNumber;
    m_isPayloadNew = true;
    if (block()->content().size() <= kSmallPayload && !block()->imageData()) {
        m_isPayloadNew = false;
        takePicture({}, m_payloadNumber);
    } else {
        requestPicture();
    }
}

QRectF ImageBlockContent::pictureFrame() const {
    const QSize proportions = m_wholeSize.isEmpty() ? m_decoded.size() : m_wholeSize;
    const QSizeF fitting = QSizeF(proportions).scaled(size(), Qt::KeepAspectRatio);
    const bool fills = std::abs(fitting.width() - width()) < kFrameTolerance &&
                       std::abs(fitting.height() - height()) < kFrameTolerance;
    QRectF frame({0, 0}, fills ? size() : fitting);
    frame.moveCenter({width() / 2, height() / 2});
    return frame;
}

int ImageBlockContent::wantedSide() const {
    const double ratio = window() ? window()->effectiveDevicePixelRatio() : 1.0;
    const double pixels = std::max(width(), height()) * zoom() * ratio * kOversampling;
    return int(std::ceil(std::clamp(pixels, 1.0, double(kLongestShownSide))));
}

void ImageBlockContent::requestPicture() {
    const int decoded = longestSide(m_decoded.size());
    const int whole = m_wholeSize.isEmpty() || m_isScalable ? wantedSide() : longestSide(m_wholeSize);
    const bool isFineEnough = decoded >= kFineEnough * std::min(wantedSide(), whole);
    const bool isTooFine = decoded > kCoarsestScaling * wantedSide();
    const bool isKnown =
        !m_isPayloadNew && (m_isEmpty || m_refusal != PictureRefusal::none || (isFineEnough && !isTooFine));
    if (isKnown || size().isEmpty()) {
        return;
    }
    if (m_isLoading) {
        m_isLoadDue = true;
    } else {
        load();
    }
}

void ImageBlockContent::load() {
    m_isPayloadNew = false;
    const auto work = [request = PictureRequest{block()->content(), wantedSide()}](PictureDecoder &decoder) {
        return loadPicture(request, decoder);
    };
    m_isLoading = true;
    m_loading = PictureQueue::shared().run<LoadedPicture>(
        PictureQueue::Urgency::shown, work, [this, number = m_payloadNumber](const LoadedPicture &loaded) {
            m_isLoading = false;
            takePicture(loaded, number);
        });
}

void ImageBlockContent::takePicture(const LoadedPicture &loaded, int payloadNumber) {
    if (payloadNumber == m_payloadNumber) {
        m_isEmpty = loaded.image.isNull() && loaded.refusal == PictureRefusal::none;
        m_refusal = loaded.refusal;
        m_wholeSize = loaded.wholeSize;
        m_isScalable = loaded.isScalable;
        ImageCacheService::shared().set(loaded.image, block()->id());
        ImageCacheService::shared().setPictureSize(loaded.wholeSize, block()->id());
        show(loaded.image);
    }
    if (std::exchange(m_isLoadDue, false)) {
        requestPicture();
    }
}

void ImageBlockContent::show(const QImage &decoded) {
    m_decoded = decoded;
    m_texture = decoded.isNull() ? QImage() : withRepeatedEdge(decoded);
    polish();
    Q_EMIT stateChanged();
}

void ImageBlockContent::updatePolish() {
    if (m_decoded.isNull()) {
        m_picture->setDrawing({});
        return;
    }
    const QRectF frame = pictureFrame();
    QTransform onFrame;
    onFrame.translate(frame.x(), frame.y());
    onFrame.scale(frame.width() / m_decoded.width(), frame.height() / m_decoded.height());
    onFrame.translate(-1, -1);
    QBrush picture(m_texture);
    picture.setTransform(onFrame);

    const double radius = std::min({double(Theme::cardRadius()), frame.width() / 2, frame.height() / 2});
    QPainterPath card;
    card.addRoundedRect(frame, radius, radius);
    QPainterPath edge;
    edge.addRoundedRect(frame.adjusted(0.5, 0.5, -0.5, -0.5), radius - 0.5, radius - 0.5);
    m_picture->setDrawing(PathDrawing({{.path = card, .fill = picture, .pen = Qt::NoPen},
                                       {.path = edge, .pen = QPen(Theme::shared().hairline(), 1)}}));
}

void ImageBlockContent::geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) {
    BlockBody::geometryChange(newGeometry, oldGeometry);
    if (newGeometry.size() != oldGeometry.size() && isComponentComplete()) {
        polish();
        requestPicture();
    }
}

void ImageBlockContent::setZoom(double zoom) {
    BlockBody::setZoom(zoom);
    m_picture->setZoom(zoom);
}

void ImageBlockContent::settleZoom() {
    BlockBody::settleZoom();
    m_picture->settleZoom();
    requestPicture();
}

bool ImageBlockContent::activate() {
    if (m_isEmpty) {
        choosePicture();
    }
    return m_isEmpty;
}

void ImageBlockContent::choosePicture() {
    canvas().pickImage([item = QPointer(this)](const QUrl &file) {
        if (item) {
            item->viewModel().fillPicture(*item->block(), file);
        }
    });
}

bool ImageBlockContent::dropFiles(const QList<QUrl> &files) {
    if (!m_isEmpty || files.isEmpty()) {
        return false;
    }
    viewModel().fillPicture(*block(), files.front());
    const QPointF beside(block()->xPosition() + block()->width(), block()->yPosition() + block()->height());
    viewModel().insertFiles(files.sliced(1), beside);
    return true;
}

std::vector<MenuEntry> ImageBlockContent::menuEntries() {
    // The block may go while the menu is open.
    if (m_isEmpty) {
        return {{.text = tr("Choose picture…"), .symbol = QStringLiteral("photo"), .action = [item = QPointer(this)] {
                     if (item) {
                         item->choosePicture();
                     }
                 }}};
    }
    return {{.text = tr("Save image as…"),
             .symbol = QStringLiteral("square.and.arrow.down"),
             .action =
                 [item = QPointer(this)] {
                     if (item) {
                         item->save();
                     }
                 }},
            {.text = tr("Copy image"),
             .symbol = QStringLiteral("photo.on.rectangle.angled"),
             .action = [item = QPointer(this)] {
                 if (item) {
                     item->copy();
                 }
             }}};
}

void ImageBlockContent::copy() {
    viewModel().copyPicture(*block());
}

/// The file as it came, not what is shown of it.
void ImageBlockContent::save() {
    const std::optional<QByteArray> bytes = block()->imageData();
    if (!bytes) {
        return;
    }
    canvas().pickPlace(tr("Image") + u'.' + suffixOf(*bytes), [bytes = *bytes](const QUrl &place) {
        // Not private as the program's own files are: whoever saves a picture has something to do with it.
        QSaveFile file(freePath(place.toLocalFile()));
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.commit()) {
            logLine(u"[Canvas] ⚠️ The picture was not saved: %1"_qs.arg(file.errorString()));
        }
    });
}

} // namespace tallowby
