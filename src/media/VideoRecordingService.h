#pragma once

#include "media/SessionQueue.h"
#include "platform/desktop/Video.h"

#include <QObject>

namespace tallowby {

class BlockStorage;

/// What the recorders of all video notes share. Main thread only.
class VideoRecordingService : public QObject {
    Q_OBJECT

public:
    /// All of them must outlive the service.
    VideoRecordingService(Video &video, SessionQueue &queue, BlockStorage &storage, Scheduler &scheduler,
                          QObject *parent = nullptr);

    /// The one that the notes on the canvas use; null while there is none.
    [[nodiscard]] static VideoRecordingService *shared();
    /// It stays the shared one until it ends.
    void share();

    [[nodiscard]] Video &video() { return m_video; }
    [[nodiscard]] SessionQueue &queue() { return m_queue; }
    [[nodiscard]] BlockStorage &storage() { return m_storage; }
    [[nodiscard]] Scheduler &scheduler() { return m_scheduler; }
    [[nodiscard]] const QString &cameraId() const { return m_cameraId; }
    /// Empty for the system's own choice.
    void setCameraId(const QString &id) { m_cameraId = id; }

private:
    Video &m_video;
    SessionQueue &m_queue;
    BlockStorage &m_storage;
    Scheduler &m_scheduler;
    QString m_cameraId;
};

} // namespace tallowby
