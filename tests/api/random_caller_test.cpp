// A caller that knows no rules: any function, any arguments, in any order, also inside its callbacks. Whatever it does, a failure has
// its own text, nothing leaks, and the part saves and reopens as it was.
#include "interface_story.h"

#include "api/guard.h"

#include "uf_drf.h"

#include <array>
#include <climits>
#include <cstdio>
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
        m_bad = {dead, m_note, story.part(), 0, 4000000000u};
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
        // It is no test when nothing ever succeeds, fails, or happens inside a callback.
        EXPECT_GT(m_succeeded, calls / 3);
        EXPECT_GT(m_failed, calls / 10);
        EXPECT_GT(m_nested, calls / 200);
        EXPECT_GT(m_thrown, 0u);
        std::printf("%u succeeded, %u failed, %u inside callbacks, %u threw\n", m_succeeded,
                    m_failed, m_nested, m_thrown);
    }

private:
    unsigned below(unsigned n)
    {
        return std::uniform_int_distribution<unsigned>(0, n - 1)(m_random);
    }
    template <class T> T one(std::initializer_list<T> of) { return of.begin()[below(of.size())]; }
    // Four calls of five are careful: their arguments are good ones.
    template <class T> T one(std::initializer_list<T> good, std::initializer_list<T> bad)
    {
        return m_careful || below(3) ? one(good) : one(bad);
    }

    unsigned tag()
    {
        return m_careful || below(3) ? one({sheet, sheet, m_second}) : m_bad[below(m_bad.size())];
    }
    const char *format() { return one({"F"}, {"G", "", static_cast<const char *>(nullptr)}); }
    const char *size() { return one({"A3", "A4"}, {"A9", "", static_cast<const char *>(nullptr)}); }
    const char *block()
    {
        return one({"TITLE", "TITLE", "TITLE", "NOTE"},
                   {"GONE", "ELSEWHERE", "", static_cast<const char *>(nullptr)});
    }
    const char *field()
    {
        return one({"NAME", "LANG"}, {"X", "", static_cast<const char *>(nullptr)});
    }
    const char *table() { return one({"REV"}, {"TITLE", "", static_cast<const char *>(nullptr)}); }
    const char *column()
    {
        return one({"NO", "TEXT"}, {"X", "", static_cast<const char *>(nullptr)});
    }
    int row() { return one({0, 0, 1, 2}, {500, -1, INT_MAX, INT_MIN}); }
    char flag() { return static_cast<char>(below(256)); }
    const double *place()
    {
        static constexpr double kPlaces[][3] = {
            {0, 0, 0}, {70, 80, 9}, {-1e6, 1e6, 0}, {1e-9, 3, 1}};
        return m_careful || below(3) ? kPlaces[below(4)] : nullptr;
    }
    template <class T> T *pointer(T *good) { return m_careful || below(3) ? good : nullptr; }

    // Up to four lines of any length; null texts, a negative number and a missing array among them.
    const TRV_FMT_value_list_t *value()
    {
        static const std::string kLong(70000, 'x');
        m_texts.fill(nullptr);
        for (char *&text : m_texts)
            text = const_cast<char *>(
                one<const char *>({"one", "", "two words", nullptr, "\xe9\xff", "<W@TITLE>",
                                   below(40) ? "x" : kLong.c_str()}));
        m_value = {static_cast<int>(below(5)), m_texts.data()};
        if (!m_careful && below(5) == 0) m_value.num_values = -1;
        if (!m_careful && below(5) == 0) m_value.values = nullptr;
        return pointer(&m_value);
    }

    template <class Ask> int asked(Ask &&ask)
    {
        TRV_FMT_value_list_t list{0, nullptr};
        const int status = ask(pointer(&list));
        for (int i = 0; i < list.num_values; ++i) EXPECT_NE(list.values[i], nullptr);
        TRV_FMT_free_value(&list);
        return status;
    }
    template <class Out, class Ask> int answered(Ask &&ask)
    {
        Out out{};
        return ask(pointer(&out));
    }

    struct Call {
        double weight;
        std::function<int()> make;
    };
    const std::vector<Call> m_calls{
        {6, [this] { return TRV_FMT_add_format(tag(), format(), size()); }},
        {3,
         [this] {
             char buffer[2][TRV_FMT_MAX_ID_BUFSIZE];
             return TRV_FMT_ask_format(tag(), pointer(buffer[0]), pointer(buffer[1]));
         }},
        {0.3, [this] { return TRV_FMT_delete_format(tag()); }}, // seldom: it empties the sheet
        {2, [this] { return TRV_FMT_update(tag()); }},
        {1, [this] { return TRV_FMT_recreate_notes(tag()); }},
        {2, [this] { return TRV_FMT_verify_block_locations(tag()); }},
        {3, [this] { return TRV_FMT_add_block(tag(), block()); }},
        {3, [this] { return TRV_FMT_delete_block(tag(), block()); }},
        {4,
         [this] {
             return asked([&](auto *list) { return TRV_FMT_ask_blocks_on_drawing(tag(), list); });
         }},
        {4, [this] { return QEL_FMT_move_block(tag(), block(), place()); }},
        {6,
         [this] {
             return asked([&](auto *list) {
                 return TRV_FMT_ask_field_value(tag(), block(), field(), list);
             });
         }},
        {6, [this] { return TRV_FMT_set_field_value(tag(), block(), field(), value()); }},
        {4, [this] { return QEL_FMT_set_field_editable(tag(), block(), field(), flag()); }},
        {4,
         [this] {
             return answered<char>([&](char *out) {
                 return QEL_FMT_get_field_editable(tag(), block(), field(), out);
             });
         }},
        {6,
         [this] {
             return asked([&](auto *list) {
                 return TRV_FMT_ask_table_value(tag(), block(), table(), row(), column(), list);
             });
         }},
        {6,
         [this] {
             return TRV_FMT_set_table_value(tag(), block(), table(), row(), column(), value());
         }},
        {4,
         [this] {
             return QEL_FMT_set_table_field_editable(tag(), block(), table(), row(), column(),
                                                     flag());
         }},
        {4,
         [this] {
             return answered<char>([&](char *out) {
                 return QEL_FMT_get_table_field_editable(tag(), block(), table(), row(), column(),
                                                         out);
             });
         }},
        {6, [this] { return TRV_FMT_add_entry(tag(), block(), table()); }},
        {6, [this] { return TRV_FMT_delete_entry(tag(), block(), table(), row()); }},
        {4,
         [this] {
             return answered<int>([&](int *out) {
                 return TRV_FMT_ask_number_table_entries(tag(), block(), table(), out);
             });
         }},
        {4, [this] { return TRV_FMT_place_symbol(tag(), block(), table(), row(), place()); }},
        {0.3, [] { return TRV_FMT_terminate(); }},
        {0.3, [this] { return QEL_FMT_initialize(static_cast<char>(below(2))); }},
        {2,
         [this] {
             EXPECT_EQ(TRV_FMT_terminate(), 0); // most of what follows needs definitions
             return TRV_FMT_initialize();
         }},
        {2,
         [this] {
             QEL_FMT_set_add_block_cb(below(4) ? answerBlock : nullptr);
             g_answer = static_cast<int>(below(3)) - 1;
             return 0;
         }},
        {2,
         [this] {
             QEL_FMT_set_append_entry_cb(below(4) ? noteRow : nullptr);
             return 0;
         }},
        {1,
         [] {
             TRV_FMT_free_value(nullptr);
             ufsta();
             return 0;
         }},
    };

    int callAny()
    {
        std::vector<double> weights;
        for (const Call &call : m_calls) weights.push_back(call.weight);
        const auto which =
            std::discrete_distribution<std::size_t>(weights.begin(), weights.end())(m_random);
        m_careful = below(5) != 0;
        return m_calls[which].make();
    }

    // Inside a callback: mostly nothing, else any call, or an exception of each kind.
    void meanwhile()
    {
        if (m_depth == 3 || below(2)) return;
        ++m_depth;
        ++m_nested;
        callOnce();
        --m_depth;
        QelFmt::api::lastError() = kUntouched; // what the outer call says must be its own
        if (below(10)) return;
        ++m_thrown;
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
        ++(status == 0 ? m_succeeded : m_failed);
        if (status == 0) return;
        EXPECT_EQ(status, 1);
        EXPECT_NE(text, kUntouched) << "a failure without a text of its own";
        EXPECT_NE(text, "");
    }

    void reopen()
    {
        const std::string before = nxhost::listPart(story.part());
        m_bad[0] = sheet; // no drawing any more
        story.saveAndReopen();
        EXPECT_EQ(nxhost::difference(before, nxhost::listPart(story.part())), "");
        sheet = story.sheet(0);
        m_second = story.sheet(1);
        m_bad[2] = story.part();
    }

    std::mt19937 m_random;
    unsigned m_depth = 0; // of calls inside callbacks
    unsigned m_succeeded = 0, m_failed = 0, m_nested = 0, m_thrown = 0;
    tag_t m_second = NULL_TAG;
    tag_t m_note = NULL_TAG;
    std::vector<unsigned> m_bad; // tags of no drawing
    bool m_careful = true;
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
