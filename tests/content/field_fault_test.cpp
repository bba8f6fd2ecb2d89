// Platform calls that fail while a value is written: one after the other, each of them.
#include "tests/content/block_on_sheet.h"

#include <map>

namespace {

constexpr int kFault = 1175001;

// One call of the platform by its name and how often it had been called by then.
struct Call {
    std::string function;
    unsigned nth;
};

// A world of its own for each fault.
class World : public BlockOnSheet {
public:
    World()
    {
        has("A", [](TrFieldDefV1 &def) {
            def.SetBroadcastString("DRG");
            def.SetBroadcastType(1);
            def.SetFlipText(1);
            def.SetTextFontName("iso3098");
            def.SetAltTextSizeNumChars(4);
            def.SetAltTextSize(2.5);
            def.SetUserSymbolLength(7.0);
            def.SetUserSymbolHeight(5.0);
        });
        place();
    }
    void TestBody() override {}
    using BlockOnSheet::field;
    using BlockOnSheet::story;
};

// What returns memory cannot be answered when it fails.
bool givesBack(const std::string &function) { return function.find("free") != std::string::npos; }

using Action = std::function<void(TrFieldBase &)>;

std::vector<Call> callsOf(const Action &prepare, const Action &action)
{
    World world;
    const auto one = world.field("A");
    prepare(*one);
    nxhost::recordCalls(true);
    action(*one);
    std::map<std::string, unsigned> seen;
    std::vector<Call> calls;
    for (const std::string &name : nxhost::recordedCalls())
        if (!givesBack(name)) calls.push_back({name, ++seen[name]});
    nxhost::recordCalls(false);
    return calls;
}

// Whatever call fails: the preferences are as before, nothing is left that nobody owns, and the
// field has its old value or, when the failure did not matter, the new one.
void expectSafe(const Action &prepare, const Action &action, const Lines &before,
                const Lines &after)
{
    const std::vector<Call> calls = callsOf(prepare, action);
    ASSERT_GT(calls.size(), 20u);
    std::size_t failures = 0;
    for (const Call &call : calls) {
        SCOPED_TRACE(call.function + " " + std::to_string(call.nth));
        World world;
        const auto one = world.field("A");
        prepare(*one);
        const UF_DRF_lettering_preferences_t letteringBefore = lettering();
        nxhost::failCall(call.function, kFault, call.nth);
        bool failed = false;
        try {
            action(*one);
        } catch (const UgException &) {
            failed = true;
        } catch (const std::exception &) {
            failed = true;
        }
        nxhost::clearFaults();
        failures += failed;
        EXPECT_TRUE(sameLettering(lettering(), letteringBefore));
        EXPECT_EQ(looseObjects(world.story.part()), 0u);
        EXPECT_EQ(one->GetValue(), failed ? before : after);
    }
    EXPECT_GT(failures, calls.size() / 2);
}

} // namespace

TEST(FieldFaults, FirstNoteIsMadeWholeOrNotAtAll)
{
    expectSafe([](TrFieldBase &) {},
               [](TrFieldBase &one) {
                   one.ModifyValue({"DRG-1", "second"});
               },
               {""}, {"DRG-1", "second"});
}

TEST(FieldFaults, RewrittenNoteKeepsTheOldValue)
{
    expectSafe(
        [](TrFieldBase &one) {
            one.ModifyValue({"old", "lines", "three"});
        },
        [](TrFieldBase &one) {
            one.ModifyValue({"DRG-12345", "second"});
        },
        {"old", "lines", "three"}, {"DRG-12345", "second"});
}

TEST(FieldFaults, RecreatedNoteKeepsTheValue)
{
    expectSafe(
        [](TrFieldBase &one) {
            one.ModifyValue({"old", "lines", "three"});
        },
        [](TrFieldBase &one) { one.RecreateNote(); }, {"old", "lines", "three"},
        {"old", "lines", "three"});
}

TEST_F(BlockOnSheet, RefusedNoteIsToldByThePlatformsOwnCode)
{
    has("A");
    place();
    nxhost::failCall("UF_DRF_create_note", kFault);
    EXPECT_EQ(codeThrownBy([&] { field("A")->ModifyValue({"DRG-1"}); }), kFault);
    EXPECT_EQ(field("A")->GetValue(), Lines{""});
    field("A")->ModifyValue({"DRG-1"});
    EXPECT_EQ(field("A")->GetValue(), Lines{"DRG-1"});
}
