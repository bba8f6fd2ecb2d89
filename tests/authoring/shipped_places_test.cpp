// Where the blocks of the shipped formats stand: beside each other on every size, inside its frame.
#include "app/authoring/library_reader.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

using namespace app::authoring;

namespace {

struct Area {
    double left, low, right, top;
};

std::string named(const SlotValues &slots, const char *name)
{
    const auto found = slots.strings.find(name);
    return found == slots.strings.end() ? std::string() : found->second;
}

// A block with its table and three rows of it, from the block's corner.
Area areaOf(const Block &block)
{
    constexpr int kRows = 3;
    Area area{0, 0, block.width, block.height};
    for (const Table &table : block.tables) {
        double width = 0, row = 0;
        for (const Field &column : table.fields) {
            width += column.slots.doubles.at("Width");
            row = column.slots.doubles.at("Height");
        }
        const double x = table.slots.doubles.at("LocationX");
        const double base = table.slots.doubles.at("LocationY");
        const double end = base + (table.slots.ints.at("Direction") == 0 ? -1 : 1) * kRows * row;
        area.right = std::max(area.right, x + width);
        area.low = std::min(area.low, std::min(base, end));
        area.top = std::max(area.top, std::max(base, end));
    }
    return area;
}

// The places of a block on a size of a format, the usual one first; none when it is not for it.
std::vector<Area> areasOn(const Block &block, const Format &format, const Size &size)
{
    for (const BlockLocation &location : block.locations) {
        if (location.formatId != format.id && location.formatId != named(format.slots, "SuiteName"))
            continue;
        for (const SizeLocation &one : location.sizes) {
            if (one.sizeId != named(size.slots, "Id") && one.sizeId != "Default") continue;
            std::vector<Area> areas;
            for (const Location &place : one.locations) {
                const bool fromRight = place.offsetType == 2 || place.offsetType == 3;
                const bool fromTop = place.offsetType == 1 || place.offsetType == 3;
                const double x = fromRight ? size.width - place.at.x : place.at.x;
                const double y = fromTop ? size.height - place.at.y : place.at.y;
                const Area area = areaOf(block);
                areas.push_back({x + area.left, y + area.low, x + area.right, y + area.top});
            }
            return areas;
        }
    }
    return {};
}

bool overlap(const Area &a, const Area &b)
{
    constexpr double kSame = 1e-6;
    return a.left + kSame < b.right && b.left + kSame < a.right && a.low + kSame < b.top &&
           b.low + kSame < a.top;
}

class ShippedPlaces : public testing::TestWithParam<const char *> {
protected:
    const Library library =
        readLibrary(std::string(QELFMT_SOURCE_DIR "/formats/") + GetParam() + ".yaml");
};

TEST_P(ShippedPlaces, OfBlocksOnOneSheetDoNotOverlapWithThreeRowsInTheirTables)
{
    int pairs = 0;
    for (const Format &format : library.formats) {
        for (const Size &size : format.sizes) {
            for (const Block &a : library.blocks) {
                for (const Block &b : library.blocks) {
                    const auto one = areasOn(a, format, size), other = areasOn(b, format, size);
                    if (&a == &b || one.empty() || other.empty()) continue;
                    ++pairs;
                    // Also where it can be placed otherwise.
                    for (const Area &place : one)
                        EXPECT_FALSE(overlap(place, other.front()))
                            << a.id << " covers " << b.id << " on " << format.id << "/"
                            << named(size.slots, "Id");
                }
            }
        }
    }
    EXPECT_GT(pairs, 0);
}

TEST_P(ShippedPlaces, HaveTheSameNamesOnEverySize)
{
    for (const Block &block : library.blocks) {
        for (const BlockLocation &location : block.locations) {
            for (const SizeLocation &size : location.sizes) {
                std::vector<std::string> names, first;
                for (const Location &place : size.locations) names.push_back(place.name);
                for (const Location &place : location.sizes[0].locations)
                    first.push_back(place.name);
                EXPECT_EQ(names, first) << block.id << " " << size.sizeId;
            }
        }
    }
}

// The centring mark would cross the revisions.
TEST(IsoFrames, EndTheirCentringMarkAtTheFrameWhereABlockCanStand)
{
    const Library iso = readLibrary(QELFMT_SOURCE_DIR "/formats/iso.yaml");
    for (const Format &format : iso.formats) {
        for (const Size &size : format.sizes) {
            const std::string id = named(size.slots, "Id");
            const double middle = size.width / 2, border = size.height - 10 + 5;
            std::optional<double> end; // of the mark at the top
            for (const Shape &shape : size.frame)
                if (const auto *line = std::get_if<ArtLine>(&shape))
                    if (line->from == ArtPoint{middle, border} && line->to.x == middle)
                        end = line->to.y;
            ASSERT_TRUE(end) << id;
            // REVISIONS is 180 wide, 10 from the right edge: it covers the middle of widths below 380.
            EXPECT_EQ(*end, size.width < 380 ? border - 5 : border - 10) << id;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(All, ShippedPlaces, testing::Values("iso", "asme"));

} // namespace
