// In which state a sheet is, and what differs.
#include "app/drift.h"
#include "app/update.h"
#include "content/entry.h"
#include "definitions/field_def.h"
#include "definitions/table_def.h"
#include "tests/drawing/legacy.h"
#include "tests/drawing/stage.h"

namespace {

using Names = std::vector<std::string>;

class Drift : public Stage {
protected:
    std::string state() const { return app::nameOf(app::driftOf(sheet).state); }
    app::BlockDrift blockDrift(const std::string &id) const { return app::driftOf(*block(id)); }
    void update() const { app::updateSheet(sheet, "the sheet"); }
};

// "field NAME: location_x: 5 -> 50"
Names told(const app::Differences &differences)
{
    Names lines;
    for (const app::Difference &one : differences)
        lines.push_back((one.where.empty() ? "" : one.where + ": ") + one.what + ": " + one.stored +
                        " -> " + one.disk);
    return lines;
}

} // namespace

TEST_F(Drift, ASheetHasNoFormatThenACurrentOne)
{
    EXPECT_EQ(state(), "none");
    addFormat("A3");
    format()->addBlock("REV")->getTables()[0]->AppendEntry();
    EXPECT_EQ(state(), "current");
    saveAndReopen();
    EXPECT_EQ(state(), "current");
}

TEST_F(Drift, FormatAndSizeAreComparedSlotBySlot)
{
    addFormat("A3");
    catalog.format("ISO").category = "Site";
    catalog.format("ISO").sizes[0].label = "A3 new";
    reload();
    EXPECT_EQ(state(), "drifted");
    EXPECT_EQ(told(app::driftOf(sheet).definition),
              (Names{"category:  -> Site", "size A3: label: A3 -> A3 new"}));
    update();
    EXPECT_EQ(state(), "current");
}

TEST_F(Drift, BlocksFieldsAndTablesAreComparedSlotBySlot)
{
    addFormat("A3");
    format()->addBlock("REV");
    catalog.block("REV").textLayer = 31;
    catalog.field("REV", "HEAD").x = 50;
    catalog.block("REV").tables[0].direction = 0;
    catalog.block("REV").tables[0].fields[0].width = 12.5;
    reload();
    EXPECT_EQ(state(), "drifted");
    EXPECT_EQ(told(blockDrift("REV").definition),
              (Names{"text_layer: 30 -> 31", "field HEAD: location_x: 1 -> 50",
                     "table REVS: direction: 1 -> 0", "table REVS, field NO: width: 20 -> 12.5"}));
    EXPECT_TRUE(blockDrift("TITLE").current());
    update();
    EXPECT_EQ(state(), "current");
}

TEST_F(Drift, FieldsThatCameWentOrChangedTheirOrderAreNamed)
{
    addFormat("A3");
    auto &fields = catalog.block("TITLE").fields;
    std::swap(fields[0], fields[1]);
    fields[2].id = "DATE";
    reload();
    EXPECT_EQ(
        told(blockDrift("TITLE").definition),
        (Names{"field EMPTY: record: present -> absent", "field DATE: record: absent -> present",
               "order: field NAME, field NUMBER -> field NUMBER, field NAME"}));
}

// The library does not compare it: a flag that came later must not make old sheets look outdated.
TEST_F(Drift, AFlagThatTheLibraryDoesNotCompareIsSeenAllTheSame)
{
    addFormat("A3");
    catalog.field("TITLE", "NAME").more = [](TrFieldDefV1 &def) { def.SetSyncAllDrawings(1); };
    reload();
    EXPECT_TRUE(drawing()->isFormatUptoDate());
    EXPECT_EQ(state(), "drifted");
    EXPECT_EQ(told(blockDrift("TITLE").definition), Names{"field NAME: sync_all_drawings: 0 -> 1"});
    update();
    EXPECT_EQ(state(), "current");
}

TEST_F(Drift, ArtThatWasDrawnAnewUnderItsOldNameIsSeen)
{
    addFormat("A3");
    boost::filesystem::remove(story.patternsFolder() + "/title.prt");
    makePattern(story, "title", true, 77.0);
    EXPECT_TRUE(drawing()->isFormatUptoDate());
    EXPECT_EQ(state(), "drifted");
    EXPECT_EQ(told(app::driftOf(sheet).blocks.at(0).placed),
              Names{"pattern art: as it was drawn -> title has changed"});
    update();
    EXPECT_EQ(state(), "current");
}

TEST_F(Drift, AnOrphanHasLostADefinition)
{
    addFormat("A3");
    format()->addBlock("NOTES");
    catalog.blocks.erase(catalog.blocks.begin()); // TITLE
    reload();
    EXPECT_EQ(state(), "orphan");
    EXPECT_TRUE(blockDrift("TITLE").orphan);
    EXPECT_FALSE(blockDrift("NOTES").orphan);
    update(); // what it can
    EXPECT_EQ(state(), "orphan");
    EXPECT_EQ(value("TITLE", "NAME"), "PART");

    catalog.formats.erase(catalog.formats.begin());
    reload();
    EXPECT_EQ(state(), "orphan");
    EXPECT_TRUE(app::driftOf(sheet).orphan);
}

// What cannot be repaired comes before what can.
TEST_F(Drift, AnOrphanStaysOneWhateverElseDiffers)
{
    addFormat("A3");
    format()->addBlock("NOTES");
    catalog.blocks.erase(catalog.blocks.begin()); // TITLE
    catalog.block("NOTES").textLayer = 31;
    reload();
    EXPECT_FALSE(blockDrift("NOTES").current());
    EXPECT_EQ(state(), "orphan");
}

// TITLE is not movable: the library's own update would take it home, from where the user put it.
TEST_F(Drift, ABlockAtAPointOfTheUsersStaysThereThroughEveryUpdate)
{
    addFormat("A3");
    const double point[] = {50, 60};
    const auto edits = std::vector<std::function<void()>>{
        [&] { catalog.format("ISO").sizes[0].label = "A3 new"; }, // of the format alone
        [&] { catalog.field("TITLE", "NAME").x += 10; },          // carried over by the library
        [&] { catalog.block("TITLE").textLayer = 31; },           // made anew
    };
    block("TITLE")->locateBlock(point);
    for (const auto &edit : edits) {
        edit();
        reload();
        const auto report = app::updateSheet(sheet, "the sheet");
        EXPECT_EQ(state(), "current");
        EXPECT_EQ(blockAt("TITLE"), (At{50, 60}));
        EXPECT_LT(block("TITLE")->GetAlternateLocationIndex(), 0);
        EXPECT_FALSE(report.blocks.at(0).moved());
    }
    EXPECT_EQ(noteAt("TITLE", "NAME"),
              (At{50 + catalog.field("TITLE", "NAME").x, 60 + catalog.field("TITLE", "NAME").y}));
}

TEST_F(Drift, ABlockThatAnUpdateMovesIsReportedWithBothPoints)
{
    addFormat("A3");
    const At home = blockAt("TITLE");
    for (auto &[size, places] : catalog.block("TITLE").places[0].sizes)
        for (PlaceDesc &place : places) place.x += place.corner == 1 || place.corner == 2 ? -7 : 7;
    reload();
    const auto report = app::updateSheet(sheet, "the sheet");
    ASSERT_TRUE(report.blocks.at(0).moved());
    EXPECT_EQ((At{report.blocks[0].from[0], report.blocks[0].from[1]}), home);
    EXPECT_EQ((At{report.blocks[0].to[0], report.blocks[0].to[1]}), blockAt("TITLE"));
    EXPECT_FALSE(blockAt("TITLE") == home);
}

// The library raises on it, and all the others would stay what they were.
TEST_F(Drift, ABlockThatHasNoPlaceAnyMoreStaysWhereItIsAndTheOthersAreUpdated)
{
    addFormat("A3");
    set("TITLE", "NAME", "GEAR");
    const At before = blockAt("TITLE");
    format()->addBlock("NOTES");
    catalog.block("TITLE").places.clear();
    catalog.block("NOTES").textLayer = 31;
    reload();
    const auto report = app::updateSheet(sheet, "the sheet");
    EXPECT_EQ(report.blocks.at(0).reasons,
              Names{"it has no place on this format any more and stays where it is"});
    EXPECT_EQ(state(), "current");
    EXPECT_EQ(blockAt("TITLE"), before);
    EXPECT_EQ(value("TITLE", "NAME"), "GEAR");
}

// An update by position gave NUMBER the cell of DATE, and so on; the library sees nothing wrong.
TEST_F(Drift, AMiswiredSheetOfThePastIsFoundAndRepaired)
{
    addFormat("A3");
    set("TITLE", "NAME", "GEAR");
    set("TITLE", "NUMBER", "4711");
    auto &fields = catalog.block("TITLE").fields;
    fields.insert(fields.begin() + 1, {"DATE", 5, 95, {"today"}});
    reload();
    drawing()->updateFormat();
    ASSERT_EQ(noteAt("TITLE", "NUMBER"), (At{235, 105})); // in the cell of DATE
    EXPECT_TRUE(drawing()->isFormatUptoDate());
    EXPECT_EQ(state(), "miswired");
    EXPECT_EQ(blockDrift("TITLE").miswired, (Names{"NUMBER", "EMPTY"}));

    update();
    EXPECT_EQ(state(), "current");
    EXPECT_EQ(fieldNames("TITLE"), (Names{"NAME", "DATE", "NUMBER", "EMPTY"}));
    EXPECT_EQ(value("TITLE", "NAME"), "GEAR");
    EXPECT_EQ(value("TITLE", "NUMBER"), "4711");
    EXPECT_EQ(noteAt("TITLE", "NUMBER"), (At{235, 25}));
    EXPECT_EQ(noteAt("TITLE", "DATE"), (At{235, 105}));
    saveAndReopen();
    EXPECT_EQ(state(), "current");
    EXPECT_EQ(value("TITLE", "NUMBER"), "4711");
}

TEST_F(Drift, LocksStayThroughAnUpdateById)
{
    addFormat("A3");
    format()->addBlock("REV")->getTables()[0]->AppendEntry();
    field("TITLE", "NUMBER")->SetIsEditable(0);
    const auto cell = [&] { return block("REV")->getTables()[0]->getEntries()[0]->getFields()[1]; };
    cell()->SetIsEditable(0);
    catalog.block("TITLE").textLayer = 31;
    catalog.block("REV").textLayer = 31;
    reload();
    const auto report = app::updateSheet(sheet, "the sheet");
    EXPECT_EQ(report.blocks.at(0).method, app::UpdateMethod::byId);
    EXPECT_EQ(field("TITLE", "NUMBER")->GetIsEditable(), 0);
    EXPECT_EQ(field("TITLE", "NAME")->GetIsEditable(), 1);
    EXPECT_EQ(cell()->GetIsEditable(), 0);
}

TEST_F(Drift, WhatAnUpdateAddsAndComputesIsReported)
{
    catalog.field("TITLE", "NUMBER").useDefaultInitially = 0;
    reload();
    addFormat("A3");
    catalog.field("TITLE", "NUMBER").defaults = {"N-2"};
    catalog.format("ISO").required.push_back("REV");
    reload();
    const auto report = app::updateSheet(sheet, "the sheet");
    EXPECT_EQ(report.addedBlocks, Names{"REV"});
    const auto number =
        std::find_if(report.values.begin(), report.values.end(),
                     [](const app::ValueChange &one) { return one.field == "NUMBER"; });
    ASSERT_NE(number, report.values.end());
    EXPECT_EQ(app::nameOf(number->kind), "recomputed");
    EXPECT_EQ(number->before, Names{"N-1"});
    EXPECT_EQ(number->after, Names{"N-2"});
    EXPECT_EQ(state(), "current");
}

TEST_F(Drift, AnOlderGenerationIsLegacyUntilSomebodyLooks)
{
    const tag_t name = makeZemField("NAME", "OLD GEAR", 105, 55);
    makeFormat(QelFmt::kFormatV1Classname, sheet, "ISO", "A3",
               {makeZemBlock("TITLE", 100, 50, {name})});
    EXPECT_TRUE(app::hasLegacyRecords(sheet));
    EXPECT_EQ(state(), "legacy");
    EXPECT_FALSE(app::hasLegacyRecords(sheet)); // looking converts
    update();
    EXPECT_EQ(state(), "current");
    EXPECT_EQ(value("TITLE", "NAME"), "OLD GEAR");
}
