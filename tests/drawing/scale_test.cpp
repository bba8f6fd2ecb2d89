// What formats cost: in proportion to what stands on the sheet, and to nothing else.
#include "definitions/field_def.h"
#include "tests/drawing/stage.h"

#include <algorithm>
#include <cstdio>
#include <ctime>

namespace {

class Scale : public Stage {
protected:
    // A format that requires that many different blocks of two fields each.
    void requireBlocks(int count)
    {
        catalog = isoCatalog();
        catalog.blocks.clear();
        FormatDesc &iso = catalog.format("ISO");
        iso.required.clear();
        for (int i = 0; i < count; ++i) {
            BlockDesc block{"B" + std::to_string(i)};
            block.places = {{"ISO", {{"Default", {{"there", 10.0 + i, 10, 2}}}}}};
            block.fields = {{"ONE", 1, 1, {"one"}}, {"TWO", 1, 9, {"two"}}};
            catalog.blocks.push_back(block);
            iso.required.push_back(block.id);
        }
        reload();
    }
    struct Costs {
        std::size_t add, resize, update;
    };
    Costs callsFor(int blocks)
    {
        requireBlocks(blocks);
        Costs costs{};
        costs.add = calls([&] { addFormat("A3"); });
        costs.resize = calls([&] { resize("A2"); });
        for (BlockDesc &block : catalog.blocks) block.fields[0].x = 2;
        reload();
        costs.update = calls([&] { drawing()->updateFormat(); });
        drawing()->removeFormat();
        return costs;
    }
    template <class Body> std::size_t calls(Body &&body)
    {
        const std::size_t before = nxhost::totalCalls();
        body();
        return nxhost::totalCalls() - before;
    }
    // Of the processor: what else the machine does counts for nothing.
    template <class Body> double seconds(Body &&body)
    {
        const std::clock_t start = std::clock();
        body();
        return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
    }
};

} // namespace

// Four times the blocks, at most four times the calls: what a format costs besides its blocks only
// makes the larger one cheaper.
TEST_F(Scale, AddingResizingAndUpdatingTakeCallsInProportionToTheBlocks)
{
    const Costs few = callsFor(10), many = callsFor(40);
    EXPECT_LE(many.add, 4 * few.add);
    EXPECT_LE(many.resize, 4 * few.resize);
    EXPECT_LE(many.update, 4 * few.update);
}

TEST_F(Scale, OtherSheetsCostAFormatNothing)
{
    const auto addAndRemove = [&] {
        addFormat("A3");
        drawing()->removeFormat();
    };
    addAndRemove(); // fonts and layers are set up by the first
    const std::size_t alone = calls(addAndRemove);
    for (int i = 0; i < 20; ++i) {
        const tag_t other = story.addSheet("OTHER" + std::to_string(i), 420, 297);
        TrDrawing::getDrawing(other)->addFormat(formatDef(), size("A3"));
    }
    story.open(sheet);
    EXPECT_EQ(calls(addAndRemove), alone);
}

TEST_F(Scale, AThousandBlocksTakeAHundredTimesTheTimeOfTenSoak)
{
    struct Times {
        double add, resize, update;
    };
    const auto timesFor = [&](int blocks) {
        requireBlocks(blocks);
        Times times{};
        times.add = seconds([&] { addFormat("A3"); });
        times.resize = seconds([&] { resize("A2"); });
        for (BlockDesc &block : catalog.blocks) block.fields[0].x = 2;
        reload();
        times.update = seconds([&] { drawing()->updateFormat(); });
        drawing()->removeFormat();
        return times;
    };
    timesFor(10); // what only the first one pays
    const auto best = [](const Times &a, const Times &b) {
        return Times{std::min(a.add, b.add), std::min(a.resize, b.resize),
                     std::min(a.update, b.update)};
    };
    Times few{1e9, 1e9, 1e9}, many = few;
    for (int round = 0; round < 3; ++round) { // in turns: a busy while hits both
        constexpr int kRepeats = 20;          // a single one is too short to measure
        Times mean{};
        for (int i = 0; i < kRepeats; ++i) {
            const Times once = timesFor(10);
            mean.add += once.add / kRepeats;
            mean.resize += once.resize / kRepeats;
            mean.update += once.update / kRepeats;
        }
        few = best(few, mean);
        many = best(many, timesFor(1000));
    }
    std::printf("10 -> 1000 blocks: add %.0fx, resize %.0fx, update %.0fx\n", many.add / few.add,
                many.resize / few.resize, many.update / few.update);
    EXPECT_LT(many.add / few.add, 200);
    EXPECT_LT(many.resize / few.resize, 350); // each look at the format reads all its links
    EXPECT_LT(many.update / few.update, 200);
}
