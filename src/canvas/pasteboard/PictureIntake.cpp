#include "canvas/pasteboard/PictureIntake.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>

#include <utility>

namespace tallowby {

namespace {

struct Words {
    Q_DECLARE_TR_FUNCTIONS(tallowby::PictureIntake)
};

/// Enough of a picture to know that it decodes.
constexpr int kProbedSide = 64;

/// The reason why the file cannot be read; empty when `bytes` are its bytes.
QString readFile(const QUrl &url, QByteArray &bytes) {
    const QFileInfo info(url.toLocalFile());
    // Anything else, a pipe or a device, might never end.
    if (!url.isLocalFile() || !info.isFile()) {
        return Words::tr("it is no file of this computer");
    }
    if (info.size() > kMaxPictureFile) {
        return describe(PictureRefusal::fileTooLarge);
    }
    QFile file(info.filePath());
    if (!file.open(QIODevice::ReadOnly)) {
        return Words::tr("it cannot be read (%1)").arg(file.errorString());
    }
    bytes = file.read(kMaxPictureFile + 1);
    return {};
}

PictureFinding findPicture(const std::vector<PictureSource> &sources, PictureDecoder &decoder) {
    PictureFinding finding;
    for (const PictureSource &source : sources) {
        const auto *const url = std::get_if<QUrl>(&source);
        QByteArray bytes = url ? QByteArray() : std::get<QByteArray>(source);
        RefusedSource refused{.name = url ? url->fileName() : QString(), .reason = {}};
        if (url) {
            refused.reason = readFile(*url, bytes);
        }
        if (refused.reason.isEmpty()) {
            const DecodedPicture picture = decoder.decode(bytes, kProbedSide);
            if (!picture.image.isNull()) {
                finding.file = bytes;
                finding.size = picture.size;
                break;
            }
            refused.reason = describe(picture.refusal);
            refused.isOtherContent = picture.refusal == PictureRefusal::notAPicture;
        }
        finding.refused.push_back(refused);
    }
    return finding;
}

} // namespace

PictureIntake::PictureIntake(PictureQueue &queue)
    : m_queue(queue) {}

void PictureIntake::look(std::vector<PictureSource> sources, Done done) {
    m_jobs.push_back({std::move(sources), std::move(done)});
    if (m_jobs.size() == 1) {
        lookAtNext();
    }
}

void PictureIntake::lookAtNext() {
    const auto work = [sources = std::move(m_jobs.front().sources)](PictureDecoder &decoder) {
        return findPicture(sources, decoder);
    };
    m_task = m_queue.run<PictureFinding>(PictureQueue::Urgency::askedFor, work, [this](const PictureFinding &finding) {
        const Done done = std::move(m_jobs.front().done);
        m_jobs.pop_front();
        if (!m_jobs.empty()) {
            lookAtNext();
        }
        // Last: whoever is told may ask for more.
        done(finding);
    });
}

} // namespace tallowby
