// What goes to which of the two outputs, and how mistakes are told.
#include "shell.h"

namespace {

class Output : public Shell {
protected:
    void SetUp() override
    {
        Shell::SetUp();
        buildIso();
        ASSERT_EQ(qelfmt("stamp ISO/A3 --defs site -o a.qdraw").status, 0);
    }
    static std::size_t times(const std::string &what, const std::string &text)
    {
        std::size_t count = 0;
        for (std::size_t at = 0; (at = text.find(what, at)) != std::string::npos; ++at) ++count;
        return count;
    }
    // The verbs that the help of a family lists; "" is the command itself.
    std::vector<std::string> verbsOf(const std::string &family) const
    {
        std::vector<std::string> verbs;
        std::istringstream help(qelfmt(family + " --help").out);
        bool listed = false;
        for (std::string line; std::getline(help, line);) {
            if (line.empty() || line[0] != ' ')
                listed = line == "Subcommands:";
            else if (listed && line[2] != ' ')
                verbs.push_back(line.substr(2, line.find(' ', 2) - 2));
        }
        return verbs;
    }
};

TEST_F(Output, MistakesInSettingsAreToldOnceAndBesideTheResult)
{
    write("site/config/tr_format", "[Format Defaults]\nCOMPANY0 = \"Nordhaven Pumps\"\nbroken\n");
    const Outcome listed = qelfmt("--json --defs site field list a.qdraw");
    EXPECT_EQ(listed.status, 0);
    EXPECT_EQ(times("tr_format:3: expected '=' to follow key.", listed.err), 1u) << listed.err;
    const auto fields = nlohmann::json::parse(listed.out, nullptr, false);
    ASSERT_TRUE(fields.is_object()) << listed.out;
    EXPECT_EQ(fields["TITLE"]["owner"], "Nordhaven Pumps");
}

TEST_F(Output, DefinitionsAsTextAreAResultAlsoWhenSettingsAreBroken)
{
    write("site/config/tr_format", "broken\n");
    const Outcome shown = qelfmt("--defs site defs show TITLE");
    EXPECT_EQ(shown.status, 0);
    EXPECT_EQ(shown.out.find("tr_format"), std::string::npos);
    EXPECT_NE(shown.out.find("kind: block"), std::string::npos) << shown.out;
}

TEST_F(Output, AFailingStampNamesTheDataFileAndThePicture)
{
    write("v.json", R"({"titel": "x", "numbr": "y", "title": "z"})");
    const Outcome failed = qelfmt("stamp ISO/A3 --defs site --data v.json -o out.pdf");
    EXPECT_EQ(failed.status, 3);
    EXPECT_NE(failed.err.find("v.json: no fields titel, numbr on out.pdf, sheet SHEET1; there are "
                              "TITLE.department, "),
              std::string::npos)
        << failed.err;
    EXPECT_EQ(times("there are", failed.err), 1u);
    EXPECT_EQ(failed.err.find("/tmp/"), std::string::npos);
    EXPECT_FALSE(exists("out.pdf"));
}

TEST_F(Output, AVerbCalledWronglyShowsHowItIsCalled)
{
    const Outcome set = qelfmt("field set");
    EXPECT_EQ(set.status, 2);
    EXPECT_NE(set.err.find("qelfmt field set: part is required\n"
                           "Example: qelfmt field set a.qdraw title \"Pump shaft\"\n"),
              std::string::npos)
        << set.err;
}

TEST_F(Output, EveryVerbHasAnExampleThatNamesIt)
{
    std::size_t checked = 0;
    for (const std::string &family : verbsOf("")) {
        auto verbs = verbsOf(family);
        for (std::string &verb : verbs) verb = family + " " + verb;
        if (verbs.empty()) verbs = {family};
        for (const std::string &verb : verbs) {
            EXPECT_NE(qelfmt(verb + " --help").out.find("Example: qelfmt " + verb),
                      std::string::npos)
                << verb;
            ++checked;
        }
    }
    EXPECT_GT(checked, 40u);
}

} // namespace
