#include "SceneFile.h"

#include "platform/Log.h"
#include "platform/Scheduler.h"
#include "storage/BlockStorage.h"
#include "sync/SearchIndex.h"

#include <benchmark/benchmark.h>

namespace tallowby::bench {

namespace {

/// Nothing ever falls due.
class StandingScheduler final : public Scheduler {
public:
    ScheduledCall after(Duration, std::function<void()>) override { return ScheduledCall(); }
    ScheduledCall every(Duration, std::function<void()>) override { return ScheduledCall(); }
    [[nodiscard]] WallClock::time_point now() const override { return WallClock::now(); }
    [[nodiscard]] Duration monotonic() const override { return std::chrono::steady_clock::now().time_since_epoch(); }
};

struct Notes {
    explicit Notes(const benchmark::State &state) {
        for (auto &fields : sceneRecords({Scene::Kind::grid, std::size_t(state.range(0)), 1})) {
            storage.insert(std::make_shared<Block>(std::move(fields)));
        }
    }

    StandingScheduler scheduler;
    BlockStorage storage{scheduler, std::nullopt};
};

void answer(benchmark::State &state, const QString &query) {
    const Notes notes(state);
    SearchIndex index(notes.storage);
    std::size_t found = index.find(query).size();
    for (auto _ : state) {
        found = index.find(query).size();
        benchmark::DoNotOptimize(found);
    }
    state.counters["found"] = double(found);
}

/// A word that nobody has written: the whole text is gone through.
void searchForNothing(benchmark::State &state) {
    answer(state, QStringLiteral("quetzalcoatl"));
}

/// A letter that nearly every block has.
void searchForALetter(benchmark::State &state) {
    answer(state, QStringLiteral("e"));
}

/// After a block has changed.
void searchAfterAnEdit(benchmark::State &state) {
    const Notes notes(state);
    SearchIndex index(notes.storage);
    benchmark::DoNotOptimize(index.find(QStringLiteral("x")));
    int edits = 0;
    for (auto _ : state) {
        const auto &blocks = notes.storage.blocks();
        ++edits;
        blocks[std::size_t(edits) % blocks.size()]->setRawText(QStringLiteral("edited %1").arg(edits));
        benchmark::DoNotOptimize(index.find(QStringLiteral("quetzalcoatl")));
    }
}

/// Reading all blocks for the first time, which the program does bit by bit while the first word is typed.
void firstReading(benchmark::State &state) {
    const Notes notes(state);
    for (auto _ : state) {
        SearchIndex index(notes.storage);
        benchmark::DoNotOptimize(index.prepare(notes.storage.blocks().size()));
    }
}

BENCHMARK(searchForNothing)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMillisecond);
BENCHMARK(searchForALetter)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMillisecond);
BENCHMARK(searchAfterAnEdit)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMillisecond);
BENCHMARK(firstReading)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMillisecond);

} // namespace

} // namespace tallowby::bench

BENCHMARK_MAIN();
