#include "storage/file/AtomicFile.h"
#include "support/TemporaryFolder.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

#include <cerrno>
#include <csignal>
#include <sys/file.h>
#include <sys/resource.h>
#include <unistd.h>

namespace tallowby {

namespace {

using Error = AtomicFile::Error;

class AtomicFileTest : public testing::Test {
protected:
    test::TemporaryFolder folder;
    QString path = folder.file(u"blocks.json"_qs);

    static Error replace(const QString &target, std::string_view bytes) {
        AtomicFile file(target);
        if (auto error = file.open()) {
            return error;
        }
        if (auto error = file.write(bytes)) {
            return error;
        }
        return file.commit();
    }
    static QByteArray contentOf(const QString &target) {
        QFile file(target);
        return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray("unreadable");
    }
    [[nodiscard]] QStringList names() const {
        return QDir(folder.path()).entryList(QDir::Files | QDir::Dirs | QDir::Hidden | QDir::NoDotAndDotDot);
    }
};

/// As small as a disk that is full.
class FileSizeLimit {
public:
    explicit FileSizeLimit(rlim_t bytes)
        : m_handler(std::signal(SIGXFSZ, SIG_IGN)) {
        ::getrlimit(RLIMIT_FSIZE, &m_before);
        const rlimit limit{bytes, m_before.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit() {
        ::setrlimit(RLIMIT_FSIZE, &m_before);
        std::signal(SIGXFSZ, m_handler);
    }
    FileSizeLimit(const FileSizeLimit &) = delete;
    FileSizeLimit &operator=(const FileSizeLimit &) = delete;

private:
    rlimit m_before{};
    void (*m_handler)(int);
};

} // namespace

TEST_F(AtomicFileTest, ReplacesTheFileAndKeepsItPrivate) {
    EXPECT_FALSE(replace(path, "old"));
    QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ReadOther);
    EXPECT_FALSE(replace(path, "new"));
    EXPECT_EQ(contentOf(path), "new");
    EXPECT_EQ(QFile::permissions(path) & ~(QFile::ReadUser | QFile::WriteUser), QFile::ReadOwner | QFile::WriteOwner);
    EXPECT_EQ(names(), QStringList{u"blocks.json"_qs});
}

TEST_F(AtomicFileTest, KeepsTheOldFileWhateverFails) {
    ASSERT_FALSE(replace(path, "old"));
    {
        const FileSizeLimit limit(1'000);
        const auto error = replace(path, std::string(5'000, 'x'));
        ASSERT_TRUE(error);
        EXPECT_TRUE(error->description.contains(path)) << qPrintable(error->description);
        EXPECT_EQ(error->cause, EFBIG);
    }
    {
        AtomicFile givenUp(path);
        EXPECT_FALSE(givenUp.open() || givenUp.write("half"));
    }
    EXPECT_EQ(contentOf(path), "old");
    EXPECT_EQ(names(), QStringList{u"blocks.json"_qs});

    const QString occupied = folder.file(u"a folder"_qs);
    ASSERT_TRUE(QDir().mkpath(occupied + u"/full"));
    EXPECT_TRUE(replace(occupied, "new"));
    EXPECT_TRUE(replace(folder.file(u"missing/blocks.json"_qs), "new"));
    EXPECT_EQ(names(), (QStringList{u"a folder"_qs, u"blocks.json"_qs}));
}

TEST_F(AtomicFileTest, LeavesAReadOnlyFolderAsItIs) {
    if (::geteuid() == 0) {
        GTEST_SKIP() << "nothing is read-only to the superuser";
    }
    ASSERT_FALSE(replace(path, "old"));
    QFile::setPermissions(folder.path(), QFile::ReadOwner | QFile::ExeOwner);
    EXPECT_TRUE(replace(path, "new"));
    EXPECT_EQ(contentOf(path), "old");
    QFile::setPermissions(folder.path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

TEST_F(AtomicFileTest, FollowsALinkToTheFile) {
    ASSERT_TRUE(QDir(folder.path()).mkdir(u"elsewhere"_qs));
    const QString real = folder.file(u"elsewhere/blocks.json"_qs);
    ASSERT_FALSE(replace(real, "old"));
    ASSERT_TRUE(QFile::link(real, path));
    EXPECT_FALSE(replace(path, "new"));
    EXPECT_TRUE(QFileInfo(path).isSymLink());
    EXPECT_EQ(contentOf(real), "new");
}

TEST_F(AtomicFileTest, RemovesLeftoversOfTheDeadOnly) {
    AtomicFile alive(path);
    ASSERT_FALSE(alive.open());
    for (const QString &name :
         {u"blocks.json.saving-abc123"_qs, u"blocks.json.unreadable-1"_qs, u"notes.saving-1"_qs}) {
        QFile file(folder.file(name));
        ASSERT_TRUE(file.open(QFile::WriteOnly));
    }
    AtomicFile::removeLeftovers(path);
    EXPECT_EQ(names().size(), 3) << qPrintable(names().join(u' '));
    EXPECT_FALSE(names().contains(u"blocks.json.saving-abc123"_qs));
    EXPECT_FALSE(alive.commit());
}

} // namespace tallowby
