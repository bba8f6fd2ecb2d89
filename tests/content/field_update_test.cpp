// Fields against a new definition, and fields of the older generation.
#include "tests/content/legacy_records.h"

#include "udo/class_names.h"
#include "uf_obj.h"

class FieldUpdate : public BlockOnSheet {
protected:
    static void base(TrFieldDefV1 &def)
    {
        def.SetLocationX(10.0);
        def.SetLocationY(20.0);
        def.SetDefaultString({"text"});
    }
    TrFieldDefV1 changed(const EditField &edit) const
    {
        return fieldDef("A", [&](TrFieldDefV1 &def) {
            base(def);
            edit(def);
        });
    }
};

TEST_F(FieldUpdate, EqualDefinitionIsOnlyLinked)
{
    has("A", base);
    place();
    const std::string listing = nxhost::listSheet(sheet);
    const TrFieldDefV1 same = fieldDef("A", base);
    field("A")->UpdateDefinition(same);
    EXPECT_EQ(field("A")->GetDefinition().tag(), same.tag());
    EXPECT_EQ(nxhost::listSheet(sheet), listing);
    EXPECT_EQ(field("A")->GetLinks(4).size(), 1u); // the old link is gone, its record lives
    EXPECT_FALSE(block()->GetDefinition()->GetFieldDefinition("A").IsNull());
}

TEST_F(FieldUpdate, ColourAloneDoesNotPlaceTheNoteAnew)
{
    has("A", base);
    place();
    double byHand[3] = {300.0, 200.0, 0.0};
    UF_DRF_set_origin(noteTag(*field("A")), byHand);
    Base::log::Recording recording{&QelFmt::info_log()};
    field("A")->UpdateDefinition(changed([](TrFieldDefV1 &def) { def.SetTextColor(Orange); }));
    EXPECT_EQ(noteAt(*field("A")), (At{300.0, 200.0}));
    EXPECT_EQ(notePref(*field("A"), UF_DRF_MPI_text_color), Orange);
    EXPECT_TRUE(recording.has("Checking to update field definition A"));
    EXPECT_TRUE(recording.has("Updating field A"));
}

TEST_F(FieldUpdate, SiteAndLocationPlaceTheNoteAnew)
{
    has("A", base);
    place();
    field("A")->UpdateDefinition(changed([](TrFieldDefV1 &def) { def.SetLocationX(15.0); }));
    EXPECT_EQ(noteAt(*field("A")), (At{115.0, 70.0}));
    field("A")->UpdateDefinition(changed([](TrFieldDefV1 &def) { def.SetLocationY(25.0); }));
    EXPECT_EQ(noteAt(*field("A")), (At{110.0, 75.0}));
    field("A")->UpdateDefinition(changed([](TrFieldDefV1 &def) {
        def.SetWidth(30.0);
        def.SetTextSite(8);
    }));
    EXPECT_EQ(noteAt(*field("A")), (At{125.0, 70.0})); // in the middle of 30
    EXPECT_EQ(notePref(*field("A"), UF_DRF_MPI_align_site), 8);
}

TEST_F(FieldUpdate, NameAndValueStay)
{
    has("A", base);
    place();
    field("A")->ModifyValue({"typed"});
    const auto one = field("A");
    one->UpdateDefinition(fieldDef("OTHER", [](TrFieldDefV1 &def) {
        def.SetDefaultString({"another default"});
        def.SetLocationX(1.0);
    }));
    EXPECT_EQ(one->GetFieldDefName(), "A");
    EXPECT_EQ(one->GetValue(), Lines{"typed"});
    EXPECT_EQ(one->GetDefinition().GetId(), "OTHER");
}

TEST_F(FieldUpdate, LostDefinitionCountsAsChanged)
{
    has("A", base);
    place();
    const auto one = field("A");
    one->removeLink(4, one->GetDefinition().GetUdoObject());
    EXPECT_TRUE(one->GetDefinition().IsNull());
    one->locate(); // cannot know its place: stays
    EXPECT_EQ(noteAt(*one), (At{110.0, 70.0}));
    EXPECT_EQ(one->GetValue(), Lines{"text"});
    one->ModifyValue({"still editable"});
    EXPECT_EQ(one->GetValue(), Lines{"still editable"});

    one->UpdateDefinition(changed([](TrFieldDefV1 &def) { def.SetTextColor(Orange); }));
    EXPECT_EQ(notePref(*one, UF_DRF_MPI_text_color), Orange);
    EXPECT_EQ(noteAt(*one), (At{110.0, 70.0}));
}

TEST_F(FieldUpdate, NewNoteNeedsADefinition)
{
    has("A");
    place();
    const auto one = field("A");
    one->removeLink(4, one->GetDefinition().GetUdoObject());
    EXPECT_EQ(textThrownBy([&] { one->ModifyValue({"x"}); }),
              "Field A has no definition: bring the format up to date first");
    EXPECT_EQ(one->GetValue(), Lines{""});
}

TEST_F(FieldUpdate, KeptDefinitionOutlivesItsBlocksAndGoesWithTheNextOne)
{
    has("A", base);
    place();
    const tag_t kept = field("A")->GetDefinition().tag();
    field("A")->keepDefinition();
    auto blockDef = block()->retainDefinition();
    blockDef->DeleteUDO();
    EXPECT_EQ(UF_OBJ_ask_status(kept), UF_OBJ_ALIVE);
    EXPECT_EQ(field("A")->GetDefinition().GetId(), "A");

    const TrFieldDefV1 fresh = fieldDef("A", base);
    field("A")->SetDefinition(fresh);
    EXPECT_EQ(UF_OBJ_ask_status(kept), UF_OBJ_DELETED);
    EXPECT_EQ(field("A")->GetDefinition().tag(), fresh.tag());
}

// --- the older generation -----------------------------------------------------------------------

class LegacyField : public FieldUpdate {};

TEST_F(LegacyField, IsReadNotEdited)
{
    ZemFieldV1 old = legacyField("A", {"one", "two"});
    EXPECT_EQ(LumUg::GetUDOClassName(old.GetUdoObject()), QelFmt::kZemFieldV1Classname);
    EXPECT_EQ(old.GetFieldDefName(), "A");
    EXPECT_EQ(old.GetValue(), (Lines{"one", "two"}));
    EXPECT_EQ(old.GetNoteValue(), (Lines{"one", "two"}));
    EXPECT_EQ(old.GetIsEditable(), 0);
    EXPECT_EQ(old.GetHasBottomBorder(), 1);
    EXPECT_EQ(old.GetBorders().size(), 2u);
    EXPECT_TRUE(old.GetDefinition().IsNull());
    EXPECT_FALSE(old.GetBlock());

    const TrFieldDefV1 def = fieldDef("UNUSED");
    const auto changes = story.changesDuring([&] {
        old.ModifyValue({"x"});
        old.SetIsEditable(1);
        old.RecreateNote();
        old.RemoveDraftingObjects(false);
        old.SetDefinition(def);
        old.UpdateBorders(5.0);
    });
    EXPECT_EQ(changes, Lines{});
    EXPECT_EQ(old.GetValue(), (Lines{"one", "two"}));
    EXPECT_EQ(old.GetIsEditable(), 0);
}

TEST_F(LegacyField, UpgradeKeepsNoteLinesAndEverythingStored)
{
    ZemFieldV1 old = legacyField("A", {"one", "two"});
    const tag_t note = noteTag(old);
    const std::vector<tag_t> lines = borderTags(old);
    const auto fresh = old.checkAndUpgrade();
    ASSERT_NE(dynamic_cast<TrFieldV1 *>(fresh.get()), nullptr);
    EXPECT_NE(fresh->tag(), old.tag());
    EXPECT_EQ(noteTag(*fresh), note);
    EXPECT_EQ(borderTags(*fresh), lines);
    EXPECT_EQ(old.GetNote(), nullptr);
    EXPECT_TRUE(old.GetBorders().empty());
    EXPECT_EQ(fresh->GetFieldDefName(), "A");
    EXPECT_EQ(storedAt(*fresh), (At{11.0, 12.0}));
    EXPECT_EQ(fresh->GetHasBottomBorder() * 10000 + fresh->GetHasLeftBorder() * 1000 +
                  fresh->GetHasMiddleBorder() * 100 + fresh->GetHasRightBorder() * 10 +
                  fresh->GetHasTopBorder(),
              10010);
    EXPECT_EQ(fresh->GetNumberOfLines(), 2);
    EXPECT_EQ(fresh->GetIsEditable(), 1);
    EXPECT_EQ(fresh->GetValue(), (Lines{"one", "two"}));
    old.DeleteUDO(); // takes nothing along
    EXPECT_EQ(fresh->GetValue(), (Lines{"one", "two"}));
    EXPECT_EQ(fresh->GetBorders().size(), 2u);
}

TEST_F(LegacyField, ValueThatIsInTheAttributesOnlyIsCarriedOver)
{
    ZemFieldV1 old = legacyField("A", {"one", "two"}, false);
    const auto fresh = old.upgrade();
    old.DeleteUDO();
    EXPECT_EQ(fresh->GetValue(), (Lines{"one", "two"}));
}

TEST_F(LegacyField, CurrentFieldIsItsOwnUpgrade)
{
    has("A", base);
    place();
    const auto one = field("A");
    const auto same = one->checkAndUpgrade();
    EXPECT_EQ(same->tag(), one->tag());
    same->locate(); // knows its place like the one asked
    EXPECT_EQ(noteAt(*same), (At{110.0, 70.0}));
}

TEST_F(LegacyField, BlockUpgradePutsNewFieldsInThePlacesOfTheOldOnes)
{
    ZemBlockV1 old;
    old.SetBlockDefName("TITLE");
    old.SetX(100.0);
    old.SetY(50.0);
    TrFieldV1 current; // a part of mixed generations
    current.SetFieldDefName("B");
    const ZemFieldV1 first = legacyField("A", {"a"}), last = legacyField("C", {"c"});
    linkChild(old, first);
    linkChild(old, current);
    linkChild(old, last);

    const auto fresh = old.checkAndUpgrade();
    ASSERT_TRUE(fresh);
    std::string order;
    for (const auto &one : fresh->getFields()) {
        EXPECT_NE(dynamic_cast<TrFieldV1 *>(one.get()), nullptr);
        order += one->GetFieldDefName();
    }
    EXPECT_EQ(order, "ABC");
    EXPECT_EQ(UF_OBJ_ask_status(first.tag()), UF_OBJ_DELETED);

    fresh->setDefinition([&] {
        const boost::shared_ptr<TrBlockDefV1> def(new TrBlockDefV1);
        def->SetId("TITLE");
        def->SetTextLayer(21);
        def->AddFieldDefinition(fieldDef("A", base));
        return def;
    }());
    const auto one = fieldOn(*fresh, "A");
    one->UpdateDefinition(fresh->GetDefinition()->GetFieldDefinition("A"));
    EXPECT_EQ(noteAt(*one), (At{110.0, 70.0})); // the definition was unknown: placed
    EXPECT_EQ(one->GetValue(), Lines{"a"});
}
