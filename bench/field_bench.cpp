// Setting 20 fields on one sheet of a part with 1 and with 100 formatted sheets: values of the sheet's own,
// and values that all sheets share. Prints the ratios at the end.
#include "bench/interface_scene.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <map>
#include <utility>

namespace {

constexpr int kFields = 20;

struct Cost {
    double seconds;
    double calls;
};
std::map<std::pair<bool, int>, Cost> g_measured; // shared?, sheets

std::string nameOf(int field) { return "F" + std::to_string(field); }

void setFields(tag_t sheet, int round)
{
    for (int field = 0; field < kFields; ++field)
        setText(sheet, nameOf(field).c_str(), "value " + std::to_string(round));
}

void twentyFields(benchmark::State &state)
{
    const bool shared = state.range(0) != 0;
    const int sheets = static_cast<int>(state.range(1));
    Scene scene([&](TrBlockDefV1 &title) {
        for (int field = 0; field < kFields; ++field) {
            TrFieldDefV1 def = makeTextField(nameOf(field), 20.0 * field);
            if (shared) {
                def.SetBroadcastString("SHARED" + std::to_string(field));
                def.SetSyncAllDrawings(1);
            }
            title.AddFieldDefinition(def);
        }
    });
    const tag_t sheet = scene.addSheet("S0");
    for (int i = 1; i < sheets; ++i) scene.addSheet("S" + std::to_string(i));
    scene.story.open(sheet);
    int round = 0;
    setFields(sheet, round++); // notes are made

    double seconds = 0.0;
    const std::size_t calls = nxhost::totalCalls();
    for (auto again : state) {
        (void)again;
        const double once = processorSecondsOf([&] { setFields(sheet, round++); });
        state.SetIterationTime(once);
        seconds += once;
    }
    const auto rounds = static_cast<double>(state.iterations());
    const Cost cost{seconds / rounds, static_cast<double>(nxhost::totalCalls() - calls) / rounds};
    state.counters["calls"] = cost.calls;
    g_measured[{shared, sheets}] = cost;
}
BENCHMARK(twentyFields)
    ->ArgNames({"shared", "sheets"})
    ->ArgsProduct({{0, 1}, {1, 10, 100}})
    ->Iterations(5)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

void printRatios()
{
    for (const bool shared : {false, true}) {
        const Cost one = g_measured[{shared, 1}], ten = g_measured[{shared, 10}],
                   hundred = g_measured[{shared, 100}];
        std::printf("%s: 10 sheets / 1 sheet %.2f in time, %.2f in calls; 100 / 10 %.2f, %.2f\n",
                    shared ? "shared by all sheets" : "of one sheet", ten.seconds / one.seconds,
                    ten.calls / one.calls, hundred.seconds / ten.seconds,
                    hundred.calls / ten.calls);
    }
}

} // namespace

int main(int argc, char **argv)
{
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    printRatios();
    return 0;
}
