// Parts back in the cell form: what is built from the text is the part that it was made of.
#include "app/authoring/cells_text.h"
#include "app/authoring/library_reader.h"
#include "app/authoring/library_writer.h"
#include "app/authoring/pattern_reader.h"
#include "app/authoring/record_builder.h"

#include "tests/authoring/definition_parts.h"
#include "tests/authoring/random_part.h"

using namespace app::authoring;

namespace {

class CellsText : public DefinitionParts {
protected:
    // Builds the text, writes the part back as cells, and builds those. Both parts must be the same.
    std::string dumpOf(const Library &library)
    {
        writeLibrary(library, "d", (folder / "site").string());
        const std::string built = bytesOf(folder / "site/format_defs/d.prt");
        const RecordFile file = scan("site/format_defs/d.prt");
        const std::string cells = cellsToText(file, patternsOf("site"));

        const Library again = parseLibrary(cells, "cells");
        EXPECT_EQ(recordsToText({again.units, recordsOf(again), {}}), recordsToText(file)) << cells;
        writeLibrary(again, "d", (folder / "again").string());
        EXPECT_TRUE(bytesOf(folder / "again/format_defs/d.prt") == built);
        return cells;
    }

    std::string dumpOf(const std::string &text) { return dumpOf(parseLibrary(text, "text")); }

    // A small library with the block B, as it comes back.
    std::string dumpOfBlock(const std::string &block)
    {
        return dumpOf("units: mm\n"
                      "formats:\n"
                      "  F: {required: [B], sheets: iso, sizes: [A3]}\n"
                      "blocks:\n"
                      "  B:\n"
                      "    size: [60, 20]\n"
                      "    place: {corner: bottom-right, inset: [10, 10]}\n" +
                      block);
    }

    PatternArt patternsOf(const std::string &site) const
    {
        return [path = folder / site / "patterns"](const std::string &name) {
            return readPattern((path / (name + ".prt")).string());
        };
    }
};

bool holds(const std::string &text, const std::string &part)
{
    return text.find(part) != std::string::npos;
}

class CellsTextOfShipped : public CellsText, public testing::WithParamInterface<const char *> {};

// No record of a shipped library needs the full form, and no slot its own name but those that its text
// names too.
TEST_P(CellsTextOfShipped, GivesTheSamePartByteForByte)
{
    const std::string cells =
        dumpOf(readLibrary(std::string(QELFMT_SOURCE_DIR "/formats/") + GetParam() + ".yaml"));
    EXPECT_FALSE(holds(cells, "kind:")) << cells;
    EXPECT_FALSE(holds(cells, "pattern_name")) << cells;
    EXPECT_FALSE(holds(cells, "frame_name")) << cells;
    EXPECT_FALSE(holds(cells, "text_")) << cells;
}

INSTANTIATE_TEST_SUITE_P(All, CellsTextOfShipped,
                         testing::Values("iso", "asme", "example-site/own"));

TEST_F(CellsText, CellsLabelsAndValuesAreFoldedBack)
{
    const std::string cells =
        dumpOfBlock("    cells:\n"
                    "      a: {cell: [0, 0, 20, 20], label: Title, from: part TITLE, share: part "
                    "TITLE}\n"
                    "      b: {cell: [20, 0, 40, 10], at: center, value: [one, two], rows: 2}\n"
                    "      c: {cell: [20, 10, 40, 10], label: Size, label-inset: [1, 3], "
                    "from: size}\n");
    EXPECT_TRUE(holds(cells, "place:\n      - {formats: F, corner: bottom-right, inset: [10, 10]}"))
        << cells;
    EXPECT_TRUE(holds(cells, "a: {cell: [0, 0, 20, 20], label: Title,")) << cells;
    EXPECT_TRUE(holds(cells, "from: \"part TITLE\", share: \"part TITLE\"")) << cells;
    EXPECT_TRUE(holds(cells, "value: [one, two]")) << cells;
    EXPECT_TRUE(holds(cells, "label: Size, label-inset: [1, 3]")) << cells;
    EXPECT_TRUE(holds(cells, "sheets: iso\n    sizes: [A3]")) << cells;
}

// 1.8 is no pen, 999 no word: slots that the words do not give are named themselves.
TEST_F(CellsText, WhatHasNoWordStandsInTheCellByItsOwnName)
{
    const std::string cells = dumpOfBlock(
        "    text_layer: 7\n"
        "    cells:\n"
        "      a: {cell: [0, 0, 60, 20], text_color: 3, indentation: 999, text_angle: 90, "
        "margin_height: .nan}\n");
    EXPECT_TRUE(holds(cells, "layers: {text: 7}")) << cells;
    EXPECT_TRUE(holds(cells, "indentation: 999")) << cells;
    EXPECT_TRUE(holds(cells, "text_angle: 90")) << cells;
    EXPECT_TRUE(holds(cells, "margin_height: .nan")) << cells;
    EXPECT_FALSE(holds(cells, "kind:")) << cells;
}

TEST_F(CellsText, TablesAreFoldedBack)
{
    const std::string cells =
        dumpOfBlock("    lines: none\n"
                    "    cells: {}\n"
                    "    tables:\n"
                    "      T:\n"
                    "        at: [0, 20]\n"
                    "        direction: up\n"
                    "        heading: 7\n"
                    "        row: 6\n"
                    "        borders: [left, top]\n"
                    "        symbol: {type: triangle, lines: [a, b], color: 3}\n"
                    "        columns:\n"
                    "          a: {width: 20, label: A, zone: yes}\n"
                    "          b: {width: 30, borders: none, several-lines: yes, "
                    "share: sheet X, share-rows: numbered}\n");
    EXPECT_TRUE(holds(cells, "heading: 7\n        row: 6\n        borders: [left, top]")) << cells;
    EXPECT_TRUE(holds(cells, "symbol: {type: triangle, lines: [a, b], color: 3}")) << cells;
    EXPECT_TRUE(holds(cells, "a: {width: 20, label: A, zone: yes}")) << cells;
    EXPECT_TRUE(holds(cells, "b: {width: 30, borders: none, several-lines: yes, share-rows: "
                             "numbered, share: \"sheet X\"}"))
        << cells;
}

TEST_F(CellsText, ArtComesBackAsItems)
{
    const std::string cells =
        dumpOfBlock("    cells:\n"
                    "      a: {cell: [0, 0, 60, 20], value: \"\"}\n"
                    "    art:\n"
                    "      - {line: [1, 1, 9, 9], width: 0.5}\n"
                    "      - {circle: [30, 10, 5]}\n"
                    "      - {arc: [30, 10, 4, 10, 80]}\n"
                    "      - {area: [[[40, 2], [50, 2], [50, 12]], [[44, 4], [46, 4], [46, 6]]]}\n"
                    "      - {text: Acme, where: [52, 14], angle: 90, size: 1.8}\n");
    EXPECT_TRUE(holds(cells, "- {line: [1, 1, 9, 9], width: 0.5}")) << cells;
    EXPECT_TRUE(holds(cells, "- {circle: [30, 10, 5]}")) << cells;
    EXPECT_TRUE(holds(cells, "- {arc: [30, 10, 4, 10, 80]}")) << cells;
    EXPECT_TRUE(
        holds(cells, "- {area: [[[40, 2], [50, 2], [50, 12]], [[44, 4], [46, 4], [46, 6]]]}"))
        << cells;
    EXPECT_TRUE(holds(cells, "- {text: Acme, where: [52, 14], size: 1.8, angle: 90}")) << cells;
}

TEST_F(CellsText, APatternThatCannotBeReadStaysByItsName)
{
    const Library library =
        parseLibrary("blocks:\n"
                     "  B: {size: [9, 9], place: {formats: F, at: [0, 0]}, cells: {a: {cell: [0, "
                     "0, 9, 9]}}}\n",
                     "text");
    const RecordFile file{1, recordsOf(library), {}};
    const std::string cells = cellsToText(file, [](const auto &) { return std::nullopt; });
    EXPECT_TRUE(holds(cells, "pattern_name: \"B-") || holds(cells, "pattern_name: B-")) << cells;
    EXPECT_EQ(recordsToText({1, recordsOf(parseLibrary(cells, "cells")), {}}), recordsToText(file));
}

class CellsTextOfRandomParts : public CellsText {
protected:
    void roundTrips(unsigned first, unsigned count)
    {
        for (unsigned seed = first; seed < first + count; ++seed) {
            SCOPED_TRACE("seed " + std::to_string(seed));
            const std::string name = "a" + std::to_string(seed) + ".prt";
            const tag_t part = newPart(name, 1 + static_cast<int>(seed % 2));
            RandomPart(seed).write();
            close(part, name);
            const RecordFile file = scan(name);
            const std::string cells = cellsToText(file, [](const auto &) { return std::nullopt; });
            const Library library = parseLibrary(cells, "cells");
            ASSERT_EQ(library.units, file.units);
            ASSERT_EQ(recordsToText({file.units, recordsOf(library), {}}), recordsToText(file))
                << cells;
            nxhost::reset();
        }
    }
};

TEST_F(CellsTextOfRandomParts, GivesTheSameRecordsBack) { roundTrips(1, 60); }

TEST_F(CellsTextOfRandomParts, GivesTheSameRecordsBackSoak)
{
    roundTrips(1000, static_cast<unsigned>(10000 * soakShare()));
}

} // namespace
