// The full form: a definition part, its text, and the part that is built from the text.
#include "app/authoring/record_text.h"
#include "app/authoring/scalars.h"

#include "definitions/block_def.h"
#include "definitions/block_location_v1.h"
#include "definitions/field_def.h"
#include "definitions/format_def.h"
#include "definitions/format_size.h"
#include "definitions/locations.h"
#include "definitions/table_def.h"

#include "nxhost/control.h"
#include "nxhost/start.h"
#include "uf_part.h"
#include "ug_exception.hxx"

#include <gtest/gtest.h>

#include <bit>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <limits>
#include <random>
#include <sstream>

#include <unistd.h>

using namespace app::authoring;

namespace {

void check(int status) { UgException::throwOnFailure(status); }

std::string bytesOf(const std::filesystem::path &path)
{
    std::ifstream file(path, std::ios::binary);
    std::ostringstream bytes;
    bytes << file.rdbuf();
    return bytes.str();
}

class FullForm : public testing::Test {
protected:
    void SetUp() override
    {
        nxhost::start();
        nxhost::reset();
        char name[] = "/tmp/qelfmt-full-XXXXXX";
        folder = mkdtemp(name);
    }
    void TearDown() override
    {
        nxhost::reset();
        std::filesystem::remove_all(folder);
    }

    tag_t newPart(const std::string &name, int partUnits = 1)
    {
        tag_t part = NULL_TAG;
        check(UF_PART_new((folder / name).c_str(), partUnits, &part));
        return part;
    }

    // Saves and closes the part; its file.
    std::string close(tag_t part, const std::string &name)
    {
        check(UF_PART_save());
        check(UF_PART_close(part, 0, 1));
        return bytesOf(folder / name);
    }

    std::string textOfPart(const std::string &name)
    {
        tag_t part = NULL_TAG;
        UF_PART_load_status_t status{};
        check(UF_PART_open((folder / name).c_str(), &part, &status));
        UF_PART_free_load_status(&status);
        const RecordFile file = scanPart(part);
        EXPECT_TRUE(file.leftOut.empty());
        units = file.units;
        check(UF_PART_close(part, 0, 1));
        return recordsToText(file);
    }

    std::vector<RecordTree> read(const std::string &text)
    {
        YamlFile file{"text.yaml", {}};
        auto records = readRecords(file, YAML::Load(text)["records"]);
        std::string all;
        for (const Complaint &complaint : file.complaints) all += toText(complaint) + "\n";
        complaints = all;
        return records;
    }

    std::string build(const std::string &text, const std::string &name)
    {
        const auto records = read(text);
        EXPECT_EQ(complaints, "");
        const tag_t part = newPart(name, units);
        writeRecords(records);
        return close(part, name);
    }

    std::filesystem::path folder;
    std::string complaints;
    int units = 1;
};

// Records as any program may have written them, through the definition classes.
class RandomPart {
public:
    explicit RandomPart(unsigned seed) : m_random(seed) {}

    void write()
    {
        for (int i = below(4); i >= 0; --i) {
            switch (below(6)) {
            case 0:
                format();
                break;
            case 1:
                field();
                break; // that nobody owns
            default:
                block();
                break;
            }
        }
    }

private:
    int below(int limit) { return static_cast<int>(m_random() % static_cast<unsigned>(limit)); }

    std::string text()
    {
        static const char *const texts[] = {"",
                                            "01",
                                            "no",
                                            "1.10",
                                            "~",
                                            "null",
                                            "a: b",
                                            "- x",
                                            " blank ",
                                            "# no",
                                            "{}",
                                            "M\xfcller",
                                            "Gr\xc3\xb6\xc3\x9f"
                                            "e",
                                            "\x01\x7f\x80\xff",
                                            "\"\\'",
                                            "a\tb",
                                            "\xe2\x80\xa8",
                                            "<O>",
                                            "TITLE",
                                            "!bytes x",
                                            "\xef\xbb\xbf"};
        if (below(3)) return texts[below(std::size(texts))];
        std::string random;
        for (int n = below(12); n > 0; --n) random += static_cast<char>(1 + below(255));
        return random;
    }

    std::vector<std::string> texts()
    {
        std::vector<std::string> list(static_cast<std::size_t>(below(4)));
        for (std::string &one : list) one = text();
        return list;
    }

    double real()
    {
        switch (below(8)) {
        case 0:
            return std::numeric_limits<double>::quiet_NaN();
        case 1:
            return std::bit_cast<double>(0xfff8000000000000u | (m_random() & 0xffff));
        case 2:
            return below(2) ? HUGE_VAL : -HUGE_VAL;
        case 3:
            return -0.0;
        case 4:
            return std::bit_cast<double>(static_cast<std::uint64_t>(m_random()) << 20 | 1);
        case 5:
            return 0.1 * below(1000);
        case 6:
            return std::bit_cast<double>(std::uint64_t{m_random()} << 32 | m_random());
        default:
            return below(500);
        }
    }

    int code()
    {
        switch (below(4)) {
        case 0:
            return std::numeric_limits<int>::min();
        case 1:
            return std::numeric_limits<int>::max();
        case 2:
            return static_cast<int>(m_random());
        default:
            return below(10);
        }
    }

    TrFieldDefV1 field()
    {
        TrFieldDefV1 field;
        field.SetId(text());
        if (below(2)) field.SetTextFontName(text());
        if (below(2)) field.SetDefaultString(texts());
        if (below(2)) field.SetTextSize(real());
        if (below(2)) field.SetCharSpaceFactor(real());
        if (below(2)) field.SetTextSite(code());
        if (below(2)) field.SetSyncAllDrawings(code());
        return field;
    }

    TrTableDefV1 table()
    {
        TrTableDefV1 table;
        table.SetId(text());
        if (below(2)) table.SetSymbolSize(real());
        if (below(2)) table.SetDirection(code());
        for (int n = below(4); n > 0; --n) table.AddFieldDefinition(field());
        return table;
    }

    boost::shared_ptr<QelFmt::BlockLocationBase> location()
    {
        const auto location = QelFmt::BlockLocationBase::createBlockLocation();
        location->SetFormatId(text());
        for (int n = below(3); n > 0; --n) {
            const auto size = QelFmt::SizeLocationBase::createSizeLocation();
            size->SetSizeId(text());
            for (int k = below(3); k > 0; --k) {
                const auto place = QelFmt::LocationBase::createLocation();
                place->SetName(text());
                place->SetX(real());
                place->SetY(real());
                if (below(2)) place->SetOffsetType(code());
                size->addLocation(place);
            }
            location->addSizeLocation(size);
        }
        return location;
    }

    boost::shared_ptr<QelFmt::BlockLocationBase> oldLocation()
    {
        boost::shared_ptr<QelFmt::TrBlockLocationV1> old(new QelFmt::TrBlockLocationV1);
        old->SetFormatId(text());
        old->SetSizeNames(texts());
        for (unsigned n = static_cast<unsigned>(below(4)), i = 0; i < n; ++i) {
            old->SetSizeXLoc(i, real());
            if (below(4)) old->SetSizeYLoc(i, real());
        }
        if (below(2)) old->SetOffsetType(code());
        return old;
    }

    void block()
    {
        TrBlockDefV1 block;
        if (below(2)) block.SetCategory(text());
        block.SetId(text());
        block.SetPatternName(text());
        if (below(2)) block.SetExcludeBlockIds(texts());
        if (below(2)) block.SetMovable(code());
        for (int n = below(6); n > 0; --n) {
            switch (below(4)) { // in any order among each other
            case 0:
                block.addBlockLocation(location());
                break;
            case 1:
                block.addBlockLocation(oldLocation());
                break;
            case 2:
                block.AddTableDefinition(table());
                break;
            default:
                block.AddFieldDefinition(field());
                break;
            }
        }
    }

    void format()
    {
        TrFormatDefV1 format;
        format.SetId(text());
        if (below(2)) format.SetRequiredBlockIds(texts());
        if (below(2)) format.SetUnits(code());
        for (int n = below(3); n > 0; --n) {
            TrFormatSizeV1 size;
            size.SetId(text());
            if (below(2)) size.SetVertZoneLength(real());
            if (below(2)) size.SetVertZoneType(code());
            format.AddSize(size);
        }
    }

    std::mt19937 m_random;
};

double soakShare()
{
    const char *share = std::getenv("QELFMT_SOAK_SHARE");
    return share ? std::atof(share) : 0.05;
}

class FullFormOfRandomParts : public FullForm {
protected:
    void roundTrips(unsigned first, unsigned count)
    {
        for (unsigned seed = first; seed < first + count; ++seed) {
            SCOPED_TRACE("seed " + std::to_string(seed));
            const std::string name = "a" + std::to_string(seed) + ".prt";
            const tag_t part = newPart(name, 1 + static_cast<int>(seed % 2));
            RandomPart(seed).write();
            close(part, name);
            const std::string text = textOfPart(name);
            // The same records, in the same order, to the last bit.
            const std::string built = build(text, "b" + name);
            ASSERT_EQ(textOfPart("b" + name), text);
            ASSERT_EQ(build(text, "c" + name), built);
            nxhost::reset();
        }
    }
};

TEST_F(FullFormOfRandomParts, GivesTheSameRecordsBack) { roundTrips(1, 60); }

TEST_F(FullFormOfRandomParts, GivesTheSameRecordsBackSoak)
{
    roundTrips(1000, static_cast<unsigned>(10000 * soakShare()));
}

TEST_F(FullForm, APartMadeRecordByRecordComesBackByteForByte)
{
    const tag_t part = newPart("a.prt");
    TrBlockDefV1 block;
    block.SetId("TITLE");
    TrFieldDefV1 field;
    field.SetId("number");
    field.SetTextSize(2.5);
    block.AddFieldDefinition(field);
    TrFormatDefV1 format;
    format.SetId("F");
    const std::string bytes = close(part, "a.prt");
    EXPECT_EQ(build(textOfPart("a.prt"), "b.prt"), bytes);
}

TEST_F(FullForm, ElementsBeyondThoseAClassKnowsAreKept)
{
    const auto records = read("records:\n"
                              "- kind: size_location\n"
                              "  size_id: A3\n"
                              "  more_ints: [7, -1]\n"
                              "  more_doubles: [.nan]\n"
                              "  more_strings: [x, \"\"]\n"
                              "  more_attributes: {OWNER: me}\n");
    ASSERT_EQ(complaints, "");
    EXPECT_EQ(records[0].ints, (std::vector<int>{7, -1}));
    EXPECT_EQ(records[0].strings, (std::vector<std::string>{"A3", "x", ""}));
    const RecordFile file{1, records, {}};
    EXPECT_EQ(recordsToText({1, read(recordsToText(file)), {}}), recordsToText(file));
}

TEST_F(FullForm, EveryMistakeIsSaidWithItsPlace)
{
    read("records:\n"
         "- kind: filed\n"
         "- kind: block\n"
         "  pattern_layer: high\n"
         "  colour: 1\n"
         "  pattern_layer: 3\n"
         "- {id: X}\n");
    EXPECT_EQ(
        complaints,
        "text.yaml:2:9: records: kind: \"filed\" is none of format, size, block, field, table, "
        "block_location, size_location, location, block_location_v1\n"
        "text.yaml:4:18: block: pattern_layer: must be a whole number\n"
        "text.yaml:5:3: block: unknown key \"colour\"\n"
        "text.yaml:6:3: block: pattern_layer stands here twice\n"
        "text.yaml:7:3: records: a record lacks kind: one of format, size, block, field, table, "
        "block_location, size_location, location, block_location_v1\n");
}

TEST(Scalars, DoublesKeepTheirBits)
{
    for (const std::uint64_t bits :
         {0x0ull, 0x8000000000000000ull, 0x1ull, 0x7fefffffffffffffull, 0x7ff0000000000000ull,
          0xfff0000000000000ull, 0x7ff8000000000000ull, 0xfff8000000000123ull,
          0x3fb999999999999aull}) {
        const auto back = realOf(YAML::Load(realText(std::bit_cast<double>(bits))));
        ASSERT_TRUE(back) << bits;
        EXPECT_EQ(std::bit_cast<std::uint64_t>(*back), bits);
    }
    EXPECT_EQ(realText(0.1), "0.1");
    EXPECT_EQ(realText(20), "20");
}

TEST(Scalars, WhatIsNoUtf8IsSpelledByteByByte)
{
    EXPECT_EQ(quoted("M\xfcller"), "!bytes \"M\\xFCller\"");
    EXPECT_EQ(quoted("M\xc3\xbcller"), "\"M\xc3\xbcller\"");
    EXPECT_EQ(quoted("DB_TITLE"), "DB_TITLE");
    EXPECT_EQ(quoted("null"), "\"null\"");
}

} // namespace
