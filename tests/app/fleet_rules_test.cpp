// Rules as a text: what is wrong with it, all at once and with its place; and the example that is shipped.
#include "fleet_shell.h"

namespace {

class FleetRules : public FleetShell {
protected:
    void SetUp() override
    {
        FleetShell::SetUp();
        stamp("a.qdraw");
    }
    // The complaints of a rules file, a line each, with its name taken off.
    std::vector<std::string> complaints(const std::string &text) const
    {
        write("r.yaml", text);
        const Outcome outcome = qelfmt("check a.qdraw --rules r.yaml");
        EXPECT_EQ(outcome.status, 3) << outcome.out;
        std::vector<std::string> found;
        std::istringstream lines(outcome.err);
        for (std::string line; std::getline(lines, line);)
            found.push_back(line.starts_with("r.yaml:") ? line.substr(7) : line);
        return found;
    }
    std::string complaint(const std::string &rule) const
    {
        const auto found = complaints("rules:\n- " + rule + "\n");
        EXPECT_EQ(found.size(), 1u);
        return found.empty() ? "" : found[0];
    }
    using Lines = std::vector<std::string>;
};

TEST_F(FleetRules, AllMistakesAreToldInOneRunWithTheirPlaces)
{
    EXPECT_EQ(
        complaints("states: {drifted: maybe}\n"
                   "rules:\n"
                   "  - {field: number, filled: yes}\n"
                   "  - field: TITLE.number\n"
                   "    pattern: '[0-9'\n"
                   "    severity: bad\n"
                   "  - {feld: TITLE.number, filled: no}\n"),
        Lines(
            {"1:19: states: drifted: \"maybe\" is none of error, warning, note, off",
             "3:13: rule 1: field: \"number\" has to be BLOCK.FIELD, as in TITLE.number, or "
             "*.number for every block",
             "6:15: rule 2: severity: \"bad\" is none of error, warning, note",
             "5:14: rule 2: pattern: \"[0-9\" is no regular expression: a ( or [ that is not "
             "closed, or a ) that was not opened",
             "7:5: rule 3: field: is missing: BLOCK.FIELD, or a list of them; * and ? are allowed",
             "7:34: rule 3: filled: write yes, or leave it out",
             "7:6: rule 3: feld: unknown key: did you mean field?"}));
}

TEST_F(FleetRules, ARuleMakesOneTest)
{
    EXPECT_EQ(complaint("{field: T.a}"),
              "2:3: rule 1: a test: is missing: one of date, equals, file-name, filled, fits, "
              "newest-revision, one-of, pattern, same-on-all-sheets, sheet-count");
    EXPECT_EQ(complaint("{field: T.a, filled: yes, fits: yes}"),
              "2:35: rule 1: fits: the rule has filled already: give each test a rule of its own");
}

TEST_F(FleetRules, WhatATestNeedsIsSaid)
{
    EXPECT_EQ(complaint("{field: T.a, one-of: []}"),
              "2:24: rule 1: one-of: names nothing to choose from");
    EXPECT_EQ(complaint("{field: T.a, date: yesterday}"),
              "2:22: rule 1: date: \"yesterday\" is no form of a date: write it as in %Y-%m-%d");
    EXPECT_EQ(complaint("{field: T.a, date: ['%Y', '%Q']}"),
              "2:22: rule 1: date: \"%Q\" is no form of a date: write it as in %Y-%m-%d");
    EXPECT_EQ(
        complaint("{field: T.a, file-name: 'AB-[0-9]'}"),
        "2:27: rule 1: file-name: \"AB-[0-9]\" has no group: the part of the file's name that "
        "is meant stands in ()");
    EXPECT_EQ(complaint("{field: T.a, file-name: no}"),
              "2:27: rule 1: file-name: write yes, or a form, or leave it out");
    EXPECT_EQ(complaint("{field: T.a, equals: T.}"),
              "2:24: rule 1: equals: names no field: write BLOCK.FIELD");
    EXPECT_EQ(complaint("{field: T.a, newest-revision: REVISIONS.index}"),
              "2:33: rule 1: newest-revision: \"REVISIONS.index\" is no column: write "
              "BLOCK.TABLE.COLUMN, as in REVISIONS.REVISIONS.index");
    EXPECT_EQ(complaint("{field: T.a, newest-revision: {without-rows: x}}"),
              "2:33: rule 1, newest-revision: column: is missing: BLOCK.TABLE.COLUMN, as in "
              "REVISIONS.REVISIONS.index");
    EXPECT_EQ(complaint("{field: T.a, sheet-count: 'sheet {n}'}"),
              "2:29: rule 1: sheet-count: \"sheet {n}\" needs {n} and {m}, each once, as in {n} of "
              "{m}");
    EXPECT_EQ(complaint("{field: T.a, pattern: [a, b]}"), "2:25: rule 1: pattern: must be a text");
    EXPECT_EQ(complaint("{field: T.T.a, equals: T.b}"),
              "2:11: rule 1: field: equals looks at fields of blocks, not at rows of tables: write "
              "BLOCK.FIELD");
}

TEST_F(FleetRules, NamesTellResultsApart)
{
    EXPECT_EQ(complaints("rules:\n- {name: x, field: T.a, filled: yes}\n"
                         "- {name: x, field: T.b, filled: yes}\n"
                         "- {name: drifted, field: T.b, filled: yes}\n"),
              Lines({"3:10: rule 2: name: \"x\" is taken: give the rule a name of its own",
                     "4:10: rule 3: name: \"drifted\" is taken: give the rule a name of its own"}));
    write("r.yaml", "rules:\n- {field: [TITLE.a, TITLE.b], filled: yes, formats: [X/*, Y]}\n"
                    "- {field: TITLE.c, pattern: a}\n- {field: TITLE.c, pattern: b}\n");
    EXPECT_EQ(jsonOf(qelfmt("--json --defs site check a.qdraw --rules r.yaml"))["unmatched"],
              nlohmann::json(
                  {"filled TITLE.a, TITLE.b (X/*, Y)", "pattern TITLE.c", "pattern TITLE.c #2"}));
}

TEST_F(FleetRules, WhatIsNoListOfRulesIsSaid)
{
    EXPECT_EQ(complaints("- {field: T.a, filled: yes}\n"),
              Lines({"1:1: the file: must be a mapping of keys to values",
                     "1:1: the file: rules: is missing: a list of rules; [] for none"}));
    EXPECT_EQ(complaints("rules: {}\n"), Lines({"1:8: the file: rules: must be a list of rules"}));
    EXPECT_EQ(complaints("rules: [filled]\n"),
              Lines({"1:9: rule 1: must be a mapping of keys to values"}));
    EXPECT_EQ(complaints("rules: [\n").size(), 1u);
    const Outcome gone = qelfmt("check a.qdraw --rules none.yaml");
    EXPECT_EQ(gone.status, 3);
    EXPECT_EQ(gone.err, "qelfmt: none.yaml: cannot be opened: check the path\n");
}

// A drawing on which every rule of the example finds something, or all is well.
TEST_F(FleetRules, TheShippedExampleHasEveryTestAndRuns)
{
    const std::string example = QELFMT_SOURCE_DIR "/formats/example-site/rules.yaml";
    std::ifstream file(example);
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    for (const char *test : {"filled", "pattern", "one-of", "date", "fits", "file-name", "equals",
                             "same-on-all-sheets", "newest-revision", "sheet-count"})
        EXPECT_TRUE(holds(text, std::string("    ") + test + ":")) << test;

    const auto found = jsonOf(qelfmt("--defs site --json check a.qdraw --rules " + example));
    std::vector<std::string> rules;
    for (const auto &one : found["findings"]) rules.push_back(one["rule"]);
    EXPECT_EQ(rules,
              Lines({"filled *.number, *.title, *.owner", "filled *.number, *.title, *.owner",
                     "number-is-file", "newest-revision", "sheet-of-sheets"}));

    stamp("AB-0001.qdraw", {{"number", "AB-0001"},
                            {"title", "Casing"},
                            {"date", "2024-05-06"},
                            {"revision", "-"},
                            {"sheet", "1/1"}});
    const Outcome good = qelfmt("--defs site check AB-0001.qdraw --rules " + example);
    EXPECT_EQ(good.status, 0) << good.out;
}

// --- SARIF ------------------------------------------------------------------------------------------

TEST_F(FleetRules, SarifHasWhatItsReadersAskFor)
{
    std::filesystem::create_directories(folder / "d");
    std::filesystem::rename(folder / "a.qdraw", folder / "d/ä b.qdraw");
    write("r.yaml", "rules:\n- {name: numbered, field: TITLE.number, filled: yes, severity: "
                    "warning, remedy: ask for one}\n- {name: named, field: X.y, filled: yes}\n");
    const Outcome outcome =
        qelfmt("--defs site check d gone.qdraw --rules r.yaml --sarif out.sarif");
    EXPECT_EQ(outcome.status, 3);
    const auto sarif = nlohmann::json::parse(read("out.sarif"));
    EXPECT_EQ(sarif["version"], "2.1.0");
    EXPECT_TRUE(holds(sarif["$schema"], "sarif-schema-2.1.0.json"));
    ASSERT_EQ(sarif["runs"].size(), 1u);
    const auto &run = sarif["runs"][0];
    const auto &driver = run["tool"]["driver"];
    EXPECT_EQ(driver["name"], "qelfmt");
    EXPECT_EQ("qelfmt " + driver["version"].get<std::string>() + "\n", qelfmt("--version").out);
    ASSERT_EQ(driver["rules"].size(), 6u); // four states and two rules
    ASSERT_EQ(run["results"].size(), 1u);
    const auto &result = run["results"][0];
    EXPECT_EQ(result["ruleId"], "numbered");
    const auto &rule = driver["rules"][result["ruleIndex"].get<std::size_t>()];
    EXPECT_EQ(rule["id"], "numbered");
    EXPECT_EQ(rule["help"]["text"], "ask for one");
    EXPECT_EQ(rule["defaultConfiguration"]["level"], "warning");
    EXPECT_EQ(result["level"], "warning");
    EXPECT_EQ(result["message"]["text"], "sheet SHEET1, TITLE.number: is empty: ask for one");
    const auto &place = result["locations"][0];
    EXPECT_EQ(place["physicalLocation"]["artifactLocation"],
              nlohmann::json({{"uri", "d/%C3%A4%20b.qdraw"}, {"uriBaseId", "%SRCROOT%"}}));
    EXPECT_EQ(place["physicalLocation"]["region"]["startLine"], 1);
    EXPECT_EQ(place["logicalLocations"][1]["fullyQualifiedName"], "sheet SHEET1, TITLE.number");
    EXPECT_EQ(result["properties"]["field"], "number");

    const auto &invocation = run["invocations"][0];
    EXPECT_EQ(invocation["executionSuccessful"], false);
    const auto &notes = invocation["toolExecutionNotifications"];
    ASSERT_EQ(notes.size(), 2u);
    EXPECT_EQ(notes[0]["level"], "error");
    EXPECT_EQ(notes[0]["locations"][0]["physicalLocation"]["artifactLocation"]["uri"],
              "gone.qdraw");
    EXPECT_EQ(notes[1]["message"]["text"], "rule \"named\" has matched no field");
}

TEST_F(FleetRules, AFingerprintFollowsThePlaceAndNotTheValue)
{
    write("r.yaml", "rules:\n- {field: TITLE.language, one-of: [fr]}\n");
    const auto print = [&] {
        EXPECT_EQ(qelfmt("--defs site check a.qdraw --rules r.yaml --sarif out.sarif").status, 1);
        return nlohmann::json::parse(
            read("out.sarif"))["runs"][0]["results"][0]["partialFingerprints"];
    };
    const auto first = print();
    ASSERT_EQ(qelfmt("field set a.qdraw language de").status, 0);
    EXPECT_EQ(print(), first);
    std::filesystem::rename(folder / "a.qdraw", folder / "b.qdraw");
    std::filesystem::create_symlink("b.qdraw", folder / "a.qdraw");
    EXPECT_EQ(print(), first);
}

TEST_F(FleetRules, SarifWithoutFindingsIsSarif)
{
    EXPECT_EQ(qelfmt("--defs site check a.qdraw --sarif out.sarif").status, 0);
    const auto run = nlohmann::json::parse(read("out.sarif"))["runs"][0];
    EXPECT_EQ(run["results"], nlohmann::json::array());
    EXPECT_EQ(run["invocations"][0]["executionSuccessful"], true);
    EXPECT_EQ(qelfmt("--defs site check a.qdraw --sarif none/out.sarif").status, 3);
}

} // namespace
