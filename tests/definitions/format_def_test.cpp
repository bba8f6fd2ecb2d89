// Format definitions and their sizes: layout, what the site adds, suites, copies and comparison.
#include "definitions/format_def.h"

#include "foundation/log.h"
#include "tests/definitions/slot_walk.h"
#include "tests/support/definitions.h"

#include <limits>

namespace {

using Texts = std::vector<std::string>;

struct FormatDef : testing::Test {
    FormatDef() { story.newPart(); }
    Story story;
};
struct FormatSize : FormatDef {};

TrFormatDefV1 filledFormat()
{
    TrFormatDefV1 format;
    fill(format, TrFormatDefV1::kLayout);
    return format;
}

TrFormatSizeV1 filledSize()
{
    TrFormatSizeV1 size;
    fill(size, TrFormatSizeV1::kLayout);
    return size;
}

template <class Def> Def cloneOf(const Def &source)
{
    Def copy;
    copy.Clone(source);
    return copy;
}

Texts ids(const std::vector<TrFormatSizeV1> &sizes)
{
    Texts all;
    for (const TrFormatSizeV1 &size : sizes) all.push_back(size.GetId());
    return all;
}

} // namespace

// --- sizes --------------------------------------------------------------------------------------------

TEST_F(FormatSize, ValuesStandInTheirStoredOrder)
{
    TrFormatSizeV1 size;
    size.SetId("A3");
    size.SetDescription("description");
    size.SetFrameName("frame");
    size.SetLabel("label");
    size.SetSuiteName("suite");
    size.SetHeight(0.5);
    size.SetLength(1.5);
    size.SetRightOffset(2.5);
    size.SetHorzZoneLength(3.5);
    size.SetVertZoneLength(4.5);
    size.SetFrameLayer(1);
    size.SetUgSizeCode(11);
    size.SetNumberHorzZones(21);
    size.SetNumberVertZones(31);
    size.SetHorzZoneType(41);
    size.SetVertZoneType(51);
    EXPECT_EQ(size.GetStrings(), (Texts{"A3", "description", "frame", "label", "suite"}));
    EXPECT_EQ(size.GetDoubles(), (std::vector<double>{0.5, 1.5, 2.5, 3.5, 4.5}));
    EXPECT_EQ(size.GetInts(), (std::vector<int>{1, 11, 21, 31, 41, 51}));
    EXPECT_EQ(LumUg::GetUDOClassName(size.GetUdoObject()), "KORVAN_FORMAT_SIZE_V1");
    EXPECT_EQ(size.GetLabel(), "label");
    EXPECT_EQ(size.GetLength(), 1.5);
    EXPECT_EQ(size.GetVertZoneType(), 51);
}

TEST_F(FormatSize, ADifferenceInAnySlotIsSeen)
{
    const TrFormatSizeV1 size = filledSize();
    EXPECT_TRUE(cloneOf(size) == size);
    EXPECT_EQ(RawSlots(cloneOf(size)), RawSlots(size));
    forEachSlot(TrFormatSizeV1::kLayout, [&](const auto &slot) {
        SCOPED_TRACE(slot.name);
        TrFormatSizeV1 copy = cloneOf(size);
        change(copy, slot);
        EXPECT_FALSE(copy == size);
        EXPECT_FALSE(size == copy);
        EXPECT_TRUE(copy != size);
        if constexpr (std::is_same_v<std::remove_cvref_t<decltype(slot)>, LumUg::DoubleSlot>) {
            copy.SetDouble(slot.index, std::numeric_limits<double>::quiet_NaN());
            EXPECT_FALSE(copy == copy);
        }
    });
}

namespace {

// In the order of the comparison, each with the slot that it looks at.
const std::vector<std::pair<std::string, std::string>> kAnnouncements{
    {"Id", "checking size 'text of Id' ID equality..."},
    {"Description", "checking size desc equality..."},
    {"FrameName", "checking size framename equality..."},
    {"FrameLayer", "checking size frame layer equality..."},
    {"RightOffset", "checking size right offset equality..."},
    {"HorzZoneLength", "checking size horz zone length equality..."},
    {"VertZoneLength", "checking size vert zone length equality..."},
    {"NumberHorzZones", "checking size num horz zones equality..."},
    {"NumberVertZones", "checking size num vert zones equality..."},
    {"HorzZoneType", "checking size horz zone type equality..."},
    {"VertZoneType", "checking size vert zone type equality..."},
    {"SuiteName", "checking size suite name equality..."},
    {"Label", "checking size label equality..."},
    {"Height", "checking size height equality..."},
    {"Length", "checking size length equality..."},
    {"UgSizeCode", "checking size ug size code equality..."},
};

} // namespace

TEST_F(FormatSize, AComparisonAnnouncesEachTestAndStopsAtTheFirstDifference)
{
    const TrFormatSizeV1 size = filledSize();
    Texts all;
    for (const auto &[slot, text] : kAnnouncements) all.push_back(text);
    {
        Base::log::Recording recording{&QelFmt::verbose_log()};
        EXPECT_TRUE(size == cloneOf(size));
        EXPECT_EQ(recording.texts(), all);
    }
    forEachSlot(TrFormatSizeV1::kLayout, [&](const auto &slot) {
        SCOPED_TRACE(slot.name);
        TrFormatSizeV1 disk = cloneOf(size);
        change(disk, slot);
        Texts expected;
        for (const auto &[name, text] : kAnnouncements) {
            expected.push_back(text);
            if (name == slot.name) break;
        }
        if (std::string(slot.name) == "Label")
            expected.push_back("  label = text of Label : Disk label = TEXT OF LABEL");
        Base::log::Recording recording{&QelFmt::verbose_log()};
        EXPECT_FALSE(size == disk);
        EXPECT_EQ(recording.texts(), expected);
    });
}

TEST_F(FormatSize, ListsItselfWithItsZones)
{
    TrFormatSizeV1 size = makeSize("A3", 420, 297.5);
    size.SetDescription("Landscape");
    size.SetFrameName("frameA3");
    size.SetLabel("A3");
    size.SetFrameLayer(10);
    size.SetUgSizeCode(4);
    size.SetRightOffset(7.5);
    size.SetNumberHorzZones(8);
    size.SetNumberVertZones(6);
    size.SetHorzZoneType(0);
    size.SetVertZoneType(1);
    size.SetHorzZoneLength(50);
    size.SetVertZoneLength(49.5);
    size.InfoObject();
    EXPECT_EQ(nxhost::takeInfoWindow(), "Id                      A3\n"
                                        "Description             Landscape\n"
                                        "Frame name              frameA3\n"
                                        "Label                   A3\n"
                                        "Frame Layer             10\n"
                                        "UG Size Code            4\n"
                                        "Height                  297.5\n"
                                        "Length                  420\n"
                                        "Zone Information:\n"
                                        "  Right Offset          7.5\n"
                                        "  Number Horz. Zones    8\n"
                                        "  Number Vert. Zones    6\n"
                                        "  Horz. Zone Type       0\n"
                                        "  Vert. Zone Type       1\n"
                                        "  Horz. Zone Length     50\n"
                                        "  Vert. Zone Length     49.5\n");
}

// --- formats: layout ----------------------------------------------------------------------------------

TEST_F(FormatDef, ValuesStandInTheirStoredPlaces)
{
    TrFormatDefV1 format;
    format.SetId("ISO");
    format.SetCategory("Sheets");
    format.SetDescription("description");
    format.SetSuiteName("suite");
    format.SetRequiredBlockIds({"A", "B"});
    format.SetUnits(7);
    format.SetObsolete(true);
    EXPECT_EQ(format.GetUdoObject()->getStringAttributeValue("FORMAT_ID"), "ISO");
    EXPECT_EQ(format.GetUdoObject()->getStringAttributeValue("CATEGORY"), "Sheets");
    EXPECT_EQ(format.GetStrings(), (Texts{"description", "suite", "A", "B"}));
    EXPECT_EQ(format.GetInts(), (std::vector<int>{7, 1}));
    EXPECT_EQ(LumUg::GetUDOClassName(format.GetUdoObject()), "KORVAN_FORMAT_FORMAT_DEF_V1");
    format.SetObsolete(false);
    EXPECT_EQ(format.GetInts(), (std::vector<int>{7, 0}));
    EXPECT_EQ(format.GetId(), "ISO");
    EXPECT_EQ(format.GetCategory(), "Sheets");
}

TEST_F(FormatDef, WithoutAnIdItIsAnError)
{
    const char *const text = "Something wrong with format definition. It did not have a ID.";
    TrFormatDefV1 format;
    EXPECT_EQ(textThrownBy([&] { format.GetId(); }), text);
    format.SetDescription("made without one");
    EXPECT_EQ(textThrownBy([&] { format.GetId(); }), text);
    EXPECT_EQ(textThrownBy([&] { format.GetObsolete(true); }), text);
    EXPECT_EQ(textThrownBy([&] { format.GetRequiredBlockIds(false); }), text);
    EXPECT_EQ(format.GetCategory(), "");
}

// --- formats: what the site adds ----------------------------------------------------------------------

TEST_F(FormatDef, EmptyRequiredIdsAreKept)
{
    TrFormatDefV1 format = makeFormat("F", {});
    format.SetRequiredBlockIds({"", "TITLE"});
    EXPECT_EQ(format.GetRequiredBlockIds(true), (Texts{"", "TITLE"}));
}

TEST_F(FormatDef, FewerRequiredIdsLeaveNoSurplus)
{
    TrFormatDefV1 format = filledFormat();
    format.SetRequiredBlockIds({"Z"});
    EXPECT_EQ(format.GetStrings(), (Texts{"text of Description", "text of SuiteName", "Z"}));
    format.SetRequiredBlockIds({});
    EXPECT_EQ(format.GetNumberOfStrings(), 2u);
}

TEST_F(FormatDef, TheSiteAddsRequiredBlocks)
{
    story.useSettings("[F Required Blocks]\nREV = 1\nAUX = 1\n[FRequired Blocks]\nNOT_THIS = 1\n");
    TrFormatDefV1 format = makeFormat("F", {});
    format.SetRequiredBlockIds({"TITLE"});
    EXPECT_EQ(format.GetRequiredBlockIds(true), Texts{"TITLE"});
    EXPECT_EQ(format.GetRequiredBlockIds(false), (Texts{"TITLE", "AUX", "REV"}));
}

TEST_F(FormatDef, RequiredBlocksAreLogged)
{
    story.useSettings("[F Required Blocks]\nREV = 1\n");
    TrFormatDefV1 format = makeFormat("F", {});
    format.SetRequiredBlockIds({"TITLE"});
    Base::log::Recording recording{&QelFmt::info_log(), &QelFmt::verbose_log()};
    format.GetRequiredBlockIds(false);
    EXPECT_EQ(recording.texts(QelFmt::info_log()), Texts{"Getting required block IDs."});
    EXPECT_EQ(recording.texts(QelFmt::verbose_log()),
              (Texts{"Adding Required Block ID TITLE to list.",
                     "Adding Site Required Block ID REV to list."}));
}

TEST_F(FormatDef, TheMenuSettingOfTheSiteIsReadAsObsolescence)
{
    TrFormatDefV1 format = makeFormat("F", {});
    format.SetObsolete(true);
    EXPECT_TRUE(format.GetObsolete(true));
    story.useSettings("[Show In Menu]\nF = 0\n");
    EXPECT_FALSE(format.GetObsolete(true));
    EXPECT_TRUE(format.GetObsolete(false));
    format.SetObsolete(false);
    story.useSettings("[Show In Menu]\nF = 1\n");
    EXPECT_TRUE(format.GetObsolete(true));
    EXPECT_FALSE(format.GetObsolete(false));
    story.useSettings("[Show In Menu]\nF = perhaps\n");
    EXPECT_TRUE(format.GetObsolete(true)); // no number: the entry's default is 1
    story.useSettings("[Show In Menu]\nG = 1\n");
    EXPECT_FALSE(format.GetObsolete(true));
}

// --- formats: sizes and suites ------------------------------------------------------------------------

TEST_F(FormatDef, SizesComeInLinkOrderAndAreFoundExactly)
{
    const TrFormatDefV1 format = makeFormat("F", {"A3", "A0", "A4"});
    EXPECT_EQ(ids(format.GetAvailableSizes()), (Texts{"A3", "A0", "A4"}));
    EXPECT_EQ(format.GetSizeDef("A0").GetId(), "A0");
    EXPECT_TRUE(format.GetSizeDef("a3").IsNull());
    EXPECT_TRUE(format.GetSizeDef("").IsNull());
    EXPECT_TRUE(TrFormatDefV1().GetAvailableSizes().empty());
}

TEST_F(FormatDef, ARemovedSizeIsDeleted)
{
    TrFormatDefV1 format = makeFormat("F", {"A3", "A0"});
    format.RemoveSize(format.GetSizeDef("A3"));
    EXPECT_EQ(ids(format.GetAvailableSizes()), Texts{"A0"});
    EXPECT_EQ(
        LumUg::UDO::GetAllUgUDOsOfClass(story.partObject(), TrFormatSizeV1::mUDOClass.GetClassId())
            .size(),
        1u);
}

TEST_F(FormatDef, IsInItsSuiteThoseOfItsSizesAndTheDefaultOne)
{
    TrFormatDefV1 format = makeFormat("F", {"A3", "A0"});
    TrFormatSizeV1 big = format.GetSizeDef("A0");
    big.SetSuiteName("BIG");
    format.SetSuiteName("FAMILY");
    EXPECT_TRUE(format.inSuite("FAMILY"));
    EXPECT_TRUE(format.inSuite("BIG"));
    EXPECT_TRUE(format.inSuite("Default"));
    EXPECT_FALSE(format.inSuite("family"));
    EXPECT_FALSE(format.inSuite("F"));
    EXPECT_FALSE(format.inSuite("")); // though the suite of A3 is empty
}

// --- formats: copies and comparison -------------------------------------------------------------------

TEST_F(FormatDef, ADifferenceInAnySlotButTheUnitsIsSeen)
{
    const TrFormatDefV1 format = filledFormat();
    EXPECT_TRUE(cloneOf(format) == format);
    EXPECT_EQ(RawSlots(cloneOf(format)), RawSlots(format));
    forEachSlot(TrFormatDefV1::kLayout, [&](const auto &slot) {
        SCOPED_TRACE(slot.name);
        if (std::string(slot.name) == "Obsolete") return; // a flag: below
        const bool left_out = std::string(slot.name) == "Units";
        TrFormatDefV1 copy = cloneOf(format);
        change(copy, slot);
        EXPECT_EQ(copy == format, left_out);
        EXPECT_EQ(format == copy, left_out);
        EXPECT_EQ(copy != format, !left_out);
    });
}

TEST_F(FormatDef, ObsolescenceIsComparedAsAFlagAndAsStored)
{
    story.useSettings("[Show In Menu]\nF = 1\n");
    TrFormatDefV1 a = makeFormat("F", {}), b = makeFormat("F", {});
    a.SetObsolete(true);
    EXPECT_FALSE(a == b);
    b.SetInt(TrFormatDefV1::kObsolete.index, 5);
    EXPECT_TRUE(a == b);
}

TEST_F(FormatDef, EmptyRequiredIdsMakeADifference)
{
    TrFormatDefV1 a = makeFormat("F", {}), b = makeFormat("F", {});
    a.SetRequiredBlockIds({"", "TITLE"});
    b.SetRequiredBlockIds({"TITLE"});
    EXPECT_FALSE(a == b);
}

TEST_F(FormatDef, SizesAreComparedInLinkOrder)
{
    const TrFormatDefV1 format = makeFormat("F", {"A3", "A0"});
    EXPECT_TRUE(format == makeFormat("F", {"A3", "A0"}));
    EXPECT_FALSE(format == makeFormat("F", {"A0", "A3"}));
    EXPECT_FALSE(format == makeFormat("F", {"A3"}));
    TrFormatDefV1 other = makeFormat("F", {"A3", "A0"});
    TrFormatSizeV1 size = other.GetSizeDef("A0");
    size.SetLabel("larger");
    EXPECT_FALSE(format == other);
}

TEST_F(FormatDef, ACloneStoresNothingOfTheSite)
{
    story.useSettings("[F Required Blocks]\nREV = 1\n");
    TrFormatDefV1 format = makeFormat("F", {"A3", "A0"});
    format.SetRequiredBlockIds({"TITLE"});
    const TrFormatDefV1 copy = cloneOf(format);
    EXPECT_EQ(copy.GetRequiredBlockIds(true), Texts{"TITLE"});
    EXPECT_TRUE(copy == format);
    EXPECT_NE(copy.tag(), format.tag());
    EXPECT_EQ(ids(copy.GetAvailableSizes()), (Texts{"A3", "A0"}));
    EXPECT_NE(copy.GetSizeDef("A3").tag(), format.GetSizeDef("A3").tag());
}

TEST_F(FormatDef, ListsItsRequiredBlocksAndSizes)
{
    TrFormatDefV1 format = makeFormat("F", {"A3"});
    format.SetDescription("Sheets");
    format.SetRequiredBlockIds({"TITLE", "REV"});
    format.InfoObject();
    const std::string listing = nxhost::takeInfoWindow();
    EXPECT_TRUE(listing.starts_with("ID                      F\n"
                                    "Description             Sheets\n"
                                    "Units                   Millimeters\n"
                                    "Required Block IDs:\n"
                                    "TITLE\n"
                                    "REV\n"
                                    "Available sizes:\n"
                                    "Id                      A3\n"
                                    "Description             \n"))
        << listing;
    format.SetUnits(2);
    format.InfoObject();
    EXPECT_NE(nxhost::takeInfoWindow().find("Units                   Inches\n"), std::string::npos);
}
