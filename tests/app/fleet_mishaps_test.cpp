// Places and data that are not as they should be: what is wrong is said, and the rest is done.
#include "fleet_shell.h"
#include "interrupted_save.h"

#include <sys/stat.h>

namespace {

class FleetMishaps : public FleetShell {
protected:
    std::vector<std::string> files(const Outcome &outcome) const
    {
        std::vector<std::string> found;
        for (const auto &row : jsonOf(outcome)) found.push_back(row["file"]);
        return found;
    }
    static std::size_t countOf(const std::string &text, const std::string &part)
    {
        std::size_t count = 0;
        for (std::size_t at = 0; (at = text.find(part, at)) != std::string::npos; ++at) ++count;
        return count;
    }
    using Files = std::vector<std::string>;
    static constexpr const char *kTitles = " --as json --columns 'TITLE.*'";
};

// --- places -------------------------------------------------------------------------------------

TEST_F(FleetMishaps, ALinkToItselfIsReportedWithTheRest)
{
    stamp("d/a.qdraw");
    stamp("d/e/b.qdraw");
    std::filesystem::create_symlink("loop.qdraw", folder / "d/loop.qdraw");
    std::filesystem::create_symlink("turn", folder / "d/turn");
    const Outcome outcome = qelfmt(std::string("report d") + kTitles);
    EXPECT_EQ(outcome.status, 3);
    EXPECT_TRUE(holds(outcome.err, "d/loop.qdraw")) << outcome.err;
    EXPECT_EQ(files(outcome), Files({"d/a.qdraw", "d/e/b.qdraw", "d/loop.qdraw"}));
}

TEST_F(FleetMishaps, AFolderThatMayNotBeSearchedIsReportedWithTheRest)
{
    stamp("d/a.qdraw");
    stamp("d/closed/b.qdraw");
    chmod(folder.c_str(), 0777);
    chmod((folder / "d/closed").c_str(), 0);
    std::string as; // the superuser may search everything
    if (geteuid() == 0) as = "setpriv --reuid=65534 --regid=65534 --clear-groups ";
    if (shell(as + QELFMT_COMMAND " --version").status != 0)
        GTEST_SKIP() << "nobody else may run the command";
    const Outcome outcome = shell(as + QELFMT_COMMAND " report d" + kTitles);
    chmod((folder / "d/closed").c_str(), 0700);
    EXPECT_EQ(outcome.status, 3);
    EXPECT_TRUE(holds(outcome.err, "d/closed: the folder cannot be searched: Permission denied"))
        << outcome.err;
    EXPECT_EQ(files(outcome), Files({"d/a.qdraw", "d/closed"}));
}

TEST_F(FleetMishaps, ADrawingCountsOnceWhateverLeadsToIt)
{
    stamp("d/a.qdraw", {{"title", "Casing"}});
    std::filesystem::create_symlink("d/a.qdraw", folder / "link.qdraw");
    std::filesystem::create_symlink("d", folder / "other");
    const std::string whole = (folder / "d/a.qdraw").string();
    EXPECT_EQ(files(qelfmt("report d d/../d/a.qdraw other/a.qdraw link.qdraw " + whole + kTitles)),
              Files({whole}));

    write("r.csv",
          "file,sheet,TITLE.title\r\nd/a.qdraw,SHEET1,Wheel\r\n" + whole + ",SHEET1,Shaft\r\n");
    const Outcome filled = qelfmt("fill --data r.csv");
    EXPECT_EQ(filled.status, 3);
    EXPECT_TRUE(holds(filled.err, "stands there twice")) << filled.err;
}

TEST_F(FleetMishaps, AMissingFileOfTheReportDoesNotHinderADrawingThatIsNamed)
{
    stamp("d/a.qdraw", {{"title", "Casing"}});
    write("r.csv", "file,sheet,TITLE.title\r\nd/a.qdraw,SHEET1,Wheel\r\nd/gone.qdraw,SHEET1,x\r\n");
    const Outcome one = qelfmt("fill d/a.qdraw --data r.csv");
    EXPECT_EQ(one.status, 0) << one.err;
    EXPECT_TRUE(holds(one.out, "1 value set in 1 drawing, 0 unchanged\n")) << one.out;
    const Outcome folderOf = qelfmt("fill d --data r.csv");
    EXPECT_EQ(folderOf.status, 3);
    EXPECT_TRUE(holds(folderOf.err, "d/gone.qdraw")) << folderOf.err;
}

TEST_F(FleetMishaps, WhereNoJournalCanBeWrittenThereIsNone)
{
    stamp("d/a.qdraw");
    stamp("d/b.qdraw");
    // No file may grow: that is how a full disk behaves. The results go through a pipe.
    write("full.sh", std::string("trap '' XFSZ; ulimit -f 0\n" QELFMT_COMMAND " report d") +
                         kTitles + "\necho status $?\n");
    const Outcome outcome = shell("sh -c 'sh full.sh 2>&1 | cat'");
    EXPECT_TRUE(holds(outcome.out, "if this run is interrupted it cannot be resumed"))
        << outcome.out;
    EXPECT_TRUE(holds(outcome.out, "\"file\":\"d/b.qdraw\"")) << outcome.out;
    EXPECT_TRUE(holds(outcome.out, "status 0\n")) << outcome.out;
}

TEST_F(FleetMishaps, AFolderOfDefinitionsThatIsNoneIsSaidOnce)
{
    stamp("d/a.qdraw");
    stamp("d/b.qdraw");
    const Outcome outcome = qelfmt("--defs nope check d");
    EXPECT_EQ(outcome.status, 3);
    EXPECT_EQ(outcome.err, "qelfmt: nope: is no folder: --defs needs one with format_defs in it\n");
}

TEST_F(FleetMishaps, FoldersAreNoFilesOfTexts)
{
    stamp("a.qdraw");
    for (const char *line :
         {"check a.qdraw --rules .", "fill --data . a.qdraw", "report --merge .",
          "report --files-from .", "--defs site stamp ISO/A3 --data . -o '{number}.qdraw'"}) {
        const Outcome outcome = qelfmt(line);
        EXPECT_EQ(outcome.status, 3) << line;
        EXPECT_TRUE(holds(outcome.err, ".: is a folder")) << line << ": " << outcome.err;
    }
}

// --- outputs ------------------------------------------------------------------------------------

TEST_F(FleetMishaps, AReportGoesThroughALinkAndIntoAPipe)
{
    stamp("a.qdraw");
    write("real.json", "old");
    std::filesystem::create_symlink("real.json", folder / "link.json");
    ASSERT_EQ(qelfmt("report a.qdraw -o link.json").status, 0);
    EXPECT_TRUE(std::filesystem::is_symlink(folder / "link.json"));
    EXPECT_TRUE(holds(read("real.json"), "a.qdraw"));

    ASSERT_EQ(mkfifo((folder / "pipe").c_str(), 0600), 0);
    write("pipe.sh", "cat pipe > got & " QELFMT_COMMAND " report a.qdraw --as json -o pipe; wait");
    ASSERT_EQ(shell("sh pipe.sh").status, 0);
    EXPECT_EQ(read("got"), read("real.json"));
    EXPECT_TRUE(std::filesystem::is_fifo(folder / "pipe"));
}

TEST_F(FleetMishaps, AnOutputThatCannotBeWrittenIsSaidWithTheReason)
{
    stamp("a.qdraw");
    const Outcome full = qelfmt("report a.qdraw --as json -o /dev/full");
    EXPECT_EQ(full.status, 3);
    EXPECT_EQ(full.err, "qelfmt: /dev/full: cannot be written: No space left on device\n");
    const Outcome none = qelfmt("report a.qdraw -o none/r.json");
    EXPECT_EQ(none.status, 3);
    EXPECT_EQ(none.err, "qelfmt: none/r.json: cannot be written: No such file or directory\n");
}

TEST_F(FleetMishaps, NothingIsLeftInTheFolderForTemporaryFiles)
{
    write("rows.csv", "number\r\nP-1\r\nP-2\r\n");
    std::filesystem::create_directories(folder / "tmp");
    const Outcome outcome = shell("TMPDIR=tmp " QELFMT_COMMAND
                                  " --defs site stamp ISO/A3 --data rows.csv -o '{number}.qdraw'");
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_TRUE(std::filesystem::is_empty(folder / "tmp"));
}

TEST_F(FleetMishaps, NamesOfOutputsAreMadeOfTextsAndNumbers)
{
    for (const char *value : {"null", R"(["a", "b"])", "{}", R"("")"}) {
        write("rows.json", std::string(R"([{"number": )") + value + "}]");
        const Outcome outcome =
            qelfmt("--defs site stamp ISO/A3 --data rows.json -o 'out/{number}.qdraw'");
        EXPECT_EQ(outcome.status, 3) << value;
        EXPECT_TRUE(holds(outcome.err, "rows.json, record 1: out/{number}.qdraw needs a value of "
                                       "number, one text"))
            << outcome.err;
        EXPECT_FALSE(exists("out"));
    }
}

// --- documents ----------------------------------------------------------------------------------

TEST_F(FleetMishaps, ADocumentOfManyDrawingsHasTheirPagesInOrderAndATitle)
{
    for (const char *name : {"a", "b", "c"})
        stamp(std::string("d/") + name + ".qdraw",
              {{"title", std::string("Drawing ") + name}, {"number", name}});
    write("d/broken.qdraw", "no drawing");
    const Outcome dry = qelfmt("render d -o all.pdf --merge -n");
    EXPECT_EQ(dry.out, "all.pdf: 3 pages (nothing saved)\n");
    EXPECT_FALSE(exists("all.pdf"));
    const Outcome merged = qelfmt("render d -o all.pdf --merge");
    EXPECT_EQ(merged.status, 3);
    EXPECT_TRUE(holds(merged.err, "d/broken.qdraw")) << merged.err;
    EXPECT_EQ(merged.out, "all.pdf: 3 pages\n");
    const std::string info = shell("pdfinfo all.pdf").out, text = shell("pdftotext all.pdf -").out;
    EXPECT_TRUE(holds(info, "Drawing a")) << info;
    EXPECT_TRUE(text.find("Drawing a") < text.find("Drawing b"));
    EXPECT_TRUE(text.find("Drawing b") < text.find("Drawing c"));
    EXPECT_TRUE(holds(text, "Drawing c"));
}

TEST_F(FleetMishaps, ADocumentOfOneDrawingIsTheOneThatRenderMakes)
{
    stamp("a.qdraw", {{"title", "Casing"}});
    ASSERT_EQ(qelfmt("render a.qdraw -o one.pdf").status, 0);
    ASSERT_EQ(qelfmt("render a.qdraw -o all.pdf --merge").status, 0);
    EXPECT_EQ(read("all.pdf"), read("one.pdf")); // one page has no list of pages with names
}

TEST_F(FleetMishaps, ADocumentIsMadeInOneGo)
{
    stamp("a.qdraw");
    for (const char *option : {"-j 2", "--journal j", "--resume"}) {
        const Outcome outcome = qelfmt(std::string("render . -o all.pdf --merge ") + option);
        EXPECT_EQ(outcome.status, 2) << option;
        EXPECT_TRUE(holds(outcome.err, "--merge makes one document, in one go")) << outcome.err;
    }
}

TEST_F(FleetMishaps, BorrowedFontsAreToldOnce)
{
    write("rows.json", R"([{"number": "1", "title": "軸"}, {"number": "2", "title": "軸"}])");
    const Outcome stamped =
        qelfmt("--defs site stamp ISO/A3 --data rows.json -o 'pdf/{number}.pdf' -j 1");
    EXPECT_EQ(stamped.status, 0) << stamped.err;
    EXPECT_EQ(countOf(stamped.err, "軸"), 1u) << stamped.err;
    ASSERT_EQ(qelfmt("--defs site stamp ISO/A3 --data rows.json -o 'd/{number}.qdraw' -j 1").status,
              0);
    for (const char *line : {"render d -o png --png -j 1", "render d -o all.pdf --merge"})
        EXPECT_EQ(countOf(qelfmt(line).err, "軸"), 1u) << line;
}

TEST_F(FleetMishaps, ADateThatIsNotInTheCalendarIsRefused)
{
    stamp("a.qdraw");
    for (const char *date : {"2024-02-30", "2023-02-29", "2024-04-31", "yesterday"}) {
        const Outcome outcome = qelfmt(std::string("render a.qdraw -o a.pdf --date ") + date);
        EXPECT_EQ(outcome.status, 2) << date;
        EXPECT_TRUE(holds(outcome.err, "is not understood")) << outcome.err;
        EXPECT_FALSE(exists("a.pdf"));
    }
    EXPECT_EQ(qelfmt("render a.qdraw -o a.pdf --date 2024-02-29").status, 0);
}

// --- rules, blocks, damaged drawings ------------------------------------------------------------

TEST_F(FleetMishaps, APatternThatTakesForEverIsAFindingOfItsRule)
{
    stamp("a.qdraw", {{"title", std::string(60, 'a')}, {"number", "x"}});
    write("rules.yaml", "states: off\nrules:\n"
                        "  - {field: TITLE.title, pattern: '(a|aa|a+)+b'}\n"
                        "  - {field: TITLE.number, pattern: '[0-9]+'}\n");
    const Outcome outcome = qelfmt("check a.qdraw --rules rules.yaml");
    EXPECT_EQ(outcome.status, 1) << outcome.err;
    EXPECT_TRUE(holds(outcome.out, "cannot be held against the rule's pattern")) << outcome.out;
    EXPECT_TRUE(holds(outcome.out, "does not match [0-9]+")) << outcome.out;
}

TEST_F(FleetMishaps, ABlockIsAddedTwiceByForceAlone)
{
    stamp("a.qdraw");
    ASSERT_EQ(qelfmt("--defs site block add a.qdraw REVISIONS").status, 0);
    const Outcome again = qelfmt("--defs site block add a.qdraw REVISIONS");
    EXPECT_EQ(again.status, 3);
    EXPECT_TRUE(holds(again.err, "has a block REVISIONS already: give --force")) << again.err;
    EXPECT_EQ(qelfmt("--defs site block add a.qdraw REVISIONS --force").status, 0);
    EXPECT_EQ(qelfmt("block list a.qdraw").out, "TITLE\nREVISIONS\nREVISIONS\n");
    const Outcome unknown = qelfmt("--defs site block add a.qdraw REVISION");
    EXPECT_EQ(unknown.status, 3);
    EXPECT_TRUE(holds(unknown.err, "no block REVISION is defined; there are ")) << unknown.err;
    EXPECT_TRUE(holds(unknown.err, "REVISIONS")) << unknown.err;
}

TEST_F(FleetMishaps, ADryRunOfASalvageSaysTheSameAndWritesNothing)
{
    stamp("a.qdraw", {{"title", "Casing"}});
    tamper((folder / "a.qdraw").string(),
           "UPDATE object SET texts=CAST(x'436173ff01696e67' AS TEXT) WHERE texts LIKE '%Casing%'");
    const Outcome dry = qelfmt("part salvage a.qdraw -o b.qdraw -n");
    EXPECT_EQ(dry.status, 1) << dry.err;
    EXPECT_FALSE(exists("b.qdraw"));
    EXPECT_TRUE(holds(dry.err, "(nothing saved)")) << dry.err;
    const Outcome real = qelfmt("part salvage a.qdraw -o b.qdraw");
    EXPECT_EQ(real.status, 1);
    EXPECT_EQ(real.out, dry.out);
    EXPECT_TRUE(exists("b.qdraw"));
    EXPECT_EQ(real.out.find('\xff'), std::string::npos); // nothing that a terminal cannot show
    EXPECT_EQ(real.out.find('\x01'), std::string::npos);
    EXPECT_EQ(qelfmt("part salvage a.qdraw -o b.qdraw -n").status, 3); // it is there now

    const Outcome nowhere = qelfmt("part salvage a.qdraw -o none/b.qdraw");
    EXPECT_EQ(nowhere.status, 3);
    EXPECT_TRUE(holds(nowhere.err, "none/b.qdraw: the new part cannot be written")) << nowhere.err;
    EXPECT_FALSE(holds(nowhere.err, "still open")) << nowhere.err;
}

} // namespace
