#include "sync/SyncFixture.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QSet>

namespace tallowby::test {

namespace {

using Kind = SyncState::Kind;

SyncState error(const QString &text) {
    return {Kind::error, text};
}

QSet<QString> keysOf(const QByteArray &json) {
    const QStringList keys = QJsonDocument::fromJson(json).object().keys();
    return {keys.begin(), keys.end()};
}

} // namespace

using SyncEngineTest = SyncFixture;

TEST_F(SyncEngineTest, AFirstStartMakesAnIdAndLaterOnesKeepIt) {
    const auto before = add(u"made before anybody asked"_qs);
    start();
    const QString first = userId();
    EXPECT_EQ(first, first.toUpper());
    EXPECT_EQ(QUuid(first).version(), QUuid::Random);
    EXPECT_EQ(log.lines().value(0), u"[SyncEngine] 🆕 Created new Anonymous User ID: " + first);
    EXPECT_EQ(before->userId(), QUuid(first));
    EXPECT_EQ(storage.currentUserId(), QUuid(first));

    start();
    EXPECT_EQ(userId(), first);
    EXPECT_TRUE(log.lines().contains(u"[SyncEngine] 👤 Restored User ID: " + first));

    defaults.setString(u"tallowby_user_id"_qs, u"not an id"_qs);
    start();
    EXPECT_NE(userId(), first);
    EXPECT_FALSE(QUuid(userId()).isNull());
    EXPECT_TRUE(backend.takeRequestLines().last().contains(userId()));
}

TEST_F(SyncEngineTest, RequestsAreWhatTheServerExpectsToTheLetter) {
    defaults.setString(u"tallowby_user_id"_qs, u"6ba7b810-9dad-11d1-80b4-00c04fd430c8"_qs);
    const QByteArray id = "6BA7B810-9DAD-11D1-80B4-00C04FD430C8";
    start();
    const QString pull =
        u"GET /rest/v1/blocks?user_id=eq."_qs + QLatin1StringView(id) + u"&deleted_at=is.null&order=updated_at.desc";
    const HttpRequest first = backend.requests.at(0);
    EXPECT_EQ(first.url.scheme(), u"https");
    const HttpRequest::Headers common{{"Authorization", "Bearer " + kKey},
                                      {"apikey", kKey},
                                      {"Content-Type", "application/json"},
                                      {"x-tallowby-user-id", id}};
    EXPECT_EQ(first.headers, common);
    EXPECT_EQ(engine->requestHeaders(), common);
    EXPECT_EQ(backend.takeRequestLines(), QStringList{pull});

    scheduler.advance(250ms);
    const auto block = add(u"a \"note\""_qs);
    block->setDueDate(Timestamp{760'000'000.123});
    scheduler.advance(499ms);
    EXPECT_TRUE(backend.requests.empty());
    scheduler.advance(1ms);
    const HttpRequest push = backend.requests.at(0);
    EXPECT_EQ(backend.takeRequestLines(), QStringList{u"POST /rest/v1/blocks"_qs});
    HttpRequest::Headers upsert = common;
    upsert.emplace_back("Prefer", "resolution=merge-duplicates");
    EXPECT_EQ(push.headers, upsert);
    EXPECT_EQ(
        keysOf(push.body),
        (QSet<QString>{u"id"_qs,         u"user_id"_qs,  u"x_position"_qs, u"y_position"_qs, u"width"_qs,
                       u"height"_qs,     u"z_index"_qs,  u"block_type"_qs, u"raw_text"_qs,   u"embedding"_qs,
                       u"tags"_qs,       u"is_todo"_qs,  u"is_event"_qs,   u"due_date"_qs,   u"created_at"_qs,
                       u"updated_at"_qs, u"rotation"_qs, u"is_bold"_qs,    u"is_italic"_qs,  u"is_strikethrough"_qs}));
    const QJsonObject row = QJsonDocument::fromJson(push.body).object();
    EXPECT_EQ(row.value(u"due_date").toString(), u"2025-01-31T07:06:40.123Z");
    EXPECT_EQ(row.value(u"updated_at").toString(), u"2025-01-31T07:06:40.250Z");
    EXPECT_EQ(row.value(u"user_id").toString().toLatin1(), id);
    EXPECT_EQ(row.value(u"embedding").toArray().size(), 768);

    // Fifteen seconds after the start, since the push of 07:06:40.75; then once from before it.
    scheduler.advance(14'250ms);
    EXPECT_EQ(backend.takeRequestLines(), QStringList{pull + u"&updated_at=gt.2025-01-31T07:06:40Z"});
    scheduler.advance(15s);
    EXPECT_EQ(backend.takeRequestLines(), QStringList{pull + u"&updated_at=gt.2025-01-31T07:04:40Z"});
    scheduler.advance(15s);
    EXPECT_EQ(backend.takeRequestLines(), QStringList{pull + u"&updated_at=gt.2025-01-31T07:06:40Z"});

    const auto found = engine->semanticSearch({0.5F, 0, -1.25F}, 10);
    const HttpRequest search = backend.requests.at(0);
    EXPECT_EQ(backend.takeRequestLines(), QStringList{u"POST /rest/v1/rpc/search_blocks"_qs});
    EXPECT_EQ(search.headers, common);
    EXPECT_EQ(search.body, R"({"query_embedding":[0.5,0,-1.25],"match_threshold":0.7,"match_count":10})");
}

TEST_F(SyncEngineTest, ABurstOfEditsIsOnePushAndNothingToPushIsNoRequest) {
    start();
    const auto block = add(u"one"_qs);
    for (int edits = 0; edits < 5; ++edits) {
        scheduler.advance(400ms);
        edit(*block, u"edit %1"_qs.arg(edits));
    }
    forget();
    scheduler.advance(500ms);
    EXPECT_EQ(backend.takeRequestLines().size(), 1);
    EXPECT_EQ(backend.texts(), QStringList{u"edit 4"_qs});
    EXPECT_FALSE(block->needsSync());
    EXPECT_EQ(block->syncedAt(), now());
    EXPECT_EQ(engine->lastSyncTime(), now());
    EXPECT_EQ(engine->syncState(), SyncState{Kind::connected});
    EXPECT_TRUE(log.take().contains(u"[SyncEngine] ✅ Successfully pushed 1 changes"_qs));

    // The save that a push ends with asks for another push, which finds nothing, and that is the end of it.
    int states = 0;
    QObject::connect(engine.get(), &SyncEngine::syncStateChanged, [&states] { ++states; });
    scheduler.advance(10s);
    EXPECT_EQ(log.take(), QStringList{u"[SyncEngine] ℹ️ No pending changes to push for userId: " + userId()});
    EXPECT_TRUE(backend.takeRequestLines().isEmpty());
    EXPECT_EQ(states, 0);
}

TEST_F(SyncEngineTest, APushStopsAtTheFirstRefusalAndGoesOnWithTheNextChange) {
    start();
    add(u"first"_qs);
    const auto second = add(u"second"_qs);
    const auto third = add(u"third"_qs);
    int posts = 0;
    backend.fate = [&posts](const HttpRequest &request) {
        const bool isRefused = request.method == HttpRequest::Method::post && ++posts == 2;
        return isRefused
                   ? FakeBackend::Fate{.answer = HttpResponse{409, "application/json", {}, "{\"code\":\"23505\"}"}}
                   : FakeBackend::Fate();
    };
    forget();
    scheduler.advance(500ms);
    EXPECT_EQ(log.take(), (QStringList{u"[SyncEngine] 🚀 Pushing 3 local changes to Supabase..."_qs,
                                       u"[SyncEngine] ❌ Upsert Error Status 409: {\"code\":\"23505\"}"_qs,
                                       u"[SyncEngine] ❌ Push failed: Network request failed"_qs}));
    EXPECT_EQ(engine->syncState(), error(u"Network request failed"_qs));
    EXPECT_EQ(engine->pendingChanges(), 3);
    EXPECT_EQ(backend.texts(), QStringList{u"first"_qs});
    EXPECT_TRUE(second->needsSync());
    EXPECT_TRUE(third->needsSync());

    edit(*third, u"third, again"_qs);
    scheduler.advance(500ms);
    EXPECT_EQ(engine->syncState(), SyncState{Kind::connected});
    EXPECT_EQ(engine->pendingChanges(), 0);
    EXPECT_EQ(backend.texts(), (QStringList{u"first"_qs, u"second"_qs, u"third, again"_qs}));
}

TEST_F(SyncEngineTest, WhatIsTypedWhileItsBlockIsOnTheWayFollows) {
    start();
    const auto block = add(u"half a sen"_qs);
    backend.fate = [](const HttpRequest &) { return FakeBackend::Fate{.delay = 4s}; };
    scheduler.advance(1500ms);
    edit(*block, u"half a sentence"_qs);
    // The second push becomes due while the first still runs: two versions are never on their way at once.
    scheduler.advance(3s);
    EXPECT_EQ(backend.texts(), QStringList{u"half a sen"_qs});
    EXPECT_TRUE(block->needsSync());
    scheduler.advance(6s);
    EXPECT_EQ(backend.texts(), QStringList{u"half a sentence"_qs});
    EXPECT_FALSE(block->needsSync());
}

TEST_F(SyncEngineTest, TheLaterVersionWinsAndEqualOnesStay) {
    start();
    scheduler.advance(1s);
    const auto mine = add(u"mine"_qs);
    scheduler.advance(1s);
    const QUuid id = mine->id();
    addRow(u"as old"_qs, u"2025-01-31T07:06:41+00:00"_qs, id);
    scheduler.advance(15s);
    EXPECT_EQ(mine->rawTextOrEmpty(), u"mine");

    addRow(u"a millisecond later"_qs, u"2025-01-31T09:06:41.001000+02:00"_qs, id);
    backend.rows[id.toString(QUuid::WithoutBraces).toUpper()][u"block_type"_qs] = u"sticky_note"_qs;
    int merged = 0;
    QObject::connect(engine.get(), &SyncEngine::remoteChangesMerged, [&merged] { ++merged; });
    scheduler.advance(15s);
    EXPECT_EQ(mine->rawTextOrEmpty(), u"a millisecond later");
    EXPECT_EQ(mine->blockType(), BlockType::stickyNote);
    EXPECT_EQ(mine->xPosition(), 10);
    EXPECT_EQ(mine->zIndex(), 4);
    EXPECT_EQ(merged, 1);

    // A block deleted here comes back when somebody has worked on it since.
    mine->setDeletedAt(now());
    addRow(u"still wanted"_qs, u"2025-01-31T07:06:42Z"_qs, id);
    scheduler.advance(30s);
    EXPECT_TRUE(mine->isLive());
    EXPECT_EQ(mine->rawTextOrEmpty(), u"still wanted");
}

TEST_F(SyncEngineTest, RowsOfOthersMachinesBecomeBlocksAndAreNotSentBack) {
    defaults.setString(u"tallowby_user_id"_qs, QUuid::createUuid().toString(QUuid::WithoutBraces));
    start();
    engine.reset();
    defaults.setString(u"tallowby_user_id"_qs, userId().toUpper());
    const QUuid id = addRow(u"from elsewhere"_qs, u"2025-01-30T12:00:00.5Z"_qs);
    QJsonObject &row = backend.rows.first();
    // As the database hands out what it keeps as a vector.
    row[u"embedding"_qs] = u"[0.5,-1]"_qs;
    row[u"content"_qs] = QJsonObject{{u"title"_qs, u"x"_qs}};
    row[u"due_date"_qs] = QJsonValue::Null;
    forget();
    start();
    const BlockPtr block = storage.findById(id);
    ASSERT_TRUE(block);
    EXPECT_EQ(block->rawTextOrEmpty(), u"from elsewhere");
    EXPECT_EQ(block->embedding(), (std::vector<float>{0.5F, -1.0F}));
    EXPECT_EQ(block->content(), R"({"title":"x"})");
    EXPECT_EQ(engine->syncState(), SyncState{Kind::connected});
    scheduler.advance(5s);
    EXPECT_EQ(backend.takeRequestLines().filter(u"POST"_qs), QStringList());
}

TEST_F(SyncEngineTest, MoreRowsThanOneAnswerHoldsArriveAll) {
    start();
    engine.reset();
    // A whole import has one stamp: rows of one instant have no order that two answers share.
    for (int i = 0; i < 2345; ++i) {
        addRow(QString::number(i), i < 400 ? u"2025-01-31T07:00:00Z"_qs : u"2025-01-30T07:00:00Z"_qs);
    }
    forget();
    start();
    EXPECT_EQ(storage.blocks().size(), 2345U);
    EXPECT_EQ(backend.requests.size(), 4U);
    EXPECT_EQ(headerOf(backend.requests.at(0), "Range"), std::nullopt);
    EXPECT_EQ(headerOf(backend.requests.at(1), "Range"), "0-999");
    EXPECT_EQ(headerOf(backend.requests.at(2), "Range"), "950-1949");
    EXPECT_EQ(engine->syncState(), SyncState{Kind::connected});
}

TEST_F(SyncEngineTest, AnswersThatCannotBeUsedChangeNothing) {
    start();
    scheduler.advance(15s);
    const auto mine = add(u"mine"_qs);
    scheduler.advance(1s);
    const auto page = [](int status, const char *type, const char *body) {
        return HttpResponse{status, type, {}, body};
    };
    const QByteArray good =
        R"({"id":"6BA7B810-9DAD-11D1-80B4-00C04FD430C8","user_id":"6BA7B810-9DAD-11D1-80B4-00C04FD430C8",)"
        R"("y_position":0,"width":1,"height":1,"z_index":0,"block_type":"text",)"
        R"("created_at":"2025-01-31T07:00:00Z","updated_at":"2025-01-31T07:00:00Z")";
    const std::vector<HttpAnswer> answers{
        page(500, "application/json", "{}"),
        page(401, "application/json", "{\"message\":\"JWT expired\"}"),
        page(302, "text/html", "moved"),
        page(200, "text/html", "<html>Welcome to the hotel</html>"),
        page(200, "application/json", "{\"not\":\"rows\"}"),
        page(200, "application/json", ""),
        page(200, "application/json", "[{\"id\":\"6BA7B810-9DAD"),
        page(200, "application/json", "\xff\xfe\x00garbage"),
        HttpResponse{200, "application/json", {}, "[" + good + R"(,"x_position":1e999}])"},
        HttpResponse{200, "application/json", {}, "[" + good + R"(,"x_position":0,"deleted_at":"soon"}])"},
        HttpResponse{200, "application/json", {}, "[" + good + R"(,"x_position":0,"content":)" + QByteArray(5000, '[')},
        HttpFailure{u"The server closed the connection"_qs},
    };
    for (const HttpAnswer &answer : answers) {
        answerAll(answer);
        forget();
        scheduler.advance(15s);
        EXPECT_EQ(backend.takeRequestLines().size(), 1);
        EXPECT_EQ(linesWith(u"Pull failed: "_qs).size(), 1);
        EXPECT_EQ(storage.blocks().size(), 1U);
        EXPECT_EQ(engine->syncState(), SyncState{Kind::connected});
        EXPECT_EQ(mine->rawTextOrEmpty(), u"mine");

        // And a push into the same: nothing is taken for sent that was not.
        edit(*mine, u"mine"_qs);
        scheduler.advance(500ms);
        const auto *response = std::get_if<HttpResponse>(&answer);
        const bool isTaken = response && response->isSuccess() && response->contentType == "application/json";
        EXPECT_EQ(mine->needsSync(), !isTaken);
        answerAll(HttpResponse{201, {}, {}, {}});
        edit(*mine, u"mine"_qs);
        scheduler.advance(500ms);
        EXPECT_EQ(engine->syncState(), SyncState{Kind::connected});
    }
}

TEST_F(SyncEngineTest, WithoutABackendTheLogSaysSoAndNothingIsBusy) {
    add(u"kept here"_qs);
    answerAll(HttpFailure{u"The server does not answer"_qs});
    start();
    EXPECT_EQ(linesWith(u"Not connected"_qs),
              QStringList{u"[SyncEngine] Not connected: The server does not answer"_qs});
    EXPECT_EQ(engine->syncState(), error(u"The server does not answer"_qs));
    scheduler.advance(1s);
    forget();
    scheduler.advance(1h);
    EXPECT_EQ(backend.takeRequestLines().size(), 240);
    const QStringList lines = log.take();
    EXPECT_EQ(lines.size(), 240);
    EXPECT_EQ(lines.count(u"[SyncEngine] Pull failed: The server does not answer"_qs), lines.size());
}

TEST_F(SyncEngineTest, NeitherKeyNorIdNorTextsReachTheLog) {
    start();
    forget();
    add(u"my diary"_qs);
    answerAll(HttpResponse{400,
                           "application/json",
                           {},
                           "{\"details\":\"Failing row contains (1, my diary, [0,0]).\",\"who\":\"" +
                               userId().toLower().toLatin1() + "\",\"key\":\"" + kKey + "\"}"});
    scheduler.advance(1s);
    const QString said = log.take().join(u'\n');
    EXPECT_TRUE(said.contains(u"Upsert Error Status 400: {\"details\":\"Failing row contains (…)"));
    EXPECT_FALSE(said.contains(u"diary"));
    EXPECT_FALSE(said.contains(userId(), Qt::CaseInsensitive));
    EXPECT_FALSE(said.contains(QLatin1StringView(kKey)));

    answerAll(HttpResponse{400, {}, {}, "\xff\xfe"});
    add(u"another"_qs);
    scheduler.advance(1s);
    EXPECT_EQ(linesWith(u"Upsert Error"_qs), QStringList{u"[SyncEngine] ❌ Upsert Error Status 400: No body"_qs});
}

TEST_F(SyncEngineTest, DisconnectingEndsEverythingAndKeepsTheId) {
    start();
    const auto block = add(u"on its way"_qs);
    backend.fate = [](const HttpRequest &) { return FakeBackend::Fate{.delay = 4s}; };
    scheduler.advance(1s);
    const QString id = userId();
    engine->disconnect();
    EXPECT_EQ(engine->syncState(), SyncState{Kind::idle});
    forget();
    edit(*block, u"after that"_qs);
    scheduler.advance(1h);
    EXPECT_TRUE(backend.takeRequestLines().isEmpty());
    EXPECT_EQ(engine->syncState(), SyncState{Kind::idle});
    EXPECT_TRUE(block->needsSync());
    EXPECT_EQ(userId(), id);

    std::optional<SyncOutcome<std::vector<BlockDTO>>> found;
    engine->semanticSearch({0}, 10).then([&found](const auto &outcome) { found = outcome; });
    ASSERT_TRUE(found && std::holds_alternative<SyncFailure>(*found));
    EXPECT_EQ(std::get<SyncFailure>(*found).description, u"Authentication required");

    // An engine that goes in the middle of a request takes nothing with it.
    start();
    scheduler.advance(501ms);
    engine.reset();
    scheduler.advance(1h);
    EXPECT_TRUE(block->needsSync());
    EXPECT_TRUE(backend.rows.size() <= 1);
}

TEST_F(SyncEngineTest, ChangesOfAnEarlierRunThatWereNeverSentGoNow) {
    start();
    const auto sent = add(u"sent"_qs);
    scheduler.advance(1s);
    answerAll(HttpFailure{u"The server does not answer"_qs});
    edit(*sent, u"changed offline"_qs);
    scheduler.advance(1s);
    engine.reset();
    // The flag goes with the run; the stamps stay in the file.
    sent->setNeedsSync(false);
    backend.fate = nullptr;
    start();
    scheduler.advance(1s);
    EXPECT_EQ(backend.texts(), QStringList{u"changed offline"_qs});
}

} // namespace tallowby::test
