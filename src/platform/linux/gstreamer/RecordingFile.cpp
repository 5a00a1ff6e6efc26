#include "platform/linux/gstreamer/RecordingFile.h"

#include <QCoreApplication>
#include <QFile>
#include <QStorageInfo>
#include <QThreadPool>
#include <QtEndian>

#include <algorithm>
#include <cmath>

namespace tallowby {

namespace {

constexpr GstClockTime kEndTimeout = 5 * GST_SECOND;
/// After a failure the end comes at once or not at all.
constexpr GstClockTime kEndTimeoutAfterFailure = GST_SECOND;
/// Hours of film are gone through in less.
constexpr GstClockTime kReadTimeout = 30 * GST_SECOND;
/// A disk with less room than this takes no recording.
constexpr qint64 kFullBelow = 1024 * 1024;
/// The length stands at the beginning of the file.
constexpr qsizetype kHeaderSize = 16 * 1024;
/// A length that the file states may differ that much from what is in it.
constexpr double kLengthTolerance = 0.1;

/// The content of the box of that kind among the boxes in `bytes`, by MPEG-4's rules: four bytes of size, four of kind.
QByteArrayView contentOf(QByteArrayView bytes, QByteArrayView kind) {
    constexpr qsizetype kBoxHeaderSize = 8;
    while (bytes.size() >= kBoxHeaderSize) {
        const qsizetype size = qsizetype(qFromBigEndian<quint32>(bytes.data()));
        if (size < kBoxHeaderSize || size > bytes.size()) {
            break;
        }
        if (bytes.sliced(4, 4) == kind) {
            return bytes.sliced(kBoxHeaderSize, size - kBoxHeaderSize);
        }
        bytes = bytes.sliced(size);
    }
    return {};
}

/// Where the file of a recording states its length, and in which unit.
struct LengthField {
    qint64 offset = 0;
    double unitsASecond = 0;
    double seconds = 0;
};

std::optional<LengthField> lengthField(QByteArrayView header) {
    // Version 1: a version and flags in four bytes, then numbers of eight; the older one has numbers of four.
    constexpr int kVersionSize = 4;
    const QByteArrayView movie = contentOf(header, "moov");
    const QByteArrayView movieHeader = contentOf(movie, "mvhd");
    const QByteArrayView length = contentOf(contentOf(movie, "mvex"), "mehd");
    const bool hasLongLength = !length.isEmpty() && length[0] == 1;
    if (!hasLongLength || length.size() < kVersionSize + 8 || movieHeader.isEmpty()) {
        return std::nullopt;
    }
    // Two dates are before the unit.
    const qsizetype unitOffset = kVersionSize + (movieHeader[0] == 1 ? 16 : 8);
    if (movieHeader.size() < unitOffset + 4) {
        return std::nullopt;
    }
    const double units = qFromBigEndian<quint32>(movieHeader.data() + unitOffset);
    if (units <= 0) {
        return std::nullopt;
    }
    return LengthField{length.data() + kVersionSize - header.data(), units,
                       double(qFromBigEndian<quint64>(length.data() + kVersionSize)) / units};
}

QByteArray headerOf(const QString &path) {
    QFile file(path);
    return file.open(QFile::ReadOnly) ? file.read(kHeaderSize) : QByteArray();
}

/// By going through the whole file; what it says of its length is that of a recording in progress.
std::optional<double> measuredLength(const QString &path) {
    QString error;
    const auto pipeline = Pipeline::parse(
        QStringLiteral("filesrc name=file ! qtdemux ! fakesink name=end sync=false enable-last-sample=true"), error);
    if (!pipeline) {
        return std::nullopt;
    }
    g_object_set(pipeline->element("file").get(), "location", path.toUtf8().constData(), nullptr);
    pipeline->setState(GST_STATE_PLAYING);
    const auto message = pipeline->next(GstMessageType(GST_MESSAGE_EOS | GST_MESSAGE_ERROR), kReadTimeout);
    if (!message) {
        return std::nullopt;
    }
    GstSample *last = nullptr;
    g_object_get(pipeline->element("end").get(), "last-sample", &last, nullptr);
    if (!last) {
        return std::nullopt;
    }
    const GstBuffer *buffer = gst_sample_get_buffer(last);
    GstClockTime end = GST_BUFFER_PTS_IS_VALID(buffer) ? GST_BUFFER_PTS(buffer) : 0;
    end += GST_BUFFER_DURATION_IS_VALID(buffer) ? GST_BUFFER_DURATION(buffer) : 0;
    gst_sample_unref(last);
    return end > 0 ? std::optional(double(end) / GST_SECOND) : std::nullopt;
}

/// Measures the recording, and lets it state its true length: players seek and count by that.
std::optional<double> mendLength(const QString &path) {
    const std::optional<double> seconds = measuredLength(path);
    const std::optional<LengthField> stated = seconds ? lengthField(headerOf(path)) : std::nullopt;
    if (stated && std::abs(stated->seconds - *seconds) > kLengthTolerance) {
        const auto units = qToBigEndian(quint64(std::llround(*seconds * stated->unitsASecond)));
        QFile file(path);
        if (file.open(QFile::ReadWrite | QFile::ExistingOnly) && file.seek(stated->offset)) {
            file.write(reinterpret_cast<const char *>(&units), sizeof units);
        }
    }
    return seconds;
}

MediaFailure fileFailure(const QString &path, const QString &text) {
    const QStorageInfo disk(path.left(path.lastIndexOf(u'/')));
    const bool isFull = disk.isValid() && disk.bytesAvailable() < kFullBelow;
    return {text, isFull ? MediaFailure::Kind::diskFull : MediaFailure::Kind::fileFailed};
}

} // namespace

std::optional<MediaFailure> createRecording(const Pipeline &pipeline, const QString &path) {
    QFile file(path);
    if (!file.open(QFile::WriteOnly | QFile::NewOnly, QFile::ReadOwner | QFile::WriteOwner)) {
        return fileFailure(path, file.errorString());
    }
    g_object_set(pipeline.element("file").get(), "location", path.toUtf8().constData(), nullptr);
    return std::nullopt;
}

std::optional<MediaFailure> closeRecording(Pipeline &pipeline, const QString &path,
                                           std::optional<MediaFailure> failure) {
    bool isAtEnd = false;
    while (!isAtEnd) {
        const auto message = pipeline.next(GstMessageType(GST_MESSAGE_EOS | GST_MESSAGE_ERROR),
                                           failure ? kEndTimeoutAfterFailure : kEndTimeout);
        if (!message) {
            break;
        }
        isAtEnd = GST_MESSAGE_TYPE(message.get()) == GST_MESSAGE_EOS;
        if (!isAtEnd && !failure) {
            failure = failureOf(message.get(), MediaFailure::Kind::encoderFailed);
        }
    }
    pipeline.setState(GST_STATE_NULL);
    if (!isAtEnd && !failure) {
        failure = {QStringLiteral("the file did not come to its end"), MediaFailure::Kind::fileFailed};
    }
    if (failure && failure->kind == MediaFailure::Kind::fileFailed) {
        failure = fileFailure(path, failure->text);
    }
    const std::optional<LengthField> stated = failure ? std::nullopt : lengthField(headerOf(path));
    const bool isWhole = stated && stated->seconds > 0;
    if (!isWhole && !mendLength(path)) {
        QFile::remove(path);
        if (!failure) {
            failure = {QStringLiteral("the devices gave nothing"), MediaFailure::Kind::deviceFailed};
        }
    }
    return failure;
}

void readLengthLater(QThreadPool &readers, const QString &path,
                     const std::function<void(std::optional<double>)> &done) {
    readers.start([path, done] {
        QMetaObject::invokeMethod(
            QCoreApplication::instance(), [seconds = mendLength(path), done] { done(seconds); }, Qt::QueuedConnection);
    });
}

} // namespace tallowby
