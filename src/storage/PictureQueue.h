#pragma once

#include "platform/QtScheduler.h"
#include "platform/desktop/PictureDecoder.h"

#include <QObject>

#include <atomic>
#include <functional>
#include <future>
#include <memory>
#include <utility>

namespace tallowby {

/// Owns one piece of work of a `PictureQueue`. Destroying or replacing it gives the work up: nothing is delivered any
/// more, and work that nobody has begun is left out. Main thread only.
class PictureTask {
public:
    PictureTask() = default;
    PictureTask(PictureTask &&) = default;
    PictureTask &operator=(PictureTask &&other) noexcept;
    ~PictureTask();

private:
    friend class PictureQueue;
    struct State {
        std::atomic<bool> isWanted = true;
        /// Touched by the main thread only.
        std::function<void()> done;
    };
    explicit PictureTask(std::shared_ptr<State> state);
    void giveUp();

    std::shared_ptr<State> m_state;
};

/// Decodes pictures on a few threads, so that one that hangs holds up no other and nothing else. Its end ends all that
/// is being decoded at once. Main thread only.
class PictureQueue : public QObject {
    Q_OBJECT

public:
    /// What a person has just asked for goes before what is only shown.
    enum class Urgency { shown, askedFor };

    explicit PictureQueue(std::unique_ptr<PictureDecoder> decoder);
    ~PictureQueue() override;

    /// The one of this process, which ends with the application.
    [[nodiscard]] static PictureQueue &shared();

    /// Runs `work` on one of the threads, and then `done` on this one, with the result.
    template <typename Result>
    [[nodiscard]] PictureTask run(Urgency urgency, std::function<Result(PictureDecoder &)> work,
                                  std::function<void(const Result &)> done) {
        const auto result = std::make_shared<Result>();
        return start(
            urgency, [result, work = std::move(work)](PictureDecoder &decoder) { *result = work(decoder); },
            [result, done = std::move(done)] { done(*result); });
    }
    /// The pixels of a picture, for whoever can wait for them on any thread; null when it is refused. They are not
    /// there if this object ends before.
    [[nodiscard]] std::shared_future<QImage> pixelsOf(const QByteArray &file, int longestSide);

private:
    using Work = std::function<void(PictureDecoder &)>;
    struct Threads;

    [[nodiscard]] PictureTask start(Urgency urgency, Work work, std::function<void()> done);
    void enqueue(Urgency urgency, std::shared_ptr<PictureTask::State> state, Work work);
    void scheduleRest();

    std::unique_ptr<Threads> m_threads;
    QtScheduler m_scheduler;
    ScheduledCall m_rest;
};

} // namespace tallowby
