// Formats on sheets: what the number of blocks on a sheet, and of sheets in a part, costs. The counters
// "per_block" should stay the same from 10 to 1,000 blocks, and the time of placing a format with the
// number of sheets.
#include "definitions/definition_file_manager.h"
#include "definitions/format_def.h"
#include "definitions/format_size.h"
#include "drawing/block.h"
#include "drawing/drawing.h"
#include "drawing/format.h"
#include "tests/drawing/catalog.h"
#include "tests/drawing/patterns.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <memory>

namespace {

// A part with definitions and one open sheet; made anew for every measured number.
class Bench {
public:
    Bench()
    {
        m_sheet = m_story.newSheet();
        for (const char *name : {"frameA3", "frameA2", "frameTall", "framePlain", "title", "rev"})
            makePattern(m_story, name);
        catalog.load(m_story);
    }
    ~Bench() { Catalog::unload(); }

    tag_t sheet() const { return m_sheet; }
    tag_t addSheet(int number) { return m_story.addSheet("S" + std::to_string(number), 420, 297); }
    void reload() { catalog.load(m_story); }

    static void addFormat(tag_t sheet, const char *size)
    {
        const auto def = TrDefinitionFileManager::GetFormatDefinition("ISO");
        TrDrawing::getDrawing(sheet)->addFormat(def, def->GetSizeDef(size));
    }
    boost::shared_ptr<TrFormatBase> format() const
    {
        return TrDrawing::getDrawing(m_sheet)->format();
    }
    void addBlocks(std::int64_t count) const
    {
        for (std::int64_t i = 0; i < count; ++i) format()->addBlock("NOTES");
    }

    Catalog catalog = isoCatalog();

private:
    Story m_story;
    tag_t m_sheet = NULL_TAG;
};

void perBlock(benchmark::State &state)
{
    state.counters["per_block"] =
        benchmark::Counter(static_cast<double>(state.range(0) * state.iterations()),
                           benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

void addingBlocks(benchmark::State &state)
{
    for (auto _ : state) {
        state.PauseTiming();
        auto bench = std::make_unique<Bench>();
        Bench::addFormat(bench->sheet(), "A3");
        state.ResumeTiming();
        bench->addBlocks(state.range(0));
        state.PauseTiming();
        bench.reset();
        state.ResumeTiming();
    }
    perBlock(state);
}

void resizing(benchmark::State &state)
{
    Bench bench;
    Bench::addFormat(bench.sheet(), "A3");
    bench.addBlocks(state.range(0));
    bool large = false;
    for (auto _ : state) {
        large = !large;
        bench.format()->resize(
            TrDefinitionFileManager::GetFormatDefinition("ISO")->GetSizeDef(large ? "A2" : "A3"));
    }
    perBlock(state);
}

void updating(benchmark::State &state)
{
    Bench bench;
    Bench::addFormat(bench.sheet(), "A3");
    bench.addBlocks(state.range(0));
    for (auto _ : state) {
        state.PauseTiming();
        bench.catalog.field("NOTES", "TEXT").x += 1;
        bench.reload();
        state.ResumeTiming();
        bench.format()->updateDefinition();
    }
    perBlock(state);
}

void addingAFormatBesideOthers(benchmark::State &state)
{
    Bench bench;
    for (int i = 0; i < state.range(0); ++i) Bench::addFormat(bench.addSheet(i), "A3");
    int next = 1000;
    for (auto _ : state) {
        state.PauseTiming();
        const tag_t sheet = bench.addSheet(next++);
        state.ResumeTiming();
        Bench::addFormat(sheet, "A3");
        state.PauseTiming();
        UgException::throwOnFailure(UF_DRAW_delete_drawing(sheet));
        state.ResumeTiming();
    }
}

BENCHMARK(addingBlocks)->Arg(10)->Arg(100)->Arg(1000)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(resizing)->Arg(10)->Arg(100)->Arg(1000)->Unit(benchmark::kMillisecond)->Iterations(6);
BENCHMARK(updating)->Arg(10)->Arg(100)->Arg(1000)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(addingAFormatBesideOthers)
    ->Arg(1)
    ->Arg(200)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(50);

} // namespace

BENCHMARK_MAIN();
