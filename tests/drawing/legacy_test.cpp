// Parts that older programs wrote.
#include "content/entry.h"
#include "definitions/field_def.h"
#include "definitions/table_def.h"
#include "drawing/pattern.h"
#include "tests/drawing/legacy.h"
#include "tests/drawing/listing.h"
#include "tests/drawing/stage.h"

#include <typeinfo>

namespace {

using Names = std::vector<std::string>;

// An older generation of formats, which the library itself has none of.
class OldFormat : public TrFormatBase {
public:
    static constexpr char kName[] = "TEST_OLD_FORMAT";

    std::string GetFormatDefName() const override { return GetString(0); }
    std::string GetSizeName() const override { return GetString(1); }
    UgTypedObject *GetDrawing() const override { return GetLink(1, 0); }
    LumUg::UDOClass *GetUDOClass() const override { return &registration(); }

    static LumUg::UDOClass &registration()
    {
        static LumUg::UDOClass made(kName, "Old Format", [] { return create(); });
        return made;
    }
    static LumUg::UDO *create() { return new OldFormat; }
};

class LegacyTest : public Stage {
protected:
    LegacyTest()
    {
        OldFormat::registration();
        // The sheet is A3, as the definition has it.
        UF_DRAW_info_t info{};
        UgException::throwOnFailure(UF_DRAW_ask_drawing_info(sheet, &info));
        info.size_state = UF_DRAW_METRIC_SIZE;
        info.size.metric_size_code = UF_DRAW_A3;
        UgException::throwOnFailure(UF_DRAW_set_drawing_info(sheet, &info));
    }
    // TITLE at (100, 50), as no definition would place it, with two of its three fields.
    void makeTitle()
    {
        nameNote = NULL_TAG;
        const tag_t name = makeZemField("NAME", "OLD GEAR", 105, 55);
        const tag_t number = makeZemField("NUMBER", "0815", 105, 65);
        nameNote = noteOf(name);
        title = makeZemBlock("TITLE", 100, 50, {name, number});
    }
    tag_t noteOf(tag_t udo) const
    {
        unsigned count = 0;
        tag_t *owned = nullptr;
        UgException::throwOnFailure(UF_UDOBJ_ask_owned_objects(udo, &count, &owned));
        const tag_t first = count > 0 ? owned[0] : NULL_TAG;
        UF_free(owned);
        return first;
    }
    tag_t put(const std::vector<tag_t> &blocks)
    {
        return makeFormat(QelFmt::kFormatV1Classname, sheet, "ISO", "A3", blocks);
    }
    // As somebody meets the part: opened from its file, nothing looked at yet.
    void meet()
    {
        Catalog::unload(); // or the part could not be the only one opened
        story.saveAndReopen();
        sheet = story.sheet(0);
        reload();
    }

    tag_t title = NULL_TAG, nameNote = NULL_TAG;
};

} // namespace

TEST_F(LegacyTest, AnOldBlockReadsIndexZeroAndHasNoDefinition)
{
    makeTitle();
    const auto old = boost::dynamic_pointer_cast<TrBlockBase>(LumUg::UDO::Create(title));
    ASSERT_TRUE(boost::dynamic_pointer_cast<ZemBlockV1>(old));
    EXPECT_EQ(old->GetBlockDefName(), "TITLE");
    EXPECT_EQ(old->GetX(), 100);
    EXPECT_EQ(old->GetY(), 50);
    EXPECT_EQ(old->GetAlternateLocationIndex(), 0);
    EXPECT_TRUE(old->GetDefinition()->IsNull());
    EXPECT_TRUE(old->retainDefinition()->IsNull());
    EXPECT_EQ(old->getFields().size(), 2u);
    EXPECT_EQ(old->getFields()[0]->getBaseLocationCmd()(), (std::vector<double>{100, 50}));
    EXPECT_FALSE(old->checkDefinition());
    put({title});
}

TEST_F(LegacyTest, AnUpgradedBlockHasTheSameNamePointFieldsAndNotes)
{
    makeTitle();
    put({title});
    const auto old = boost::dynamic_pointer_cast<TrBlockBase>(LumUg::UDO::Create(title));
    const auto fresh = old->upgrade();
    ASSERT_TRUE(boost::dynamic_pointer_cast<TrBlockV1>(fresh));
    EXPECT_EQ(fresh->GetBlockDefName(), "TITLE");
    EXPECT_EQ(fresh->GetX(), 100);
    EXPECT_EQ(fresh->GetY(), 50);
    EXPECT_TRUE(fresh->GetDefinition()->IsNull());
    EXPECT_EQ(fresh->getFields().size(), 2u);
    EXPECT_TRUE(old->getFields().empty()); // no child hangs below both
    format()->addBlock(fresh);
}

// TITLE belongs at (230, 10) on A3.
TEST_F(LegacyTest, TheFirstAccessToASheetBringsItsBlocksUpToDate)
{
    makeTitle();
    put({title});
    meet();
    ASSERT_EQ(count(QelFmt::kZemBlockV1Classname), 1u);
    drawing();
    EXPECT_EQ(count(QelFmt::kZemBlockV1Classname), 0u);
    EXPECT_EQ(count(QelFmt::kZemFieldV1Classname), 0u);
    EXPECT_EQ(count(QelFmt::kBlockV1Classname), 1u);
    EXPECT_EQ(count(QelFmt::kBlockDefV1Classname), 1u);
    EXPECT_EQ(count(QelFmt::kFormatDefV1Classname), 1u); // it had none
    EXPECT_EQ(fieldNames("TITLE"), (Names{"NAME", "NUMBER", "EMPTY"}));
    EXPECT_EQ(value("TITLE", "NAME"), "OLD GEAR");
    EXPECT_EQ(value("TITLE", "NUMBER"), "0815");
    EXPECT_EQ(blockAt("TITLE"), (At{230, 10}));
    EXPECT_EQ(noteAt("TITLE", "NAME"), (At{235, 15}));
    EXPECT_EQ(patternNames(*block("TITLE")), Names{"title"});
    EXPECT_TRUE(drawing()->isFormatUptoDate());
    expectSound();
}

TEST_F(LegacyTest, NotesAreKeptNotDrawnAnew)
{
    makeTitle();
    put({title});
    drawing();
    EXPECT_EQ(note("TITLE", "NAME"), nameNote);
}

TEST_F(LegacyTest, OnceUpgradedAPartStaysSo)
{
    makeTitle();
    put({title});
    drawing();
    const std::string listing = nxhost::listSheet(sheet);
    meet();
    EXPECT_TRUE(story.changesDuring([&] { drawing(); }).empty());
    EXPECT_EQ(nxhost::difference(listing, nxhost::listSheet(sheet)), "");
}

TEST_F(LegacyTest, TheOrderOfBlocksStaysInAPartOfMixedGenerations)
{
    makeTitle();
    TrBlockV1 first, last;
    first.SetBlockDefName("REV");
    last.SetBlockDefName("NOTES");
    put({first.tag(), title, last.tag()});
    meet();
    EXPECT_EQ(blockNames(), (Names{"REV", "TITLE", "NOTES"}));
}

TEST_F(LegacyTest, OldFieldsInACurrentBlockAreReplacedInTheirPlace)
{
    addFormat("A3");
    const auto placed = format()->addBlock("NOTES");
    const tag_t old = makeZemField("OLD", "kept", 1, 2);
    auto text = placed->getFields().at(0);
    placed->removeAndRetainField(text);
    placed->addField(boost::dynamic_pointer_cast<TrFieldBase>(LumUg::UDO::Create(old)));
    placed->addField(text);
    EXPECT_FALSE(placed->checkAndUpgrade()); // the block itself is current
    EXPECT_EQ(fieldNames("NOTES"), (Names{"OLD", "TEXT"}));
    EXPECT_EQ(value("NOTES", "OLD"), "kept");
    EXPECT_EQ(count(QelFmt::kZemFieldV1Classname), 0u);
}

TEST_F(LegacyTest, OldTablesRowsAndTheirFieldsAreReplacedToo)
{
    const tag_t no = makeZemField("NO", "7", 1, 1), what = makeZemField("WHAT", "drilled", 21, 1);
    const tag_t row = make({.className = QelFmt::kZemEntryV1Classname,
                            .strings = {"REVS"},
                            .ints = {0, 1},
                            .children = {no, what}});
    const tag_t table = make({.className = QelFmt::kZemTableV1Classname,
                              .strings = {"REVS"},
                              .doubles = {10, 20},
                              .children = {row}});
    put({makeZemBlock("REV", 10, 20, {makeZemField("HEAD", "HISTORY", 11, 21), table})});
    meet();
    drawing();
    for (const char *gone : {QelFmt::kZemTableV1Classname, QelFmt::kZemEntryV1Classname,
                             QelFmt::kZemFieldV1Classname, QelFmt::kZemBlockV1Classname})
        EXPECT_EQ(count(gone), 0u) << gone;
    const auto tables = block("REV")->getTables();
    ASSERT_EQ(tables.size(), 1u);
    ASSERT_EQ(tables[0]->entryCount(), 1u);
    EXPECT_EQ(tables[0]->entry(0)->field("WHAT")->GetValue(), Names{"drilled"});
    EXPECT_EQ(tables[0]->entry(0)->GetDisplayMiddleBorder(), 1);
    EXPECT_EQ(value("REV", "HEAD"), "HISTORY");
    EXPECT_EQ(count(QelFmt::kTableDefV1Classname), 1u);
    EXPECT_EQ(tables[0]->GetX(), 320); // REV stands at (320, 287), its table 8 above
    EXPECT_EQ(tables[0]->GetY(), 295);
    expectSound();
    meet();
    EXPECT_EQ(block("REV")->getTables()[0]->entry(0)->field("NO")->GetValue(), Names{"7"});
}

TEST_F(LegacyTest, AnOldBlocksPatternIsKeptWhenTheDefinitionAsksForTheSame)
{
    makeTitle();
    const tag_t pattern = ZemPattern::Create("title", 20, {100, 50})->getTag();
    tag_t owned[] = {pattern};
    UgException::throwOnFailure(UF_UDOBJ_add_owning_links(title, 1, owned));
    put({title});
    drawing();
    EXPECT_EQ(patterns(*block("TITLE")), std::vector<tag_t>{pattern});
    EXPECT_EQ(patternAt(pattern), (At{230, 10}));
}

TEST_F(LegacyTest, ABlockWhoseDefinitionIsGoneIsUpgradedAllTheSame)
{
    const tag_t text = makeZemField("TEXT", "still here", 12, 23);
    put({makeZemBlock("GONE", 10, 20, {text})});
    drawing();
    EXPECT_EQ(blockNames(), Names{"GONE"});
    EXPECT_EQ(value("GONE", "TEXT"), "still here");
    EXPECT_EQ(blockAt("GONE"), (At{10, 20}));
    resize("A2");
    EXPECT_EQ(blockAt("GONE"), (At{10, 20}));
    format()->verifyBlockLocations();
    EXPECT_EQ(value("GONE", "TEXT"), "still here");
}

TEST_F(LegacyTest, AnUpgradeThatFailsIsToldAndTriedAgainAtTheNextAccess)
{
    makeTitle();
    put({title});
    Catalog none;
    none.load(story);
    EXPECT_EQ(textThrownBy([&] { drawing(); }),
              "Definition for format ID(ISO) was not found on disk.\nUnable to update format.");
    reload();
    const auto handle = drawing();
    EXPECT_EQ(handle, drawing()); // no second handle
    EXPECT_EQ(blockNames(), Names{"TITLE"});
    EXPECT_EQ(value("TITLE", "NAME"), "OLD GEAR");
    drawing()->updateFormat();
    EXPECT_EQ(blockAt("TITLE"), (At{230, 10}));
}

// --- formats ---------------------------------------------------------------------------------------

TEST_F(LegacyTest, AnOldFormatIsReplacedByACurrentOneWithAllThatItHad)
{
    makeTitle();
    const auto def = boost::shared_ptr<TrFormatDefV1>(new TrFormatDefV1);
    def->Clone(*formatDef());
    TrBlockV1 notes;
    notes.SetBlockDefName("NOTES");
    notes.setDefinition(blockDef("NOTES")->clone());
    const tag_t frame = ZemPattern::Create("frameA3", 10, {0, 0})->getTag();
    const tag_t old =
        makeFormat(OldFormat::kName, sheet, "ISO", "A3", {def->tag(), title, notes.tag()});
    tag_t owned[] = {frame};
    UgException::throwOnFailure(UF_UDOBJ_add_owning_links(old, 1, owned));

    testing::internal::CaptureStdout();
    const Names lines = infoLines([&] { drawing(); });
    const std::string out = testing::internal::GetCapturedStdout();
    EXPECT_EQ(out.substr(0, out.find('\n')), typeid(OldFormat).name());
    expectInOrder(lines, {"UDO that is not a TrFormatV1 UDO found associated with drawing. "
                          "Converting..."});

    EXPECT_FALSE(UgObject::find(old));
    ASSERT_TRUE(drawing()->hasFormat());
    EXPECT_TRUE(boost::dynamic_pointer_cast<TrFormatV1>(format()));
    EXPECT_EQ(format()->GetFormatDefName(), "ISO");
    EXPECT_EQ(format()->GetSizeName(), "A3");
    EXPECT_EQ(format()->GetDrawing()->getTag(), sheet);
    EXPECT_EQ(blockNames(), (Names{"TITLE", "NOTES"}));
    EXPECT_EQ(block("NOTES")->tag(), notes.tag());
    EXPECT_EQ(value("TITLE", "NAME"), "OLD GEAR");
    EXPECT_EQ(patterns(*format()), std::vector<tag_t>{frame});
    EXPECT_EQ(count(QelFmt::kFormatDefV1Classname), 1u);
    expectSound();
    saveAndReopen();
    EXPECT_EQ(blockNames(), (Names{"TITLE", "NOTES"}));
}

TEST_F(LegacyTest, AnOldFormatWithoutADefinitionGetsTheOneOnDisk)
{
    makeFormat(OldFormat::kName, sheet, "ISO", "A3", {});
    testing::internal::CaptureStdout();
    drawing();
    testing::internal::GetCapturedStdout();
    EXPECT_EQ(format()->getDefinition()->GetId(), "ISO");
    EXPECT_EQ(patternNames(*format()), Names{"frameA3"});
    EXPECT_TRUE(drawing()->isFormatUptoDate());
}
