// format check, update and replace, as a user runs them.
#include "shell.h"

namespace {

class Updates : public Shell {
protected:
    void SetUp() override
    {
        Shell::SetUp();
        buildIso();
        ASSERT_EQ(qelfmt("part new a.qdraw --defs site").status, 0);
        ASSERT_EQ(qelfmt("sheet add a.qdraw A --format ISO/A3 --defs site").status, 0);
        ASSERT_EQ(qelfmt("sheet add a.qdraw B --format ISO/A4 --defs site").status, 0);
        ASSERT_EQ(qelfmt("field set a.qdraw TITLE.title Casing -s A --defs site").status, 0);
    }
    // Another layer for the texts of every block, straight in the definitions' text.
    void editDefinitions() const
    {
        ASSERT_EQ(qelfmt("defs dump site/format_defs/iso.prt -o iso.yaml").status, 0);
        std::string text = read("iso.yaml");
        const std::string key = "text_layer: ";
        for (std::size_t at = 0; (at = text.find(key, at)) != std::string::npos; at += key.size())
            text.replace(at + key.size(), text.find('\n', at) - at - key.size(), "55");
        write("iso.yaml", text);
        const Outcome built = qelfmt("defs build iso.yaml -o site --quiet");
        ASSERT_EQ(built.status, 0) << built.err;
    }
    std::string stateOf(const std::string &sheet) const
    {
        const Outcome checked = qelfmt("--json format check a.qdraw -s " + sheet + " --defs site");
        const auto result = nlohmann::json::parse(checked.out, nullptr, false);
        return result.is_array() && !result.empty() ? result[0]["state"].get<std::string>()
                                                    : checked.err;
    }
};

TEST_F(Updates, WhatWasJustPlacedIsCurrent)
{
    const Outcome checked = qelfmt("format check a.qdraw --defs site");
    EXPECT_EQ(checked.status, 0) << checked.out;
    EXPECT_NE(checked.out.find("sheet A: current (ISO/A3)"), std::string::npos) << checked.out;
    EXPECT_NE(checked.out.find("sheet B: current (ISO/A4)"), std::string::npos) << checked.out;
}

TEST_F(Updates, AChangedSlotIsNamedWithBothValuesAndUpdated)
{
    editDefinitions();
    const Outcome checked = qelfmt("format check a.qdraw -s A --defs site");
    EXPECT_EQ(checked.status, 1);
    EXPECT_NE(checked.out.find("drifted"), std::string::npos) << checked.out;
    EXPECT_NE(checked.out.find("text_layer: "), std::string::npos) << checked.out;

    const std::string before = read("a.qdraw");
    const Outcome dry = qelfmt("--dry-run format update a.qdraw --defs site");
    EXPECT_EQ(read("a.qdraw"), before);
    const Outcome real = qelfmt("format update a.qdraw --defs site");
    EXPECT_EQ(real.status, 0) << real.err;
    EXPECT_NE(real.out.find("text_layer has changed"), std::string::npos) << real.out;
    EXPECT_EQ(stateOf("A"), "current");
    EXPECT_EQ(stateOf("B"), "current");
    EXPECT_EQ(qelfmt("field get a.qdraw title -s A --defs site").out, "Casing\n");
}

TEST_F(Updates, AReportInJsonIsNothingButJson)
{
    editDefinitions();
    const Outcome update = qelfmt("--json format update a.qdraw --defs site");
    ASSERT_EQ(update.status, 0) << update.err;
    const auto report = nlohmann::json::parse(update.out, nullptr, false);
    ASSERT_TRUE(report.is_array()) << update.out;
    EXPECT_EQ(report.size(), 2u);
    EXPECT_EQ(report[0]["blocks"][0]["id"], "TITLE");
    EXPECT_NE(update.err.find("Format update took"), std::string::npos); // said by the library
    EXPECT_EQ(qelfmt("--json --quiet format update a.qdraw --defs site").err, "");
}

TEST_F(Updates, ASheetWithoutItsDefinitionIsAnOrphanAndIsLeftAlone)
{
    std::filesystem::create_directories(folder / "empty/format_defs");
    const Outcome checked = qelfmt("format check a.qdraw -s A --defs empty");
    EXPECT_EQ(checked.status, 1);
    EXPECT_NE(checked.out.find("orphan"), std::string::npos) << checked.out;
    const std::string before = read("a.qdraw");
    const Outcome update = qelfmt("format update a.qdraw --defs empty");
    EXPECT_EQ(update.status, 1);
    EXPECT_NE(update.err.find("format ISO is not defined"), std::string::npos) << update.err;
    EXPECT_EQ(read("a.qdraw"), before);
}

TEST_F(Updates, ASheetWithoutAFormatHasNone)
{
    ASSERT_EQ(qelfmt("sheet add a.qdraw C --defs site").status, 0);
    EXPECT_EQ(stateOf("C"), "none");
    EXPECT_EQ(qelfmt("format check a.qdraw -s C --defs site").status, 0);
    EXPECT_EQ(qelfmt("format update a.qdraw -s C --defs site").status, 3);
}

TEST_F(Updates, AFormatIsReplacedAndTheTitleKeepsItsValues)
{
    EXPECT_EQ(qelfmt("format replace a.qdraw ISO/A2 -s A --defs site").status, 0);
    EXPECT_EQ(qelfmt("format show a.qdraw -s A --defs site").out, "ISO/A2\n");
    EXPECT_EQ(qelfmt("field get a.qdraw title -s A --defs site").out, "Casing\n");
    EXPECT_EQ(qelfmt("format replace a.qdraw NOSUCH/A2 -s A --defs site").status, 3);
    EXPECT_EQ(qelfmt("format replace a.qdraw ISO -s A --defs site").status, 2);
}

TEST_F(Updates, FormatsAndPlacesAreListed)
{
    EXPECT_NE(qelfmt("format list a.qdraw --defs site").out.find("ISO"), std::string::npos);
    const auto places = json("block locations a.qdraw TITLE -s A --defs site");
    ASSERT_EQ(places.size(), 1u);
    EXPECT_EQ(places[0]["x"], 230.0); // 420 - 10 - 180
    const auto block = json("block show a.qdraw TITLE -s A --defs site");
    EXPECT_EQ(block["x"], 230.0);
    EXPECT_EQ(block["fields"]["title"], "Casing");
}

} // namespace
