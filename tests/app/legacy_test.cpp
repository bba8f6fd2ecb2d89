// Drawings that an older program wrote, met by the command.
#include "shell.h"

#include "nxhost/control.h"
#include "uf.h"
#include "uf_draw.h"
#include "uf_drf.h"
#include "uf_obj.h"
#include "uf_part.h"
#include "uf_udobj.h"

#include <map>
#include <stdexcept>

namespace {

void check(int status)
{
    if (status == 0) return;
    char text[133] = "";
    UF_get_fail_message(status, text);
    throw std::runtime_error(text);
}

// Registered once a process, by the names that old parts hold.
UF_UDOBJ_class_t classOf(const std::string &name)
{
    static std::map<std::string, UF_UDOBJ_class_t> known;
    if (!known.contains(name)) {
        UF_UDOBJ_class_t id = 0;
        std::string copy = name;
        check(UF_UDOBJ_create_class(copy.data(), copy.data(), &id));
        known[name] = id;
    }
    return known[name];
}

tag_t makeRecord(const char *className, std::vector<std::string> strings,
                 const std::vector<tag_t> &children)
{
    tag_t record = NULL_TAG;
    check(UF_UDOBJ_create_udo(classOf(className), &record));
    std::vector<char *> texts;
    for (std::string &text : strings) texts.push_back(text.data());
    check(UF_UDOBJ_add_strings(record, static_cast<unsigned>(texts.size()), texts.data()));
    for (const tag_t child : children) {
        UF_UDOBJ_link_t link{2, child, 0};
        check(UF_UDOBJ_add_links(record, 1, &link));
    }
    return record;
}

void place(tag_t record, double x, double y)
{
    double at[2] = {x, y};
    check(UF_UDOBJ_add_doubles(record, 2, at));
}

tag_t makeField(const std::string &name, std::string text, double x, double y)
{
    const tag_t field = makeRecord("KORVAN_FORMAT_FIELD_V1", {name}, {});
    int flagsAndLines[6] = {0, 0, 0, 0, 0, 1};
    check(UF_UDOBJ_add_integers(field, 6, flagsAndLines));
    place(field, x, y);
    char *line = text.data();
    double origin[3] = {x, y, 0.0};
    tag_t note = NULL_TAG;
    check(UF_DRF_create_note(1, &line, origin, 0, &note));
    check(UF_UDOBJ_add_owning_links(field, 1, &note));
    return field;
}

class LegacyDrawing : public Shell {
protected:
    void SetUp() override
    {
        Shell::SetUp();
        buildIso();
        writeOldDrawing((folder / "old.qdraw").string());
    }

    // Format ISO/A3 with a title block, away from where it belongs, and two of its fields.
    static void writeOldDrawing(const std::string &path)
    {
        check(UF_initialize());
        nxhost::reset();
        tag_t part = NULL_TAG, sheet = NULL_TAG;
        check(UF_PART_new(path.c_str(), UF_PART_METRIC, &part));
        UF_DRAW_info_t info{};
        info.size_state = UF_DRAW_METRIC_SIZE;
        info.size.metric_size_code = UF_DRAW_A3;
        info.units = UF_PART_METRIC;
        info.drawing_scale = 1.0;
        info.projection_angle = UF_DRAW_FIRST_ANGLE_PROJECTION;
        check(UF_DRAW_create_drawing("S1", &info, &sheet));
        check(UF_DRAW_open_drawing(sheet));
        const tag_t title = makeRecord(
            "KORVAN_FORMAT_BLOCK_V1", {"TITLE"},
            {makeField("title", "Old casing", 105, 55), makeField("number", "0815", 105, 65)});
        place(title, 100, 50);
        const tag_t format = makeRecord("TRV_FORMAT_FORMAT_V1", {"ISO", "A3"}, {title});
        UF_UDOBJ_link_t link{1, sheet, 0};
        check(UF_UDOBJ_add_links(format, 1, &link));
        check(UF_PART_save());
        check(UF_PART_close(part, 0, 1));
        nxhost::reset();
    }

    Outcome on(const std::string &line) const { return qelfmt("--defs site " + line); }
};

TEST_F(LegacyDrawing, IsCheckedListedAndDrawnWithoutBeingChanged)
{
    const std::string before = read("old.qdraw");
    const Outcome checked = on("format check old.qdraw");
    EXPECT_EQ(checked.status, 1) << checked.err;
    EXPECT_NE(checked.out.find("old.qdraw, sheet S1: legacy (ISO/A3)"), std::string::npos)
        << checked.out;
    EXPECT_EQ(on("field get old.qdraw title").out, "Old casing\n");
    EXPECT_EQ(json("--defs site field list old.qdraw")["TITLE"]["number"], "0815");
    EXPECT_EQ(on("info old.qdraw").status, 0);
    EXPECT_EQ(on("render old.qdraw -o old.pdf").status, 0);
    EXPECT_NE(shell("pdftotext old.pdf -").out.find("Old casing"), std::string::npos);
    EXPECT_EQ(read("old.qdraw"), before);
}

// The title block of an A3 sheet stands at (420 - 10 - 180, 10).
TEST_F(LegacyDrawing, IsConvertedByAnUpdateWithEveryValue)
{
    const Outcome update = on("format update old.qdraw");
    ASSERT_EQ(update.status, 0) << update.err;
    EXPECT_NE(update.out.find("old.qdraw, sheet S1: was legacy"), std::string::npos) << update.out;
    const Outcome checked = on("format check old.qdraw");
    EXPECT_EQ(checked.status, 0) << checked.out;
    EXPECT_NE(checked.out.find("current (ISO/A3)"), std::string::npos) << checked.out;
    const auto block = json("--defs site block show old.qdraw TITLE");
    EXPECT_EQ(block["x"], 230.0);
    EXPECT_EQ(block["y"], 10.0);
    EXPECT_EQ(block["fields"]["title"], "Old casing");
    EXPECT_EQ(block["fields"]["number"], "0815");
    EXPECT_EQ(block["fields"].size(), 15u); // with those that the old program did not know
}

TEST_F(LegacyDrawing, ADryRunConvertsNothing)
{
    const std::string before = read("old.qdraw");
    const Outcome dry = on("format update --dry-run old.qdraw");
    EXPECT_EQ(dry.status, 0) << dry.err;
    EXPECT_EQ(read("old.qdraw"), before);
    EXPECT_EQ(on("format update old.qdraw").out, dry.out);
}

TEST_F(LegacyDrawing, IsConvertedByTheFirstChange)
{
    ASSERT_EQ(on("field set old.qdraw number 0816").status, 0);
    EXPECT_EQ(on("field get old.qdraw title").out, "Old casing\n");
    EXPECT_EQ(on("field get old.qdraw number").out, "0816\n");
    EXPECT_EQ(on("format check old.qdraw").status, 0) << on("format check old.qdraw").out;
}

// The definitions of today have no field "number" any more.
TEST_F(LegacyDrawing, ConvertingItLosesNothingUnseen)
{
    ASSERT_EQ(qelfmt("defs dump site/format_defs/iso.prt -o iso.yaml").status, 0);
    std::string text = read("iso.yaml");
    const std::string id = "id: number\n";
    for (std::size_t at = 0; (at = text.find(id, at)) != std::string::npos;)
        text.replace(at, id.size(), "id: serial\n");
    write("iso.yaml", text);
    ASSERT_EQ(qelfmt("defs build iso.yaml -o site --quiet").status, 0);

    const std::string before = read("old.qdraw");
    const Outcome update = on("format update old.qdraw");
    EXPECT_EQ(update.status, 1);
    EXPECT_NE(update.err.find("sheet S1, TITLE.number = 0815"), std::string::npos) << update.err;
    const Outcome set = on("field set old.qdraw title New");
    EXPECT_EQ(set.status, 3);
    EXPECT_NE(set.err.find("TITLE.number = 0815 would be lost"), std::string::npos) << set.err;
    EXPECT_EQ(read("old.qdraw"), before);
    EXPECT_EQ(on("format update --force old.qdraw").status, 0);
    EXPECT_EQ(on("field get old.qdraw title").out, "Old casing\n");
}

TEST_F(LegacyDrawing, IsReplacedWithItsValues)
{
    ASSERT_EQ(on("format replace old.qdraw ISO/A2").status, 0);
    EXPECT_EQ(on("field get old.qdraw title").out, "Old casing\n");
    EXPECT_EQ(on("format check old.qdraw").status, 0) << on("format check old.qdraw").out;
}

// Two sheets of an older generation with a block B, of which the definition no longer has one field; what it
// has now is shared with all sheets, so that a change on one sheet looks at the other.
class LegacyDrawingOfTwoSheets : public LegacyDrawing {
protected:
    void SetUp() override
    {
        Shell::SetUp();
        build("      shared: {cell: [0, 10, 50, 10], share: sheet SH, all-sheets: yes}\n"
              "      number: {cell: [0, 0, 50, 10]}\n");
        writeTwoSheets((folder / "old.qdraw").string());
    }
    void build(const std::string &cells) const
    {
        write("d.yaml", "units: mm\n"
                        "formats:\n"
                        "  F: {required: [B], sheets: iso, sizes: [A3]}\n"
                        "blocks:\n"
                        "  B:\n"
                        "    size: [100, 20]\n"
                        "    place: {at: [30, 20]}\n"
                        "    cells:\n" +
                            cells);
        const Outcome built = qelfmt("defs build d.yaml -o site --quiet");
        ASSERT_EQ(built.status, 0) << built.err;
    }
    static void writeTwoSheets(const std::string &path)
    {
        check(UF_initialize());
        nxhost::reset();
        tag_t part = NULL_TAG;
        check(UF_PART_new(path.c_str(), UF_PART_METRIC, &part));
        addSheet("S1", {makeField("number", "N of S1", 105, 65)});
        addSheet("S2",
                 {makeField("old", "Old of S2", 105, 55), makeField("number", "N of S2", 105, 65)});
        check(UF_PART_save());
        check(UF_PART_close(part, 0, 1));
        nxhost::reset();
    }
    static void addSheet(const char *name, const std::vector<tag_t> &fields)
    {
        UF_DRAW_info_t info{};
        info.size_state = UF_DRAW_METRIC_SIZE;
        info.size.metric_size_code = UF_DRAW_A3;
        info.units = UF_PART_METRIC;
        info.drawing_scale = 1.0;
        info.projection_angle = UF_DRAW_FIRST_ANGLE_PROJECTION;
        tag_t sheet = NULL_TAG;
        check(UF_DRAW_create_drawing(name, &info, &sheet));
        check(UF_DRAW_open_drawing(sheet));
        const tag_t block = makeRecord("KORVAN_FORMAT_BLOCK_V1", {"B"}, fields);
        place(block, 100, 50);
        const tag_t format = makeRecord("TRV_FORMAT_FORMAT_V1", {"F", "A3"}, {block});
        UF_UDOBJ_link_t link{1, sheet, 0};
        check(UF_UDOBJ_add_links(format, 1, &link));
    }
};

TEST_F(LegacyDrawingOfTwoSheets, AChangeOnOneSheetLosesNothingOnTheOther)
{
    const std::string before = read("old.qdraw");
    for (const char *line :
         {"field set old.qdraw -s S1 B.shared hello", "field set old.qdraw -s S1 B.number 1",
          "format update old.qdraw -s S1", "block move old.qdraw -s S1 B 10 10",
          "sheet add old.qdraw S3 --format F/A3", "stamp F/A3 --add --sheet S3 -o old.qdraw"}) {
        const Outcome refused = on(line);
        const bool update = std::string(line).starts_with("format update");
        EXPECT_EQ(refused.status, update ? 1 : 3) << line << refused.err;
        EXPECT_NE(refused.err.find("sheet S2, B.old = Old of S2"), std::string::npos)
            << line << ": " << refused.err;
        EXPECT_EQ(read("old.qdraw"), before) << line;
    }
    write("data.json", R"({"B.shared": "hello"})");
    EXPECT_EQ(on("fill old.qdraw -s S1 --data data.json").status, 3);
    write("report.csv", "file,sheet,B.number\r\nold.qdraw,S1,1\r\n");
    EXPECT_NE(on("fill --data report.csv").status, 0);
    EXPECT_EQ(read("old.qdraw"), before);

    EXPECT_EQ(on("format update --force old.qdraw").status, 0);
    EXPECT_EQ(on("field set old.qdraw -s S1 B.shared hello").status, 0);
    EXPECT_EQ(on("field get old.qdraw B.number -s S2").out, "N of S2\n");
}

// By position the first old field, "number", would be the new first one, "shared".
TEST_F(LegacyDrawingOfTwoSheets, AChangeOnOneSheetConvertsTheOtherByName)
{
    build("      shared: {cell: [0, 10, 50, 10], share: sheet SH, all-sheets: yes}\n"
          "      number: {cell: [0, 0, 50, 10]}\n"
          "      old: {cell: [50, 0, 50, 10]}\n");
    const Outcome set = on("field set old.qdraw -s S1 B.shared hello");
    ASSERT_EQ(set.status, 0) << set.err;
    EXPECT_NE(set.err.find("sheet S2: of an older generation, converted"), std::string::npos)
        << set.err;
    EXPECT_EQ(on("field get old.qdraw B.number -s S1").out, "N of S1\n");
    EXPECT_EQ(on("field get old.qdraw B.number -s S2").out, "N of S2\n");
    EXPECT_EQ(on("field get old.qdraw B.old -s S2").out, "Old of S2\n");
    EXPECT_EQ(on("format check old.qdraw").status, 0) << on("format check old.qdraw").out;
}

} // namespace
