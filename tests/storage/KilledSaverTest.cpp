#include "storage/file/BlockFile.h"
#include "storage/file/BlockFileReader.h"
#include "support/TemporaryFolder.h"

#include <QDir>

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <set>

#include <csignal>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tallowby {

namespace {

/// A program that saves over and over; killed with the object.
class EndlessSaver {
public:
    /// Comes back when it has saved that often.
    EndlessSaver(const QByteArray &path, int saves) {
        int ends[2] = {-1, -1};
        if (::pipe(ends) != 0) {
            return;
        }
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
        posix_spawn_file_actions_addclose(&actions, ends[0]);
        posix_spawn_file_actions_addclose(&actions, ends[1]);
        QByteArray program = ENDLESS_SAVER;
        QByteArray argument = path;
        char *arguments[] = {program.data(), argument.data(), nullptr};
        m_isStarted = ::posix_spawn(&m_process, program.constData(), &actions, nullptr, arguments, environ) == 0;
        posix_spawn_file_actions_destroy(&actions);
        ::close(ends[1]);
        m_hasSaved = m_isStarted;
        for (char sign = 0; saves > 0 && m_hasSaved; --saves) {
            m_hasSaved = ::read(ends[0], &sign, 1) == 1;
        }
        ::close(ends[0]);
    }
    ~EndlessSaver() {
        if (m_isStarted) {
            ::kill(m_process, SIGKILL);
            ::waitpid(m_process, nullptr, 0);
        }
    }
    EndlessSaver(const EndlessSaver &) = delete;
    EndlessSaver &operator=(const EndlessSaver &) = delete;

    [[nodiscard]] bool hasSaved() const { return m_hasSaved; }

private:
    pid_t m_process = 0;
    bool m_isStarted = false;
    bool m_hasSaved = false;
};

} // namespace

TEST(KilledSaver, LeavesAWholeFileWheneverItIsKilled) {
    constexpr int kRounds = 200;
    constexpr unsigned kMostSaves = 3;
    constexpr unsigned kLongestWaitInMicroseconds = 3'000;
    const test::TemporaryFolder folder;
    const QString path = folder.file(QStringLiteral("blocks.json"));
    std::mt19937 random(1);
    std::set<std::int64_t> generations;
    for (int round = 0; round < kRounds; ++round) {
        {
            const EndlessSaver saver(path.toUtf8(), int(1 + random() % kMostSaves));
            ASSERT_TRUE(saver.hasSaved());
            ::usleep(useconds_t(random() % kLongestWaitInMicroseconds)); // The moment of the kill is what is tested.
        }
        const auto content = readBlockFile(path, DeletedRecords::leaveOut);
        const auto *loaded = std::get_if<LoadedBlocks>(&content);
        ASSERT_TRUE(loaded) << "round " << round;
        ASSERT_EQ(loaded->records.size(), 300U);
        const auto generation = loaded->records.front()->zIndex;
        ASSERT_TRUE(std::ranges::all_of(loaded->records,
                                        [generation](const auto &fields) { return fields->zIndex == generation; }));
        generations.insert(generation);
    }
    EXPECT_GT(generations.size(), 2U) << "the kills must come at different moments to prove anything";
    const BlockFile nextStart(path);
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden), QStringList{QStringLiteral("blocks.json")});
}

} // namespace tallowby
