// Blocks of a sheet, as a user puts them there.
#include "shell.h"

namespace {

// B stands left and may stand right; C is not to be moved by others than its definition.
class BlockVerbs : public Shell {
protected:
    void SetUp() override
    {
        Shell::SetUp();
        build();
        ASSERT_EQ(on("stamp F/A3 --sheet S1 -o a.qdraw").status, 0);
    }
    void build() const
    {
        write("d.yaml", "units: mm\n"
                        "formats:\n"
                        "  F: {required: [B, C], sheets: iso, sizes: [A3]}\n"
                        "blocks:\n"
                        "  B:\n"
                        "    size: [50, 10]\n"
                        "    movable: yes\n"
                        "    can-delete: yes\n"
                        "    place: {at: [30, 20], also: [{name: right, at: [330, 20]}]}\n"
                        "    cells:\n"
                        "      number: {cell: [0, 0, 50, 10]}\n"
                        "  C:\n"
                        "    size: [50, 10]\n"
                        "    place: {at: [30, 60]}\n"
                        "    cells:\n"
                        "      owner: {cell: [0, 0, 50, 10]}\n"
                        "  D:\n"
                        "    size: [50, 10]\n"
                        "    place: {at: [30, 90]}\n"
                        "    cells:\n"
                        "      date: {cell: [0, 0, 50, 10]}\n");
        const Outcome built = qelfmt("defs build d.yaml -o site --quiet");
        ASSERT_EQ(built.status, 0) << built.err;
    }
    Outcome on(const std::string &line) const { return qelfmt("--defs site " + line); }
    void expectAt(const std::string &block, double x, double y, const char *how) const
    {
        const auto shown = json("--defs site block show a.qdraw " + block);
        EXPECT_EQ(shown["x"], x);
        EXPECT_EQ(shown["y"], y);
        EXPECT_EQ(shown["placed"], how);
    }
};

TEST_F(BlockVerbs, BlocksAreListedAddedAndDeleted)
{
    EXPECT_EQ(on("block list a.qdraw").out, "B\nC\n");
    EXPECT_EQ(on("block add a.qdraw D").status, 0);
    EXPECT_EQ(json("--defs site block list a.qdraw"), nlohmann::json({"B", "C", "D"}));
    EXPECT_EQ(on("block delete a.qdraw B").status, 0);
    EXPECT_EQ(on("block list a.qdraw").out, "C\nD\n");
    const Outcome again = on("block delete a.qdraw B");
    EXPECT_EQ(again.status, 3);
    EXPECT_NE(again.err.find("a.qdraw, sheet S1: has no block B; it has C, D"), std::string::npos)
        << again.err;
}

TEST_F(BlockVerbs, ABlockGoesToAPlaceThatItsDefinitionNames)
{
    expectAt("B", 30, 20, "by definition");
    ASSERT_EQ(on("block move a.qdraw B --to right").status, 0);
    expectAt("B", 330, 20, "by definition");
    const auto places = json("--defs site block locations a.qdraw B");
    ASSERT_EQ(places.size(), 2u);
    EXPECT_EQ(places[1]["name"], "right");
    EXPECT_EQ(places[1]["here"], true);
    const Outcome nowhere = on("block move a.qdraw B --to left");
    EXPECT_EQ(nowhere.status, 3);
    EXPECT_NE(nowhere.err.find("block B has no place left"), std::string::npos) << nowhere.err;
}

TEST_F(BlockVerbs, ABlockComesHomeFromAPointOfTheUsers)
{
    for (const char *block : {"B", "C"}) {
        ASSERT_EQ(on(std::string("block move a.qdraw ") + block + " 200 150").status, 0);
        expectAt(block, 200, 150, "freely");
        ASSERT_EQ(on(std::string("block move a.qdraw ") + block + " --home").status, 0);
    }
    expectAt("B", 30, 20, "by definition");
    expectAt("C", 30, 60, "by definition");
    ASSERT_EQ(on("block move a.qdraw B --to right").status, 0);
    ASSERT_EQ(on("block move a.qdraw B --home").status, 0);
    expectAt("B", 30, 20, "by definition");
    EXPECT_EQ(on("format check a.qdraw").status, 0);
}

TEST_F(BlockVerbs, WhatTheSiteRequiresIsAddedByUpdateAndReplace)
{
    write("site/config/tr_format", "[F Required Blocks]\nD = 1\n");
    const Outcome checked = on("format check a.qdraw");
    EXPECT_EQ(checked.status, 1);
    EXPECT_NE(checked.out.find("format, block D: definition: absent -> required by the site"),
              std::string::npos)
        << checked.out;
    std::filesystem::copy_file(folder / "a.qdraw", folder / "b.qdraw");
    const Outcome updated = on("format update a.qdraw");
    EXPECT_EQ(updated.status, 0) << updated.err;
    EXPECT_NE(updated.out.find("block D: added, it is required now"), std::string::npos)
        << updated.out;
    EXPECT_EQ(on("block list a.qdraw").out, "B\nC\nD\n");
    EXPECT_EQ(on("format check a.qdraw").status, 0);
    EXPECT_EQ(on("format replace b.qdraw F/A3").status, 0);
    EXPECT_EQ(on("block list b.qdraw").out, "B\nC\nD\n");
}

} // namespace
