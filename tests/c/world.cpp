#include "world.h"

#include "tests/c/runner.h"

#include "nxhost/control.h"
#include "uf_draw.h"
#include "uf_drf.h"
#include "ug_exception.hxx"

#include <stdexcept>

namespace {

CInterface *g_story = nullptr;
std::string g_listing;

} // namespace

void CInterface::SetUp()
{
    InterfaceStory::SetUp();
    m_other = story.addSheet("OTHER", 420, 297);
    const tag_t dead = story.addSheet("DEAD", 420, 297);
    char line[] = "a note";
    char *text[] = {line};
    double origin[] = {10.0, 10.0, 0.0};
    story.open(m_other);
    ASSERT_EQ(UF_DRF_create_note(1, text, origin, 0, &m_note), 0);
    ASSERT_EQ(UF_DRAW_delete_drawing(dead), 0);
    m_dead = dead;
    story.open(sheet);
    g_story = this;
}

void CInterface::TearDown()
{
    g_story = nullptr;
    InterfaceStory::TearDown();
}

unsigned CInterface::reopen()
{
    story.saveAndReopen();
    sheet = story.sheet(0);
    return sheet;
}

extern "C" {

unsigned int world_sheet(void) { return g_story->sheet; }
unsigned int world_other_sheet(void) { return g_story->other(); }
unsigned int world_dead_sheet(void) { return g_story->dead(); }
unsigned int world_part_tag(void) { return g_story->story.part(); }
unsigned int world_note_tag(void) { return g_story->note(); }
unsigned int world_reopen(void) { return g_story->reopen(); }

const char *world_listing(void)
{
    g_listing = nxhost::listPart(g_story->story.part());
    return g_listing.c_str();
}

void world_throw(enum thrown kind)
{
    if (kind == THROWS_STANDARD) throw std::runtime_error("the callback gave up");
    if (kind == THROWS_PLATFORM) throw UgException(1405001);
    throw 5;
}

int world_caught(int (*call)(void))
{
    try {
        call();
        return 0;
    } catch (int number) {
        return number;
    }
}

void claim_holds(int held, const char *file, int line, const char *claim)
{
    if (!held) ADD_FAILURE_AT(file, line) << claim;
}

void claim_text(const char *actual, const char *expected, const char *file, int line,
                const char *claim)
{
    if (std::string(actual) != expected)
        ADD_FAILURE_AT(file, line) << claim << "\n  is  " << actual << "\n  not " << expected;
}

void claim_succeeds(int status, const char *file, int line, const char *claim)
{
    if (status != 0)
        ADD_FAILURE_AT(file, line)
            << claim << ": status " << status << ", " << TRV_FMT_ask_last_error();
}

void claim_fails(int status, const char *text, const char *file, int line, const char *claim)
{
    if (status != 1) ADD_FAILURE_AT(file, line) << claim << ": status " << status;
    claim_text(TRV_FMT_ask_last_error(), text, file, line, claim);
}

void forget_last_error(void) { QelFmt::api::lastError() = "no call has failed yet"; }

} // extern "C"
