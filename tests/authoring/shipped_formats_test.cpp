// The shipped definitions: figures of their sheets, and zones as they are printed.
#include "app/authoring/check.h"
#include "app/authoring/library_reader.h"
#include "app/authoring/library_writer.h"
#include "app/authoring/record_builder.h"
#include "app/authoring/record_text.h"
#include "app/authoring/schema.h"

#include "api/trv_fmt.h"
#include "drawing/drawing.h"
#include "lumug/nx_search_file_list.h"
#include "tests/support/story.h"

#include <nlohmann/json.hpp>

#include <cmath>
#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <sstream>

using namespace app::authoring;

namespace {

Library shipped(const std::string &name)
{
    return readLibrary(std::string(QELFMT_SOURCE_DIR "/formats/") + name + ".yaml");
}

const Size &sizeOf(const Library &library, const std::string &format, const std::string &id)
{
    for (const Format &one : library.formats)
        for (const Size &size : one.sizes)
            if (one.id == format && size.slots.strings.at("Id") == id) return size;
    throw std::runtime_error("no size " + id);
}

// The label that stands at the point, in the art of a frame.
std::string labelAt(const Size &size, double x, double y)
{
    for (const Shape &shape : size.frame) {
        const auto *text = std::get_if<ArtText>(&shape);
        if (text && std::abs(text->at.x - x) < 1e-9 && std::abs(text->at.y - y) < 1e-9)
            return text->text;
    }
    return "nothing";
}

class ShippedFormats : public testing::TestWithParam<const char *> {};

TEST_P(ShippedFormats, AreCleanAndComeBackFromTheirFullForm)
{
    const Library library = shipped(GetParam());
    const std::vector<RecordTree> records = recordsOf(library);
    std::string findings;
    for (const Complaint &finding : checkDefinitions({{GetParam(), records, &library, {}, {}}}))
        findings += finding.where + ": " + finding.text + "\n";
    EXPECT_EQ(findings, "");

    const std::string text = recordsToText({library.units, records, {}});
    YamlFile file{"text", {}};
    const auto back = readRecords(file, YAML::Load(text)["records"]);
    EXPECT_TRUE(file.complaints.empty());
    EXPECT_EQ(recordsToText({library.units, back, {}}), text);
}

INSTANTIATE_TEST_SUITE_P(All, ShippedFormats, testing::Values("iso", "asme"));

TEST(ShippedSheets, HaveTheSizesOfTheirStandards)
{
    const Library iso = shipped("iso"), asme = shipped("asme");
    const auto is = [](const Library &library, const char *format, const char *id, double width,
                       double height) {
        const Size &size = sizeOf(library, format, id);
        EXPECT_EQ(size.slots.doubles.at("Length"), width) << id;
        EXPECT_EQ(size.slots.doubles.at("Height"), height) << id;
    };
    is(iso, "ISO", "A0", 1189, 841);
    is(iso, "ISO", "A1", 841, 594);
    is(iso, "ISO", "A2", 594, 420);
    is(iso, "ISO", "A3", 420, 297);
    is(iso, "ISO", "A4", 297, 210);
    is(iso, "ISO-COMPACT", "A4P", 210, 297);
    is(asme, "ASME", "A", 11, 8.5);
    is(asme, "ASME", "AV", 8.5, 11);
    is(asme, "ASME", "B", 17, 11);
    is(asme, "ASME", "C", 22, 17);
    is(asme, "ASME-LARGE", "D", 34, 22);
    is(asme, "ASME-LARGE", "E", 44, 34);
    is(asme, "ASME-LARGE", "F", 40, 28);
}

TEST(ShippedSheets, IsoTitleBlocksAre180Wide)
{
    std::map<std::string, double> widths;
    for (const Block &block : shipped("iso").blocks) widths[block.id] = block.width;
    EXPECT_EQ(widths["TITLE"], 180);
    EXPECT_EQ(widths["TITLE_COMPACT"], 180);
    EXPECT_EQ(widths["PARTS_LIST"], 180);
}

std::string sourceFile(const std::string &name)
{
    std::ifstream file(QELFMT_SOURCE_DIR "/" + name, std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

// After a change of a slot table: qelfmt defs schema > formats/qelfmt.schema.json, and the tables into
// docs/definitions.md.
TEST(WrittenSchema, IsThatOfTheSlotTables)
{
    EXPECT_TRUE(sourceFile("formats/qelfmt.schema.json") == definitionSchema());
    EXPECT_NE(sourceFile("docs/definitions.md").find(slotTables()), std::string::npos);
}

// All keys that a mapping of the schema may have, wherever it stands.
void collectKeys(const nlohmann::json &schema, std::set<std::string> &keys)
{
    if (!schema.is_structured()) return;
    if (schema.is_object() && schema.contains("properties"))
        for (const auto &[key, value] : schema["properties"].items()) keys.insert(key);
    for (const auto &one : schema) collectKeys(one, keys);
}

TEST(DefinitionsDocument, NamesEveryKey)
{
    std::set<std::string> keys;
    collectKeys(nlohmann::json::parse(definitionSchema()), keys);
    EXPECT_GT(keys.size(), 100u);
    const std::string document = sourceFile("docs/definitions.md");
    for (const std::string &key : keys) {
        // `key`, or key: in an example.
        const std::regex named("(^|[^a-z0-9_-])" + key + "(`|: |:`|:\\n)");
        EXPECT_TRUE(std::regex_search(document, named)) << key;
    }
}

TEST(ExampleSite, IsClean)
{
    const Library library = shipped("example-site/own");
    EXPECT_TRUE(checkDefinitions({{"own.yaml", recordsOf(library), &library, {}, {}}}).empty());
}

struct Zoned {
    const char *format;
    const char *id;
    int columns;
    int rows;
    double sideMargin;
    double endMargin;
};

class AsmeZones : public testing::TestWithParam<Zoned> {};

TEST_P(AsmeZones, AnswerWhatTheFramePrints)
{
    const Zoned &sheet = GetParam();
    Story story;
    const Library library = shipped("asme");
    writeLibrary(library, "asme", story.file("asme-site"));
    LumUg::NxSearchFileList::setSearchDirectories({story.file("asme-site")});
    const ScopedVariable patterns("UGII_PATDIR", story.file("asme-site/patterns"));
    ASSERT_EQ(TRV_FMT_initialize(), 0) << TRV_FMT_ask_last_error();
    story.newPart("drawing", 2);
    const tag_t tag = story.addSheet("S", 44, 34);
    ASSERT_EQ(TRV_FMT_add_format(tag, sheet.format, sheet.id), 0) << TRV_FMT_ask_last_error();

    const Size &size = sizeOf(library, sheet.format, sheet.id);
    const double wide = size.width / sheet.columns, high = size.height / sheet.rows;
    const auto drawing = TrDrawing::getDrawing(tag);
    for (int column = 0; column < sheet.columns; ++column) {
        for (int row = 0; row < sheet.rows; ++row) {
            const double x = (column + 0.5) * wide, y = (row + 0.5) * high;
            const std::string printed =
                labelAt(size, sheet.sideMargin / 2, y) + labelAt(size, x, sheet.endMargin / 2);
            EXPECT_EQ(drawing->zone(Point3(x, y, 0)), printed) << sheet.id << " " << x << " " << y;
        }
    }
    TRV_FMT_terminate();
}

INSTANTIATE_TEST_SUITE_P(Sheets, AsmeZones,
                         testing::Values(Zoned{"ASME", "C", 4, 4, 0.5, 0.75},
                                         Zoned{"ASME-LARGE", "D", 8, 4, 1, 0.5},
                                         Zoned{"ASME-LARGE", "E", 8, 8, 0.5, 1},
                                         Zoned{"ASME-LARGE", "F", 8, 6, 0.5, 0.5}));

} // namespace
