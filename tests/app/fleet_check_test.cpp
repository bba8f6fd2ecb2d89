// Drawings against definitions and rules.
#include "fleet_shell.h"

namespace {

class FleetCheck : public FleetShell {
protected:
    // What the rules find in d, a finding a line: "SHEET1 TITLE.number: message".
    std::vector<std::string> findings(const std::string &rules) const
    {
        write("rules.yaml", "states: off\nrules:\n" + rules);
        const Outcome outcome = qelfmt("--json check d --rules rules.yaml");
        EXPECT_TRUE(outcome.status == 0 || outcome.status == 1) << outcome.err;
        std::vector<std::string> found;
        const auto result = jsonOf(outcome);
        if (!result.is_object()) return {outcome.err};
        for (const auto &one : result["findings"])
            found.push_back(
                one["sheet"].get<std::string>() + " " + one["block"].get<std::string>() + "." +
                one["field"].get<std::string>() + ": " + one["message"].get<std::string>());
        EXPECT_EQ(outcome.status, found.empty() ? 0 : 1);
        return found;
    }
    using Findings = std::vector<std::string>;

    void set(const std::string &field, const std::string &value,
             const std::string &sheet = "SHEET1") const
    {
        ASSERT_EQ(qelfmt("field set d/AB-1.qdraw " + field + " '" + value + "' -s " + sheet).status,
                  0);
    }
    void addSheet(const std::string &name, const std::string &format = "ISO/A3") const
    {
        ASSERT_EQ(
            qelfmt("--defs site sheet add d/AB-1.qdraw " + name + " --format " + format).status, 0);
    }
};

// --- states ---------------------------------------------------------------------------------------

TEST_F(FleetCheck, WhatIsUpToDateHasNoFindings)
{
    stamp("d/AB-1.qdraw");
    ASSERT_EQ(qelfmt("--defs site sheet add d/AB-1.qdraw PLAIN").status, 0); // without a format
    const Outcome outcome = qelfmt("--defs site check d");
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(outcome.out, "1 drawing, 1 sheet: 0 findings\n");
}

TEST_F(FleetCheck, ADriftedSheetIsFoundWithWhatDiffersAndTheRemedy)
{
    stamp("d/AB-1.qdraw");
    std::filesystem::copy_file(folder / "d/AB-1.qdraw", folder / "d/it's new.qdraw");
    changeDefinitions();
    const std::string before = read("d/AB-1.qdraw");
    const Outcome outcome = qelfmt("--defs site check d");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_TRUE(holds(outcome.out, "d/AB-1.qdraw, sheet SHEET1: error: is not as the definitions "
                                   "say: block TITLE: text_layer is 102, now 55"))
        << outcome.out;
    EXPECT_TRUE(holds(outcome.out, "run 'qelfmt update d/AB-1.qdraw' [drifted]\n")) << outcome.out;
    EXPECT_TRUE(holds(outcome.out, "run 'qelfmt update 'd/it'\\''s new.qdraw''")) << outcome.out;
    EXPECT_TRUE(holds(outcome.out, "2 drawings, 2 sheets: 2 findings (2 errors)\n")) << outcome.out;
    EXPECT_EQ(read("d/AB-1.qdraw"), before); // nothing is saved
    ASSERT_EQ(qelfmt("--defs site update d").status, 0);
    EXPECT_EQ(qelfmt("--defs site check d").status, 0);
}

TEST_F(FleetCheck, ASheetWithoutItsDefinitionsIsFound)
{
    stamp("d/AB-1.qdraw");
    std::filesystem::create_directories(folder / "empty/format_defs");
    const Outcome outcome = qelfmt("--defs empty --json check d");
    EXPECT_EQ(outcome.status, 1);
    const auto found = jsonOf(outcome)["findings"];
    ASSERT_EQ(found.size(), 1u);
    EXPECT_EQ(found[0]["rule"], "orphan");
    EXPECT_EQ(found[0]["message"], "has no definition of format ISO, block TITLE");
    EXPECT_TRUE(holds(found[0]["remedy"], "--defs")) << found;
}

TEST_F(FleetCheck, TheGravityOfAStateIsTheSites)
{
    stamp("d/AB-1.qdraw");
    changeDefinitions();
    const auto severity = [&](const std::string &states) {
        write("rules.yaml", "states: " + states + "\nrules: []\n");
        const auto found =
            jsonOf(qelfmt("--defs site --json check d --rules rules.yaml"))["findings"];
        return found.empty() ? "none" : found[0]["severity"].get<std::string>();
    };
    EXPECT_EQ(severity("{drifted: warning}"), "warning");
    EXPECT_EQ(severity("{drifted: note, orphan: off}"), "note");
    EXPECT_EQ(severity("{orphan: warning}"), "error");
    EXPECT_EQ(severity("{drifted: off}"), "none");
    EXPECT_EQ(severity("off"), "none");
}

TEST_F(FleetCheck, TheStatusCanBeThatOfGraveFindingsAlone)
{
    stamp("d/AB-1.qdraw");
    write("rules.yaml", "rules:\n  - {field: TITLE.number, filled: yes, severity: warning}\n");
    const std::string check = "--defs site check d --rules rules.yaml";
    EXPECT_EQ(qelfmt(check).status, 1);
    EXPECT_EQ(qelfmt(check + " --fail-on note").status, 1);
    EXPECT_EQ(qelfmt(check + " --fail-on warning").status, 1);
    const Outcome graver = qelfmt(check + " --fail-on error");
    EXPECT_EQ(graver.status, 0);
    EXPECT_TRUE(holds(graver.out, "1 finding (1 warning)")) << graver.out;
    EXPECT_EQ(qelfmt(check + " --fail-on never").status, 2);
}

// --- what a rule names ------------------------------------------------------------------------------

TEST_F(FleetCheck, NamesOfBlocksAndFieldsMayHaveWildcards)
{
    stamp("d/AB-1.qdraw", {{"number", "AB-1"}});
    addSheet("B", "ISO-COMPACT/A4");
    const auto filled = [&](const std::string &field) {
        return findings("  - {field: " + field + ", filled: yes}\n");
    };
    EXPECT_EQ(filled("TITLE.title"), Findings({"SHEET1 TITLE.title: is empty"}));
    EXPECT_EQ(filled("'*.title'"),
              Findings({"SHEET1 TITLE.title: is empty", "B TITLE_COMPACT.title: is empty"}));
    EXPECT_EQ(filled("'TITLE_*.t?tle'"), Findings({"B TITLE_COMPACT.title: is empty"}));
    EXPECT_EQ(filled("[TITLE.title, '*.revision']"),
              Findings({"SHEET1 TITLE.title: is empty", "SHEET1 TITLE.revision: is empty",
                        "B TITLE_COMPACT.revision: is empty"}));
    EXPECT_EQ(filled("TITLE.num"), Findings());
}

TEST_F(FleetCheck, ARuleCanBeForSomeFormatsAndSizes)
{
    stamp("d/AB-1.qdraw");
    addSheet("B", "ISO/A4");
    addSheet("C", "ISO-COMPACT/A4");
    const auto filled = [&](const std::string &formats) {
        std::string sheets;
        for (const std::string &one :
             findings("  - {field: '*.title', filled: yes, formats: " + formats + "}\n"))
            sheets += one.substr(0, one.find(' ')) + " ";
        return sheets;
    };
    EXPECT_EQ(filled("ISO/A3"), "SHEET1 ");
    EXPECT_EQ(filled("ISO/*"), "SHEET1 B ");
    EXPECT_EQ(filled("ISO"), "SHEET1 B ");
    EXPECT_EQ(filled("'*/A4'"), "B C ");
    EXPECT_EQ(filled("[ISO-COMPACT, ISO/A3]"), "SHEET1 C ");
    EXPECT_EQ(filled("ASME"), "");
}

TEST_F(FleetCheck, ARuleThatMatchesNothingIsNoted)
{
    stamp("d/AB-1.qdraw");
    write("rules.yaml", "states: off\nrules:\n  - {field: TITLE.sheet, one-of: ['']}\n"
                        "  - {field: TITLE.nummer, filled: yes}\n"
                        "  - {field: TITLE.number, filled: yes, formats: ASME, name: us}\n");
    const Outcome outcome = qelfmt("check d --rules rules.yaml");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.err, "rules.yaml:4: note: rule \"filled TITLE.nummer\" has matched no field "
                           "of any drawing: look at its names and formats\n"
                           "rules.yaml:5: note: rule \"us\" has matched no field of any drawing: "
                           "look at its names and formats\n");
    EXPECT_EQ(jsonOf(qelfmt("--json check d --rules rules.yaml"))["unmatched"],
              nlohmann::json({"filled TITLE.nummer", "us"}));
}

TEST_F(FleetCheck, AFindingSaysEverything)
{
    stamp("d/AB-1.qdraw", {{"supplement", {"one", "two"}}});
    write("rules.yaml", "states: off\nrules:\n  - {name: short, field: TITLE.supplement, pattern: "
                        "'.*', severity: warning, remedy: one line is enough}\n");
    const Outcome text = qelfmt("check d --rules rules.yaml");
    EXPECT_EQ(text.out, "d/AB-1.qdraw, sheet SHEET1, TITLE.supplement: warning: \"one | two\" does "
                        "not match .*: one line is enough [short]\n"
                        "1 drawing, 1 sheet: 1 finding (1 warning)\n");
    EXPECT_EQ(jsonOf(qelfmt("--json check d --rules rules.yaml")),
              nlohmann::json::parse(R"({"drawings": 1, "sheets": 1, "findings": [
                  {"file": "d/AB-1.qdraw", "sheet": "SHEET1", "block": "TITLE",
                   "field": "supplement", "value": ["one", "two"], "rule": "short",
                   "severity": "warning", "message": "does not match .*",
                   "remedy": "one line is enough"}], "unread": [], "unmatched": []})"));
}

// --- the tests ----------------------------------------------------------------------------------------

TEST_F(FleetCheck, FilledTakesNoBlanks)
{
    stamp("d/AB-1.qdraw", {{"title", "  "}, {"number", "0"}});
    EXPECT_EQ(findings("  - {field: [TITLE.title, TITLE.number, TITLE.creator], filled: yes}\n"),
              Findings({"SHEET1 TITLE.creator: is empty", "SHEET1 TITLE.title: is empty"}));
}

TEST_F(FleetCheck, APatternIsOfTheWholeValueInCharacters)
{
    stamp("d/AB-1.qdraw", {{"number", "x12"}, {"title", "Öl"}, {"supplement", {"a", "b"}}});
    const auto matches = [&](const std::string &field, const std::string &pattern) {
        return findings("  - {field: TITLE." + field + ", pattern: '" + pattern + "'}\n").empty();
    };
    EXPECT_TRUE(matches("number", "x[0-9]+"));
    EXPECT_FALSE(matches("number", "[0-9]+"));
    EXPECT_FALSE(matches("number", "x1"));
    EXPECT_TRUE(matches("title", "[ÄÖÜ]."));
    EXPECT_FALSE(matches("title", "..."));
    EXPECT_TRUE(matches("supplement", "a\\nb"));
    EXPECT_TRUE(matches("creator", "[A-Z]+")); // empty
}

TEST_F(FleetCheck, OneOfTakesWhatIsListed)
{
    stamp("d/AB-1.qdraw", {{"language", "it"}});
    EXPECT_EQ(findings("  - {field: TITLE.language, one-of: [en, de]}\n"),
              Findings({"SHEET1 TITLE.language: is none of en, de"}));
    EXPECT_EQ(findings("  - {field: TITLE.language, one-of: [en, it]}\n"), Findings());
    EXPECT_EQ(findings("  - {field: TITLE.language, one-of: it}\n"), Findings());
    EXPECT_EQ(findings("  - {field: TITLE.status, one-of: [released]}\n"), Findings()); // empty
}

TEST_F(FleetCheck, ADateIsWrittenInItsFormAndInTheCalendar)
{
    stamp("d/AB-1.qdraw");
    const auto found = [&](const std::string &value, const std::string &forms) {
        set("date", value);
        return findings("  - {field: TITLE.date, date: " + forms + "}\n");
    };
    const Findings wrong{"SHEET1 TITLE.date: is no date written as %Y-%m-%d"};
    EXPECT_EQ(found("2024-02-29", "'%Y-%m-%d'"), Findings());
    EXPECT_EQ(found("2023-02-29", "'%Y-%m-%d'"), wrong);
    EXPECT_EQ(found("2024-04-31", "'%Y-%m-%d'"), wrong);
    EXPECT_EQ(found("2024-4-30", "'%Y-%m-%d'"), wrong);
    EXPECT_EQ(found("30.04.2024", "'%Y-%m-%d'"), wrong);
    EXPECT_EQ(found("2024-04-30 ", "'%Y-%m-%d'"), wrong);
    EXPECT_EQ(found("", "'%Y-%m-%d'"), Findings());
    EXPECT_EQ(found("30.04.2024", "['%Y-%m-%d', '%d.%m.%Y']"), Findings());
    EXPECT_EQ(found("30 Apr 24", "'%d %b %y'"), Findings());
    EXPECT_EQ(found("Tue 30 Apr 2024", "'%a %d %b %Y'"), Findings());
    EXPECT_EQ(found("Mon 30 Apr 2024", "'%a %d %b %Y'"),
              Findings({"SHEET1 TITLE.date: is no date written as %a %d %b %Y"}));
}

TEST_F(FleetCheck, AFieldIsTheNameOfTheFileOrPartOfIt)
{
    stamp("d/AB-1.qdraw", {{"number", "AB-1"}, {"department", "AB"}, {"reference", "1"}});
    EXPECT_EQ(findings("  - {field: TITLE.number, file-name: yes}\n"), Findings());
    EXPECT_EQ(findings("  - {field: TITLE.reference, file-name: yes}\n"),
              Findings({"SHEET1 TITLE.reference: is not the name of the file, AB-1"}));
    EXPECT_EQ(findings("  - {field: TITLE.department, file-name: '([A-Z]+)-.*'}\n"), Findings());
    EXPECT_EQ(findings("  - {field: TITLE.reference, file-name: '([A-Z]+)-.*'}\n"),
              Findings({"SHEET1 TITLE.reference: is not AB, as the name of the file says"}));
    EXPECT_EQ(findings("  - {field: TITLE.reference, file-name: '(.*)_[A-Z]'}\n"),
              Findings({"SHEET1 TITLE.reference: has to be part of the file's name, but AB-1 is "
                        "none"}));
}

TEST_F(FleetCheck, AFieldEqualsAnotherOne)
{
    stamp("d/AB-1.qdraw", {{"creator", "Mo"}, {"approver", "Mo"}, {"reference", "Jo"}});
    EXPECT_EQ(findings("  - {field: TITLE.creator, equals: TITLE.approver}\n"), Findings());
    EXPECT_EQ(findings("  - {field: TITLE.creator, equals: approver}\n"), Findings());
    EXPECT_EQ(findings("  - {field: TITLE.creator, equals: TITLE.reference}\n"),
              Findings({"SHEET1 TITLE.creator: differs from TITLE.reference, \"Jo\""}));
    EXPECT_EQ(findings("  - {field: TITLE.creator, equals: OTHER.creator}\n"),
              Findings({"SHEET1 TITLE.creator: has to be that of OTHER.creator, which the sheet "
                        "lacks"}));
}

TEST_F(FleetCheck, AFieldIsTheSameOnAllSheets)
{
    stamp("d/AB-1.qdraw", {{"classification", "open"}});
    addSheet("B");
    addSheet("C", "ISO-COMPACT/A4");
    set("classification", "closed", "B");
    EXPECT_EQ(findings("  - {field: '*.classification', same-on-all-sheets: yes}\n"),
              Findings({"B TITLE.classification: differs from that of sheet SHEET1, \"open\""}));
    set("classification", "open", "B");
    EXPECT_EQ(findings("  - {field: '*.classification', same-on-all-sheets: yes}\n"), Findings());
}

TEST_F(FleetCheck, TheNewestVisibleRevisionIsThatOfTheTitleBlock)
{
    stamp("d/AB-1.qdraw", {{"revision", "A"}});
    const std::string usual = "  - {field: TITLE.revision, newest-revision: "
                              "REVISIONS.REVISIONS.index}\n";
    const std::string dash = "  - {field: TITLE.revision, newest-revision: {column: "
                             "REVISIONS.REVISIONS.index, without-rows: '-'}}\n";
    EXPECT_EQ(findings(usual), Findings()); // no table
    EXPECT_EQ(findings(dash),
              Findings({"SHEET1 TITLE.revision: has to be \"-\" as long as REVISIONS.REVISIONS has "
                        "no row"}));
    const auto table = [&](const std::string &arguments) {
        ASSERT_EQ(qelfmt("--defs site " + arguments + " -s SHEET1").status, 0) << arguments;
    };
    table("block add d/AB-1.qdraw REVISIONS");
    table("table add d/AB-1.qdraw REVISIONS index=A");
    table("table add d/AB-1.qdraw REVISIONS index=B");
    set("revision", "A");
    const Findings wrong{
        "SHEET1 TITLE.revision: is not that of the newest row of REVISIONS.REVISIONS, \"B\""};
    EXPECT_EQ(findings(usual), wrong);
    EXPECT_EQ(findings(dash), wrong);
    set("revision", "B");
    EXPECT_EQ(findings(usual), Findings());
    table("table hide d/AB-1.qdraw REVISIONS 1");
    EXPECT_EQ(findings(usual).size(), 1u); // A is the newest one that is seen

    addSheet("C"); // no table of its own: that of the first sheet
    set("revision", "A");
    set("revision", "B", "C");
    EXPECT_EQ(findings(usual),
              Findings({"C TITLE.revision: is not that of the newest row of REVISIONS.REVISIONS, "
                        "\"A\""}));
}

TEST_F(FleetCheck, SheetsAreNumberedFromOneToTheirCount)
{
    stamp("d/AB-1.qdraw", {{"sheet", "1 of 2"}});
    addSheet("B");
    ASSERT_EQ(qelfmt("--defs site sheet add d/AB-1.qdraw PLAIN").status, 0); // counts nowhere
    set("sheet", "2/2", "B");
    const std::string any = "  - {field: TITLE.sheet, sheet-count: yes}\n";
    EXPECT_EQ(findings(any), Findings());
    EXPECT_EQ(findings("  - {field: TITLE.sheet, sheet-count: '{n}/{m}'}\n"),
              Findings({"SHEET1 TITLE.sheet: is not written as {n}/{m}"}));
    set("sheet", "sheet 1 of 2", "B");
    EXPECT_EQ(findings(any),
              Findings({"B TITLE.sheet: is wrong: sheet SHEET1 is number 1 already"}));
    set("sheet", "3/2", "B");
    EXPECT_EQ(findings(any), Findings({"B TITLE.sheet: is wrong: 3 is not from 1 to 2"}));
    set("sheet", "2/3", "B");
    EXPECT_EQ(findings(any), Findings({"B TITLE.sheet: is wrong: the drawing has 2 sheets"}));
    set("sheet", "2", "B");
    EXPECT_EQ(findings(any), Findings({"B TITLE.sheet: is no sheet number with the number of "
                                       "sheets, as in 1 of 3"}));
    set("sheet", "2 (1)", "SHEET1");
    set("sheet", "2 (2)", "B");
    EXPECT_EQ(findings("  - {field: TITLE.sheet, sheet-count: '{m} ({n})'}\n"), Findings());
}

TEST_F(FleetCheck, ATextThatSticksOutOfItsCellIsFound)
{
    stamp("d/AB-1.qdraw", {{"language", "much too long for ten"}, {"title", "Casing"}});
    const Findings found = findings("  - {field: '*.*', fits: yes}\n");
    ASSERT_EQ(found.size(), 1u);
    EXPECT_TRUE(holds(found[0], "SHEET1 TITLE.language: is ")) << found[0];
    EXPECT_TRUE(holds(found[0], "too wide for its cell of 10 x 9")) << found[0];
}

TEST_F(FleetCheck, RowsOfTablesAreNamedByBlockTableAndColumn)
{
    stamp("d/AB-1.qdraw");
    ASSERT_EQ(qelfmt("--defs site block add d/AB-1.qdraw REVISIONS").status, 0);
    for (const char *row : {"index=A date=2024-01-02", "index=B", "index=C date=soon"})
        ASSERT_EQ(qelfmt(std::string("--defs site table add d/AB-1.qdraw REVISIONS ") + row).status,
                  0);
    EXPECT_EQ(findings("  - {field: REVISIONS.REVISIONS.date, filled: yes}\n"
                       "  - {field: '*.*.date', date: '%Y-%m-%d'}\n"),
              Findings({"SHEET1 REVISIONS.REVISIONS[1].date: is empty",
                        "SHEET1 REVISIONS.REVISIONS[2].date: is no date written as %Y-%m-%d"}));
    ASSERT_EQ(qelfmt("--defs site table hide d/AB-1.qdraw REVISIONS 1 2").status, 0);
    EXPECT_EQ(findings("  - {field: REVISIONS.*.date, filled: yes}\n"), Findings());
}

TEST_F(FleetCheck, FindingsOfManyDrawingsComeInTheirOrderWhateverTheWorkers)
{
    for (const char *name : {"d/AB-1.qdraw", "d/AB-2.qdraw", "d/AB-3.qdraw"}) stamp(name);
    write("rules.yaml", "rules:\n  - {field: TITLE.*, filled: yes}\n");
    const std::string one = qelfmt("--defs site check d --rules rules.yaml -j 1").out;
    EXPECT_EQ(lineCount(one), 3u * 12 + 1); // 15 fields, three of them filled from the start
    EXPECT_EQ(qelfmt("--defs site check d --rules rules.yaml -j 3").out, one);
}

} // namespace
