#pragma once

#include "platform/desktop/MediaFailure.h"

#include <QString>

#include <optional>

namespace tallowby {

class Block;
class BlockStorage;
class Scheduler;

/// The recording that a voice or video note plays, and the one before it, which a person can go back to as long as its
/// file is there. They are in the note's payload; programs that know nothing of the one before leave it alone.
struct NoteRecordings {
    struct Recording {
        std::optional<QString> fileName;
        /// Seconds.
        double duration = 0;
    };

    [[nodiscard]] static NoteRecordings of(const Block &block);
    void writeTo(Block &block) const;

    /// With a new recording in place of the current one, which becomes the one before.
    [[nodiscard]] NoteRecordings replacedBy(const Recording &recording) const;
    [[nodiscard]] NoteRecordings swapped() const { return {previous, current}; }
    /// Whether there is a recording to go back to on this device.
    [[nodiscard]] bool hasPrevious() const;

    Recording current;
    Recording previous;
};

/// A name for the file of a new recording, with an extension such as ".m4a".
[[nodiscard]] QString newRecordingName(const QString &extension);

/// The person has changed the block's recording: the change is saved, and other devices learn of it.
void handOnRecording(Block &block, Scheduler &scheduler, BlockStorage &storage);

/// The end of a recording that did not go as it should.
struct RecordingMishap {
    enum class Medium { voice, film };

    /// In plain words, for the card.
    [[nodiscard]] QString text() const;

    Medium medium;
    MediaFailure failure;
    /// Something was recorded before.
    bool isKept = false;
};

} // namespace tallowby
