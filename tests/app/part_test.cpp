// Drawings as files: looked at, and rescued.
#include "shell.h"

namespace {

class Part : public Shell {
protected:
    void SetUp() override
    {
        Shell::SetUp();
        buildIso();
        write("values.json", R"({"title": "Bracket", "number": "D-100", "creator": "A. Muster"})");
        const Outcome made =
            qelfmt("stamp ISO/A3 --defs site --data values.json -o drawing.qdraw --quiet");
        ASSERT_EQ(made.status, 0) << made.err;
    }
    void damage(const std::string &sql) const
    {
        write("damage.sql", sql);
        ASSERT_EQ(shell("sqlite3 drawing.qdraw <damage.sql").status, 0);
    }
    static bool has(const std::string &text, const std::string &wanted)
    {
        return text.find(wanted) != std::string::npos;
    }
};

} // namespace

TEST_F(Part, NothingIsFoundInWhatTheCommandMakes)
{
    const Outcome drawing = qelfmt("part check drawing.qdraw");
    EXPECT_EQ(drawing.status, 0) << drawing.out;
    EXPECT_EQ(drawing.out, "");
    EXPECT_TRUE(has(drawing.err, "drawing.qdraw: ") && has(drawing.err, " objects, nothing found"))
        << drawing.err;
    // Definitions and patterns too: what they are made of stands by itself.
    const Outcome all = qelfmt("part check site/format_defs/*.prt site/patterns/*.prt");
    EXPECT_EQ(all.status, 0) << all.out << all.err;
}

TEST_F(Part, DamageIsNamedAndThePartRescued)
{
    damage(
        "UPDATE object SET texts='Brocket'||char(10) WHERE kind='note' AND texts LIKE 'Bracket%'");
    const std::string before = read("drawing.qdraw");
    const Outcome check = qelfmt("part check drawing.qdraw");
    EXPECT_EQ(check.status, 1);
    EXPECT_TRUE(has(check.out, "(note \"Brocket\"): its row is damaged")) << check.out;
    EXPECT_TRUE(has(check.err, "qelfmt part salvage drawing.qdraw -o")) << check.err;
    EXPECT_EQ(qelfmt("render drawing.qdraw -o x.pdf").status, 3);

    const Outcome salvage = qelfmt("part salvage drawing.qdraw -o rescued.qdraw");
    EXPECT_EQ(salvage.status, 1);
    EXPECT_TRUE(has(salvage.out, "(note \"Brocket\"): its row is damaged; it is left out"))
        << salvage.out;
    EXPECT_EQ(read("drawing.qdraw"), before);
    EXPECT_EQ(qelfmt("render rescued.qdraw -o rescued.pdf").status, 0);
    EXPECT_TRUE(has(shell("pdftotext rescued.pdf -").out, "D-100"));
    EXPECT_FALSE(has(shell("pdftotext rescued.pdf -").out, "Bracket"));
    EXPECT_EQ(qelfmt("part check rescued.qdraw").status, 0);
    // The field has lost its note and can be filled in again.
    const Outcome set = qelfmt("field set rescued.qdraw title Bracket --defs site");
    EXPECT_EQ(set.status, 0) << set.err;
    EXPECT_EQ(qelfmt("render rescued.qdraw -o rescued.pdf").status, 0);
    EXPECT_TRUE(has(shell("pdftotext rescued.pdf -").out, "Bracket"));
}

TEST_F(Part, ReportsAreThereAsJson)
{
    damage("UPDATE object SET color=color+1 WHERE kind='sheet'");
    const Outcome check = qelfmt("--json part check drawing.qdraw");
    EXPECT_EQ(check.status, 1);
    const auto report = nlohmann::json::parse(check.out);
    ASSERT_EQ(report.size(), 1u);
    EXPECT_EQ(report[0]["part"], "drawing.qdraw");
    EXPECT_EQ(report[0]["opens"], false);
    EXPECT_TRUE(has(report[0]["refusal"], "its checksum does not match"));
    ASSERT_EQ(report[0]["findings"].size(), 1u) << check.out;
    EXPECT_EQ(report[0]["findings"][0]["kind"], "damage");
    EXPECT_GT(report[0]["findings"][0]["object"], 0);

    const Outcome salvage = qelfmt("--json part salvage drawing.qdraw -o rescued.qdraw");
    EXPECT_EQ(salvage.status, 1);
    const auto lost = nlohmann::json::parse(salvage.out);
    EXPECT_EQ(lost["salvaged"], "rescued.qdraw");
    EXPECT_EQ(lost["objects"], report[0]["objects"]);
    ASSERT_EQ(lost["lost"].size(), 1u);
    EXPECT_TRUE(has(lost["lost"][0]["mended"], "is made in its place")) << salvage.out;
}

TEST_F(Part, OrphansAreFoundWhenABlockLosesItsFormat)
{
    damage("DELETE FROM object WHERE class LIKE '%FORMAT_FORMAT_V1'");
    ASSERT_EQ(qelfmt("part salvage drawing.qdraw -o rescued.qdraw").status, 1);
    const Outcome check = qelfmt("part check rescued.qdraw");
    EXPECT_EQ(check.status, 1);
    EXPECT_TRUE(has(check.out, "orphan: ") && has(check.out, "it belongs to no other record"))
        << check.out;
}

TEST_F(Part, WhatIsNoPartIsAnErrorAndTheOthersAreStillLookedAt)
{
    write("letter.qdraw", "Dear reader,\n");
    const Outcome check = qelfmt("part check letter.qdraw none.qdraw drawing.qdraw");
    EXPECT_EQ(check.status, 3);
    EXPECT_TRUE(has(check.err, "letter.qdraw: this is not a part")) << check.err;
    EXPECT_TRUE(has(check.err, "none.qdraw: there is no such file")) << check.err;
    EXPECT_TRUE(has(check.err, "drawing.qdraw: ")) << check.err;
    EXPECT_EQ(qelfmt("part salvage letter.qdraw -o x.qdraw").status, 3);
    const Outcome taken = qelfmt("part salvage drawing.qdraw -o values.json");
    EXPECT_EQ(taken.status, 3);
    EXPECT_TRUE(has(taken.err, "values.json: there is a file of this name already")) << taken.err;
    EXPECT_FALSE(exists("x.qdraw"));
}
