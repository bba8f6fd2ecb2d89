// A caller that knows no rules: any function, any arguments, in any order, also inside its callbacks. Whatever it does, a failure has
// its own text, nothing leaks, and the part saves and reopens as it was.
#include "interface_story.h"

#include "api/guard.h"

#include "uf_drf.h"

#include <array>
#include <climits>
#include <functional>
#include <random>
#include <stdexcept>

namespace {

constexpr const char *kUntouched = "no call has failed yet";

// What the installed callbacks do: answer, call the library again, or throw.
int g_answer = 1;
std::function<void()> g_meanwhile;
int answerBlock(const char *, const char *)
{
    g_meanwhile();
    return g_answer;
}
void noteRow(const char *, const char *, const char *) { g_meanwhile(); }

class RandomCaller : public InterfaceStory {
protected:
    void SetUp() override
    {
        InterfaceStory::SetUp();
        m_second = story.addSheet("SHEET2", 297, 210);
        const tag_t dead = story.addSheet("DEAD", 297, 210);
        char line[] = "a note";
        char *text[] = {line};
        double origin[] = {10.0, 10.0, 0.0};
        story.open(m_second);
        ASSERT_EQ(UF_DRF_create_note(1, text, origin, 0, &m_note), 0);
        ASSERT_EQ(UF_DRAW_delete_drawing(dead), 0);
        story.open(sheet);
        g_meanwhile = [this] { meanwhile(); };
        m_tags = {sheet, sheet,  sheet,        sheet, m_second,   m_second,
                  dead,  m_note, story.part(), 0,     4000000000u};
    }

    void run(unsigned calls, unsigned seed)
    {
        m_random.seed(seed);
        for (unsigned i = 0; i < calls; ++i) {
            SCOPED_TRACE("seed " + std::to_string(seed) + ", call " + std::to_string(i));
            callOnce();
            if (i % 2000 == 1999) reopen();
            if (HasFailure()) return;
        }
        reopen();
    }

private:
    template <class T, std::size_t N> const T &one(const std::array<T, N> &of)
    {
        return of[below(static_cast<unsigned>(N))];
    }
    unsigned below(unsigned n)
    {
        return std::uniform_int_distribution<unsigned>(0, n - 1)(m_random);
    }
    unsigned tag() { return m_tags[below(static_cast<unsigned>(m_tags.size()))]; }
    const char *format() { return one<const char *, 5>({"F", "F", "G", "", nullptr}); }
    const char *size() { return one<const char *, 5>({"A3", "A4", "A9", "", nullptr}); }
    const char *block()
    {
        return one<const char *, 8>(
            {"TITLE", "TITLE", "TITLE", "TITLE", "NOTE", "GONE", "", nullptr});
    }
    const char *field() { return one<const char *, 6>({"NAME", "LANG", "NAME", "X", "", nullptr}); }
    const char *table()
    {
        return one<const char *, 6>({"REV", "REV", "REV", "TITLE", "", nullptr});
    }
    const char *column() { return one<const char *, 6>({"NO", "TEXT", "NO", "X", "", nullptr}); }
    int row() { return one<int, 8>({0, 0, 1, 2, 5, -1, INT_MAX, INT_MIN}); }
    const double *place()
    {
        static constexpr double kPlaces[][3] = {
            {0, 0, 0}, {70, 80, 9}, {-1e6, 1e6, 0}, {1e-9, 3, 1}};
        return below(6) == 0 ? nullptr : kPlaces[below(4)];
    }

    // Up to four lines of any length; null texts, a negative number and a missing array among them.
    const TRV_FMT_value_list_t *value()
    {
        static const std::string kLong(70000, 'x');
        if (below(12) == 0) return nullptr;
        m_texts.fill(nullptr);
        for (char *&text : m_texts)
            text = const_cast<char *>(
                one<const char *, 7>({"one", "", "two words", nullptr, "\xe9\xff", "<W@TITLE>",
                                      below(40) ? "x" : kLong.c_str()}));
        m_value = {static_cast<int>(below(5)), m_texts.data()};
        if (below(20) == 0) m_value.num_values = -1;
        if (below(20) == 0) m_value.values = nullptr;
        return &m_value;
    }

    template <class Ask> int asked(Ask &&ask)
    {
        if (below(10) == 0) return ask(static_cast<TRV_FMT_value_list_t *>(nullptr));
        TRV_FMT_value_list_t list{0, nullptr};
        const int status = ask(&list);
        for (int i = 0; i < list.num_values; ++i) EXPECT_NE(list.values[i], nullptr);
        TRV_FMT_free_value(&list);
        return status;
    }
    template <class Out, class Ask> int answered(Ask &&ask)
    {
        Out out{};
        return ask(below(10) == 0 ? static_cast<Out *>(nullptr) : &out);
    }

    int callFormats(unsigned which)
    {
        char buffer[2][TRV_FMT_MAX_ID_BUFSIZE];
        switch (which) {
        case 0:
            return TRV_FMT_add_format(tag(), format(), size());
        case 1:
            return TRV_FMT_ask_format(tag(), below(9) ? buffer[0] : nullptr, buffer[1]);
        case 2:
            return below(10) ? 0 : TRV_FMT_delete_format(tag()); // seldom: it empties the sheet
        case 3:
            return TRV_FMT_update(tag());
        case 4:
            return TRV_FMT_recreate_notes(tag());
        case 5:
            return TRV_FMT_verify_block_locations(tag());
        case 6:
            return below(3) ? 0 : TRV_FMT_add_block(tag(), block());
        case 7:
            return below(2) ? 0 : TRV_FMT_delete_block(tag(), block());
        case 8:
            return asked([&](auto *list) { return TRV_FMT_ask_blocks_on_drawing(tag(), list); });
        default:
            return QEL_FMT_move_block(tag(), block(), place());
        }
    }
    int callFields(unsigned which)
    {
        switch (which) {
        case 0:
            return asked(
                [&](auto *list) { return TRV_FMT_ask_field_value(tag(), block(), field(), list); });
        case 1:
            return TRV_FMT_set_field_value(tag(), block(), field(), value());
        case 2:
            return QEL_FMT_set_field_editable(tag(), block(), field(),
                                              static_cast<char>(below(256)));
        default:
            return answered<char>([&](char *out) {
                return QEL_FMT_get_field_editable(tag(), block(), field(), out);
            });
        }
    }
    int callTables(unsigned which)
    {
        switch (which) {
        case 0:
            return asked([&](auto *list) {
                return TRV_FMT_ask_table_value(tag(), block(), table(), row(), column(), list);
            });
        case 1:
            return TRV_FMT_set_table_value(tag(), block(), table(), row(), column(), value());
        case 2:
            return QEL_FMT_set_table_field_editable(tag(), block(), table(), row(), column(),
                                                    static_cast<char>(below(256)));
        case 3:
            return answered<char>([&](char *out) {
                return QEL_FMT_get_table_field_editable(tag(), block(), table(), row(), column(),
                                                        out);
            });
        case 4:
            return below(2) ? 0 : TRV_FMT_add_entry(tag(), block(), table());
        case 5:
            return TRV_FMT_delete_entry(tag(), block(), table(), row());
        case 6:
            return answered<int>([&](int *out) {
                return TRV_FMT_ask_number_table_entries(tag(), block(), table(), out);
            });
        default:
            return TRV_FMT_place_symbol(tag(), block(), table(), row(), place());
        }
    }
    int callLife(unsigned which)
    {
        switch (which) {
        case 0:
            return TRV_FMT_terminate();
        case 1:
            return QEL_FMT_initialize(static_cast<char>(below(2)));
        case 2:
            QEL_FMT_set_add_block_cb(below(2) ? answerBlock : nullptr);
            g_answer = static_cast<int>(below(3)) - 1;
            return 0;
        case 3:
            QEL_FMT_set_append_entry_cb(below(2) ? noteRow : nullptr);
            return 0;
        case 4:
            TRV_FMT_free_value(nullptr);
            return 0;
        default:
            ufsta();
            return 0;
        }
    }

    int callAny()
    {
        const unsigned kind = below(100);
        if (kind < 35) return callFormats(below(10));
        if (kind < 60) return callFields(below(4));
        if (kind < 99) return callTables(below(8));
        const int status = callLife(below(6));
        // Most of what follows needs definitions.
        if (below(3)) {
            EXPECT_EQ(TRV_FMT_terminate(), 0);
            EXPECT_EQ(TRV_FMT_initialize(), 0);
        }
        return status;
    }

    // Inside a callback: mostly nothing, else any call, or an exception of each kind.
    void meanwhile()
    {
        if (m_depth == 3 || below(3)) return;
        ++m_depth;
        callOnce();
        --m_depth;
        QelFmt::api::lastError() = kUntouched; // what the outer call says must be its own
        if (below(10)) return;
        if (below(2)) throw UgException(UF_err_unknown_tag);
        if (below(2)) throw std::runtime_error("the callback gave up");
        throw 5;
    }

    void callOnce()
    {
        QelFmt::api::lastError() = kUntouched;
        int status = 0;
        try {
            status = callAny();
        } catch (int number) {
            EXPECT_EQ(number, 5); // the only thing that passes through
        }
        const std::string text = TRV_FMT_ask_last_error();
        if (status == 0) return;
        EXPECT_EQ(status, 1);
        EXPECT_NE(text, kUntouched) << "a failure without a text of its own";
        EXPECT_NE(text, "");
    }

    void reopen()
    {
        const std::string before = nxhost::listPart(story.part());
        story.saveAndReopen();
        EXPECT_EQ(nxhost::difference(before, nxhost::listPart(story.part())), "");
        sheet = story.sheet(0);
        m_second = story.sheet(1);
        // The tags from before are no drawings any more: they stay among the bad ones.
        m_tags[6] = m_tags[0];
        for (std::size_t i = 0; i < 4; ++i) m_tags[i] = sheet;
        m_tags[4] = m_tags[5] = m_second;
        m_tags[8] = story.part();
    }

    std::mt19937 m_random;
    unsigned m_depth = 0; // of calls inside callbacks
    tag_t m_second = NULL_TAG;
    tag_t m_note = NULL_TAG;
    std::vector<unsigned> m_tags;
    std::array<char *, 4> m_texts{};
    TRV_FMT_value_list_t m_value{};
};

TEST_F(RandomCaller, EveryFailureHasItsTextAndThePartReopens) { run(1500, 1); }

TEST_F(RandomCaller, AHundredThousandCallsSoak)
{
    const auto calls = static_cast<unsigned>(100000 * soakShare());
    run(std::max(calls, 1000u), 20240518);
}

} // namespace
