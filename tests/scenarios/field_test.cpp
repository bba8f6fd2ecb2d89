// Stories of fields: typed, shared, stored and opened again.
#include "tests/api/interface_story.h"

#include "content/field.h"
#include "drawing/block.h"

#include "uf_attr.h"
#include "ug_part.hxx"

namespace {

// NUMBER is shared with the part, STATUS with every sheet, PLAIN with nobody; LIST has several lines.
class Fields : public InterfaceStory {
protected:
    void SetUp() override
    {
        writeDefinitionPart(story, "f.prt", [] {
            makeFormat("F", {"A3"}).SetRequiredBlockIds({"TITLE"});
            TrBlockDefV1 title = makeBlock("TITLE");
            title.SetTextLayer(21);
            title.SetPatternLayer(20);
            title.AddFieldDefinition(makeTextField("PLAIN", 0.0));
            TrFieldDefV1 number = makeTextField("NUMBER", 30.0);
            number.SetBroadcastString("PART_NO");
            number.SetBroadcastType(1);
            title.AddFieldDefinition(number);
            TrFieldDefV1 status = makeTextField("STATUS", 60.0);
            status.SetBroadcastString("STATE");
            status.SetSyncAllDrawings(1);
            title.AddFieldDefinition(status);
            TrFieldDefV1 list = makeTextField("LIST", 90.0);
            list.SetMultiline(1);
            title.AddFieldDefinition(list);
        });
        ASSERT_EQ(TRV_FMT_initialize(), 0) << TRV_FMT_ask_last_error();
        sheet = story.newSheet();
        addFormat();
    }
    void set(const char *field, std::initializer_list<const char *> lines) const
    {
        ASSERT_EQ(TRV_FMT_set_field_value(sheet, "TITLE", field, CallersList(lines)), 0)
            << TRV_FMT_ask_last_error();
    }
    void reopen()
    {
        story.saveAndReopen();
        sheet = story.sheet(0);
    }
    // Further sheets with the format; the first one is current again.
    void addSheets(int count)
    {
        for (int i = 0; i < count; ++i) {
            const tag_t added = story.addSheet("X" + std::to_string(i), 420, 297);
            ASSERT_EQ(TRV_FMT_add_format(added, "F", "A3"), 0) << TRV_FMT_ask_last_error();
        }
        story.open(sheet);
    }
    std::size_t callsOfSetting(const char *field, const char *text) const
    {
        const std::size_t before = nxhost::totalCalls();
        set(field, {text});
        return nxhost::totalCalls() - before;
    }
};

TEST_F(Fields, TextsOfEveryScriptComeBackUnharmed)
{
    const Texts texts{"Вал насоса", "泵轴", "e\xCC\x81te\xCC\x81", "⌀32 H7, 45°", "<&>\"'"};
    for (const std::string &text : texts) {
        set("PLAIN", {text.c_str()});
        EXPECT_EQ(value("PLAIN"), Texts{text});
        reopen();
        EXPECT_EQ(value("PLAIN"), Texts{text});
    }
    set("LIST", {texts[0].c_str(), texts[1].c_str(), texts[2].c_str()});
    reopen();
    EXPECT_EQ(value("LIST"), (Texts{texts[0], texts[1], texts[2]}));
}

TEST_F(Fields, ALongTextIsNeverCutInsideACharacter)
{
    std::string text;
    for (int i = 0; i < 100; ++i) text += "Ж"; // two bytes each: 200
    set("PLAIN", {"short"});
    set("PLAIN", {text.c_str()}); // a changed note takes rows of 132 bytes
    reopen();
    const Texts lines = value("PLAIN");
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(lines[0], text.substr(0, lines[0].size()));
    EXPECT_EQ(lines[0].size(), 132u); // 66 whole characters
}

TEST_F(Fields, AValueSharedWithThePartIsItsAttribute)
{
    set("NUMBER", {"4711"});
    reopen();
    EXPECT_EQ(value("NUMBER"), Texts{"4711"});
    EXPECT_EQ(story.partObject()->getStringAttributeValue("PART_NO"), "4711");
}

TEST_F(Fields, AValueSharedByAllSheetsIsReadOnThem)
{
    addSheets(2);
    set("STATUS", {"released"});
    reopen();
    // A sheet that is added later starts with it.
    const tag_t later = story.addSheet("LATER", 420, 297);
    ASSERT_EQ(TRV_FMT_add_format(later, "F", "A3"), 0) << TRV_FMT_ask_last_error();
    sheet = later;
    EXPECT_EQ(value("STATUS"), Texts{"released"});
}

TEST_F(Fields, ShrinkingAndGrowingKeepsExactlyTheLinesGiven)
{
    set("LIST", {"1", "2", "3"});
    set("LIST", {"a"});
    EXPECT_EQ(value("LIST"), Texts{"a"});
    set("LIST", {"", "b", ""});
    reopen();
    EXPECT_EQ(value("LIST"), (Texts{"", "b", ""}));
}

TEST_F(Fields, OtherSheetsCostNothingUnlessTheValueIsTheirsToo)
{
    set("PLAIN", {"a"});
    set("STATUS", {"a"});
    const std::size_t alone = callsOfSetting("PLAIN", "b");
    const std::size_t sharedAlone = callsOfSetting("STATUS", "b");
    addSheets(4);
    const std::size_t among5 = callsOfSetting("PLAIN", "c");
    const std::size_t shared5 = callsOfSetting("STATUS", "c");
    for (int i = 0; i < 4; ++i) {
        const tag_t added = story.addSheet("Y" + std::to_string(i), 420, 297);
        ASSERT_EQ(TRV_FMT_add_format(added, "F", "A3"), 0);
    }
    story.open(sheet);
    const std::size_t among9 = callsOfSetting("PLAIN", "d");
    const std::size_t shared9 = callsOfSetting("STATUS", "d");
    EXPECT_EQ(among5, alone);
    EXPECT_EQ(among9, alone);
    EXPECT_GT(shared5, sharedAlone);
    // Linear: the second four cost what the first four did.
    EXPECT_LE(shared9 - shared5, (shared5 - sharedAlone) * 11 / 10);
}

} // namespace
