#include "display/note_text.h"
#include "display/utf8.h"

#include <gtest/gtest.h>

using host::display::charactersOf;
using host::display::validUtf8;
using host::display::visibleText;

TEST(NoteText, ControlCommandsAreNotSeenAndOrdinaryBracketsAre)
{
    struct Row {
        const char *stored;
        const char *seen;
    };
    for (const Row &row : {
             Row{"plain", "plain"},
             {"", ""},
             {"$<M6$>", "<M6>"},
             {"cost: 5$", "cost: 5$"},
             {"45<O>", "45"},           // a single symbol
             {"a<B2>b", "ab"},          // a number as parameter
             {"a<Z-1.5>b", "ab"},       // signed, with a point
             {"a<C0,7>b<C>c", "abc"},   // with a comma; without any
             {"<T0.1!0.2>", "0.1/0.2"}, // a fraction must not vanish
             {"x<W@PART_NO>y", "xy"},   // what nothing resolved
             {"<W!123@TITLE>", ""},     // nor this
             {"<W!123@?TITLE>", ""},
             {"<X3.2@length>", ""},
             {"a < b > c", "a < b > c"}, // a command has a letter at once
             {"<b>", "<b>"},             // and a capital one
             {"<ABC>", "<ABC>"},         // and no words
             {"<<O>", "<"},
             {"<A", "<A"},
             {"<", "<"},
             {"$", "$"},
             {"<B1.2.3>", "<B1.2.3>"}, // no number
             {"<O><O>5", "5"},
         }) {
        EXPECT_EQ(visibleText(row.stored), row.seen) << row.stored;
    }
}

TEST(NoteText, BytesThatAreNoUtf8AreReadAsLatin1)
{
    EXPECT_EQ(visibleText("\xd8"
                          "12"),
              "\xc3\x98"
              "12");                                // Ø in an old part
    EXPECT_EQ(visibleText("45\xb0"), "45\xc2\xb0"); // degree, cut off by the end
    EXPECT_EQ(validUtf8("\xc3\x98\xe2\x8c\x80"), "\xc3\x98\xe2\x8c\x80"); // what is valid stays
    EXPECT_EQ(charactersOf("\xed\xa0\x80").size(), 3u);                   // half a surrogate pair
    EXPECT_EQ(charactersOf("\xf0\x9f\x98\x80"), std::u32string(1, char32_t{0x1f600}));
    EXPECT_EQ(charactersOf("\xc0\xaf").size(), 2u); // an over-long slash is none
}

TEST(NoteText, AnyBytesGiveValidUtf8)
{
    unsigned state = 1;
    const auto next = [&] { return state = state * 1103515245u + 12345u, state >> 16; };
    for (int i = 0; i < 20000; ++i) {
        std::string text;
        for (unsigned n = next() % 12; n > 0; --n)
            text += static_cast<char>("<>$WB!@12\xc3\xe2\xf0\x80\xffxy"[next() % 17]);
        const std::string seen = visibleText(text);
        ASSERT_EQ(validUtf8(seen), seen) << text;
    }
}
