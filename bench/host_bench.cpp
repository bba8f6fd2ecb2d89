// The embedded host: opening and saving parts of 1,000 to 100,000 objects, and drawing an A1 sheet. The
// exponents at the end say how processor time grows with the number of objects: 1 is in proportion.
#include "bench/processor_time.h"
#include "display/render.h"
#include "nxhost/authoring.h"
#include "nxhost/control.h"
#include "uf.h"
#include "uf_attr.h"
#include "uf_curve.h"
#include "uf_draw.h"
#include "uf_drf.h"
#include "uf_obj.h"
#include "uf_part.h"
#include "uf_udobj.h"
#include "ug_exception.hxx"

#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdio>
#include <filesystem>
#include <map>
#include <string>
#include <unistd.h>
#include <vector>

namespace {

namespace fs = std::filesystem;

void check(int code) { UgException::throwOnFailure(code); }

UF_UDOBJ_class_t recordClass()
{
    static const UF_UDOBJ_class_t id = [] {
        UF_UDOBJ_class_t made = 0;
        check(UF_UDOBJ_create_class("BENCH_RECORD", "record", &made));
        return made;
    }();
    return id;
}

// --- a part like a drawing's: lines, notes, arcs, and records that link to them -------------------------

tag_t addNote(double x, double y, std::string text)
{
    char *lines[] = {text.data()};
    double origin[3] = {x, y, 0};
    tag_t note = NULL_TAG;
    check(UF_DRF_create_note(1, lines, origin, 0, &note));
    return note;
}

void addRecord(tag_t root, tag_t note, tag_t point)
{
    tag_t udo = NULL_TAG;
    check(UF_UDOBJ_create_udo(recordClass(), &udo));
    int ints[] = {1, 2, 3, 4};
    double doubles[] = {0.5, 1.5, 2.5};
    char id[] = "FIELD", value[] = "a value of some length";
    char *strings[] = {id, value};
    check(UF_UDOBJ_add_integers(udo, 4, ints));
    check(UF_UDOBJ_add_doubles(udo, 3, doubles));
    check(UF_UDOBJ_add_strings(udo, 2, strings));
    UF_UDOBJ_link_t below[] = {{4, point, 0}};
    check(UF_UDOBJ_add_links(udo, 1, below));
    UF_UDOBJ_link_t child[] = {{2, udo, 0}};
    check(UF_UDOBJ_add_links(root, 1, child));
    check(UF_UDOBJ_add_owning_links(udo, 1, &note));
    UF_ATTR_value_t attribute{};
    attribute.type = UF_ATTR_string;
    attribute.value.string = value;
    char title[] = "VALUE0";
    check(UF_ATTR_assign(udo, title, attribute));
}

// Ten objects a round.
void fill(long objects, double width, double height)
{
    tag_t root = NULL_TAG;
    check(UF_UDOBJ_create_udo(recordClass(), &root));
    for (long i = 0; i < objects; i += 10) {
        const double x = std::fmod(7.0 * static_cast<double>(i), width - 40);
        const double y = std::fmod(3.0 * static_cast<double>(i), height - 10);
        for (int n = 0; n < 4; ++n) {
            UF_CURVE_line_t ends{{x, y + n, 0}, {x + 30, y + n, 0}};
            tag_t line = NULL_TAG;
            check(UF_CURVE_create_line(&ends, &line));
        }
        nxhost::createArc(x + 5, y + 5, 3, 0, 270);
        double at[3] = {x, y, 0};
        tag_t point = NULL_TAG;
        check(UF_CURVE_create_point(at, &point));
        const tag_t note = addNote(x, y, "DRG-" + std::to_string(i));
        addNote(x, y + 4, "Surface treatment: none");
        addNote(x, y + 8, "Scale 1:2");
        addRecord(root, note, point);
    }
}

tag_t addSheet(double width, double height)
{
    UF_DRAW_info_t info{};
    info.size_state = UF_DRAW_CUSTOM_SIZE;
    info.size.custom_size[0] = height;
    info.size.custom_size[1] = width;
    info.drawing_scale = 1.0;
    info.units = UF_PART_METRIC;
    info.projection_angle = UF_DRAW_FIRST_ANGLE_PROJECTION;
    tag_t sheet = NULL_TAG;
    check(UF_DRAW_create_drawing("SHEET1", &info, &sheet));
    check(UF_DRAW_open_drawing(sheet));
    return sheet;
}

class Bench {
public:
    Bench()
    {
        if (!UF_is_initialized()) check(UF_initialize());
        nxhost::reset();
        std::string name = (fs::temp_directory_path() / "host-bench-XXXXXX").string();
        m_folder = mkdtemp(name.data());
    }
    ~Bench()
    {
        nxhost::reset();
        fs::remove_all(m_folder);
    }
    Bench(const Bench &) = delete;
    Bench &operator=(const Bench &) = delete;

    std::string file(const char *name) const { return (m_folder / name).string(); }

    // A1, not saved yet. Result: the sheet.
    tag_t makePart(long objects) const
    {
        tag_t part = NULL_TAG;
        check(UF_PART_new(file("bench.prt").c_str(), UF_PART_METRIC, &part));
        const tag_t sheet = addSheet(841, 594);
        fill(objects, 841, 594);
        return sheet;
    }

private:
    fs::path m_folder;
};

// --- measuring ------------------------------------------------------------------------------------------

// The best time of each step by number of objects: what else the machine did only adds to it.
std::map<std::string, std::map<double, double>> g_best;

template <class Body> double measured(const std::string &step, long objects, Body &&body)
{
    const double seconds = processorSecondsOf(std::forward<Body>(body));
    auto &best = g_best[step].try_emplace(static_cast<double>(objects), seconds).first->second;
    best = std::min(best, seconds);
    return seconds;
}

// The slope of log(seconds) over log(objects) through all points.
void printGrowth()
{
    for (const auto &[step, points] : g_best) {
        if (points.size() < 3) continue;
        double n = 0, x = 0, y = 0, xx = 0, xy = 0;
        for (const auto &[objects, seconds] : points) {
            const double u = std::log(objects), v = std::log(seconds);
            n += 1, x += u, y += v, xx += u * u, xy += u * v;
        }
        std::printf("%-12s growth exponent %.3f (%g to %g objects)\n", step.c_str(),
                    (n * xy - x * y) / (n * xx - x * x), points.begin()->first,
                    points.rbegin()->first);
    }
}

// --- parts ----------------------------------------------------------------------------------------------

void opening(benchmark::State &state)
{
    const Bench bench;
    bench.makePart(state.range(0));
    check(UF_PART_save());
    check(UF_PART_close_all());
    for (auto _ : state) {
        tag_t part = NULL_TAG;
        state.SetIterationTime(measured("open", state.range(0), [&] {
            check(UF_PART_open(bench.file("bench.prt").c_str(), &part, nullptr));
        }));
        check(UF_PART_close_all());
    }
}

void savingNew(benchmark::State &state)
{
    const Bench bench;
    bench.makePart(state.range(0));
    int copy = 0;
    for (auto _ : state) {
        const std::string name = bench.file(("copy" + std::to_string(copy++) + ".prt").c_str());
        state.SetIterationTime(
            measured("save as", state.range(0), [&] { check(UF_PART_save_as(name.c_str())); }));
    }
}

void savingOneChange(benchmark::State &state)
{
    const Bench bench;
    bench.makePart(state.range(0));
    const tag_t note = addNote(1, 1, "changed");
    check(UF_PART_save());
    int color = 1;
    for (auto _ : state) {
        check(UF_OBJ_set_color(note, color = color % 15 + 1));
        state.SetIterationTime(
            measured("save one", state.range(0), [&] { check(UF_PART_save()); }));
    }
}

// --- sheets ---------------------------------------------------------------------------------------------

void drawing(benchmark::State &state, const std::string &kind)
{
    const Bench bench;
    const tag_t sheet = bench.makePart(state.range(0));
    const std::string name = bench.file(("sheet." + kind).c_str());
    for (auto _ : state)
        state.SetIterationTime(measured(kind, state.range(0), [&] {
            if (kind == "pdf") host::display::writePdf({sheet}, name);
            if (kind == "svg") host::display::writeSvg(sheet, name);
            if (kind == "png") host::display::writePng(sheet, name);
        }));
}
void drawingPdf(benchmark::State &state) { drawing(state, "pdf"); }
void drawingSvg(benchmark::State &state) { drawing(state, "svg"); }
void drawingPng(benchmark::State &state) { drawing(state, "png"); }

void parts(benchmark::internal::Benchmark *of)
{
    for (const int objects : {1000, 3000, 10000, 30000, 100000}) of->Arg(objects);
    of->Iterations(5)->UseManualTime()->Unit(benchmark::kMillisecond);
}
void sheets(benchmark::internal::Benchmark *of)
{
    for (const int objects : {500, 2000, 8000}) of->Arg(objects);
    of->Iterations(5)->UseManualTime()->Unit(benchmark::kMillisecond);
}

BENCHMARK(opening)->Apply(parts);
BENCHMARK(savingNew)->Apply(parts);
BENCHMARK(savingOneChange)->Apply(parts);
BENCHMARK(drawingPdf)->Apply(sheets);
BENCHMARK(drawingSvg)->Apply(sheets);
BENCHMARK(drawingPng)->Apply(sheets);

} // namespace

int main(int argc, char **argv)
{
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    printGrowth();
    return 0;
}
