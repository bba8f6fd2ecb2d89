// A class of user defined objects whose callbacks write down what they see.
#pragma once

#include "host_fixture.h"

namespace host_test {

// What callbacks of the probing classes saw, in order.
struct Event {
    std::string what;
    tag_t udo;
    int type;
    tag_t object;
    bool operator==(const Event &) const = default;
};
inline void PrintTo(const Event &event, std::ostream *out)
{
    *out << event.what << " " << event.udo << " " << event.type << "->" << event.object;
}
inline std::vector<Event> events;
inline void (*duringDelete)(tag_t udo, const UF_UDOBJ_link_t &link) = nullptr;

inline void onDelete(tag_t udo, UF_UDOBJ_link_p_t link)
{
    events.push_back({"delete", udo, link->link_type, link->assoc_ug_tag});
    if (duringDelete) duringDelete(udo, *link);
}

inline void onUpdate(tag_t udo, UF_UDOBJ_link_p_t link)
{
    events.push_back({"update", udo, link->link_type, link->assoc_ug_tag});
}

class UdobjTest : public HostTest {
protected:
    void SetUp() override
    {
        HostTest::SetUp();
        events.clear();
        duringDelete = nullptr;
        ASSERT_EQ(UF_UDOBJ_register_delete_cb(classId("HOST_PROBE"), onDelete), 0);
        ASSERT_EQ(UF_UDOBJ_register_update_cb(classId("HOST_PROBE"), onUpdate), 0);
    }
};

inline std::vector<int> intsOf(tag_t udo)
{
    UF_UDOBJ_all_data_t data{};
    EXPECT_EQ(UF_UDOBJ_ask_udo_data(udo, &data), 0);
    std::vector<int> values(data.ints, data.ints + data.num_ints);
    EXPECT_EQ(UF_UDOBJ_free_udo_data(&data), 0);
    return values;
}

inline Tags cycle(tag_t part, UF_UDOBJ_class_t id)
{
    Tags found;
    tag_t udo = NULL_TAG;
    while (UF_UDOBJ_cycle_udos_by_class(part, id, &udo) == 0 && udo != NULL_TAG)
        found.push_back(udo);
    return found;
}

} // namespace host_test
