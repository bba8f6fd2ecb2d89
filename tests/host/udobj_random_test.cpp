// Random callers: whatever they do, both ends of every link and of every ownership agree.
#include "udobj_probe.h"

#include <algorithm>
#include <random>

using namespace host_test;

namespace {

class UdobjRandom : public UdobjTest {
protected:
    tag_t any()
    {
        return m_all.empty() ? NULL_TAG : m_all[number(static_cast<unsigned>(m_all.size()))];
    }
    unsigned number(unsigned below) { return static_cast<unsigned>(m_random() % below); }

    // Refusals are fine: most random calls make no sense. What they leave behind must.
    void step()
    {
        const tag_t object = any();
        switch (number(12)) {
        case 0:
        case 1:
        case 2:
            m_all.push_back(newUdo());
            break;
        case 3:
            m_all.push_back(newPoint());
            break;
        case 4:
        case 5:
        case 6:
            addLink(object, 1 + static_cast<int>(number(4)), any());
            break;
        case 7:
            own(object, {any()});
            break;
        case 8:
            UF_UDOBJ_delete_owning_link(object, any());
            break;
        case 9:
            unlinkFirst(object);
            break;
        case 10:
            reverseLinks(object);
            break;
        default:
            UF_OBJ_delete_object(object);
            break;
        }
    }

    void check()
    {
        std::erase_if(m_all, [](tag_t tag) { return statusOf(tag) == UF_OBJ_DELETED; });
        std::size_t alive = 0;
        for (const tag_t object : m_all) {
            alive += statusOf(object) == UF_OBJ_ALIVE;
            checkInbound(object);
            if (isUdo(object)) checkOutbound(object);
        }
        EXPECT_EQ(alive, nxhost::countObjects(part));
    }

    static bool isUdo(tag_t object)
    {
        int type = 0;
        int subtype = 0;
        return UF_OBJ_ask_type_and_subtype(object, &type, &subtype) == 0 &&
               type == UF_user_defined_object_type;
    }

    std::mt19937 m_random;
    Tags m_all;

private:
    static void unlinkFirst(tag_t object)
    {
        if (!isUdo(object)) return;
        const LinkEnds links = linksOf(object);
        if (!links.empty()) {
            EXPECT_EQ(deleteLink(object, links[0].type, links[0].tag), 0);
        }
    }

    static void reverseLinks(tag_t object)
    {
        if (!isUdo(object)) return;
        std::vector<UF_UDOBJ_link_t> links;
        for (const LinkEnd &end : linksOf(object)) links.push_back({end.type, end.tag, 0});
        std::reverse(links.begin(), links.end());
        EXPECT_EQ(UF_UDOBJ_edit_links(object, links.data(), 0, static_cast<unsigned>(links.size())),
                  0);
    }

    static void checkOutbound(tag_t udo)
    {
        for (const LinkEnd &end : linksOf(udo)) {
            if (end.tag == NULL_TAG) continue;
            ASSERT_NE(statusOf(end.tag), UF_OBJ_DELETED) << "a link names a dead object";
            const LinkEnds back = linksTo(end.tag);
            EXPECT_NE(std::find(back.begin(), back.end(), LinkEnd{end.type, udo}), back.end());
        }
        for (const tag_t owned : ownedBy(udo)) {
            ASSERT_NE(statusOf(owned), UF_OBJ_DELETED) << "a dead object is owned";
            EXPECT_EQ(ownerOf(owned), udo);
        }
    }

    static void checkInbound(tag_t object)
    {
        bool held = false;
        for (const LinkEnd &end : linksTo(object)) {
            ASSERT_NE(statusOf(end.tag), UF_OBJ_DELETED) << "a dead UDO links here";
            const LinkEnds there = linksOf(end.tag);
            EXPECT_NE(std::find(there.begin(), there.end(), LinkEnd{end.type, object}),
                      there.end());
            held = held || end.type == 2;
        }
        EXPECT_TRUE(held || statusOf(object) != UF_OBJ_CONDEMNED) << "nobody holds it";
        if (const tag_t owner = ownerOf(object)) {
            const Tags owned = ownedBy(owner);
            EXPECT_EQ(std::count(owned.begin(), owned.end(), object), 1);
        }
    }
};

double soakShare()
{
    const char *share = std::getenv("QELFMT_SOAK_SHARE");
    return share ? std::atof(share) : 0.05;
}

} // namespace

TEST_F(UdobjRandom, BothEndsOfLinksAndOwnershipsAlwaysAgree)
{
    for (unsigned seed = 1; seed <= 20 && !HasFailure(); ++seed) {
        SCOPED_TRACE(seed);
        m_random.seed(seed);
        for (int i = 0; i < 400; ++i) step();
        check();
    }
}

TEST_F(UdobjRandom, AReopenedPartIsTheSameAfterAnyCalls)
{
    m_random.seed(4711);
    for (int i = 0; i < 2000; ++i) step();
    const std::string before = nxhost::listPart(part);
    EXPECT_NE(before.find("condemned"), std::string::npos) << "the seed should leave some";
    ASSERT_EQ(UF_PART_save(), 0);
    ASSERT_EQ(UF_PART_close(part, 0, 1), 0);
    UF_PART_load_status_t status{};
    ASSERT_EQ(UF_PART_open(folder.file("work.prt").c_str(), &part, &status), 0);
    EXPECT_EQ(nxhost::difference(before, nxhost::listPart(part)), "");
}

TEST_F(UdobjRandom, BothEndsOfLinksAndOwnershipsAlwaysAgreeSoak)
{
    const auto seeds = static_cast<unsigned>(20000 * soakShare());
    for (unsigned seed = 1000; seed < 1000 + seeds && !HasFailure(); ++seed) {
        SCOPED_TRACE(seed);
        m_random.seed(seed);
        for (int i = 0; i < 400; ++i) {
            step();
            if (i % 50 == 49) check();
        }
        if (m_all.size() > 2000) { // start afresh
            ASSERT_EQ(UF_PART_close(part, 0, 1), 0);
            m_all.clear();
            const std::string name = folder.file("soak" + std::to_string(seed));
            ASSERT_EQ(UF_PART_new(name.c_str(), UF_PART_METRIC, &part), 0);
        }
    }
}
