// One table of 10 to 10,000 rows: append and set, move a row from the end to the start, hide half, save,
// reopen, render. Prints the exponent of each step's growth at the end.
#include "bench/interface_scene.h"

#include "content/entry.h"
#include "content/field.h"
#include "content/table.h"
#include "drawing/block.h"

#include "display/render.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <map>

namespace {

std::map<std::string, std::map<double, double>> g_measured; // step: rows, seconds

void furnish(TrBlockDefV1 &title)
{
    TrTableDefV1 table;
    table.SetId("REV");
    table.SetLocationY(50.0);
    table.SetDirection(1);
    table.SetSymbolType(1);
    table.AddFieldDefinition(makeTextField("NO", 0.0));
    table.AddFieldDefinition(makeTextField("TEXT", 20.0));
    title.AddTableDefinition(table);
}

boost::shared_ptr<TrTableBase> tableOf(tag_t sheet)
{
    return TrDrawing::getDrawing(sheet)->format()->getBlocks().at(0)->getTable("REV");
}

void setRow(tag_t sheet, int row, const char *field, std::string text)
{
    char *lines[] = {text.data()};
    const TRV_FMT_value_list_t list{1, lines};
    require(TRV_FMT_set_table_value(sheet, "TITLE", "REV", row, field, &list));
}

void appendRows(tag_t sheet, int count)
{
    for (int row = 0; row < count; ++row) {
        require(TRV_FMT_add_entry(sheet, "TITLE", "REV"));
        setRow(sheet, row, "NO", std::to_string(row));
        setRow(sheet, row, "TEXT", "bore enlarged");
    }
}

void tableOfRows(benchmark::State &state)
{
    const int count = static_cast<int>(state.range(0));
    for (auto round : state) {
        (void)round;
        Scene scene(furnish);
        tag_t sheet = scene.addSheet("S");
        double total = 0.0;
        const auto step = [&](const char *name, auto &&body) {
            const double seconds = processorSecondsOf(body);
            double &best = g_measured[name].try_emplace(count, seconds).first->second;
            best = std::min(best, seconds);
            state.counters[name] = seconds;
            total += seconds;
        };
        const std::size_t calls = nxhost::totalCalls();
        step("append", [&] { appendRows(sheet, count); });
        state.counters["calls/row"] = static_cast<double>(nxhost::totalCalls() - calls) / count;
        step("move", [&] { tableOf(sheet)->moveEntry(static_cast<std::size_t>(count) - 1, 0); });
        step("hide", [&] { tableOf(sheet)->HidePreviousEntries(count / 2); });
        step("save", [&] { scene.story.save(); });
        step("reopen", [&] { scene.story.saveAndReopen(); });
        sheet = scene.story.sheet(0);
        step("locate", [&] { tableOf(sheet)->locate(); });
        step("render", [&] { host::display::writePdf({sheet}, scene.story.file("t.pdf")); });
        state.SetIterationTime(total);
    }
}
BENCHMARK(tableOfRows)
    ->Arg(10)
    ->Arg(100)
    ->Arg(1000)
    ->Arg(10000)
    ->Iterations(3)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

// The slope of log(seconds) over log(rows) from a hundred rows to the largest table: smaller ones measure
// what a step costs without any row.
void printGrowth()
{
    constexpr double kFewest = 100;
    for (const auto &[step, points] : g_measured) {
        const auto first = points.lower_bound(kFewest), last = std::prev(points.end());
        if (first == points.end() || first == last) continue;
        std::printf("growth exponent of %-7s %.2f (%g to %g rows)\n", step.c_str(),
                    std::log(last->second / first->second) / std::log(last->first / first->first),
                    first->first, last->first);
    }
}

} // namespace

int main(int argc, char **argv)
{
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    printGrowth();
    return 0;
}
