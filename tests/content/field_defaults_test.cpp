// Where a field's first value comes from.
#include "tests/content/block_on_sheet.h"

#include "ug_part.hxx"

class FieldDefault : public BlockOnSheet {
protected:
    enum Type { kText = 0, kPart = 1, kDrawing = 2, kSizeLabel = 3, kEnvironment = 4 };

    void fieldOf(int type, const Lines &defaults, const EditField &more = {})
    {
        has("A", [&](TrFieldDefV1 &def) {
            def.SetDefaultType(type);
            def.SetDefaultString(defaults);
            if (more) more(def);
        });
    }
    Lines value() const { return field("A")->GetValue(); }
    UgPart &part() const { return *story.partObject(); }
};

namespace {

void fromSettings(TrFieldDefV1 &def) { def.SetRegistryString("R"); }
void multiline(TrFieldDefV1 &def) { def.SetMultiline(1); }
void multilineFromSettings(TrFieldDefV1 &def)
{
    multiline(def);
    fromSettings(def);
}

} // namespace

// --- text ---------------------------------------------------------------------------------------

TEST_F(FieldDefault, TextIsTheDefinitionsLines)
{
    fieldOf(kText, {"one", "", "three"});
    place();
    EXPECT_EQ(value(), (Lines{"one", "", "three"}));
}

TEST_F(FieldDefault, OneLastEmptyLineOfATextIsDropped)
{
    struct Row {
        Lines text, value;
    };
    for (const Row &row : {Row{{"a", ""}, {"a"}}, Row{{"a", "", ""}, {"a", ""}}, Row{{""}, {""}},
                           Row{{"", ""}, {""}}, Row{{}, {""}}}) {
        has(std::to_string(row.text.size()) + "." + std::to_string(row.value.size()),
            [&](TrFieldDefV1 &def) { def.SetDefaultString(row.text); });
    }
    place();
    EXPECT_EQ(field("2.1")->GetValue(), Lines{"a"});
    EXPECT_EQ(field("3.2")->GetValue(), (Lines{"a", ""}));
    EXPECT_EQ(field("1.1")->GetValue(), Lines{""});
    EXPECT_EQ(field("0.1")->GetValue(), Lines{""});
}

TEST_F(FieldDefault, SettingsComeBeforeTheText)
{
    story.useSettings("[Format Defaults]\nR = \"from site\"\n");
    fieldOf(kText, {"from definition"}, fromSettings);
    place();
    EXPECT_EQ(value(), Lines{"from site"});
}

TEST_F(FieldDefault, SettingsWithoutTheKeyLeaveTheText)
{
    story.useSettings("[Format Defaults]\nR0 = other\n");
    fieldOf(kText, {"from definition"}, fromSettings);
    place();
    EXPECT_EQ(value(), Lines{"from definition"});
}

TEST_F(FieldDefault, MultilineSettingsAreNumberedFromZeroUpToTheFirstGap)
{
    story.useSettings("[Format Defaults]\nR = no\nR0 = zero\nR1 = one\nR3 = three\n");
    fieldOf(kText, {"from definition"}, multilineFromSettings);
    place();
    EXPECT_EQ(value(), (Lines{"zero", "one"}));
}

TEST_F(FieldDefault, InitialTextIsSetOnCreationWhateverTheFlag)
{
    for (const int flag : {0, 1}) {
        has(std::to_string(flag), [&](TrFieldDefV1 &def) {
            def.SetUseDefaultInitially(flag);
            def.SetDefaultString({"text"});
        });
    }
    place();
    EXPECT_EQ(field("0")->GetValue(), Lines{"text"});
    EXPECT_EQ(field("1")->GetValue(), Lines{"text"});
}

// --- attribute of the part ----------------------------------------------------------------------

TEST_F(FieldDefault, PartAttributeIsNamedByTheFirstDefaultLine)
{
    part().addStringAttribute("PART_NO", "4711");
    fieldOf(kPart, {"PART_NO", "ignored"});
    Base::log::Recording recording{&QelFmt::info_log()};
    place();
    EXPECT_EQ(value(), Lines{"4711"});
    EXPECT_TRUE(recording.has("Checking existance for part attr PART_NO"));
    EXPECT_TRUE(recording.has("part attr PART_NO exists"));
}

TEST_F(FieldDefault, PartAttributeWinsOverTheSettings)
{
    story.useSettings("[Format Defaults]\nR = \"from site\"\n");
    part().addStringAttribute("PART_NO", "4711");
    fieldOf(kPart, {"PART_NO"}, fromSettings);
    place();
    EXPECT_EQ(value(), Lines{"4711"});
}

TEST_F(FieldDefault, MissingPartAttributeLeavesTheSettings)
{
    story.useSettings("[Format Defaults]\nR = \"from site\"\n");
    fieldOf(kPart, {"PART_NO"}, fromSettings);
    Base::log::Recording recording{&QelFmt::info_log()};
    place();
    EXPECT_EQ(value(), Lines{"from site"});
    EXPECT_TRUE(recording.has("Checking existance for part attr PART_NO"));
    EXPECT_FALSE(recording.has("part attr PART_NO exists"));
    EXPECT_FALSE(part().hasStringAttribute("PART_NO"));
}

TEST_F(FieldDefault, WithoutAnAttributeNameTheSettingsAreTheValue)
{
    story.useSettings("[Format Defaults]\nR = \"from site\"\n");
    part().addStringAttribute("OTHER", "attribute");
    fieldOf(kPart, {""}, [](TrFieldDefV1 &def) {
        fromSettings(def);
        def.SetPartAttrString("OTHER");
    });
    place();
    EXPECT_EQ(value(), Lines{"from site"});
}

TEST_F(FieldDefault, OtherAttributeNameCountsWhereNothingElseDoes)
{
    part().addStringAttribute("OTHER", "attribute");
    fieldOf(kPart, {}, [](TrFieldDefV1 &def) { def.SetPartAttrString("OTHER"); });
    place();
    EXPECT_EQ(value(), Lines{"attribute"});
}

TEST_F(FieldDefault, MultilinePartAttributeIsReadUpToTheFirstGap)
{
    part().addStringAttribute("NOTE0", "zero");
    part().addStringAttribute("NOTE1", "one");
    part().addStringAttribute("NOTE3", "three");
    fieldOf(kPart, {"NOTE"}, multiline);
    place();
    EXPECT_EQ(value(), (Lines{"zero", "one"}));
}

// --- attribute of the sheet ---------------------------------------------------------------------

TEST_F(FieldDefault, DrawingAttributeIsReadFromTheSheetsCarrier)
{
    fieldOf(kDrawing, {"CHECKED_BY"});
    place();
    EXPECT_EQ(value(), Lines{""});
    ASSERT_EQ(carriers(sheet).size(), 1u);
    EXPECT_EQ(attributeOf(*carriers(sheet)[0], "CHECKED_BY"), ""); // added, to be filled in

    carriers(sheet)[0]->setStringAttributeValue("CHECKED_BY", "Ada");
    place(200.0, 50.0);
    EXPECT_EQ(fieldOn(*block(1), "A")->GetValue(), Lines{"Ada"});
    EXPECT_EQ(carriers(sheet).size(), 1u);
}

TEST_F(FieldDefault, MissingDrawingAttributeIsAddedEmptyAndTheSettingsAreTheValue)
{
    story.useSettings("[Format Defaults]\nR0 = \"from site\"\n");
    fieldOf(kDrawing, {"CHECKED"}, multilineFromSettings);
    place();
    EXPECT_EQ(value(), Lines{"from site"});
    EXPECT_EQ(attributeOf(*carriers(sheet)[0], "CHECKED0"), "");
}

TEST_F(FieldDefault, DrawingAttributeIsThatOfTheFieldsOwnSheet)
{
    fieldOf(kDrawing, {"CHECKED_BY"}, [](TrFieldDefV1 &def) { def.SetUseDefaultInitially(0); });
    place();
    placeOnNewSheet("OTHER"); // the current one
    const tag_t other = story.sheet(1);
    carriers(sheet)[0]->setStringAttributeValue("CHECKED_BY", "Ada");
    carriers(other)[0]->setStringAttributeValue("CHECKED_BY", "Grace");
    field("A")->Move();
    EXPECT_EQ(value(), Lines{"Ada"});
}

// --- size, environment, others ------------------------------------------------------------------

TEST_F(FieldDefault, SizeIsItsLabelNotItsName)
{
    fieldOf(kSizeLabel, {"ignored"});
    place();
    EXPECT_EQ(value(), Lines{"ISO A3"});
}

TEST_F(FieldDefault, EnvironmentIsTheFirstNameThatMeansSomething)
{
    const ScopedVariable unset("QELFMT_TEST_NONE", "");
    const ScopedVariable first("QELFMT_TEST_FIRST", "first");
    const ScopedVariable second("QELFMT_TEST_SECOND", "second");
    fieldOf(kEnvironment, {"", "QELFMT_TEST_NONE", "QELFMT_TEST_FIRST", "QELFMT_TEST_SECOND"});
    place();
    EXPECT_EQ(value(), Lines{"first"});
}

TEST_F(FieldDefault, EnvironmentIsAskedOnlyWhereTheSettingsSayNothing)
{
    const ScopedVariable first("QELFMT_TEST_FIRST", "first");
    story.useSettings("[Format Defaults]\nR = \"from site\"\n");
    fieldOf(kEnvironment, {"QELFMT_TEST_FIRST"}, fromSettings);
    nxhost::clearCallCounts();
    place();
    EXPECT_EQ(value(), Lines{"from site"});
    EXPECT_EQ(nxhost::callCount("UF_translate_variable"), 0u);
}

TEST_F(FieldDefault, OtherTypesHaveNoDefault)
{
    story.useSettings("[Format Defaults]\nR = \"from site\"\n");
    fieldOf(9, {"text"}, fromSettings);
    place();
    EXPECT_EQ(value(), Lines{""});
}

// --- asked without setting it -------------------------------------------------------------------

TEST_F(FieldDefault, CanBeAskedWithoutChangingAnything)
{
    fieldOf(kDrawing, {"CHECKED_BY"});
    place();
    has("B", [](TrFieldDefV1 &def) {
        def.SetDefaultType(kDrawing);
        def.SetDefaultString({"OTHER"});
    });
    carriers(sheet)[0]->setStringAttributeValue("CHECKED_BY", "Ada");
    field("A")->ModifyValue({"typed"});
    EXPECT_TRUE(
        story.changesDuring([&] { EXPECT_EQ(field("A")->defaultValue(), Lines{"Ada"}); }).empty());
    EXPECT_EQ(value(), Lines{"typed"});
}
