// Sheets whose fields show the definitions of others, as the library's update by position leaves them.
#include "shell.h"

#include "nxhost/control.h"
#include "uf.h"
#include "uf_part.h"
#include "uf_udobj.h"

#include <stdexcept>
#include <vector>

namespace {

void check(int status)
{
    if (status == 0) return;
    char text[133] = "";
    UF_get_fail_message(status, text);
    throw std::runtime_error(text);
}

UF_UDOBJ_class_t fieldClass()
{
    static UF_UDOBJ_class_t id = 0;
    if (id == 0) {
        char name[] = "TRV_FORMAT_FIELD_V1";
        check(UF_UDOBJ_create_class(name, name, &id));
    }
    return id;
}

struct DefinitionLink {
    tag_t field;
    UF_UDOBJ_link_t link;
};

// The links of type 4, a field each, in stored order.
std::vector<DefinitionLink> definitionLinks(tag_t part)
{
    std::vector<DefinitionLink> found;
    tag_t field = NULL_TAG;
    while (UF_UDOBJ_cycle_udos_by_class(part, fieldClass(), &field) == 0 && field != NULL_TAG) {
        UF_UDOBJ_all_data_t data;
        check(UF_UDOBJ_ask_udo_data(field, &data));
        for (unsigned i = 0; i < data.num_links; ++i)
            if (data.link_defs[i].link_type == 4) found.push_back({field, data.link_defs[i]});
        check(UF_UDOBJ_free_udo_data(&data));
    }
    return found;
}

// The first two fields change their definitions.
void miswire(const std::string &path)
{
    check(UF_initialize());
    nxhost::reset();
    fieldClass();
    tag_t part = NULL_TAG;
    UF_PART_load_status_t status{};
    check(UF_PART_open(path.c_str(), &part, &status));
    UF_PART_free_load_status(&status);
    auto links = definitionLinks(part);
    if (links.size() < 2) throw std::runtime_error("no two fields with definitions");
    const tag_t first = links[0].link.assoc_ug_tag, second = links[1].link.assoc_ug_tag;
    check(UF_UDOBJ_edit_link(links[0].field, &links[0].link, second));
    check(UF_UDOBJ_edit_link(links[1].field, &links[1].link, first));
    check(UF_PART_save());
    check(UF_PART_close(part, 0, 1));
    nxhost::reset();
}

class MiswiredDrawing : public Shell {
protected:
    void SetUp() override
    {
        Shell::SetUp();
        write("d.yaml", "units: mm\n"
                        "formats:\n"
                        "  F: {required: [B], sheets: iso, sizes: [A3]}\n"
                        "blocks:\n"
                        "  B:\n"
                        "    size: [100, 10]\n"
                        "    place: {at: [30, 20]}\n"
                        "    cells:\n"
                        "      number: {cell: [0, 0, 50, 10]}\n"
                        "      owner: {cell: [50, 0, 50, 10]}\n");
        ASSERT_EQ(qelfmt("defs build d.yaml -o site --quiet").status, 0);
        ASSERT_EQ(on("stamp F/A3 --sheet S1 -o a.qdraw").status, 0);
        ASSERT_EQ(on("field set a.qdraw number 4711").status, 0);
        ASSERT_EQ(on("field set a.qdraw owner Miller").status, 0);
        std::filesystem::copy_file(folder / "a.qdraw", folder / "right.qdraw");
        miswire((folder / "a.qdraw").string());
    }
    Outcome on(const std::string &line) const { return qelfmt("--defs site " + line); }
};

TEST_F(MiswiredDrawing, IsCalledThatWithTheNamesOfItsFields)
{
    const Outcome checked = on("format check a.qdraw");
    EXPECT_EQ(checked.status, 1);
    EXPECT_NE(checked.out.find("a.qdraw, sheet S1: miswired (F/A3)"), std::string::npos)
        << checked.out;
    for (const char *field : {"number", "owner"})
        EXPECT_NE(checked.out.find(std::string("block B, field ") + field +
                                   ": shows the definition of another field"),
                  std::string::npos)
            << checked.out;
}

TEST_F(MiswiredDrawing, IsRepairedByAnUpdateWithEveryValue)
{
    const Outcome updated = on("format update a.qdraw");
    EXPECT_EQ(updated.status, 0) << updated.err;
    EXPECT_NE(updated.out.find("block B: updated by id (fields show the definitions of others"),
              std::string::npos)
        << updated.out;
    EXPECT_EQ(on("format check a.qdraw").status, 0);
    EXPECT_EQ(json("--defs site field list a.qdraw")["B"],
              nlohmann::json({{"number", "4711"}, {"owner", "Miller"}}));
    ASSERT_EQ(on("render a.qdraw -o a.svg").status, 0);
    ASSERT_EQ(on("render right.qdraw -o right.svg").status, 0);
    EXPECT_EQ(read("a.svg"), read("right.svg"));
}

} // namespace
