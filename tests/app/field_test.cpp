// Values of fields from the command line.
#include "shell.h"

namespace {

class FieldVerbs : public Shell {
protected:
    void SetUp() override
    {
        Shell::SetUp();
        buildIso();
        ASSERT_EQ(qelfmt("stamp ISO/A3 --defs site -o a.qdraw").status, 0);
    }
    Outcome field(const std::string &verb, const std::string &rest) const
    {
        return qelfmt("--defs site field " + verb + " a.qdraw " + rest);
    }
};

TEST_F(FieldVerbs, ALockedFieldIsSetByForceOnly)
{
    EXPECT_EQ(field("editable", "number").out, "yes\n");
    ASSERT_EQ(field("set", "number 1").status, 0);
    ASSERT_EQ(field("editable", "number no").status, 0);
    EXPECT_EQ(field("editable", "number").out, "no\n");
    const Outcome refused = field("set", "number 2");
    EXPECT_EQ(refused.status, 3);
    EXPECT_NE(refused.err.find("TITLE.number: is locked"), std::string::npos) << refused.err;
    EXPECT_NE(refused.err.find("--force"), std::string::npos);
    EXPECT_EQ(field("get", "number").out, "1\n");
    ASSERT_EQ(field("set", "--force number 2").status, 0);
    EXPECT_EQ(field("get", "number").out, "2\n");
}

TEST_F(FieldVerbs, AValueIsEmptiedOnlyWhenThatIsSaid)
{
    ASSERT_EQ(field("set", "title Casing").status, 0);
    const Outcome missing = field("set", "title");
    EXPECT_EQ(missing.status, 2);
    EXPECT_NE(missing.err.find("field set: no value given"), std::string::npos) << missing.err;
    EXPECT_NE(missing.err.find("--clear"), std::string::npos);
    EXPECT_EQ(field("set", "title x --clear").status, 2);
    EXPECT_EQ(field("get", "title").out, "Casing\n");
    ASSERT_EQ(field("set", "title --clear").status, 0);
    EXPECT_EQ(field("get", "title").out, "\n");
    ASSERT_EQ(field("set", "title Casing").status, 0);
    ASSERT_EQ(field("set", "title ''").status, 0);
    EXPECT_EQ(field("get", "title").out, "\n");
}

TEST_F(FieldVerbs, AValueThatDoesNotFitIsReportedWithItsCellAndByHowMuch)
{
    EXPECT_EQ(field("set", "sheet 1").err, "");
    const Outcome set = field("set", "classification 'far too long for any cell of twenty-four'");
    EXPECT_EQ(set.status, 0);
    EXPECT_NE(set.err.find("TITLE.classification: the text is "), std::string::npos) << set.err;
    EXPECT_NE(set.err.find("too wide for its cell of 24 x 9"), std::string::npos) << set.err;
    const auto shown = json("--defs site field show a.qdraw classification");
    EXPECT_EQ(shown["fits"], false);
    // The text starts 2 from the left: what is wider than 22 sticks out.
    EXPECT_NEAR(shown["misfit"]["too_wide"].get<double>(),
                shown["misfit"]["text"][0].get<double>() - 22.0, 1e-9);
    const std::string before = read("a.qdraw");
    EXPECT_EQ(field("set", "--strict classification 'far too long for any cell of 24 mm'").status,
              1);
    EXPECT_EQ(read("a.qdraw"), before);
}

TEST_F(FieldVerbs, SourcesTellWhereAValueComesFromAndWhatItWouldBecome)
{
    ASSERT_EQ(field("set", "owner 'Somebody else'").status, 0);
    const auto fields = json("--defs site field sources a.qdraw")["TITLE"];
    EXPECT_EQ(fields["owner"]["from"], nlohmann::json({"site COMPANY", "definition"}));
    EXPECT_EQ(fields["owner"]["value"], "Somebody else");
    EXPECT_EQ(fields["owner"]["would_be"], "Nordhaven Pumps");
    EXPECT_EQ(fields["title"]["from"][0], "part TITLE");
    EXPECT_EQ(fields["title"]["share"], "part TITLE");
    EXPECT_EQ(fields["status"]["from"][0], "sheet STATUS");
    EXPECT_EQ(fields["language"]["value"], fields["language"]["would_be"]);
    EXPECT_EQ(json("--defs site field sources a.qdraw owner")["TITLE"].size(), 1u);
}

TEST_F(FieldVerbs, ShowKnowsAllOfOneField)
{
    ASSERT_EQ(field("set", "title 'Вал насоса'").status, 0);
    const auto shown = json("--defs site field show a.qdraw title");
    EXPECT_EQ(shown["block"], "TITLE");
    EXPECT_EQ(shown["value"], "Вал насоса");
    EXPECT_EQ(shown["note"], "Вал насоса");
    EXPECT_EQ(shown["editable"], true);
    EXPECT_EQ(shown["fits"], true);
    // The block's corner is at (230, 10), the cell at (69, 8) in it, its margins are 2 and 1.5.
    EXPECT_NEAR(shown["x"].get<double>(), 301.0, 1e-9);
    EXPECT_NEAR(shown["y"].get<double>(), 19.5, 1e-9);
    EXPECT_EQ(shown["cell"], nlohmann::json({60.0, 10.0}));
    const Outcome unknown = field("show", "titel");
    EXPECT_EQ(unknown.status, 3);
    EXPECT_NE(unknown.err.find("a.qdraw, sheet SHEET1: no field titel; there are TITLE.department"),
              std::string::npos)
        << unknown.err;
}

TEST_F(FieldVerbs, ADryRunSavesNothing)
{
    const std::string before = read("a.qdraw");
    EXPECT_EQ(field("set", "-n title x").status, 0);
    EXPECT_EQ(field("editable", "-n title no").status, 0);
    EXPECT_EQ(read("a.qdraw"), before);
}

} // namespace
