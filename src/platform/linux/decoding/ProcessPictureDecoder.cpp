#include "platform/desktop/PictureDecoder.h"
#include "platform/linux/decoding/DecodingProcess.h"

#include <algorithm>
#include <cstdint>
#include <mutex>
#include <utility>
#include <vector>

#include <sys/eventfd.h>
#include <unistd.h>

namespace tallowby {

namespace {

/// What a picture has done to a process that it has broken into lasts no longer than so many pictures.
constexpr int kMaxPicturesPerProcess = 32;

/// Decodes each picture in a process of its own, which goes on to the next picture when it behaved well.
class ProcessPictureDecoder final : public PictureDecoder {
public:
    ProcessPictureDecoder()
        : m_stopSignal(::eventfd(0, EFD_CLOEXEC)) {}
    ~ProcessPictureDecoder() override { ::close(m_stopSignal); }

    DecodedPicture decode(const QByteArray &file, int longestSide) override {
        if (file.size() > kMaxPictureFile) {
            return refused(PictureRefusal::fileTooLarge);
        }
        const int side = std::clamp(longestSide, 1, kMaxDecodedSide);
        while (true) {
            std::unique_ptr<DecodingProcess> process = takeProcess();
            if (!process) {
                return refused(PictureRefusal::unavailable);
            }
            if (const auto decoded = process->decode(file, side, QDeadlineTimer(kMaxDuration), m_stopSignal)) {
                keep(std::move(process));
                return *decoded;
            }
            // A process that has ended may have had enough of the pictures before: this one gets one of its own.
            const bool isWorthAnother =
                process->failure() == DecodingProcess::Failure::died && process->requestCount() > 1;
            if (!isWorthAnother) {
                return refused(refusalFor(process->failure()));
            }
        }
    }

    void rest() override {
        const std::lock_guard lock(m_mutex);
        m_idle.clear();
    }

    void stop() override {
        const std::uint64_t one = 1;
        static_cast<void>(::write(m_stopSignal, &one, sizeof one));
        const std::lock_guard lock(m_mutex);
        m_isStopped = true;
        m_idle.clear();
    }

private:
    static DecodedPicture refused(PictureRefusal why) { return {.image = {}, .size = {}, .refusal = why}; }

    static PictureRefusal refusalFor(DecodingProcess::Failure failure) {
        switch (failure) {
        case DecodingProcess::Failure::tooSlow:
            return PictureRefusal::tooSlow;
        case DecodingProcess::Failure::stopped:
            return PictureRefusal::unavailable;
        case DecodingProcess::Failure::died:
        case DecodingProcess::Failure::lied:
            return PictureRefusal::damaged;
        }
        return PictureRefusal::unavailable;
    }

    [[nodiscard]] std::unique_ptr<DecodingProcess> takeProcess() {
        {
            const std::lock_guard lock(m_mutex);
            if (m_isStopped) {
                return nullptr;
            }
            if (!m_idle.empty()) {
                auto process = std::move(m_idle.back());
                m_idle.pop_back();
                return process;
            }
        }
        return DecodingProcess::start();
    }

    void keep(std::unique_ptr<DecodingProcess> process) {
        const std::lock_guard lock(m_mutex);
        if (!m_isStopped && process->requestCount() < kMaxPicturesPerProcess) {
            m_idle.push_back(std::move(process));
        }
    }

    const int m_stopSignal;
    std::mutex m_mutex;
    std::vector<std::unique_ptr<DecodingProcess>> m_idle;
    bool m_isStopped = false;
};

} // namespace

std::unique_ptr<PictureDecoder> makePictureDecoder() {
    return std::make_unique<ProcessPictureDecoder>();
}

} // namespace tallowby
