// Field definitions: where each value is stored, what comparisons look at, what copies carry.
#include "definitions/field_def.h"

#include "foundation/log.h"
#include "tests/definitions/slot_walk.h"
#include "tests/support/definitions.h"

#include "uf.h"

#include <limits>

namespace {

using Def = TrFieldDefV1;
using Texts = std::vector<std::string>;

class FieldDef : public testing::Test {
protected:
    FieldDef() { story.newPart(); }

    // Every slot holds a value of its own.
    static Def filled()
    {
        Def field;
        fill(field, Def::kLayout);
        return field;
    }
    static Def cloneOf(const Def &source)
    {
        Def copy;
        copy.Clone(source);
        return copy;
    }

    Story story;
};

} // namespace

TEST_F(FieldDef, TextsStandInTheirStoredOrder)
{
    Def field;
    field.SetId("NAME");
    field.SetRegistryString("registry");
    field.SetBroadcastString("broadcast");
    field.SetPartAttrString("attribute");
    field.SetTextFontName("font");
    field.SetDefaultString({"one", "two"});
    EXPECT_EQ(field.GetStrings(),
              (Texts{"NAME", "registry", "broadcast", "attribute", "font", "one", "two"}));
}

TEST_F(FieldDef, NumbersStandInTheirStoredOrder)
{
    Def field;
    field.SetTextAngle(0.5);
    field.SetTextAspect(1.5);
    field.SetLineSpace(2.5);
    field.SetMarginHeight(3.5);
    field.SetMarginWidth(4.5);
    field.SetTextSize(5.5);
    field.SetLocationX(6.5);
    field.SetLocationY(7.5);
    field.SetHeight(8.5);
    field.SetWidth(9.5);
    field.SetAltTextAspect(10.5);
    field.SetUserSymbolLength(11.5);
    field.SetUserSymbolHeight(12.5);
    field.SetAltTextSize(13.5);
    field.SetCharSpaceFactor(14.5);
    const std::vector<double> doubles = field.GetDoubles();
    ASSERT_EQ(doubles.size(), 15u);
    for (std::size_t i = 0; i < doubles.size(); ++i) EXPECT_EQ(doubles[i], i + 0.5);
}

TEST_F(FieldDef, CodesStandInTheirStoredOrder)
{
    Def field;
    field.SetUseDefaultInitially(0);
    field.SetBottomBorderPolicy(10);
    field.SetLeftBorderPolicy(20);
    field.SetMiddleBorderPolicy(30);
    field.SetRightBorderPolicy(40);
    field.SetTopBorderPolicy(50);
    field.SetBroadcastTableType(60);
    field.SetDefaultType(70);
    field.SetTextColor(80);
    field.SetBorderColor(90);
    field.SetFlipText(100);
    field.SetMultiline(110);
    field.SetRelativeOffsetType(120);
    field.SetTextWidthType(130);
    field.SetTextJustification(140);
    field.SetTextSite(150);
    field.SetIndentation(160);
    field.SetSymbolFile(170);
    field.SetAltTextSizeNumChars(180);
    field.SetZoneField(190);
    field.SetBroadcastType(200);
    field.SetAltTextAspectNumChars(210);
    field.SetSyncAllDrawings(220);
    const std::vector<int> ints = field.GetInts();
    ASSERT_EQ(ints.size(), 23u);
    for (std::size_t i = 0; i < ints.size(); ++i) EXPECT_EQ(ints[i], static_cast<int>(10 * i));
}

TEST_F(FieldDef, EveryGetterReadsWhatItsSetterWrote)
{
    const Def field = filled();
    EXPECT_EQ(field.GetId(), "text of Id");
    EXPECT_EQ(field.GetTextFontName(), "text of TextFontName");
    EXPECT_EQ(field.GetDefaultString(), (Texts{"first", "second"}));
    EXPECT_EQ(field.GetTextSize(), 5.1);
    EXPECT_EQ(field.GetAltTextSize(), 13.1);
    EXPECT_EQ(field.GetTextSite(), 115);
    EXPECT_EQ(field.GetInt(15, 0), 115);
    EXPECT_EQ(field.GetBroadcastType(), 120);
    EXPECT_EQ(field.GetSyncAllDrawings(), 122);
}

TEST_F(FieldDef, SlotsThatAnOlderEditorDidNotStoreReadAsEmpty)
{
    const Def field = makeField("NAME");
    EXPECT_EQ(field.GetTextFontName(), "");
    EXPECT_EQ(field.GetCharSpaceFactor(), 0.0);
    EXPECT_EQ(field.GetSyncAllDrawings(), 0);
    EXPECT_TRUE(field.GetDefaultString().empty());
}

TEST_F(FieldDef, HasItsClassNameAndFriendlyName)
{
    const Def field = makeField("NAME");
    EXPECT_STREQ(Def::className, "KORVAN_FORMAT_FIELD_DEF_V1");
    EXPECT_EQ(LumUg::GetUDOClassName(field.GetUdoObject()), Def::className);
    char *name = nullptr, *friendly = nullptr;
    ASSERT_EQ(UF_UDOBJ_ask_class_data(Def::mUDOClass.GetClassId(), &name, &friendly), 0);
    EXPECT_STREQ(friendly, "Format Field Definition");
    UF_free(name);
    UF_free(friendly);
    const auto wrapped = LumUg::UDO::Create(field.tag());
    EXPECT_TRUE(boost::dynamic_pointer_cast<Def>(wrapped));
}

TEST_F(FieldDef, ACopiedViewSharesTheRecord)
{
    const Def original = makeField("A");
    Def copy(original);
    copy.SetId("Z");
    EXPECT_EQ(original.GetId(), "Z");
}

// --- default text ---------------------------------------------------------------------------------

TEST_F(FieldDef, ADefaultTextMakesRoomForTheTextsBeforeIt)
{
    Def field;
    field.SetDefaultString({"line"});
    EXPECT_EQ(field.GetStrings(), (Texts{"", "", "", "", "", "line"}));
    Def empty;
    empty.SetDefaultString({});
    EXPECT_EQ(empty.GetStrings(), Texts(5));
}

TEST_F(FieldDef, AShorterDefaultTextLeavesNoSurplusLines)
{
    Def field = filled();
    ASSERT_EQ(field.GetNumberOfStrings(), 7u);
    field.SetDefaultString({});
    EXPECT_EQ(field.GetNumberOfStrings(), 5u);
    EXPECT_TRUE(field.GetDefaultString().empty());
}

TEST_F(FieldDef, ADefaultTextLeavesTheTextsBeforeItAlone)
{
    Def field = filled();
    const Texts before = field.GetStrings();
    for (const Texts &lines : {Texts{"a", "b", "c", "d"}, Texts{"", ""}, Texts{}, Texts{"x"}}) {
        field.SetDefaultString(lines);
        const Texts after = field.GetStrings();
        EXPECT_EQ(field.GetDefaultString(), lines);
        EXPECT_EQ(Texts(after.begin(), after.begin() + 5),
                  Texts(before.begin(), before.begin() + 5));
    }
}

// --- comparison -----------------------------------------------------------------------------------

TEST_F(FieldDef, ACloneCarriesEverySlot)
{
    const Def field = filled();
    const Def copy = cloneOf(field);
    EXPECT_NE(copy.tag(), field.tag());
    EXPECT_EQ(RawSlots(copy), RawSlots(field));
    EXPECT_EQ(copy.GetSyncAllDrawings(), field.GetSyncAllDrawings());
    EXPECT_TRUE(copy == field);
    EXPECT_FALSE(copy != field);
}

TEST_F(FieldDef, ACloneOfASparseRecordReadsAlikeAndIsWhole)
{
    const Def copy = cloneOf(makeField("NAME"));
    EXPECT_EQ(copy.GetStrings(), (Texts{"NAME", "", "", "", ""}));
    EXPECT_EQ(copy.GetInts(), std::vector<int>(23));
    EXPECT_EQ(copy.GetDoubles(), std::vector<double>(15));
    EXPECT_TRUE(copy == makeField("NAME"));
}

TEST_F(FieldDef, ACloneReplacesWhatARecordHeld)
{
    Def target = filled();
    target.Clone(makeField("NEW"));
    EXPECT_EQ(target.GetStrings(), (Texts{"NEW", "", "", "", ""}));
    EXPECT_EQ(target.GetTextSize(), 0.0);
    EXPECT_EQ(target.GetSyncAllDrawings(), 0);
}

TEST_F(FieldDef, CloningAViewWithoutARecordIsRefused)
{
    Def target = makeField("KEPT");
    EXPECT_THROW(target.Clone(Def()), std::logic_error);
    EXPECT_EQ(target.GetId(), "KEPT");
}

TEST_F(FieldDef, ADifferenceInAnySlotButTheSynchronisingFlagIsSeen)
{
    const Def field = filled();
    forEachSlot(Def::kLayout, [&](const auto &slot) {
        SCOPED_TRACE(slot.name);
        const bool left_out = std::string(slot.name) == "SyncAllDrawings";
        Def copy = cloneOf(field);
        change(copy, slot);
        EXPECT_EQ(copy == field, left_out);
        EXPECT_EQ(field == copy, left_out);
        EXPECT_EQ(field != copy, !left_out);
    });
}

TEST_F(FieldDef, ANumberThatIsNoneDiffersFromItself)
{
    forEachSlot(Def::kLayout, [&](const auto &slot) {
        if constexpr (std::is_same_v<std::remove_cvref_t<decltype(slot)>, LumUg::DoubleSlot>) {
            SCOPED_TRACE(slot.name);
            Def field = filled();
            field.SetDouble(slot.index, std::numeric_limits<double>::quiet_NaN());
            EXPECT_FALSE(field == field);
        }
    });
}

TEST_F(FieldDef, DefaultTextsOfDifferentLengthDifferThoughTheirCommonLinesAgree)
{
    Def a = makeField("A"), b = makeField("A");
    a.SetDefaultString({"one"});
    b.SetDefaultString({"one", "two"});
    EXPECT_FALSE(a == b);
    a.SetDefaultString({"one", ""});
    b.SetDefaultString({"one"});
    EXPECT_FALSE(a == b);
    a.SetDefaultString({"two", "one"});
    b.SetDefaultString({"one", "two"});
    EXPECT_FALSE(a == b);
}

TEST_F(FieldDef, AComparisonAnnouncesItself)
{
    const Def field = makeField("NAME");
    Base::log::Recording recording{&QelFmt::info_log()};
    EXPECT_TRUE(field == field);
    EXPECT_EQ(recording.texts(), Texts{"Checking field NAME equality"});
}

TEST_F(FieldDef, AViewWithoutARecordIsUnequalAndAnnouncedAllTheSame)
{
    const Def field = makeField("NAME"), none;
    {
        Base::log::Recording recording{&QelFmt::info_log()};
        EXPECT_FALSE(field == none);
        EXPECT_EQ(recording.texts(), Texts{"Checking field NAME equality"});
    }
    EXPECT_FALSE(none == field);
    EXPECT_FALSE(none == none);
}

// --- listing --------------------------------------------------------------------------------------

TEST_F(FieldDef, ListsItsPlaceAndSymbolFile)
{
    Def field = makeField("NAME");
    field.SetLocationX(12.5);
    field.SetLocationY(-3);
    field.SetSymbolFile(2);
    field.InfoObject();
    EXPECT_EQ(nxhost::takeInfoWindow(), "ID                      NAME\n"
                                        "X                       12.5\n"
                                        "Y                       -3\n"
                                        "Symbol File             2\n");
}

TEST_F(FieldDef, AFailureToListIsLoggedAndEndsThere)
{
    Def field = makeField("NAME");
    char message[133] = "";
    ASSERT_EQ(UF_get_fail_message(UF_err_unknown_tag, message), 0);
    Base::log::Recording recording{&QelFmt::info_log()};
    nxhost::failCall("UgInfoWindow::write", UF_err_unknown_tag);
    EXPECT_NO_THROW(field.InfoObject());
    EXPECT_TRUE(recording.has(message));
    EXPECT_NO_THROW(Def().InfoObject());
    EXPECT_TRUE(recording.has("UDO::GetString: UDO object has a NULL UgUDO"));
}

// --- saved and opened again -----------------------------------------------------------------------

TEST_F(FieldDef, ComesBackFromAPartToTheLastBit)
{
    Def field = filled();
    field.SetTextSize(std::nextafter(0.1, 1.0));
    field.SetTextAngle(std::numeric_limits<double>::denorm_min());
    field.SetDefaultString({"", "\xc3\xa4 \xff", ""});
    const RawSlots before(field);
    story.saveAndReopen();
    const auto found =
        LumUg::UDO::GetAllUgUDOsOfClass(story.partObject(), Def::mUDOClass.GetClassId());
    ASSERT_EQ(found.size(), 1u);
    EXPECT_EQ(RawSlots(Def(found.front())), before);
}
