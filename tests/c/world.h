/* What the C tests stand on: a sheet to work on, tags that are none, and claims. The definitions are those of
   InterfaceStory: format F in A3 and A4, block TITLE with the fields NAME and LANG ("en") and the table
   REV with NO and TEXT, block NOTE with nothing, block ELSEWHERE without a place on F. */
#ifndef QELFMT_TESTS_C_WORLD_H
#define QELFMT_TESTS_C_WORLD_H

#include "api/trv_fmt.h"

#ifdef __cplusplus
extern "C" {
#endif

unsigned int world_sheet(void);       /* without a format at first */
unsigned int world_other_sheet(void); /* of the same part, never with a format */
unsigned int world_dead_sheet(void);  /* it has been deleted */
unsigned int world_part_tag(void);    /* alive, and no drawing */
unsigned int world_note_tag(void);    /* a note on the other sheet */
unsigned int world_reopen(void);      /* saves, closes, opens: the sheet's new tag */

unsigned int world_sheet_with_format(void); /* the first sheet, with F in A3: one block, TITLE */
int world_blocks_on(unsigned int sheet);    /* how many */

/* The part as text, valid until the next call; for claims that nothing changed. */
const char *world_listing(void);

/* What C cannot do: callbacks that throw, and calls whose exceptions are caught. */
enum thrown { THROWS_STANDARD, THROWS_PLATFORM, THROWS_NUMBER };
void world_throw(
    enum thrown kind); /* a standard exception "the callback gave up", code 1405001, or 5 */
int world_caught(int (*call)(void)); /* the number that passed out of the call; 0 when none did */

void claim_holds(int held, const char *file, int line, const char *claim);
void claim_text(const char *actual, const char *expected, const char *file, int line,
                const char *claim);
void claim_succeeds(int status, const char *file, int line, const char *claim);
/* Status 1, and the text is this call's own: the last error was another one before it. */
void claim_fails(int status, const char *text, const char *file, int line, const char *claim);
void forget_last_error(void); /* puts a text there that no test expects */

#ifdef __cplusplus
}
#endif

#define HOLDS(claim) claim_holds((claim) ? 1 : 0, __FILE__, __LINE__, #claim)
#define TEXT_IS(actual, expected) claim_text((actual), (expected), __FILE__, __LINE__, #actual)
#define SUCCEEDS(call) claim_succeeds((call), __FILE__, __LINE__, #call)
#define FAILS(call, text)                                                                          \
    do {                                                                                           \
        int status_;                                                                               \
        forget_last_error();                                                                       \
        status_ = (call);                                                                          \
        claim_fails(status_, (text), __FILE__, __LINE__, #call);                                   \
    } while (0)

#endif
