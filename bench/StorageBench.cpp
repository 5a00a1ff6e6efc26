#include "SceneFile.h"

#include "model/BlockRecordReader.h"
#include "model/BlockRecordWriter.h"
#include "model/TimestampCoding.h"
#include "platform/Log.h"
#include "storage/BlockStorage.h"
#include "storage/file/BlockFile.h"
#include "storage/file/BlockFileReader.h"

#include <QFile>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>
#include <simdjson.h>

#include <map>

#include <malloc.h>

namespace tallowby::bench {

namespace {

constexpr auto kHeavy = Scene::Kind::heavyGrid;

/// A scheduler on which nothing ever falls due by itself: the measurement makes the call.
class ManualScheduler final : public Scheduler {
public:
    ScheduledCall after(Duration, std::function<void()> call) override {
        m_call = std::move(call);
        return ScheduledCall();
    }
    ScheduledCall every(Duration, std::function<void()>) override { return ScheduledCall(); }
    [[nodiscard]] WallClock::time_point now() const override { return WallClock::now(); }
    [[nodiscard]] Duration monotonic() const override { return std::chrono::steady_clock::now().time_since_epoch(); }

    void runLast() { m_call(); }

private:
    std::function<void()> m_call;
};

/// The scene files of this run, each written once.
class Files {
public:
    QString path(std::size_t blockCount) {
        QString &known = m_paths[blockCount];
        if (known.isEmpty()) {
            known = m_folder.filePath(QStringLiteral("%1.json").arg(blockCount));
            writeSceneFile({kHeavy, blockCount, 1}, known);
        }
        return known;
    }

private:
    QTemporaryDir m_folder;
    std::map<std::size_t, QString> m_paths;
};

Files &files() {
    static Files instance;
    return instance;
}

std::size_t blockCount(const benchmark::State &state) {
    return std::size_t(state.range(0));
}

/// Looks at every value, as any program that uses the parser must.
std::size_t walk(simdjson::ondemand::value value) {
    std::size_t seen = 1;
    switch (value.type()) {
    case simdjson::ondemand::json_type::object:
        for (auto field : value.get_object()) {
            seen += field.unescaped_key().value().size();
            seen += walk(field.value());
        }
        break;
    case simdjson::ondemand::json_type::array:
        for (auto element : value.get_array()) {
            seen += walk(element.value());
        }
        break;
    case simdjson::ondemand::json_type::string:
        seen += value.get_string().value().size();
        break;
    case simdjson::ondemand::json_type::number:
        seen += value.get_double().value() > 0 ? 1 : 0;
        break;
    case simdjson::ondemand::json_type::boolean:
        seen += value.get_bool().value() ? 1 : 0;
        break;
    case simdjson::ondemand::json_type::null:
        break;
    }
    return seen;
}

void simdjsonWalk(benchmark::State &state) {
    const std::string path = files().path(blockCount(state)).toStdString();
    state.counters["bytesPerRecord"] = double(QFile(QString::fromStdString(path)).size()) / double(blockCount(state));
    for (auto _ : state) {
        simdjson::ondemand::parser parser;
        const simdjson::padded_string bytes = simdjson::padded_string::load(path);
        auto document = parser.iterate(bytes);
        std::size_t seen = 0;
        for (auto record : document.get_array()) {
            seen += walk(record.value());
        }
        benchmark::DoNotOptimize(seen);
    }
}

/// File to records, without the blocks.
void readRecords(benchmark::State &state) {
    const QString path = files().path(blockCount(state));
    for (auto _ : state) {
        auto content = readBlockFile(path, DeletedRecords::leaveOut);
        benchmark::DoNotOptimize(content);
        state.PauseTiming();
        content = std::monostate();
        state.ResumeTiming();
    }
}

/// File to a store that is ready.
void load(benchmark::State &state) {
    const QString path = files().path(blockCount(state));
    ManualScheduler scheduler;
    for (auto _ : state) {
        const auto before = ::mallinfo2().uordblks;
        auto storage = std::make_unique<BlockStorage>(scheduler, path);
        state.PauseTiming();
        state.counters["bytesPerBlock"] = double(::mallinfo2().uordblks - before) / double(storage->blocks().size());
        storage.reset();
        state.ResumeTiming();
    }
}

/// Records to text, on one thread.
void encodeRecords(benchmark::State &state) {
    const auto records = sceneRecords({kHeavy, blockCount(state), 1});
    for (auto _ : state) {
        BlockRecordWriter writer(kFileTimestamps);
        std::size_t length = 0;
        writer.startArray();
        for (const auto &record : records) {
            benchmark::DoNotOptimize(writer.write(*record));
            if (writer.text().size() > (std::size_t{1} << 20)) {
                length += writer.text().size();
                writer.clearText();
            }
        }
        writer.endArray();
        benchmark::DoNotOptimize(length);
    }
}

/// One changed block, from the snapshot to the synced file.
void saveWhole(benchmark::State &state) {
    const QTemporaryDir folder;
    BlockFile file(folder.filePath(QStringLiteral("blocks.json")));
    auto records = sceneRecords({kHeavy, blockCount(state), 1});
    RecordPages pages(records);
    for (auto &fields : records) {
        fields->zIndex += 1;
    }
    RecordPages changed(std::move(records));
    bool isChanged = false;
    for (auto _ : state) {
        isChanged = !isChanged;
        const auto outcome = file.write((isChanged ? changed : pages).snapshot({}), {});
        if (!std::holds_alternative<BlockFile::Change>(outcome)) {
            state.SkipWithError("the save failed");
        }
    }
}

/// What a save with one changed block costs the main thread.
void saveOnMainThread(benchmark::State &state) {
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("blocks.json"));
    QFile::copy(files().path(blockCount(state)), path);
    ManualScheduler scheduler;
    BlockStorage storage(scheduler, path);
    const BlockPtr changed = storage.blocks().at(storage.blocks().size() / 2);
    for (auto _ : state) {
        changed->setXPosition(changed->xPosition() + 1);
        storage.save();
        scheduler.runLast();
        state.PauseTiming();
        storage.saveNow(); // So that the next round does not merely wait for this write.
        state.ResumeTiming();
    }
}

void insertOne(benchmark::State &state) {
    ManualScheduler scheduler;
    BlockStorage storage(scheduler, std::nullopt);
    for (const auto &record : sceneRecords({kHeavy, blockCount(state), 1})) {
        storage.insert(std::make_shared<Block>(record));
    }
    for (auto _ : state) {
        storage.insert(Block::text(QUuid(), {}, QStringLiteral("one more")));
    }
}

void findById(benchmark::State &state) {
    ManualScheduler scheduler;
    BlockStorage storage(scheduler, files().path(blockCount(state)));
    const QUuid id = storage.blocks().back()->id();
    for (auto _ : state) {
        benchmark::DoNotOptimize(storage.findById(id));
    }
}

void sizes(benchmark::internal::Benchmark *benchmark) {
    benchmark->Arg(1'000)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMillisecond)->UseRealTime();
}

BENCHMARK(simdjsonWalk)->Apply(sizes);
BENCHMARK(readRecords)->Apply(sizes);
BENCHMARK(load)->Apply(sizes);
BENCHMARK(encodeRecords)->Apply(sizes);
BENCHMARK(saveWhole)->Apply(sizes);
// Each round waits for a whole write outside the measured time: few rounds.
BENCHMARK(saveOnMainThread)->Apply(sizes)->Iterations(3);
BENCHMARK(insertOne)->Arg(100'000)->Unit(benchmark::kMicrosecond)->Iterations(10'000);
BENCHMARK(findById)->Arg(100'000)->Unit(benchmark::kMicrosecond);

} // namespace

} // namespace tallowby::bench

int main(int argc, char **argv) {
    tallowby::setLogSink([](const QString &) {});
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
