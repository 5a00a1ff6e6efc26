#include "platform/UserDefaults.h"
#include "storage/BlockStorage.h"
#include "support/LogCapture.h"
#include "support/TemporaryFolder.h"
#include "sync/EmbeddingService.h"
#include "sync/FakeBackend.h"
#include "sync/SyncEngine.h"

#include <gtest/gtest.h>

#include <QDateTime>

#include <map>
#include <random>
#include <set>

namespace tallowby::test {

namespace {

using namespace std::chrono_literals;

const QString kUserId = QStringLiteral("6BA7B810-9DAD-11D1-80B4-00C04FD430C8");
constexpr int kOrdinarySeeds = 1000;
constexpr int kMachines = 3;
constexpr int kSteps = 60;

/// Of the seeds that each test goes through; the environment asks for more.
int seedCount() {
    bool isNumber = false;
    const int wanted = qEnvironmentVariableIntValue("TALLOWBY_SYNC_SEEDS", &isNumber);
    return isNumber ? wanted : kOrdinarySeeds;
}

class SmallEmbeddings final : public EmbeddingService {
public:
    [[nodiscard]] std::vector<float> embedding(QStringView) const override { return {0}; }
};

qint64 milliseconds(Timestamp time) {
    return qint64(std::floor(std::round(time.secondsSinceReference * 1e6) / 1e3));
}

/// One installation: its blocks outlive its runs, as they do on the disk.
struct Machine {
    std::unique_ptr<BlockStorage> storage;
    std::unique_ptr<SyncEngine> engine;
    bool isOffline = false;
    /// The stamp of the last edit of each block that the backend has said to have.
    std::map<QUuid, qint64> acknowledged;
};

/// Some machines of one person, who edits and deletes on all of them while the network does what it likes.
class World {
public:
    World(unsigned seed, bool keepsNewerRows, UserDefaults &defaults)
        : m_random(seed)
        , m_defaults(defaults) {
        m_backend.keepsNewerRows = keepsNewerRows;
        for (Machine &machine : m_machines) {
            start(machine);
        }
    }

    void live() {
        for (int step = 0; step < kSteps; ++step) {
            // Never two edits in one millisecond: which of them were to win?
            m_scheduler.advance(std::chrono::milliseconds(1 + chance(3000)));
            m_now = &m_machines[chance(kMachines)];
            switch (chance(12)) {
            case 0:
                m_now->isOffline = !m_now->isOffline;
                break;
            case 1:
                start(*m_now);
                break;
            case 2:
                remove();
                break;
            case 3:
            case 4:
                m_scheduler.advance(std::chrono::seconds(chance(40)));
                break;
            case 5:
            case 6:
            case 7:
                create();
                break;
            default:
                edit();
            }
            note();
        }
    }

    /// Everything works again; what waits is sent, and each machine is started anew.
    void settle() {
        m_isCalm = true;
        for (Machine &machine : m_machines) {
            machine.isOffline = false;
        }
        m_scheduler.advance(2min);
        for (Machine &machine : m_machines) {
            machine.engine->pushLocalChanges();
            m_scheduler.advance(10s);
            note();
        }
        for (Machine &machine : m_machines) {
            start(machine);
            m_scheduler.advance(10s);
        }
    }

    void check() {
        std::map<QUuid, qint64> stamps;
        for (const QJsonObject &row : m_backend.rows) {
            const QUuid id(row.value(QStringLiteral("id")).toString());
            const QString text = row.value(QStringLiteral("raw_text")).toString();
            const bool isLive = row.value(QStringLiteral("deleted_at")).isUndefined();
            // An edit that was deleted before it was sent went with its block.
            const bool isWhole = m_backend.keepsNewerRows && isLive && !m_deleted.contains(id);
            if (isWhole) {
                EXPECT_EQ(text, m_lastEdit[id]) << "the latest edit is not what the backend has";
            }
            for (const Machine &machine : m_machines) {
                const BlockPtr block = machine.storage->findById(id);
                if (isLive) {
                    ASSERT_TRUE(block) << "a machine lacks a block";
                    EXPECT_FALSE(block->needsSync());
                    const qint64 rowStamp = stampOf(row);
                    EXPECT_GE(milliseconds(block->updatedAt()), rowStamp) << "an older version was kept";
                    if (milliseconds(block->updatedAt()) == rowStamp) {
                        EXPECT_EQ(block->rawTextOrEmpty(), text);
                    }
                    EXPECT_TRUE(!isWhole || block->rawTextOrEmpty() == text) << "two machines disagree";
                }
            }
        }
        for (const Machine &machine : m_machines) {
            for (const auto &[id, stamp] : machine.acknowledged) {
                const BlockPtr block = machine.storage->findById(id);
                if (!m_deleted.contains(id)) {
                    ASSERT_TRUE(block) << "an acknowledged block is gone";
                    EXPECT_GE(milliseconds(block->updatedAt()), stamp) << "an acknowledged edit is gone";
                }
            }
        }
    }

private:
    int chance(int of) { return int(m_random() % unsigned(of)); }

    static qint64 stampOf(const QJsonObject &row) {
        const auto time = QDateTime::fromString(row.value(QStringLiteral("updated_at")).toString(), Qt::ISODateWithMs);
        return time.toMSecsSinceEpoch() - 1000 * qint64(Timestamp::kReferenceDate.count());
    }

    /// Ends the run of a machine, if there is one, and starts the next with what the disk has.
    void start(Machine &machine) {
        machine.engine.reset();
        auto storage = std::make_unique<BlockStorage>(m_scheduler, std::nullopt);
        for (const BlockPtr &block : machine.storage ? machine.storage->blocks() : std::vector<BlockPtr>()) {
            if (block->isLive()) {
                const auto loaded = std::make_shared<Block>(block->fields());
                storage->insert(loaded);
                loaded->setNeedsSync(false);
            }
        }
        machine.storage = std::move(storage);
        m_backend.fate = [this](const HttpRequest &) { return fate(*m_asking); };
        machine.engine = std::make_unique<SyncEngine>(*machine.storage, m_defaults, m_scheduler, *gate(machine),
                                                      m_embeddings, m_config);
    }

    /// Each machine has a network of its own in front of the one backend.
    class Gate final : public HttpClient {
    public:
        Gate(World &world, Machine &machine)
            : m_world(world)
            , m_machine(machine) {}
        std::unique_ptr<HttpExchange> send(HttpRequest request, Done done) override {
            m_world.m_asking = &m_machine;
            return m_world.m_backend.send(std::move(request), std::move(done));
        }

    private:
        World &m_world;
        Machine &m_machine;
    };

    HttpClient *gate(Machine &machine) {
        auto &found = m_gates[&machine];
        if (!found) {
            found = std::make_unique<Gate>(*this, machine);
        }
        return found.get();
    }

    FakeBackend::Fate fate(const Machine &machine) {
        if (m_isCalm) {
            return {.delay = 20ms};
        }
        FakeBackend::Fate given{.delay = std::chrono::milliseconds(chance(4000))};
        given.isLost = machine.isOffline || chance(8) == 0;
        given.isAnswerLost = chance(8) == 0;
        if (chance(20) == 0) {
            given.answer = HttpResponse{chance(2) == 0 ? 500 : 409, {}, {}, {}};
        }
        return given;
    }

    BlockPtr someBlock() {
        const auto live = m_now->storage->fetch(&Block::isLive);
        return live.empty() ? nullptr : live[std::size_t(chance(int(live.size())))];
    }

    void stamp(Block &block) {
        const QString text = QStringLiteral("edit %1").arg(++m_edits);
        block.setRawText(text);
        block.setUpdatedAt(Timestamp::from(m_scheduler.now()));
        m_lastEdit[block.id()] = text;
    }

    void create() {
        SharedBlockFields fields(new BlockFields);
        // Of the seed, too: a run can be had again.
        fields->id = QUuid(m_random(), ushort(m_random()), 0x4000, 0x80, 0, 0, 0, 0, 0, 0, 0);
        fields->userId = *m_now->storage->currentUserId();
        fields->createdAt = Timestamp::from(m_scheduler.now());
        const auto block = std::make_shared<Block>(fields);
        stamp(*block);
        m_now->storage->insert(block);
    }

    void edit() {
        if (const BlockPtr block = someBlock()) {
            stamp(*block);
            block->setNeedsSync(true);
            m_now->storage->save();
        }
    }

    void remove() {
        if (const BlockPtr block = someBlock()) {
            m_deleted.insert(block->id());
            block->setDeletedAt(Timestamp::from(m_scheduler.now()));
            block->setNeedsSync(true);
            m_now->storage->save();
        }
    }

    /// What each machine has been told that the backend has.
    void note() {
        for (Machine &machine : m_machines) {
            for (const BlockPtr &block : machine.storage->blocks()) {
                if (!block->needsSync() && block->syncedAt()) {
                    machine.acknowledged[block->id()] = milliseconds(block->updatedAt());
                }
            }
        }
    }

    std::mt19937 m_random;
    UserDefaults &m_defaults;
    VirtualScheduler m_scheduler;
    SmallEmbeddings m_embeddings;
    const SupabaseConfig m_config{QUrl(QStringLiteral("https://example.test")), "key"};
    FakeBackend m_backend{m_scheduler};
    std::map<Machine *, std::unique_ptr<Gate>> m_gates;
    Machine *m_asking = nullptr;
    bool m_isCalm = false;
    int m_edits = 0;
    std::map<QUuid, QString> m_lastEdit;
    std::set<QUuid> m_deleted;
    std::array<Machine, kMachines> m_machines;
    Machine *m_now = nullptr;
};

class SyncRandom : public testing::TestWithParam<bool> {};

} // namespace

TEST_P(SyncRandom, MachinesThatHavePushedAndPulledAgreeAndLoseNothing) {
    LogCapture log;
    TemporaryFolder folder;
    UserDefaults defaults(folder.file(QStringLiteral("Tallowby.conf")));
    defaults.setString(QStringLiteral("tallowby_user_id"), kUserId);
    for (int seed = 1; seed <= seedCount() && !HasFailure(); ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        World world(unsigned(seed), GetParam(), defaults);
        world.live();
        world.settle();
        world.check();
        static_cast<void>(log.take());
    }
}

INSTANTIATE_TEST_SUITE_P(Backends, SyncRandom, testing::Bool(),
                         [](const auto &given) { return given.param ? "ThatKeepsNewerRows" : "ThatTakesWhatComes"; });

} // namespace tallowby::test
