// Updates by which values would be lost.
#include "shell.h"

namespace {

// A block of two cells, of which the second goes from the definition or gets another name.
class UpdateLosses : public Shell {
protected:
    void SetUp() override
    {
        Shell::SetUp();
        build("      number: {cell: [0, 0, 50, 10]}\n"
              "      owner: {cell: [50, 0, 50, 10]}\n");
        ASSERT_EQ(qelfmt("stamp F/A3 --defs site --sheet S1 -o a.qdraw").status, 0);
        ASSERT_EQ(qelfmt("--defs site field set a.qdraw number 4711").status, 0);
    }
    void build(const std::string &cells) const
    {
        write("d.yaml", "units: mm\n"
                        "formats:\n"
                        "  F: {required: [B], sheets: iso, sizes: [A3]}\n"
                        "blocks:\n"
                        "  B:\n"
                        "    size: [100, 20]\n"
                        "    place: {at: [30, 20]}\n"
                        "    cells:\n" +
                            cells);
        const Outcome built = qelfmt("defs build d.yaml -o site --quiet");
        ASSERT_EQ(built.status, 0) << built.err;
    }
    void takeOwnerAway() const { build("      number: {cell: [0, 0, 60, 10]}\n"); }
    Outcome update(const std::string &options = "") const
    {
        return qelfmt("--defs site format update " + options + " a.qdraw");
    }
    void setOwner(const std::string &value) const
    {
        ASSERT_EQ(qelfmt("--defs site field set a.qdraw owner " + value).status, 0);
    }
    nlohmann::json values() const { return json("--defs site field list a.qdraw")["B"]; }
};

TEST_F(UpdateLosses, AreNamedBeforeAnythingIsSaved)
{
    setOwner("Miller");
    takeOwnerAway();
    const std::string before = read("a.qdraw");
    const Outcome refused = update();
    EXPECT_EQ(refused.status, 1);
    EXPECT_NE(refused.err.find("a.qdraw: nothing is saved, since values would be lost: sheet S1, "
                               "B.owner = Miller."),
              std::string::npos)
        << refused.err;
    EXPECT_NE(refused.err.find("--force"), std::string::npos);
    EXPECT_EQ(read("a.qdraw"), before);
}

TEST_F(UpdateLosses, HappenByForceAndAreListed)
{
    setOwner("Miller");
    takeOwnerAway();
    const Outcome forced = update("--force");
    EXPECT_EQ(forced.status, 0) << forced.err;
    EXPECT_NE(forced.out.find("B.owner: lost: Miller -> \"\""), std::string::npos) << forced.out;
    EXPECT_EQ(values(), nlohmann::json({{"number", "4711"}}));
    EXPECT_EQ(qelfmt("--defs site format check a.qdraw").status, 0);
}

TEST_F(UpdateLosses, ADryRunSaysWhatTheRealRunDoesWithAndWithoutForce)
{
    setOwner("Miller");
    takeOwnerAway();
    const std::string before = read("a.qdraw");
    const Outcome dry = update("--dry-run"), dryForced = update("--dry-run --force");
    EXPECT_EQ(read("a.qdraw"), before);
    const Outcome refused = update(), forced = update("--force");
    EXPECT_EQ(dry.status, refused.status);
    EXPECT_EQ(dry.out, refused.out);
    EXPECT_EQ(dryForced.status, forced.status);
    EXPECT_EQ(dryForced.out, forced.out);
    EXPECT_NE(read("a.qdraw"), before);
}

TEST_F(UpdateLosses, AnEmptyFieldMayGo)
{
    takeOwnerAway();
    EXPECT_EQ(update().status, 0);
    EXPECT_EQ(values().size(), 1u);
}

TEST_F(UpdateLosses, ARenamedFieldIsAnotherField)
{
    setOwner("Miller");
    build("      number: {cell: [0, 0, 50, 10]}\n"
          "      company: {cell: [50, 0, 50, 10]}\n");
    EXPECT_EQ(update().status, 1);
    EXPECT_EQ(update("--force").status, 0);
    EXPECT_EQ(values(), nlohmann::json({{"number", "4711"}, {"company", ""}}));
}

// By position "company" would have got the value of "owner".
TEST_F(UpdateLosses, AFieldInTheMiddleScramblesNoValues)
{
    setOwner("Miller");
    build("      number: {cell: [0, 0, 30, 10]}\n"
          "      company: {cell: [30, 0, 20, 10]}\n"
          "      owner: {cell: [50, 0, 50, 10]}\n");
    const Outcome updated = update();
    EXPECT_EQ(updated.status, 0) << updated.err;
    EXPECT_NE(updated.out.find("block B: updated by id ("), std::string::npos) << updated.out;
    EXPECT_NE(updated.out.find("fields have changed their order"), std::string::npos);
    EXPECT_EQ(values(), nlohmann::json({{"number", "4711"}, {"company", ""}, {"owner", "Miller"}}));
}

} // namespace
