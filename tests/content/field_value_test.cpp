// Values: what is stored in attributes, what the note shows, what is read back.
#include "tests/content/block_on_sheet.h"

#include "uf_object_types.h"
#include "uf_udobj.h"
#include "ug_part.hxx"

class FieldValue : public BlockOnSheet {
protected:
    void stored(int count, const Lines &attributes) const
    {
        EXPECT_EQ(field("A")->GetNumberOfLines(), count);
        EXPECT_EQ(valueAttributes(*field("A")), attributes);
    }
};

TEST_F(FieldValue, NeverIsWithoutALine)
{
    has("A");
    place();
    EXPECT_EQ(field("A")->GetValue(), Lines{""});
    TrFieldV1 bare; // a record that never had a value
    bare.SetFieldDefName("BARE");
    EXPECT_EQ(bare.GetNumberOfLines(), 0);
    EXPECT_EQ(bare.GetValue(), Lines{""});
}

TEST_F(FieldValue, AttributesAreWrittenForTheLinesStoredBefore)
{
    has("A");
    place();
    stored(1, {}); // the empty default: one line, of which nothing was stored before
    field("A")->ModifyValue({"one", "two", "three"});
    stored(3, {"one"}); // growing from one line to three
    field("A")->ModifyValue({"1", "2", "3"});
    stored(3, {"1", "2", "3"});
    field("A")->ModifyValue({"x"});
    stored(1, {"x"}); // shrinking deletes the second and third, and rewrites the first
    field("A")->ModifyValue({"y", "z"});
    stored(2, {"y"});
    EXPECT_EQ(field("A")->GetValue(), (Lines{"y", "z"})); // the note is the value
    saveAndReopen();
    stored(2, {"y"});
    EXPECT_EQ(field("A")->GetValue(), (Lines{"y", "z"}));
}

TEST_F(FieldValue, WithoutANoteTheAttributesAreTheValue)
{
    has("A");
    place();
    const auto one = field("A");
    one->SetNumberOfLines(3);
    one->GetUdoObject()->addStringAttribute("VALUE0", "first");
    one->GetUdoObject()->addStringAttribute("VALUE2", "third");
    EXPECT_EQ(one->GetValue(), (Lines{"first", "", "third"})); // a missing line is empty
}

TEST_F(FieldValue, IndentationIsOfTheNotesFirstLineOnly)
{
    has("A", [](TrFieldDefV1 &def) { def.SetIndentation(2); });
    place();
    field("A")->ModifyValue({"ABC", "  DEF"});
    EXPECT_EQ(field("A")->GetNoteValue(), (Lines{"  ABC", "  DEF"}));
    EXPECT_EQ(field("A")->GetValue(), (Lines{"ABC", "  DEF"}));
    field("A")->ModifyValue({"G"});
    EXPECT_EQ(valueAttributes(*field("A")), Lines{"G"}); // as it was given
}

TEST_F(FieldValue, EmptyValueWithIndentationIsABlankNote)
{
    has("A", [](TrFieldDefV1 &def) { def.SetIndentation(2); });
    place();
    EXPECT_EQ(field("A")->GetNoteValue(), Lines{"  "});
    EXPECT_EQ(field("A")->GetValue(), Lines{""});
}

TEST_F(FieldValue, ReferencesAreResolvedWhenReadAndKeptInTheNote)
{
    has("A");
    place();
    story.partObject()->addStringAttribute("REV", "C");
    field("A")->ModifyValue({"Rev <W@REV>", "plain"});
    EXPECT_EQ(field("A")->GetValue(), (Lines{"Rev C", "plain"}));
    EXPECT_EQ(field("A")->GetNoteValue(), (Lines{"Rev <W@REV>", "plain"}));
    story.partObject()->setStringAttributeValue("REV", "D");
    EXPECT_EQ(field("A")->GetValue(), (Lines{"Rev D", "plain"}));
    EXPECT_EQ(field("A")->EvaluateNoteValue({"<W@REV>", ""}), (Lines{"D", ""}));
    EXPECT_EQ(field("A")->EvaluateNoteValue({}), Lines{});
}

TEST_F(FieldValue, IsComparedAsTheNoteIsStored)
{
    has("A");
    place();
    story.partObject()->addStringAttribute("REV", "C");
    field("A")->ModifyValue({"<W@REV>"});
    EXPECT_TRUE(field("A")->IsSameValue({"<W@REV>"}));
    EXPECT_FALSE(field("A")->IsSameValue({"C"}));
    EXPECT_FALSE(field("A")->IsSameValue({"<W@REV>", ""}));
    EXPECT_FALSE(field("A")->IsSameValue({}));
}

TEST_F(FieldValue, VerboseLogCallsEveryFieldMultiline)
{
    has("A");
    place();
    Base::log::Recording recording{&QelFmt::verbose_log()};
    field("A")->ModifyValue({"x"});
    EXPECT_TRUE(recording.has("field is multiline"));
}

TEST_F(FieldValue, NewFieldIsNamedEditableAndHasOneEmptyLine)
{
    has("A");
    place();
    const auto one = field("A");
    EXPECT_EQ(one->GetFieldDefName(), "A");
    EXPECT_EQ(one->GetIsEditable(), 1);
    EXPECT_EQ(one->GetNumberOfLines(), 1);
    one->SetIsEditable(0);
    EXPECT_EQ(field("A")->GetIsEditable(), 0);
}

TEST_F(FieldValue, EditableIsTrueWhereNothingIsStored)
{
    TrFieldV1 one;
    one.SetFieldDefName("A");
    EXPECT_EQ(one.GetIsEditable(), 1);
}

TEST_F(FieldValue, PlacingMakesExactlyOneDefinitionRecordAField)
{
    has("A");
    has("B");
    const std::size_t before =
        LumUg::UDO::GetAllUgUDOsOfClass(story.partObject(), TrFieldDefV1::mUDOClass.GetClassId())
            .size();
    place();
    const std::size_t after =
        LumUg::UDO::GetAllUgUDOsOfClass(story.partObject(), TrFieldDefV1::mUDOClass.GetClassId())
            .size();
    EXPECT_EQ(after, before + 2);
    EXPECT_EQ(field("A")->GetDefinition().GetId(), "A");
    EXPECT_EQ(field("A")->GetDefinition().tag(),
              block()->GetDefinition()->GetFieldDefinition("A").tag());
}

TEST_F(FieldValue, KnowsItsBlock)
{
    has("A");
    place();
    ASSERT_TRUE(field("A")->GetBlock());
    EXPECT_EQ(field("A")->GetBlock()->tag(), block()->tag());
    TrFieldV1 stray;
    stray.SetFieldDefName("STRAY");
    EXPECT_FALSE(stray.GetBlock());
    EXPECT_TRUE(stray.GetDefinition().IsNull());
}

// The cost of setting a value does not depend on what else the part holds.
TEST_F(FieldValue, SettingAValueCostsTheSameOnAFullSheet)
{
    has("A", [](TrFieldDefV1 &def) { def.SetBroadcastString("DRG"); });
    for (int i = 0; i < 30; ++i)
        has("F" + std::to_string(i), [](TrFieldDefV1 &def) { def.SetDefaultString({"text"}); });
    place();
    const auto one = field("A");
    one->ModifyValue({"first"});
    const auto cost = [&](const std::string &value) {
        nxhost::clearCallCounts();
        one->ModifyValue({value});
        return nxhost::totalCalls();
    };
    const std::size_t alone = cost("alone");
    for (int i = 0; i < 5; ++i) place(10.0 * i, 100.0);
    EXPECT_EQ(cost("among"), alone);
    for (int i = 0; i < 3; ++i) placeOnNewSheet("S" + std::to_string(i));
    story.open(sheet);
    EXPECT_EQ(cost("other"), alone);
}
