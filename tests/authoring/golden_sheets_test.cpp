// A sheet of every shipped format, with all its blocks, as the host lists it.
#include "app/authoring/library_reader.h"
#include "app/authoring/library_writer.h"

#include "api/trv_fmt.h"
#include "lumug/nx_search_file_list.h"
#include "tests/support/golden.h"
#include "tests/support/story.h"

using namespace app::authoring;

namespace {

struct Shown {
    const char *file;
    int units;
    const char *format;
    const char *size;
    std::vector<const char *> blocks; // besides the required ones
    const char *title;                // the block with the fields title and number
    const char *table;                // a block with a table, the table and one of its columns
    const char *rows;
    const char *column;
};

class GoldenSheet : public testing::TestWithParam<Shown> {};

// One line of text as the interface takes it.
class Value {
public:
    explicit Value(std::string text) : m_text(std::move(text)) {}
    const TRV_FMT_value_list_t *get() { return &m_value; }

private:
    std::string m_text;
    char *m_lines[1] = {m_text.data()};
    TRV_FMT_value_list_t m_value{1, m_lines};
};

TEST_P(GoldenSheet, IsListedAsItWasLookedAt)
{
    const Shown &shown = GetParam();
    Story story;
    story.writeFile("definitions/config/tr_format",
                    "[Format Defaults]\nCOMPANY = \"Nordhaven\"\nCOMPANY0 = \"Nordhaven\"\n"
                    "COMPANY1 = \"Pumps\"\nCAGE_CODE = \"1AB23\"\n");
    const std::string site = story.file("definitions");
    writeLibrary(readLibrary(std::string(QELFMT_SOURCE_DIR "/formats/") + shown.file), "d", site);
    LumUg::NxSearchFileList::setSearchDirectories({site});
    const ScopedVariable patterns("UGII_PATDIR", site + "/patterns");
    ASSERT_EQ(TRV_FMT_initialize(), 0) << TRV_FMT_ask_last_error();
    story.newPart("drawing", shown.units);
    const tag_t sheet = story.addSheet("S", 10, 10);
    ASSERT_EQ(TRV_FMT_add_format(sheet, shown.format, shown.size), 0) << TRV_FMT_ask_last_error();
    for (const char *block : shown.blocks)
        ASSERT_EQ(TRV_FMT_add_block(sheet, block), 0) << TRV_FMT_ask_last_error();
    const auto done = [](int status) { ASSERT_EQ(status, 0) << TRV_FMT_ask_last_error(); };
    done(TRV_FMT_set_field_value(sheet, shown.title, "title", Value("Volute casing").get()));
    done(TRV_FMT_set_field_value(sheet, shown.title, "number", Value("4711-01").get()));
    for (int row = 0; row < 2; ++row) {
        done(TRV_FMT_add_entry(sheet, shown.table, shown.rows));
        done(TRV_FMT_set_table_value(sheet, shown.table, shown.rows, row, shown.column,
                                     Value("row " + std::to_string(row + 1)).get()));
    }
    expectGolden(std::string(shown.format) + "-" + shown.size, nxhost::listSheet(sheet));
    TRV_FMT_terminate();
}

// A portrait sheet and one of each format, with all that can stand on it.
INSTANTIATE_TEST_SUITE_P(Shipped, GoldenSheet,
                         testing::Values(Shown{"iso.yaml",
                                               1,
                                               "ISO",
                                               "A3",
                                               {"REVISIONS", "PARTS_LIST", "PROJECTION",
                                                "TOLERANCE", "NOTICE"},
                                               "TITLE",
                                               "PARTS_LIST",
                                               "ITEMS",
                                               "name"},
                                         Shown{"iso.yaml",
                                               1,
                                               "ISO-COMPACT",
                                               "A4P",
                                               {"REVISIONS", "PROJECTION", "TOLERANCE", "NOTICE"},
                                               "TITLE_COMPACT",
                                               "REVISIONS",
                                               "REVISIONS",
                                               "change"},
                                         Shown{"iso.yaml",
                                               1,
                                               "ISO-ASME",
                                               "A3",
                                               {"PARTS_LIST"},
                                               "TITLE_ASME",
                                               "PARTS_LIST",
                                               "ITEMS",
                                               "name"},
                                         Shown{"asme.yaml",
                                               2,
                                               "ASME",
                                               "AV",
                                               {"TOLERANCES"},
                                               "TITLE_SMALL",
                                               "REVISIONS_SMALL",
                                               "REVISIONS",
                                               "description"},
                                         Shown{"asme.yaml",
                                               2,
                                               "ASME",
                                               "C",
                                               {"TOLERANCES"},
                                               "TITLE_SMALL",
                                               "REVISIONS_SMALL",
                                               "REVISIONS",
                                               "description"},
                                         Shown{"asme.yaml",
                                               2,
                                               "ASME-LARGE",
                                               "D",
                                               {"TOLERANCES"},
                                               "TITLE_LARGE",
                                               "REVISIONS_LARGE",
                                               "REVISIONS",
                                               "description"}),
                         [](const auto &shown) {
                             std::string name = std::string(shown.param.format) + shown.param.size;
                             std::erase(name, '-');
                             return name;
                         });

} // namespace
