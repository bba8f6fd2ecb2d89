// The full form: a definition part, its text, and the part that is built from the text.
#include "app/authoring/record_text.h"
#include "app/authoring/scalars.h"

#include "tests/authoring/definition_parts.h"
#include "tests/authoring/random_part.h"

using namespace app::authoring;

namespace {

using FullForm = DefinitionParts;

class FullFormOfRandomParts : public DefinitionParts {
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
        "text.yaml:5:3: block: colour: unknown key: it is none of category, children, description, "
        "id, "
        "kind, layer, movable, units\n"
        "text.yaml:6:3: block: pattern_layer: stands here twice: remove one of them\n"
        "text.yaml:7:3: records: kind: is missing: one of format, size, block, field, table, "
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
