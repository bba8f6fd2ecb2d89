// Definition files: what loading them and listing what is offered costs for blocks of twenty fields each.
// The counters "load_per_block" and "list_per_block" should stay the same from 30 to 3,000 blocks.
#include "bench/processor_time.h"
#include "definitions/definition_file_manager.h"
#include "definitions/format_def.h"
#include "tests/support/definitions.h"
#include "tests/support/text_field.h"

#include <benchmark/benchmark.h>

namespace {

using Manager = TrDefinitionFileManager;

constexpr int kFields = 20;

// A format and the blocks for it, with every slot of every field stored.
void makeLibrary(std::int64_t blocks)
{
    makeFormat("F", {"A4", "A3", "A2"});
    for (std::int64_t i = 0; i < blocks; ++i) {
        TrBlockDefV1 block = makeBlock("BLOCK" + std::to_string(i));
        for (int k = 0; k < kFields; ++k)
            block.AddFieldDefinition(makeTextField("FIELD" + std::to_string(k), 20.0 * k));
    }
}

void loadAndList(benchmark::State &state)
{
    Story story;
    story.newPart();
    writeDefinitionPart(story, "d.prt", [&] { makeLibrary(state.range(0)); });
    double loading = 0.0, listing = 0.0;
    for (auto _ : state) {
        loading += processorSecondsOf([] { Manager::LoadDefinitionFiles(); });
        listing += processorSecondsOf([&] {
            const auto offered =
                Manager::GetBlockDefinitions(Manager::GetFormatDefinition("F"), "ALL", true);
            if (offered.size() != static_cast<std::size_t>(state.range(0)))
                state.SkipWithError("blocks are missing");
        });
        state.PauseTiming();
        Manager::UnloadDefinitionFiles();
        state.ResumeTiming();
    }
    const auto count = static_cast<double>(state.range(0) * state.iterations());
    state.counters["load_per_block"] = loading / count;
    state.counters["list_per_block"] = listing / count;
}
BENCHMARK(loadAndList)->RangeMultiplier(10)->Range(30, 3000)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
