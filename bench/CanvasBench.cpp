#include "SceneFile.h"

#include "canvas/model/CanvasViewModel.h"
#include "platform/Log.h"
#include "platform/Scheduler.h"
#include "platform/desktop/Pasteboard.h"
#include "storage/BlockStorage.h"
#include "storage/DebouncedSaver.h"

#include <benchmark/benchmark.h>

#include <cmath>

namespace tallowby::bench {

namespace {

/// Nothing ever falls due: what is measured is what a person waits for.
class StandingScheduler final : public Scheduler {
public:
    ScheduledCall after(Duration, std::function<void()>) override { return ScheduledCall(); }
    ScheduledCall every(Duration, std::function<void()>) override { return ScheduledCall(); }
    [[nodiscard]] WallClock::time_point now() const override { return WallClock::now(); }
    [[nodiscard]] Duration monotonic() const override { return std::chrono::steady_clock::now().time_since_epoch(); }
};

struct EmptyPasteboard final : Pasteboard {
    [[nodiscard]] QList<QUrl> fileUrls() const override { return {}; }
    [[nodiscard]] QByteArray imageBytes() const override { return {}; }
    [[nodiscard]] QString text() const override { return {}; }
    [[nodiscard]] QByteArray data(const QString &) const override { return {}; }
    void write(const PasteboardContent &) override {}
};

/// A canvas with the grid scene, and a viewport of 1920 x 1080 over its middle.
class Canvas {
public:
    explicit Canvas(const benchmark::State &state) {
        for (auto &fields : sceneRecords({Scene::Kind::grid, std::size_t(state.range(0)), 1})) {
            storage.insert(std::make_shared<Block>(std::move(fields)));
        }
        model.refreshBlocks();
        model.updateVisibleBlocks(kViewport, 1.0);
    }

    static constexpr QRectF kViewport{-960, -540, 1920, 1080};

    StandingScheduler scheduler;
    BlockStorage storage{scheduler, std::nullopt};
    DebouncedSaver saver{scheduler, storage};
    NotificationCenter notifications;
    EmptyPasteboard pasteboard;
    CanvasViewModel model{storage, saver, notifications, scheduler, pasteboard};
};

/// A pan at zoom 0.25, where some 500 blocks are in view, to where other rows come in.
void cullingPass(benchmark::State &state) {
    Canvas canvas(state);
    double x = 0;
    for (auto _ : state) {
        x = x > 0 ? 0 : 500;
        canvas.model.updateVisibleBlocks({x - 3840, -2160, 7680, 4320}, 0.25);
    }
    state.counters["visible"] = double(canvas.model.visibleBlocks().size());
}

void hitTest(benchmark::State &state) {
    Canvas canvas(state);
    for (auto _ : state) {
        benchmark::DoNotOptimize(canvas.model.blockAt({1, 1}));
    }
}

void marquee(benchmark::State &state) {
    Canvas canvas(state);
    double width = 0;
    for (auto _ : state) {
        width = std::fmod(width + 100, 1900);
        canvas.model.selectIn({-960, -540, width, 900});
    }
}

void insertAndUndo(benchmark::State &state) {
    Canvas canvas(state);
    for (auto _ : state) {
        canvas.model.spawnShape({0, 0}, ShapeType::circle);
        canvas.model.undo();
    }
}

void eraseAndUndo(benchmark::State &state) {
    Canvas canvas(state);
    for (auto _ : state) {
        canvas.model.eraseAt({-100, -100});
        canvas.model.undo();
    }
}

void bringToFront(benchmark::State &state) {
    Canvas canvas(state);
    for (auto _ : state) {
        canvas.model.bringToFront(BlockPtr(canvas.model.blocks()[canvas.model.blocks().size() / 2]));
    }
}

void sendToBack(benchmark::State &state) {
    Canvas canvas(state);
    for (auto _ : state) {
        canvas.model.sendToBack(BlockPtr(canvas.model.blocks()[canvas.model.blocks().size() / 2]));
    }
}

/// 500 strokes of 100 points.
BlockPtr largeSketch() {
    const BlockPtr block = Block::sketch(QUuid(), {});
    std::vector<SketchStroke> strokes(500, {.points = {}, .color = QStringLiteral("#333333"), .width = 3});
    for (std::size_t i = 0; i < strokes.size(); ++i) {
        for (int j = 0; j < 100; ++j) {
            strokes[i].points.push_back({.x = double(i) + j * 1.37, .y = j * 0.61, .pressure = 0.5});
        }
    }
    block->setSketchStrokes(strokes);
    return block;
}

void readStrokes(benchmark::State &state) {
    const BlockPtr block = largeSketch();
    for (auto _ : state) {
        benchmark::DoNotOptimize(block->sketchStrokes());
    }
    state.counters["bytes"] = double(block->content().size());
}

void writeStrokes(benchmark::State &state) {
    const BlockPtr block = largeSketch();
    const auto strokes = block->sketchStrokes();
    for (auto _ : state) {
        block->setSketchStrokes(strokes);
    }
}

void writeBesideStrokes(benchmark::State &state) {
    const BlockPtr block = largeSketch();
    double seconds = 0;
    for (auto _ : state) {
        block->setMediaDuration(++seconds);
    }
}

void sizes(benchmark::internal::Benchmark *benchmark) {
    benchmark->Arg(1'000)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMicrosecond);
}

BENCHMARK(cullingPass)->Apply(sizes);
BENCHMARK(hitTest)->Apply(sizes);
BENCHMARK(marquee)->Apply(sizes);
// Each round leaves a deleted block in the store.
BENCHMARK(insertAndUndo)->Apply(sizes)->Iterations(300);
BENCHMARK(eraseAndUndo)->Apply(sizes);
BENCHMARK(bringToFront)->Apply(sizes);
BENCHMARK(sendToBack)->Apply(sizes);
BENCHMARK(readStrokes)->Unit(benchmark::kMillisecond);
BENCHMARK(writeStrokes)->Unit(benchmark::kMillisecond);
BENCHMARK(writeBesideStrokes)->Unit(benchmark::kMillisecond);

} // namespace

} // namespace tallowby::bench

int main(int argc, char **argv) {
    tallowby::setLogSink([](const QString &) {});
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
