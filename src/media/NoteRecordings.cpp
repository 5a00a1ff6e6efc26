#include "media/NoteRecordings.h"

#include "model/AnyCodable.h"
#include "model/Block.h"
#include "platform/Scheduler.h"
#include "storage/BlockStorage.h"
#include "storage/MediaStorage.h"

#include <QCoreApplication>
#include <QUuid>

#include <utility>

namespace tallowby {

namespace {

struct Keys {
    QString fileName;
    QString duration;
};

const Keys &currentKeys() {
    static const Keys keys{QStringLiteral("fileName"), QStringLiteral("duration")};
    return keys;
}

const Keys &previousKeys() {
    static const Keys keys{QStringLiteral("previousFileName"), QStringLiteral("previousDuration")};
    return keys;
}

NoteRecordings::Recording previousOf(const Block &block) {
    NoteRecordings::Recording previous;
    if (const auto name = block.contentField(previousKeys().fileName)) {
        if (const auto *text = std::get_if<QString>(&name->value())) {
            previous.fileName = *text;
        }
    }
    if (const auto duration = block.contentField(previousKeys().duration)) {
        if (const auto *seconds = std::get_if<double>(&duration->value())) {
            previous.duration = *seconds;
        } else if (const auto *whole = std::get_if<std::int64_t>(&duration->value())) {
            previous.duration = double(*whole);
        }
    }
    return previous;
}

QString words(const char *text) {
    return QCoreApplication::translate("RecordingMishap", text);
}

} // namespace

NoteRecordings NoteRecordings::of(const Block &block) {
    return {{block.mediaFileName(), block.mediaDuration()}, previousOf(block)};
}

void NoteRecordings::writeTo(Block &block) const {
    const auto payload = AnyCodable::fromJson(block.content());
    const auto *object = payload ? std::get_if<AnyCodable::Object>(&payload->value()) : nullptr;
    std::vector<AnyCodable::Member> members = object ? object->members() : std::vector<AnyCodable::Member>();
    // In one step: whoever looks at the block meanwhile sees no mixture of two recordings.
    for (const auto &[keys, recording] : {std::pair(currentKeys(), current), std::pair(previousKeys(), previous)}) {
        std::erase_if(members, [&keys = keys](const AnyCodable::Member &member) {
            return member.key == keys.fileName || member.key == keys.duration;
        });
        if (recording.fileName) {
            members.push_back({keys.fileName, *recording.fileName});
            members.push_back({keys.duration, recording.duration});
        }
    }
    if (const auto json = AnyCodable(AnyCodable::Object(std::move(members))).toJson()) {
        block.setContent(*json);
    }
}

NoteRecordings NoteRecordings::replacedBy(const Recording &recording) const {
    return {recording, current.fileName ? current : previous};
}

bool NoteRecordings::hasPrevious() const {
    return previous.fileName && MediaStorage::existingFile(*previous.fileName);
}

QString newRecordingName(const QString &extension) {
    return QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper() + extension;
}

void handOnRecording(Block &block, Scheduler &scheduler, BlockStorage &storage) {
    block.setUpdatedAt(Timestamp::from(scheduler.now()));
    block.setNeedsSync(true);
    storage.save();
}

QString RecordingMishap::text() const {
    const bool isFilm = medium == Medium::film;
    QString reason;
    switch (failure.kind) {
    case MediaFailure::Kind::noDevice:
        reason = isFilm ? words(QT_TRANSLATE_NOOP("RecordingMishap", "no camera or microphone was found"))
                        : words(QT_TRANSLATE_NOOP("RecordingMishap", "no microphone was found"));
        break;
    case MediaFailure::Kind::deviceFailed:
        reason = isFilm ? words(QT_TRANSLATE_NOOP("RecordingMishap", "the camera or microphone does not respond"))
                        : words(QT_TRANSLATE_NOOP("RecordingMishap", "the microphone does not respond"));
        break;
    case MediaFailure::Kind::diskFull:
        reason = words(QT_TRANSLATE_NOOP("RecordingMishap", "the disk is full"));
        break;
    case MediaFailure::Kind::fileFailed:
        reason = words(QT_TRANSLATE_NOOP("RecordingMishap", "the file could not be saved"));
        break;
    case MediaFailure::Kind::encoderFailed:
        reason = words(QT_TRANSLATE_NOOP("RecordingMishap", "the encoder is missing or failed"));
        break;
    }
    return (isKept ? words(QT_TRANSLATE_NOOP("RecordingMishap", "Stopped early: %1."))
                   : words(QT_TRANSLATE_NOOP("RecordingMishap", "Nothing was recorded: %1.")))
        .arg(reason);
}

} // namespace tallowby
