// Definition files: what is loaded from where, and what is offered for which part.
#include "definitions/definition_file_manager.h"

#include "api/trv_fmt.h"
#include "foundation/log.h"
#include "tests/support/definitions.h"

#include "uf_obj.h"

#include <ctime>
#include <iostream>

namespace {

using Manager = TrDefinitionFileManager;
using Texts = std::vector<std::string>;

class DefinitionFiles : public testing::Test {
protected:
    DefinitionFiles() { story.newPart(); }
    ~DefinitionFiles() override { Manager::UnloadDefinitionFiles(); }

    template <class Fill> std::string write(const std::string &name, Fill fill) const
    {
        return writeDefinitionPart(story, name, fill);
    }
    // One part with these definitions; then all files are loaded.
    template <class Fill> void load(Fill fill) const
    {
        write("definitions.prt", fill);
        Manager::LoadDefinitionFiles();
    }

    Story story;
};

void makeFormatOf(const std::string &id, const std::string &category, int units = 1)
{
    TrFormatDefV1 format = makeFormat(id, {"A3"});
    format.SetUnits(units);
    if (!category.empty()) format.SetCategory(category);
}

void makeBlockOf(const std::string &id, const Texts &formats, const std::string &category = "",
                 int units = 1)
{
    TrBlockDefV1 block;
    block.SetId(id);
    block.SetUnits(units);
    if (!category.empty()) block.SetCategory(category);
    for (const std::string &format : formats) block.addBlockLocation(makeBlockPlaces(format, {}));
}

template <class Definition> Texts ids(const std::vector<boost::shared_ptr<Definition>> &list)
{
    Texts all;
    for (const auto &definition : list) all.push_back(definition->GetId());
    return all;
}

} // namespace

// --- loading ------------------------------------------------------------------------------------------

TEST_F(DefinitionFiles, NothingIsAnsweredBeforeLoading)
{
    write("d.prt", [] {
        makeFormat("F", {"A3"});
        makeBlock("TITLE");
    });
    EXPECT_FALSE(Manager::GetFormatDefinition("F"));
    EXPECT_FALSE(Manager::GetBlockDefinition("TITLE"));
    EXPECT_EQ(Manager::GetFormatCategories(), Texts{"Corporate"});
    EXPECT_EQ(Manager::GetBlockCategories({}), Texts{"Corporate"});
    EXPECT_TRUE(Manager::GetFormatDefinitions("ALL").empty());
    EXPECT_TRUE(Manager::GetBlockDefinitions("ALL").empty());
    EXPECT_TRUE(
        Manager::GetBlockDefinitions(boost::shared_ptr<TrFormatDefV1>(), "ALL", false).empty());
    EXPECT_TRUE(Manager::GetBlockDefinitions(boost::shared_ptr<TrFormatBase>(), "ALL").empty());
    EXPECT_TRUE(Manager::allFormatDefinitions().empty());
}

TEST_F(DefinitionFiles, WhatAFileHoldsIsFoundById)
{
    load([] {
        makeFormat("F", {"A3"});
        makeBlock("TITLE");
    });
    ASSERT_TRUE(Manager::GetFormatDefinition("F"));
    EXPECT_EQ(Manager::GetFormatDefinition("F")->GetId(), "F");
    EXPECT_EQ(Manager::GetFormatDefinition("F")->GetSizeDef("A3").GetLength(), 420);
    EXPECT_EQ(Manager::GetBlockDefinition("TITLE")->GetId(), "TITLE");
    EXPECT_FALSE(Manager::GetFormatDefinition("f"));
    EXPECT_FALSE(Manager::GetFormatDefinition("TITLE"));
    EXPECT_FALSE(Manager::GetBlockDefinition("F"));
}

TEST_F(DefinitionFiles, TheFirstOfAnIdCountsAcrossFilesAndWithinOne)
{
    const auto described = [](const std::string &id, const std::string &text) {
        makeFormat(id, {"A3"}).SetDescription(text);
        makeBlock(id).SetDescription(text);
    };
    write("b.prt", [&] { described("F", "from b"); });
    write("a.prt", [&] {
        described("F", "first of a");
        described("F", "second of a");
    });
    Manager::LoadDefinitionFiles();
    EXPECT_EQ(Manager::GetFormatDefinition("F")->GetDescription(), "first of a");
    EXPECT_EQ(Manager::GetBlockDefinition("F")->GetDescription(), "first of a");
}

TEST_F(DefinitionFiles, OnlyPartFilesAreTried)
{
    const std::string a = write("a.prt", [] { makeFormat("F", {}); });
    story.writeFile("site/format_defs/notes.txt", "not a part");
    story.writeFile("site/format_defs/old.prt.bak", "not a part");
    story.writeFile("site/format_defs/UPPER.PRT", "not a part");
    Base::log::Recording recording{&QelFmt::info_log()};
    Manager::LoadDefinitionFiles();
    EXPECT_EQ(recording.texts(), Texts{"Loading definition file: " + a});
}

TEST_F(DefinitionFiles, AFileThatCannotBeOpenedIsAnnouncedAndPassedOver)
{
    const std::string a = story.writeFile("site/format_defs/a.prt", "garbage");
    const std::string b = write("b.prt", [] { makeFormat("F", {}); });
    Base::log::Recording recording{&QelFmt::info_log()};
    EXPECT_NO_THROW(Manager::LoadDefinitionFiles());
    EXPECT_EQ(recording.texts(),
              (Texts{"Loading definition file: " + a, "Loading definition file: " + b}));
    EXPECT_TRUE(Manager::GetFormatDefinition("F"));
} // the story checks that the platform's lists were given back

TEST_F(DefinitionFiles, AFileIsAnnouncedBeforeItIsOpened)
{
    write("a.prt", [] {});
    Base::log::Recording recording{&QelFmt::info_log()};
    std::size_t announced = 0;
    nxhost::onCall("UF_PART_open_quiet", [&] { announced = recording.texts().size(); });
    Manager::LoadDefinitionFiles();
    EXPECT_EQ(announced, 1u);
}

TEST_F(DefinitionFiles, LoadingASecondTimeDoesNothing)
{
    load([] { makeFormat("F", {}); });
    write("later.prt", [] { makeFormat("G", {}); });
    Manager::LoadDefinitionFiles();
    EXPECT_FALSE(Manager::GetFormatDefinition("G"));
    Manager::UnloadDefinitionFiles();
    Manager::LoadDefinitionFiles();
    EXPECT_TRUE(Manager::GetFormatDefinition("G"));
}

TEST_F(DefinitionFiles, LoadingLeavesTheWorkPart)
{
    load([] { makeFormat("F", {}); });
    EXPECT_EQ(UF_ASSEM_ask_work_part(), story.part());
}

TEST_F(DefinitionFiles, OnlyPartsThatLoadingOpenedAreClosed)
{
    const std::string ours = write("a.prt", [] { makeFormat("F", {}); });
    const std::string theirs = write("b.prt", [] { makeFormat("G", {}); });
    tag_t open = NULL_TAG;
    UF_PART_load_status_t status{};
    ASSERT_EQ(UF_PART_open_quiet(theirs.c_str(), &open, &status), 0);
    UF_PART_free_load_status(&status);

    Manager::LoadDefinitionFiles();
    EXPECT_TRUE(Manager::GetFormatDefinition("F"));
    EXPECT_TRUE(Manager::GetFormatDefinition("G"));
    EXPECT_EQ(UF_PART_is_loaded(ours.c_str()), 1);
    Manager::UnloadDefinitionFiles();
    EXPECT_EQ(UF_PART_is_loaded(ours.c_str()), 0);
    EXPECT_EQ(UF_PART_ask_part_tag(theirs.c_str()), open);
    EXPECT_FALSE(Manager::GetFormatDefinition("F"));
}

TEST_F(DefinitionFiles, UnloadingPassesOverPartsThatSomeoneElseHasClosed)
{
    const std::string a = write("a.prt", [] { makeFormat("F", {}); });
    const std::string b = write("b.prt", [] { makeFormat("G", {}); });
    Manager::LoadDefinitionFiles();
    ASSERT_EQ(UF_PART_close(UF_PART_ask_part_tag(a.c_str()), 0, 1), 0);
    EXPECT_NO_THROW(Manager::UnloadDefinitionFiles());
    EXPECT_EQ(UF_PART_is_loaded(b.c_str()), 0);
    EXPECT_NO_THROW(Manager::UnloadDefinitionFiles());
}

TEST_F(DefinitionFiles, ADefinitionWithoutAnIdEndsTheLoadingWithWhatIsLoadedSoFar)
{
    write("a.prt", [] { makeFormat("F", {}); });
    write("b.prt", [] { TrBlockDefV1().SetDescription("no id"); });
    write("c.prt", [] { makeFormat("G", {}); });
    EXPECT_EQ(textThrownBy([] { Manager::LoadDefinitionFiles(); }),
              "Something wrong with block definition. It did not have a ID.");
    EXPECT_TRUE(Manager::GetFormatDefinition("F"));
    EXPECT_FALSE(Manager::GetFormatDefinition("G"));
    Manager::UnloadDefinitionFiles();
    write("a2.prt", [] { TrFormatDefV1().SetDescription("no id"); });
    EXPECT_EQ(textThrownBy([] { Manager::LoadDefinitionFiles(); }),
              "Something wrong with format definition. It did not have a ID.");
}

// What the interface says of both.
TEST_F(DefinitionFiles, InitialisingPassesOverAFileThatIsNoPartAndFailsForADefinitionWithoutAnId)
{
    story.writeFile("site/format_defs/a.prt", "garbage");
    write("b.prt", [] { makeFormat("F", {}); });
    EXPECT_EQ(TRV_FMT_initialize(), 0) << TRV_FMT_ask_last_error();
    EXPECT_TRUE(Manager::GetFormatDefinition("F"));
    TRV_FMT_terminate();
    write("c.prt", [] { TrBlockDefV1().SetDescription("no id"); });
    EXPECT_EQ(TRV_FMT_initialize(), 1);
    EXPECT_STREQ(TRV_FMT_ask_last_error(),
                 "Something wrong with block definition. It did not have a ID.");
    EXPECT_TRUE(Manager::GetFormatDefinition("F")); // as loaded so far
    TRV_FMT_terminate();
}

// --- categories and units -----------------------------------------------------------------------------

TEST_F(DefinitionFiles, CategoriesComeOnceEachAfterCorporate)
{
    load([] {
        makeFormatOf("d", "Default");
        makeFormatOf("c", "");
        makeFormatOf("b", "Special");
        makeFormatOf("a", "Corporate");
        makeFormatOf("e", "Special");
        makeFormatOf("inch", "Inches", 2);
    });
    EXPECT_EQ(Manager::GetFormatCategories(), (Texts{"Corporate", "Special", "Default"}));
}

TEST_F(DefinitionFiles, AFormatWithoutACategoryIsOfTheDefaultOne)
{
    load([] {
        makeFormatOf("none", "");
        makeFormatOf("literal", "Default");
        makeFormatOf("other", "Special");
    });
    EXPECT_EQ(ids(Manager::GetFormatDefinitions("Default")), (Texts{"literal", "none"}));
    EXPECT_EQ(ids(Manager::GetFormatDefinitions("")), Texts{"none"});
    EXPECT_EQ(ids(Manager::GetFormatDefinitions("Special")), Texts{"other"});
    EXPECT_EQ(ids(Manager::GetFormatDefinitions("ALL")), (Texts{"literal", "none", "other"}));
    EXPECT_TRUE(Manager::GetFormatDefinitions("Corporate").empty());
}

TEST_F(DefinitionFiles, ListsAreInByteOrderOfTheIds)
{
    load([] {
        for (const char *id : {"b", "B", "a", "\xc3\xa4", "_"}) {
            makeFormat(id, {});
            makeBlock(id);
        }
    });
    EXPECT_EQ(ids(Manager::GetFormatDefinitions("ALL")), (Texts{"B", "_", "a", "b", "\xc3\xa4"}));
    EXPECT_EQ(ids(Manager::GetBlockDefinitions("ALL")), (Texts{"B", "_", "a", "b", "\xc3\xa4"}));
}

TEST_F(DefinitionFiles, OnlyDefinitionsInTheUnitsOfTheWorkPartAreOffered)
{
    load([] {
        for (const int units : {0, 1, 2, 3}) {
            makeFormatOf("F" + std::to_string(units), "C" + std::to_string(units), units);
            makeBlockOf("B" + std::to_string(units), {"F1"}, "", units);
        }
    });
    const auto f1 = Manager::GetFormatDefinition("F1");
    EXPECT_EQ(ids(Manager::GetFormatDefinitions("ALL")), Texts{"F1"});
    EXPECT_EQ(ids(Manager::GetBlockDefinitions("ALL")), Texts{"B1"});
    EXPECT_EQ(ids(Manager::GetBlockDefinitions(f1, "ALL", false)), Texts{"B1"});
    EXPECT_EQ(Manager::GetFormatCategories(), (Texts{"Corporate", "C1"}));

    story.newPart("inches.prt", UF_PART_ENGLISH);
    EXPECT_EQ(ids(Manager::GetFormatDefinitions("ALL")), Texts{"F2"});
    EXPECT_EQ(ids(Manager::GetBlockDefinitions("ALL")), Texts{"B2"});
    EXPECT_EQ(ids(Manager::GetBlockDefinitions(f1, "ALL", false)), Texts{"B2"});
    EXPECT_EQ(Manager::GetFormatCategories(), (Texts{"Corporate", "C2"}));
    EXPECT_TRUE(Manager::GetFormatDefinition("F0")); // a single one is found whatever its units
    EXPECT_EQ(Manager::allFormatDefinitions().size(), 4u);
    EXPECT_EQ(Manager::allBlockDefinitions().size(), 4u);
}

TEST_F(DefinitionFiles, AnObsoleteFormatIsFoundButNotOffered)
{
    load([] {
        makeFormat("OLD", {}).SetObsolete(true);
        makeFormat("NEW", {});
    });
    EXPECT_TRUE(Manager::GetFormatDefinition("OLD"));
    EXPECT_EQ(ids(Manager::GetFormatDefinitions("ALL")), Texts{"NEW"});
    story.useSettings("[Show In Menu]\nOLD = 0\nNEW = 1\n");
    EXPECT_EQ(ids(Manager::GetFormatDefinitions("ALL")), Texts{"OLD"});
    EXPECT_EQ(Manager::GetFormatCategories(), (Texts{"Corporate", "Default"}));
}

// --- blocks -------------------------------------------------------------------------------------------

TEST_F(DefinitionFiles, BlocksAreOfferedForTheirFormatsTheirSuitesAndByDefault)
{
    load([] {
        TrFormatDefV1 format = makeFormat("F", {"A3"});
        format.SetSuiteName("FAMILY");
        makeFormat("G", {"A3"});
        makeBlockOf("BOTH", {"F", "FAMILY", "Default"});
        makeBlockOf("EVERYWHERE", {"Default"});
        makeBlockOf("FAMILY_ONLY", {"X", "FAMILY"});
        makeBlockOf("G_ONLY", {"G"});
        makeBlockOf("NOWHERE", {});
    });
    const auto offered = [](const std::string &format) {
        return ids(
            Manager::GetBlockDefinitions(Manager::GetFormatDefinition(format), "ALL", false));
    };
    EXPECT_EQ(offered("F"), (Texts{"BOTH", "EVERYWHERE", "FAMILY_ONLY"}));
    EXPECT_EQ(offered("G"), (Texts{"BOTH", "EVERYWHERE", "G_ONLY"}));
    EXPECT_EQ(Manager::GetBlockDefinitions("ALL").size(), 5u);
}

TEST_F(DefinitionFiles, BlocksHiddenFromTheMenuAreLeftOutOfMenus)
{
    load([] {
        makeFormat("F", {});
        makeBlockOf("HIDDEN", {"F"});
        makeBlockOf("SHOWN", {"F"});
    });
    story.useSettings("[Show In Menu]\nHIDDEN = 0\n");
    const auto format = Manager::GetFormatDefinition("F");
    EXPECT_EQ(ids(Manager::GetBlockDefinitions("ALL")), Texts{"SHOWN"});
    EXPECT_EQ(ids(Manager::GetBlockDefinitions(format, "ALL", true)), Texts{"SHOWN"});
    EXPECT_EQ(ids(Manager::GetBlockDefinitions(format, "ALL", false)), (Texts{"HIDDEN", "SHOWN"}));
    EXPECT_TRUE(Manager::GetBlockDefinition("HIDDEN"));
}

TEST_F(DefinitionFiles, BlockListsFollowTheCategoryRule)
{
    load([] {
        makeFormat("F", {});
        makeBlockOf("A", {"F"}, "Special");
        makeBlockOf("B", {"F"});
    });
    const auto format = Manager::GetFormatDefinition("F");
    EXPECT_EQ(ids(Manager::GetBlockDefinitions("Special")), Texts{"A"});
    EXPECT_EQ(ids(Manager::GetBlockDefinitions("Default")), Texts{"B"});
    EXPECT_EQ(ids(Manager::GetBlockDefinitions(format, "Special", false)), Texts{"A"});
    EXPECT_EQ(ids(Manager::GetBlockDefinitions(format, "Default", false)), Texts{"B"});
    EXPECT_EQ(ids(Manager::GetBlockDefinitions(format, "", false)), Texts{"B"});
}

TEST_F(DefinitionFiles, APlacedFormatAsksWithItsOwnNameAndDefinition)
{
    load([] {
        TrFormatDefV1 format = makeFormat("F", {"A3"});
        format.SetSuiteName("FAMILY");
        makeBlockOf("A", {"F"}, "Special");
        makeBlockOf("B", {"FAMILY"}, "Suites");
        makeBlockOf("C", {"Default"}, "Everywhere");
        makeBlockOf("D", {"G", "F", "F"});
        makeBlockOf("E", {"F"}, "Inches", 2);
    });
    const tag_t sheet = story.addSheet("SHEET1", 420, 297);
    const auto drawing = TrDrawing::getDrawing(sheet);
    EXPECT_TRUE(Manager::GetBlockDefinitions(drawing->format(), "ALL").empty()); // no format yet
    const auto definition = Manager::GetFormatDefinition("F");
    drawing->addFormat(definition, definition->GetSizeDef("A3"));
    // Categories go by the name alone; lists also by suite and default.
    EXPECT_EQ(Manager::GetBlockCategories(drawing->format()),
              (Texts{"Corporate", "Special", "Default"}));
    EXPECT_EQ(ids(Manager::GetBlockDefinitions(drawing->format(), "ALL")),
              (Texts{"A", "B", "C", "D"}));
    story.useSettings("[Show In Menu]\nA = 0\n");
    EXPECT_EQ(ids(Manager::GetBlockDefinitions(drawing->format(), "ALL")), (Texts{"B", "C", "D"}));
}

TEST_F(DefinitionFiles, WithoutAFormatToAskForItIsAnError)
{
    load([] { makeBlock("A"); });
    EXPECT_THROW(Manager::GetBlockCategories({}), std::logic_error);
    EXPECT_THROW(Manager::GetBlockDefinitions(boost::shared_ptr<TrFormatBase>(), "ALL"),
                 std::logic_error);
    EXPECT_THROW(Manager::GetBlockDefinitions(boost::shared_ptr<TrFormatDefV1>(), "ALL", false),
                 std::logic_error);
}

// --- cost ---------------------------------------------------------------------------------------------

namespace {

// A format and blocks of twenty fields each.
void makeLibrary(int blocks)
{
    makeFormat("F", {"A4", "A3", "A2"});
    for (int i = 0; i < blocks; ++i) {
        TrBlockDefV1 block = makeBlock("BLOCK" + std::to_string(i));
        for (int k = 0; k < 20; ++k) block.AddFieldDefinition(makeField("F" + std::to_string(k)));
    }
}

} // namespace

TEST_F(DefinitionFiles, LoadingAndListingCostsCallsInProportionToTheBlocks)
{
    const auto callsFor = [&](const std::string &file, int blocks) {
        boost::filesystem::remove_all(story.definitionsFolder());
        boost::filesystem::create_directories(story.definitionsFolder());
        write(file, [&] { makeLibrary(blocks); });
        nxhost::clearCallCounts();
        Manager::LoadDefinitionFiles();
        const auto offered =
            Manager::GetBlockDefinitions(Manager::GetFormatDefinition("F"), "ALL", false);
        EXPECT_EQ(offered.size(), static_cast<std::size_t>(blocks));
        const auto calls = static_cast<double>(nxhost::totalCalls());
        Manager::UnloadDefinitionFiles();
        return calls;
    };
    const double small = callsFor("small.prt", 10), large = callsFor("large.prt", 100);
    EXPECT_LT(large / small, 11.0);
}

TEST_F(DefinitionFiles, TimeToLoadAndListGrowsInProportionToTheBlocksSoak)
{
    const auto secondsFor = [&](const std::string &file, int blocks) {
        boost::filesystem::remove_all(story.definitionsFolder());
        boost::filesystem::create_directories(story.definitionsFolder());
        write(file, [&] { makeLibrary(blocks); });
        const std::clock_t start = std::clock();
        Manager::LoadDefinitionFiles();
        const auto offered =
            Manager::GetBlockDefinitions(Manager::GetFormatDefinition("F"), "ALL", false);
        EXPECT_EQ(offered.size(), static_cast<std::size_t>(blocks));
        const double seconds = static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
        Manager::UnloadDefinitionFiles();
        return seconds;
    };
    double small = 1e9, large = 1e9; // the best of rounds in turns: others use the machine too
    for (int round = 0; round < 3; ++round) {
        small = std::min(small, secondsFor("small.prt", 300));
        large = std::min(large, secondsFor("large.prt", 3000));
    }
    std::cout << "300 blocks " << small << " s, 3000 blocks " << large << " s, ratio "
              << large / small << '\n';
    EXPECT_LT(large / small, 20.0); // 10 and some noise of the machine; a square would be 100
}
