#include "platform/desktop/PictureDecoder.h"
#include "platform/linux/decoding/DecodingMessages.h"
#include "platform/linux/decoding/DecodingProcess.h"
#include "platform/linux/decoding/DecodingSandbox.h"
#include "support/EndlessDrawing.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <QBuffer>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>

#include <array>
#include <cerrno>
#include <functional>
#include <thread>

#include <fcntl.h>
#include <signal.h>
#include <sys/inotify.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tallowby {

namespace {

using namespace std::chrono_literals;

QByteArray pixels(QSize size, const char *format = "PNG") {
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::green);
    QByteArray file;
    QBuffer buffer(&file);
    buffer.open(QIODevice::WriteOnly);
    EXPECT_TRUE(image.save(&buffer, format)) << format;
    return file;
}

QByteArray svg(const QByteArray &inside, const QByteArray &attributes = "width='40' height='20'") {
    return "<svg xmlns='http://www.w3.org/2000/svg' xmlns:xlink='http://www.w3.org/1999/xlink' " + attributes + '>' +
           inside + "</svg>";
}

QByteArray embedded(const QByteArray &type, const QByteArray &file, const QByteArray &behind = {}) {
    return "<image width='40' height='20' xlink:href='data:" + type + ";base64," + file.toBase64() + behind + "'/>";
}

QByteArray zipped(const QByteArray &bytes) {
    QProcess gzip;
    gzip.start(QStringLiteral("gzip"), {QStringLiteral("-c")});
    gzip.write(bytes);
    gzip.closeWriteChannel();
    gzip.waitForFinished();
    return gzip.readAllStandardOutput();
}

struct PictureDecoding : testing::Test {
    DecodedPicture decode(const QByteArray &file, int longestSide = 64) { return decoder->decode(file, longestSide); }

    std::unique_ptr<PictureDecoder> decoder = makePictureDecoder();
    test::TemporaryFolder folder;
};

/// Runs in a process of its own; its exit code.
int inAnotherProcess(const std::function<int()> &run) {
    const pid_t process = ::fork();
    if (process == 0) {
        ::_exit(run());
    }
    int status = 0;
    ::waitpid(process, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

} // namespace

TEST_F(PictureDecoding, PicturesComeAsLargeAsIsAskedFor) {
    for (const char *format : {"PNG", "JPEG", "WEBP", "BMP", "TIFF"}) {
        const DecodedPicture small = decode(pixels({400, 100}, format), 40);
        EXPECT_EQ(small.size, QSize(400, 100)) << format;
        EXPECT_EQ(small.image.size(), QSize(40, 10)) << format;
        EXPECT_FALSE(small.isScalable) << format;
        const QByteArray whole = pixels({64, 64}, format);
        for (qsizetype length = 0; length < whole.size(); length += 1 + whole.size() / 7) {
            const DecodedPicture cut = decode(whole.first(length));
            EXPECT_NE(cut.image.isNull(), cut.refusal == PictureRefusal::none) << format << length;
        }
    }
    const QByteArray square = "<linearGradient id='g'><stop stop-color='#f00'/></linearGradient>"
                              "<rect id='r' width='20' height='20' style='fill:url(#g)'/>"
                              "<use xlink:href='#r' x='20'/>";
    const DecodedPicture large = decode("<!-- drawn by hand -->\n" + svg(square), 800);
    EXPECT_EQ(large.size, QSize(40, 20));
    EXPECT_EQ(large.image.size(), QSize(800, 400));
    EXPECT_EQ(large.image.pixelColor(600, 200), QColor(Qt::red)) << "a part that is used again";
    EXPECT_TRUE(large.isScalable);
    EXPECT_EQ(decode(svg({}, "viewBox='0 0 30 60'")).size, QSize(30, 60));
    EXPECT_EQ(decode(svg({}, "width='200000' height='100000'")).image.size(), QSize(64, 32));
    EXPECT_EQ(decode(svg(embedded("image/png", pixels({2, 1}))), 40).image.pixelColor(20, 10), QColor(Qt::green));
    const QImage words = decode(svg("<text y='18' font-size='20'>MM</text>"), 40).image;
    EXPECT_NE(words, QImage(words.size(), words.format())) << "fonts can be read";
}

TEST_F(PictureDecoding, WhatIsNoPictureOrTooMuchIsRefused) {
    const struct {
        QByteArray file;
        PictureRefusal refusal;
    } cases[] = {
        {{}, PictureRefusal::notAPicture},
        {"GIF", PictureRefusal::notAPicture},
        {"%PDF-1.4\n", PictureRefusal::notAPicture},
        {QByteArray(kMaxPictureFile + 1, 'x'), PictureRefusal::fileTooLarge},
        {svg(QByteArray(kMaxDrawingFile, ' ')), PictureRefusal::drawingTooLarge},
        {svg("<rect>"), PictureRefusal::damaged},
        {svg({}, "width='0' height='0'"), PictureRefusal::noSize},
        {svg(QByteArray("<g>").repeated(300'000)), PictureRefusal::damaged},
        {"<!DOCTYPE svg [<!ENTITY a 'aaaa'><!ENTITY b '&a;&b;'>]>" + svg("<text>&b;</text>"), PictureRefusal::damaged},
    };
    for (const auto &[file, refusal] : cases) {
        const DecodedPicture picture = decode(file);
        EXPECT_TRUE(picture.image.isNull()) << file.left(300).toStdString();
        EXPECT_EQ(picture.refusal, refusal) << file.left(300).toStdString();
    }
    EXPECT_FALSE(decode(pixels({4, 4})).image.isNull()) << "the decoder is of use after all that";
}

TEST_F(PictureDecoding, DrawingsOpenNoFile) {
    const QString secret = folder.file(QStringLiteral("secret.png"));
    QFile file(secret);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(pixels({40, 20}));
    file.close();
    const int watch = ::inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    ASSERT_GE(::inotify_add_watch(watch, QFile::encodeName(folder.path()).constData(), IN_OPEN | IN_ACCESS), 0);
    const QByteArray path = QFile::encodeName(secret);
    const QByteArray reading = svg("<image width='40' height='20' href='file://" + path +
                                   "'/><image width='40' "
                                   "height='20' xlink:href='" +
                                   path + "'/>");
    QByteArray lines;
    for (int descriptor = 0; descriptor < 40; ++descriptor) {
        lines += "<image href='/proc/self/fd/" + QByteArray::number(descriptor) + "'/>";
    }
    const QByteArray small = pixels({2, 1}).toBase64();
    const QByteArray cases[] = {
        reading,
        svg(lines),
        svg(embedded("image/svg+xml", reading)),
        svg(embedded("image/svg+xml", zipped(reading))),
        svg(embedded("image/png", pixels({2, 1}), "base64," + reading.toBase64())),
        svg(embedded("image/png", pixels({2, 1}), "base64," + svg(lines).toBase64())),
        svg("<style>@import url('file://" + path + "'); rect { fill: url(file://" + path + "#a) }</style><rect/>"),
        svg("<rect width='9' height='9' filter='url(" + path + "#f)'/><use href='" + path + "#a'/>"),
        "<?xml version='1.0'?><?xml-stylesheet href='file://" + path + "'?>" + svg({}),
        "<!DOCTYPE svg [<!ENTITY a SYSTEM 'file://" + path + "'>]>" + svg("<text>&a;</text>"),
        svg("<xi:include xmlns:xi='http://www.w3.org/2001/XInclude' parse='text' href='file://" + path + "'/>"),
    };
    for (const QByteArray &drawing : cases) {
        const DecodedPicture picture = decode(drawing, 40);
        const std::string what = drawing.left(200).toStdString();
        EXPECT_TRUE(picture.image.isNull() || picture.image.pixelColor(30, 10) != QColor(Qt::green)) << what;
        std::array<char, 4096> events{};
        EXPECT_EQ(::read(watch, events.data(), events.size()), -1) << what;
    }
    ::close(watch);
}

TEST_F(PictureDecoding, ALongDrawingIsGivenUpAndNothingElseSuffers) {
    const QByteArray endless = test::endlessDrawing();
    PictureRefusal refusal = PictureRefusal::none;
    std::thread slow([&] { refusal = decode(endless, 3072).refusal; });
    QElapsedTimer clock;
    clock.start();
    EXPECT_FALSE(decode(pixels({4, 4})).image.isNull()) << "meanwhile";
    EXPECT_LT(clock.elapsed(), 4000);
    slow.join();
    EXPECT_EQ(refusal, PictureRefusal::tooSlow);

    std::thread stopped([&] { refusal = decode(endless, 3072).refusal; });
    EXPECT_FALSE(decode(pixels({4, 4})).image.isNull()) << "the drawing is under way by now";
    clock.restart();
    decoder->stop();
    stopped.join();
    EXPECT_LT(clock.elapsed(), 2000);
    EXPECT_EQ(refusal, PictureRefusal::unavailable);
    EXPECT_EQ(decode(pixels({4, 4})).refusal, PictureRefusal::unavailable);
}

TEST_F(PictureDecoding, SwellingPicturesEndAtTheirLimit) {
    const QByteArray bomb = svg(embedded("image/svg+xml", zipped(svg(QByteArray("<g/>").repeated(20'000'000)))));
    const DecodedPicture picture = decode(bomb);
    EXPECT_TRUE(picture.image.isNull() || picture.image.size() == QSize(64, 32));
    EXPECT_FALSE(decode(pixels({4, 4})).image.isNull());
}

TEST(DecodingProcess, ALyingDecoderIsNotBelieved) {
    const DecodingReply honest{.wholeWidth = 40, .wholeHeight = 20, .width = 4, .height = 2};
    const auto with = [&honest](auto DecodingReply::*member, auto value) {
        DecodingReply reply = honest;
        reply.*member = value;
        return reply;
    };
    ASSERT_TRUE(isPlausible(honest, 4));
    for (const DecodingReply &lie :
         {with(&DecodingReply::magic, 7U), with(&DecodingReply::refusal, 99U), with(&DecodingReply::refusal, 1U),
          with(&DecodingReply::width, 5), with(&DecodingReply::width, 0), with(&DecodingReply::height, -2),
          with(&DecodingReply::wholeWidth, 0), with(&DecodingReply::wholeHeight, -1),
          with(&DecodingReply::wholeWidth, 2'000'000'000), with(&DecodingReply::isScalable, 2U),
          with(&DecodingReply::hasAlpha, 7U)}) {
        EXPECT_FALSE(isPlausible(lie, 4));
    }

    enum class Lie { header, fewPixels, silence };
    using Failure = DecodingProcess::Failure;
    for (const auto &[lie, failure] :
         {std::pair(Lie::header, Failure::lied), {Lie::fewPixels, Failure::died}, {Lie::silence, Failure::tooSlow}}) {
        int line[2];
        ASSERT_EQ(::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, line), 0);
        const pid_t liar = ::fork();
        if (liar == 0) {
            DecodingReply reply = honest;
            reply.width = lie == Lie::header ? 1'000'000 : 4;
            std::array<char, 64> request{};
            static_cast<void>(::read(line[1], request.data(), request.size()));
            while (lie == Lie::silence) {
                ::pause();
            }
            static_cast<void>(::write(line[1], &reply, sizeof reply));
            ::_exit(0);
        }
        ::close(line[1]);
        DecodingProcess process(liar, line[0]);
        EXPECT_EQ(process.decode("file", 4, QDeadlineTimer(200ms), -1), std::nullopt);
        EXPECT_EQ(process.failure(), failure);
    }
}

TEST(DecodingSandbox, LeavesNothingButTheFoldersToRead) {
    const test::TemporaryFolder allowed;
    const test::TemporaryFolder other;
    const auto fileIn = [](const test::TemporaryFolder &folder) {
        const QByteArray path = QFile::encodeName(folder.file(QStringLiteral("file")));
        QFile file(QFile::decodeName(path));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        return path;
    };
    const QByteArray readable = fileIn(allowed);
    const QByteArray secret = fileIn(other);
    const auto denies = [](auto result) { return result < 0 && (errno == EPERM || errno == EACCES); };
    const std::function<bool()> attempts[] = {
        [&] { return ::open(readable.constData(), O_RDONLY) >= 0; },
        [&] { return denies(::open(readable.constData(), O_RDWR)); },
        [&] { return denies(::open(secret.constData(), O_RDONLY)); },
        [&] { return denies(::open("/proc/self/environ", O_RDONLY)); },
        [&] { return denies(::unlink(readable.constData())); },
        [&] { return denies(::socket(AF_INET, SOCK_STREAM, 0)); },
        [&] { return denies(::socket(AF_UNIX, SOCK_STREAM, 0)); },
        [&] { return denies(::fork()); },
        [&] { return denies(::kill(::getppid(), 0)); },
        [&] {
            char name[] = "/bin/true";
            char *arguments[] = {name, nullptr};
            return denies(::execv(name, arguments));
        },
        [] {
            return ::mmap(nullptr, std::size_t{3} << 30, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0) ==
                   MAP_FAILED;
        },
    };
    for (std::size_t each = 0; each < std::size(attempts); ++each) {
        EXPECT_EQ(inAnotherProcess([&] { return enterDecodingSandbox({allowed.path()}) && attempts[each]() ? 0 : 1; }),
                  0)
            << each;
    }
}

} // namespace tallowby
