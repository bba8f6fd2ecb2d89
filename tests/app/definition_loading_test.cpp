// A definition without an id, which another program wrote: it ends the loading, and is named.
#include "definition_files.h"

#include "nxhost/control.h"
#include "uf.h"
#include "uf_part.h"
#include "uf_udobj.h"

#include <stdexcept>

namespace {

void check(int status)
{
    if (status) throw std::runtime_error("the host refuses: " + std::to_string(status));
}

class Loading : public DefinitionFiles {
protected:
    // m.prt, between d.prt and z.prt, each of which defines the block B.
    void SetUp() override
    {
        DefinitionFiles::SetUp();
        for (const std::string name : {"d", "z"}) {
            writeText(name + ".yaml", cell("a", 0) + cell("b", 20) + cell("c", 40));
            ASSERT_EQ(qelfmt("defs build " + name + ".yaml -o " + name + " --quiet").status, 0);
        }
        std::filesystem::create_directories(folder / "s/format_defs");
        std::filesystem::copy_file(folder / "z/format_defs/z.prt", folder / "s/format_defs/z.prt");
        writePartWithoutId((folder / "s/format_defs/m.prt").string());
    }

    static void writePartWithoutId(const std::string &path)
    {
        check(UF_initialize());
        nxhost::reset();
        tag_t part = NULL_TAG, block = NULL_TAG;
        check(UF_PART_new(path.c_str(), UF_PART_METRIC, &part));
        char name[] = "KORVAN_FORMAT_BLOCK_DEF_V1";
        static UF_UDOBJ_class_t id = 0; // registered once a process
        if (id == 0) check(UF_UDOBJ_create_class(name, name, &id));
        check(UF_UDOBJ_create_udo(id, &block));
        check(UF_PART_save());
        check(UF_PART_close(part, 0, 1));
        nxhost::reset();
    }
};

TEST_F(Loading, IsToldTheFileThatEndsIt)
{
    const Outcome listed = qelfmt("defs list --defs s");
    EXPECT_EQ(listed.status, 3);
    EXPECT_TRUE(listed.err.starts_with("qelfmt: start: ")) << listed.err;
    EXPECT_NE(listed.err.find("s/format_defs/m.prt: has a definition without an id, and nothing "
                              "behind it is loaded: build it anew ('qelfmt defs dump "),
              std::string::npos)
        << listed.err;
    ASSERT_EQ(shell("rm s/format_defs/m.prt").status, 0);
    EXPECT_EQ(qelfmt("defs list --defs s").status, 0);
}

TEST_F(Loading, MarksWhatFollowsAsNotLoaded)
{
    const Outcome found = qelfmt("defs where B --defs d --defs s");
    EXPECT_NE(found.out.find("d.prt: block B: used\n"), std::string::npos) << found.out;
    EXPECT_NE(found.out.find("z.prt: block B: not loaded\n"), std::string::npos);
    EXPECT_NE(found.out.find("m.prt: has a definition without an id: it ends the loading"),
              std::string::npos);
}

TEST_F(Loading, OfATextThatWouldEndItIsRefused)
{
    const std::string dumped = qelfmt("defs dump s/format_defs/m.prt").out;
    write("m.yaml", dumped);
    const Outcome built = qelfmt("defs build m.yaml -o other");
    EXPECT_EQ(built.status, 3);
    EXPECT_NE(built.err.find("block: id: is missing: nothing of its site could be loaded"),
              std::string::npos)
        << built.err << dumped;
    // Also where it stands in another record: every block of a part is loaded.
    write("n.yaml", "records:\n- kind: format\n  id: F\n  children:\n    - kind: block\n");
    EXPECT_NE(qelfmt("defs build n.yaml -o other").err.find("n.yaml:5:7: block: id: is missing"),
              std::string::npos);
}

} // namespace
