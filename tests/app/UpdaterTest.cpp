#include "app/QmlTypes.h"
#include "app/shell/MainMenu.h"
#include "app/update/UpdaterController.h"
#include "platform/theme/ThemeImageProvider.h"
#include "support/FakeDesktop.h"
#include "support/LogCapture.h"
#include "support/WarningGuard.h"
#include "sync/FakeBackend.h"

#include <gtest/gtest.h>

#include <QQmlEngine>
#include <QQuickWindow>

#include <array>

#include <sodium.h>

namespace tallowby::test {

namespace {

using namespace std::chrono_literals;
using State = UpdaterController::State;

QByteArray feedOf(const QByteArray &items) {
    return R"(<?xml version="1.0"?><rss version="2.0"><channel><title>Tallowby</title>)" + items + "</channel></rss>";
}
QByteArray item(const QByteArray &version, const QByteArray &link = "https://example.test/new") {
    return "<item><title>News</title><version>" + version + "</version><link>" + link + "</link></item>";
}

/// The makers' key, a server, and a program of version 1.2.
class Updater : public testing::Test {
protected:
    Updater() {
        EXPECT_GE(sodium_init(), 0);
        crypto_sign_keypair(publicKey.data(), secretKey.data());
        registerQmlTypes();
        expectWarning(QStringLiteral("This plugin does not support")); // Windows that are not on any screen.
        engine.addImportPath(QStringLiteral("qrc:/qt/qml"));
        ThemeImageProvider::install(engine);
        source = {QUrl(QStringLiteral("https://example.test/appcast.xml")), base64(publicKey), false};
        backend.fate = [this](const HttpRequest &request) {
            const HttpAnswer signature = HttpResponse{200, {}, {}, sign};
            const bool isFeed = request.url.path() == u"/appcast.xml";
            return FakeBackend::Fate{.answer = isFeed ? answer : signature};
        };
    }

    template <std::size_t size>
    [[nodiscard]] static QByteArray base64(const std::array<unsigned char, size> &bytes) {
        return QByteArray(reinterpret_cast<const char *>(bytes.data()), qsizetype(size)).toBase64();
    }
    [[nodiscard]] QByteArray signatureOf(const QByteArray &bytes) const {
        std::array<unsigned char, crypto_sign_BYTES> made{};
        crypto_sign_detached(made.data(), nullptr, reinterpret_cast<const unsigned char *>(bytes.constData()),
                             static_cast<unsigned long long>(bytes.size()), secretKey.data());
        return base64(made);
    }
    void publish(const QByteArray &feed) {
        answer = HttpResponse{200, {}, {}, feed};
        sign = signatureOf(feed);
    }
    std::unique_ptr<UpdaterController> start() {
        auto updater = std::make_unique<UpdaterController>(
            WindowServices{engine, desktop.presentationService, menu}, [this]() -> HttpClient & { return backend; },
            source, QStringLiteral("1.2"));
        updater->startUpdater();
        scheduler.advance(1s);
        return updater;
    }
    [[nodiscard]] static bool isOpen(const UpdaterController &updater) {
        return updater.window() && updater.window()->isVisible();
    }

    std::array<unsigned char, crypto_sign_PUBLICKEYBYTES> publicKey{};
    std::array<unsigned char, crypto_sign_SECRETKEYBYTES> secretKey{};
    LogCapture log;
    VirtualScheduler scheduler;
    FakeBackend backend{scheduler};
    FakeDesktop desktop;
    MainMenu menu{{}};
    QQmlEngine engine;
    UpdateSource source;
    HttpAnswer answer = HttpFailure{QStringLiteral("There is no network")};
    QByteArray sign;
};

} // namespace

TEST_F(Updater, ANewerVersionIsToldOfAtLaunchAndNothingElseIs) {
    publish(feedOf(item("1.1") + item("1.10") + item("1.9")));
    const auto updater = start();
    ASSERT_EQ(updater->state(), State::available);
    EXPECT_EQ(updater->available()->version, QStringLiteral("1.10"));
    EXPECT_TRUE(isOpen(*updater));
    EXPECT_EQ(updater->title(), QStringLiteral("Tallowby 1.10 is here."));

    for (const QByteArray &version : {QByteArray("1.2"), QByteArray("1.2.0"), QByteArray("1.1.9"), QByteArray("0.9")}) {
        publish(feedOf(item(version)));
        const auto current = start();
        EXPECT_EQ(current->state(), State::upToDate) << version.toStdString();
        EXPECT_EQ(current->window(), nullptr);
        current->checkForUpdates();
        scheduler.advance(1s);
        EXPECT_TRUE(isOpen(*current));
    }
    EXPECT_EQ(log.lines(), QStringList());
}

TEST_F(Updater, WhatIsNotSignedByTheMakersIsNotUsed) {
    publish(feedOf(item("9.0")));
    const QByteArray right = sign;
    const QByteArray other = signatureOf("something else");
    for (const QByteArray &wrong :
         {QByteArray(), QByteArray("no signature"), other, right.left(40), QByteArray(right + right)}) {
        sign = wrong;
        EXPECT_EQ(start()->state(), State::failed) << wrong.toStdString();
    }
    sign = right + '\n';
    EXPECT_EQ(start()->state(), State::available) << "as a text file ends";
    source.publicKey = base64(std::array<unsigned char, crypto_sign_PUBLICKEYBYTES>{1});
    EXPECT_EQ(start()->state(), State::failed);
    EXPECT_EQ(log.lines().count(
                  QStringLiteral("[UpdaterController] ❌ Update check failed: the signature of the feed is wrong")),
              6);
}

TEST_F(Updater, ABadFeedIsOneLineAndOnDemandOneSentence) {
    auto updater = start();
    EXPECT_EQ(updater->state(), State::failed);
    EXPECT_EQ(updater->window(), nullptr);
    EXPECT_EQ(log.take(),
              QStringList{QStringLiteral("[UpdaterController] ❌ Update check failed: There is no network")});
    updater->checkForUpdates();
    EXPECT_EQ(updater->state(), State::checking);
    updater->checkForUpdates(); // Once is enough.
    scheduler.advance(1s);
    EXPECT_TRUE(isOpen(*updater));
    EXPECT_EQ(updater->details(), QStringLiteral("The server could not be reached. Try again later."));
    EXPECT_EQ(log.take().size(), 1);

    answer = HttpResponse{404, {}, {}, "nothing here"};
    EXPECT_EQ(start()->state(), State::failed);
    answer = HttpResponse{200, {}, {}, QByteArray(UpdaterController::kLongestFeed + 1, ' ')};
    EXPECT_EQ(start()->state(), State::failed);
    const QByteArray bomb =
        R"(<!DOCTYPE r [<!ENTITY a "aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa">)"
        R"(<!ENTITY b "&a;&a;&a;&a;&a;&a;&a;&a;&a;&a;&a;&a;&a;&a;&a;&a;&a;&a;&a;&a;&a;&a;&a;&a;">)"
        R"(<!ENTITY c "&b;&b;&b;&b;&b;&b;&b;&b;&b;&b;&b;&b;&b;&b;&b;&b;&b;&b;&b;&b;&b;&b;&b;&b;">]>)";
    for (const QByteArray &feed :
         {QByteArray("no feed"), feedOf({}), feedOf(item("next")), feedOf(item("2.0", "http://example.test")),
          feedOf(item("2.0", "file:///etc/passwd")), feedOf(item("2.0")).chopped(20), feedOf(item("2.0-beta")),
          QByteArray("<html><body>2.0</body></html>"),
          QByteArray(bomb + "<rss><channel><item><version>&c;</version></item></channel></rss>")}) {
        publish(feed);
        EXPECT_EQ(start()->state(), State::failed) << feed.left(100).toStdString();
    }
}

TEST_F(Updater, WhereAPackageManagerOrNobodyUpdatesNothingIsAsked) {
    publish(feedOf(item("9.0")));
    source.isManaged = true;
    auto updater = start();
    updater->checkForUpdates();
    EXPECT_EQ(updater->state(), State::managed);
    source = {};
    EXPECT_EQ(start()->state(), State::noSource);
    EXPECT_TRUE(backend.requests.empty());
    EXPECT_TRUE(UpdateSource::ofThisBuild(QStringLiteral("/usr/bin/tallowby")).isManaged);
    EXPECT_FALSE(UpdateSource::ofThisBuild(QStringLiteral("/usr/local/bin/tallowby")).isManaged);
    EXPECT_FALSE(UpdateSource::ofThisBuild(QStringLiteral("/opt/tallowby/bin/tallowby")).isManaged);
}

} // namespace tallowby::test
