// Another format for a sheet: blocks that it has keep what they say, whatever became of their definitions.
#include "shell.h"

namespace {

// Formats F and G; block B has a place on F only, until its definition is built anew.
class Replacements : public Shell {
protected:
    void SetUp() override
    {
        Shell::SetUp();
        build("at: [30, 20], formats: [F]", {"number", "owner", "third"});
        ASSERT_EQ(qelfmt("stamp F/A3 --defs site --sheet S1 -o a.qdraw").status, 0);
        for (const char *value : {"number 4711", "owner Miller", "third Wednesday"})
            ASSERT_EQ(on("field set a.qdraw " + std::string(value)).status, 0);
        drawing = read("a.qdraw");
    }
    // The cells stand beside each other in their order, 30 wide.
    void build(const std::string &place, const std::vector<std::string> &cells) const
    {
        std::string text = "units: mm\n"
                           "formats:\n"
                           "  F: {required: [B], sheets: iso, sizes: [A3]}\n"
                           "  G: {required: [], sheets: iso, sizes: [A3]}\n"
                           "blocks:\n"
                           "  B:\n"
                           "    size: [90, 10]\n"
                           "    place: {" +
                           place + "}\n    cells:\n";
        int x = 0;
        for (const std::string &cell : cells) {
            text += "      " + cell + ": {cell: [" + std::to_string(x) + ", 0, 20, 10]}\n";
            x += 20;
        }
        write("d.yaml", text);
        const Outcome built = qelfmt("defs build d.yaml -o site --quiet");
        ASSERT_EQ(built.status, 0) << built.err;
    }
    Outcome on(const std::string &line) const { return qelfmt("--defs site " + line); }
    Outcome replace(const std::string &options = "") const
    {
        return on("format replace " + options + " a.qdraw G/A3");
    }
    nlohmann::json values() const { return json("--defs site field list a.qdraw")["B"]; }
    void expectUntouched() const { EXPECT_EQ(read("a.qdraw"), drawing); }

    std::string drawing;
};

using Values = nlohmann::json;

TEST_F(Replacements, ABlockWithoutAPlaceIsNamedWithItsValuesAndGoesOnlyByForce)
{
    const Outcome refused = replace();
    EXPECT_EQ(refused.status, 3);
    EXPECT_NE(
        refused.err.find("format G has no place for B (number = 4711; owner = Miller; third = "
                         "Wednesday): give --force to lose it"),
        std::string::npos)
        << refused.err;
    expectUntouched();
    const Outcome forced = replace("--force");
    EXPECT_EQ(forced.status, 0) << forced.err;
    EXPECT_NE(forced.err.find("lost B (number = 4711"), std::string::npos) << forced.err;
    EXPECT_EQ(on("format show a.qdraw").out, "G/A3\n");
    EXPECT_EQ(on("block list a.qdraw").out, "");
}

// By position "date" would have got the value of "owner", and that one its cell.
TEST_F(Replacements, AFieldThatTheDefinitionHasNoMoreIsNamedAndGoesOnlyByForce)
{
    build("at: [30, 20]", {"number", "date", "third"});
    const Outcome refused = replace();
    EXPECT_EQ(refused.status, 3);
    EXPECT_NE(refused.err.find("B.owner = Miller would be lost"), std::string::npos) << refused.err;
    EXPECT_NE(refused.err.find("--force"), std::string::npos) << refused.err;
    expectUntouched();
    const Outcome forced = replace("--force");
    EXPECT_EQ(forced.status, 0) << forced.err;
    EXPECT_NE(forced.err.find("lost B.owner = Miller"), std::string::npos) << forced.err;
    EXPECT_EQ(values(), Values({{"number", "4711"}, {"date", ""}, {"third", "Wednesday"}}));
    const Outcome checked = on("format check a.qdraw");
    EXPECT_EQ(checked.status, 0) << checked.out;
}

TEST_F(Replacements, AFieldInTheMiddleScramblesNoValues)
{
    build("at: [30, 20], formats: [G]", {"date", "third", "number", "owner"});
    const Outcome replaced = replace();
    EXPECT_EQ(replaced.status, 0) << replaced.err;
    EXPECT_NE(replaced.err.find("brought up to date: B"), std::string::npos) << replaced.err;
    EXPECT_EQ(
        values(),
        Values({{"date", ""}, {"number", "4711"}, {"owner", "Miller"}, {"third", "Wednesday"}}));
    EXPECT_EQ(on("format check a.qdraw").status, 0) << on("format check a.qdraw").out;
    const auto block = json("--defs site block show a.qdraw B");
    EXPECT_EQ(block["x"], 30.0);
    EXPECT_EQ(block["y"], 20.0);
}

TEST_F(Replacements, ADryRunRefusesLikeTheRealOneAndChangesNothing)
{
    build("at: [30, 20]", {"number", "date", "third"});
    EXPECT_EQ(replace("--dry-run").status, 3);
    EXPECT_EQ(replace("--dry-run --force").status, 0);
    expectUntouched();
}

TEST_F(Replacements, AFrameThatIsMissingLeavesTheDrawingAsItWas)
{
    build("at: [30, 20]", {"number", "owner", "third"});
    std::filesystem::remove_all(folder / "site/patterns");
    const Outcome failed = replace();
    EXPECT_EQ(failed.status, 3);
    EXPECT_NE(failed.err.find("a.qdraw, sheet S1: "), std::string::npos) << failed.err;
    EXPECT_NE(failed.err.find("Unable to find pattern"), std::string::npos) << failed.err;
    expectUntouched();
    const Outcome resized = on("format resize a.qdraw A3");
    EXPECT_EQ(resized.status, 0) << resized.err; // it is that size already
}

} // namespace
