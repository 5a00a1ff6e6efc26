#include "storage/PictureQueue.h"

#include <QCoreApplication>
#include <QThreadPool>

#include <chrono>

namespace tallowby {

namespace {

constexpr int kThreadCount = 3;
/// How long what makes the next picture quicker is kept.
constexpr std::chrono::seconds kRestDelay{10};
/// For work that cannot be ended, such as reading a file from a machine that does not answer.
constexpr std::chrono::seconds kMaxFarewell{1};

} // namespace

PictureTask::PictureTask(std::shared_ptr<State> state)
    : m_state(std::move(state)) {}

PictureTask &PictureTask::operator=(PictureTask &&other) noexcept {
    if (this != &other) {
        giveUp();
        m_state = std::move(other.m_state);
    }
    return *this;
}

PictureTask::~PictureTask() {
    giveUp();
}

void PictureTask::giveUp() {
    if (m_state) {
        m_state->isWanted = false;
        m_state->done = nullptr;
        m_state.reset();
    }
}

struct PictureQueue::Threads {
    std::unique_ptr<PictureDecoder> decoder;
    std::atomic<bool> isEnding = false;
    QThreadPool pool;
};

PictureQueue::PictureQueue(std::unique_ptr<PictureDecoder> decoder)
    : m_threads(std::make_unique<Threads>()) {
    m_threads->decoder = std::move(decoder);
    m_threads->pool.setMaxThreadCount(kThreadCount);
    m_threads->pool.setThreadPriority(QThread::LowPriority);
    // A decoder may end with the thread that has started it.
    m_threads->pool.setExpiryTimeout(-1);
}

PictureQueue::~PictureQueue() {
    m_threads->isEnding = true;
    m_threads->decoder->stop();
    m_threads->pool.clear();
    if (!m_threads->pool.waitForDone(int(std::chrono::milliseconds(kMaxFarewell).count()))) {
        // Whoever ends the program does not wait for that thread: it and what it uses stay until the process ends.
        static_cast<void>(m_threads.release());
    }
}

PictureQueue &PictureQueue::shared() {
    static PictureQueue *queue = nullptr;
    if (!queue) {
        queue = new PictureQueue(makePictureDecoder());
        qAddPostRoutine([] {
            delete queue;
            queue = nullptr;
        });
    }
    return *queue;
}

PictureTask PictureQueue::start(Urgency urgency, Work work, std::function<void()> done) {
    const auto state = std::make_shared<PictureTask::State>();
    state->done = std::move(done);
    enqueue(urgency, state, std::move(work));
    return PictureTask(state);
}

void PictureQueue::enqueue(Urgency urgency, std::shared_ptr<PictureTask::State> state, Work work) {
    const auto run = [this, &threads = *m_threads, state = std::move(state), work = std::move(work)] {
        if (!state->isWanted) {
            return;
        }
        work(*threads.decoder);
        if (threads.isEnding) {
            return;
        }
        const auto deliver = [this, state] {
            scheduleRest();
            if (const auto done = std::move(state->done)) {
                done();
            }
        };
        QMetaObject::invokeMethod(this, deliver, Qt::QueuedConnection);
    };
    m_threads->pool.start(run, urgency == Urgency::askedFor ? 1 : 0);
}

std::shared_future<QImage> PictureQueue::pixelsOf(const QByteArray &file, int longestSide) {
    const auto pixels = std::make_shared<std::promise<QImage>>();
    enqueue(Urgency::shown, std::make_shared<PictureTask::State>(),
            [pixels, file, longestSide](PictureDecoder &decoder) {
                pixels->set_value(decoder.decode(file, longestSide).image);
            });
    return pixels->get_future().share();
}

void PictureQueue::scheduleRest() {
    m_rest = m_scheduler.after(kRestDelay, [this] { m_threads->decoder->rest(); });
}

} // namespace tallowby
