// A fresh part for every test, and the platform's calls in one line each.
#pragma once

#include "nxhost/control.h"
#include "uf.h"
#include "uf_attr.h"
#include "uf_curve.h"
#include "uf_draw.h"
#include "uf_layer.h"
#include "uf_obj.h"
#include "uf_part.h"
#include "uf_udobj.h"

#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <map>
#include <string>
#include <vector>

namespace host_test {

class Folder {
public:
    Folder()
    {
        std::string name = (std::filesystem::temp_directory_path() / "qelfmt-host-XXXXXX").string();
        m_path = ::mkdtemp(name.data());
    }
    ~Folder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }
    Folder(const Folder &) = delete;
    Folder &operator=(const Folder &) = delete;
    std::string file(const std::string &name) const { return (m_path / name).string(); }
    const std::filesystem::path &path() const { return m_path; }

private:
    std::filesystem::path m_path;
};

// Classes belong to the process: made once by whichever test comes first.
inline UF_UDOBJ_class_t classId(const std::string &name)
{
    static auto *ids = new std::map<std::string, UF_UDOBJ_class_t>;
    UF_UDOBJ_class_t &id = (*ids)[name];
    if (!id) {
        EXPECT_EQ(UF_UDOBJ_create_class(name.c_str(), ("The " + name).c_str(), &id), 0);
    }
    return id;
}

inline tag_t newUdo(const std::string &className = "HOST_PROBE")
{
    tag_t udo = NULL_TAG;
    EXPECT_EQ(UF_UDOBJ_create_udo(classId(className), &udo), 0);
    return udo;
}

inline tag_t newPoint(double x = 0.0, double y = 0.0)
{
    double at[3] = {x, y, 0.0};
    tag_t point = NULL_TAG;
    EXPECT_EQ(UF_CURVE_create_point(at, &point), 0);
    return point;
}

inline tag_t newSheet(const std::string &name)
{
    UF_DRAW_info_t info{};
    info.size_state = UF_DRAW_METRIC_SIZE;
    info.size.metric_size_code = UF_DRAW_A3;
    info.drawing_scale = 1.0;
    info.units = UF_PART_METRIC;
    info.projection_angle = UF_DRAW_FIRST_ANGLE_PROJECTION;
    tag_t sheet = NULL_TAG;
    EXPECT_EQ(UF_DRAW_create_drawing(name.c_str(), &info, &sheet), 0);
    EXPECT_EQ(UF_DRAW_open_drawing(sheet), 0);
    return sheet;
}

inline int addLink(tag_t udo, int type, tag_t target)
{
    UF_UDOBJ_link_t link{type, target, 0};
    return UF_UDOBJ_add_links(udo, 1, &link);
}

inline int deleteLink(tag_t udo, int type, tag_t target)
{
    UF_UDOBJ_link_t link{type, target, 0};
    return UF_UDOBJ_delete_link(udo, &link);
}

struct LinkEnd {
    int type;
    tag_t tag;
    bool operator==(const LinkEnd &) const = default;
};
inline void PrintTo(const LinkEnd &end, std::ostream *out) { *out << end.type << "->" << end.tag; }
using LinkEnds = std::vector<LinkEnd>;
using Tags = std::vector<tag_t>;

// The stored links, in stored order.
inline LinkEnds linksOf(tag_t udo)
{
    UF_UDOBJ_all_data_t data{};
    EXPECT_EQ(UF_UDOBJ_ask_udo_data(udo, &data), 0);
    LinkEnds ends;
    for (unsigned i = 0; i < data.num_links; ++i)
        ends.push_back({data.link_defs[i].link_type, data.link_defs[i].assoc_ug_tag});
    EXPECT_EQ(UF_UDOBJ_free_udo_data(&data), 0);
    return ends;
}

inline std::vector<unsigned> linkStatuses(tag_t udo)
{
    UF_UDOBJ_all_data_t data{};
    EXPECT_EQ(UF_UDOBJ_ask_udo_data(udo, &data), 0);
    std::vector<unsigned> statuses;
    for (unsigned i = 0; i < data.num_links; ++i)
        statuses.push_back(data.link_defs[i].object_status);
    EXPECT_EQ(UF_UDOBJ_free_udo_data(&data), 0);
    return statuses;
}

// Who links here, in the order of the answer.
inline LinkEnds linksTo(tag_t object)
{
    int count = -1;
    UF_UDOBJ_link_t *links = nullptr;
    EXPECT_EQ(UF_UDOBJ_ask_udo_links_to_obj(object, &count, &links), 0);
    LinkEnds ends;
    for (int i = 0; i < count; ++i) ends.push_back({links[i].link_type, links[i].assoc_ug_tag});
    UF_free(links);
    return ends;
}

inline int own(tag_t udo, Tags objects)
{
    return UF_UDOBJ_add_owning_links(udo, static_cast<unsigned>(objects.size()), objects.data());
}

inline Tags ownedBy(tag_t udo)
{
    unsigned count = 0;
    tag_t *objects = nullptr;
    EXPECT_EQ(UF_UDOBJ_ask_owned_objects(udo, &count, &objects), 0);
    Tags owned(objects, objects + count);
    UF_free(objects);
    return owned;
}

inline tag_t ownerOf(tag_t object)
{
    tag_t owner = NULL_TAG;
    EXPECT_EQ(UF_UDOBJ_ask_owning_udo(object, &owner), 0);
    return owner;
}

inline int statusOf(tag_t object) { return UF_OBJ_ask_status(object); }

inline std::string messageOf(int code)
{
    char text[133] = "untouched";
    return UF_get_fail_message(code, text) == 0 ? text : "";
}

inline std::string attributeOf(tag_t object, std::string title)
{
    UF_ATTR_value_t value{};
    EXPECT_EQ(UF_ATTR_read_value(object, title.data(), UF_ATTR_string, &value), 0);
    if (value.type != UF_ATTR_string) return "(none)";
    std::string text = value.value.string;
    UF_free(value.value.string);
    return text;
}

inline int assign(tag_t object, std::string title, std::string text)
{
    UF_ATTR_value_t value{};
    value.type = UF_ATTR_string;
    value.value.string = text.data();
    return UF_ATTR_assign(object, title.data(), value);
}

class HostTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_EQ(UF_initialize(), 0);
        nxhost::reset();
        m_memory = nxhost::outstandingAllocations();
        ASSERT_EQ(UF_PART_new(folder.file("work").c_str(), UF_PART_METRIC, &part), 0);
    }
    void TearDown() override
    {
        EXPECT_EQ(nxhost::outstandingAllocations(), m_memory) << "memory was not given back";
        EXPECT_EQ(nxhost::outstandingDataBlocks(), 0u) << "a data block was not given back";
        EXPECT_EQ(nxhost::badFrees(), m_expectedBadFrees);
        nxhost::reset();
        UF_terminate();
    }

    Folder folder;
    tag_t part = NULL_TAG;
    std::size_t m_expectedBadFrees = 0;

private:
    std::size_t m_memory = 0;
};

} // namespace host_test
