#pragma once

#include "platform/UserDefaults.h"
#include "storage/BlockStorage.h"
#include "support/LogCapture.h"
#include "support/TemporaryFolder.h"
#include "support/VirtualScheduler.h"
#include "sync/EmbeddingService.h"
#include "sync/FakeBackend.h"
#include "sync/SyncEngine.h"

#include <gtest/gtest.h>

namespace tallowby::test {

using namespace std::chrono_literals;

inline const QByteArray kKey = "sb_publishable_for-tests";

/// One installation and its backend. The clock stands at 2025-01-31 07:06:40 UTC.
class SyncFixture : public testing::Test {
protected:
    LogCapture log;
    TemporaryFolder folder;
    VirtualScheduler scheduler;
    UserDefaults defaults{folder.file(QStringLiteral("Tallowby.conf"))};
    BlockStorage storage{scheduler, std::nullopt};
    FakeBackend backend{scheduler};
    EmbeddingService embeddings;
    SupabaseConfig config{QUrl(QStringLiteral("https://example.test")), kKey};
    std::unique_ptr<SyncEngine> engine;

    void start() {
        engine = std::make_unique<SyncEngine>(storage, defaults, scheduler, backend, embeddings, config);
        scheduler.advance(0ms);
    }
    [[nodiscard]] QString userId() const {
        return defaults.string(QStringLiteral("tallowby_user_id")).value_or(QString());
    }
    [[nodiscard]] Timestamp now() const { return Timestamp::from(scheduler.now()); }

    BlockPtr add(const QString &text) {
        auto block = Block::text(storage.currentUserId().value_or(QUuid()), {}, text);
        block->setUpdatedAt(now());
        storage.insert(block);
        return block;
    }
    /// As a person does through the canvas.
    void edit(Block &block, const QString &text) {
        block.setRawText(text);
        block.setUpdatedAt(now());
        block.setNeedsSync(true);
        storage.save();
    }
    /// A row that another installation of the same user has made.
    QUuid addRow(const QString &text, const QString &updatedAt, QUuid id = QUuid::createUuid()) {
        const QString key = id.toString(QUuid::WithoutBraces).toUpper();
        backend.rows[key] = {{QStringLiteral("id"), key},
                             {QStringLiteral("user_id"), userId()},
                             {QStringLiteral("x_position"), 10},
                             {QStringLiteral("y_position"), -2.5},
                             {QStringLiteral("width"), 300},
                             {QStringLiteral("height"), 200},
                             {QStringLiteral("z_index"), 4},
                             {QStringLiteral("block_type"), QStringLiteral("text")},
                             {QStringLiteral("raw_text"), text},
                             {QStringLiteral("created_at"), updatedAt},
                             {QStringLiteral("updated_at"), updatedAt}};
        return id;
    }
    /// Each request is answered with that.
    void answerAll(const HttpAnswer &answer) {
        backend.fate = [answer](const HttpRequest &) { return FakeBackend::Fate{.answer = answer}; };
    }
    /// What was said and asked so far does not matter.
    void forget() {
        static_cast<void>(log.take());
        backend.requests.clear();
    }
    [[nodiscard]] QStringList linesWith(const QString &part) { return log.take().filter(part); }
};

} // namespace tallowby::test
