#include "media/VideoRecordingService.h"

#include <QPointer>

namespace tallowby {

namespace {

QPointer<VideoRecordingService> &sharedService() {
    static QPointer<VideoRecordingService> service;
    return service;
}

} // namespace

VideoRecordingService::VideoRecordingService(Video &video, SessionQueue &queue, BlockStorage &storage,
                                             Scheduler &scheduler, QObject *parent)
    : QObject(parent)
    , m_video(video)
    , m_queue(queue)
    , m_storage(storage)
    , m_scheduler(scheduler) {}

VideoRecordingService *VideoRecordingService::shared() {
    return sharedService();
}

void VideoRecordingService::share() {
    sharedService() = this;
}

} // namespace tallowby
