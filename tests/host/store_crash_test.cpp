// A save that ends at any instant (the process is killed, a step fails, the power goes) leaves the old
// part or the new one, whole.
#include "store_processes.h"
#include "store_support.h"

#include "nxhost/control.h"
#include "store/file_layer.h"
#include "uf_part.h"

#include <map>
#include <random>

using namespace store_test;
namespace files = host::store::files;

namespace {

// --- the steps of a save --------------------------------------------------------------------------

// The hook is a plain function: what it needs stands here.
struct Steps {
    int left = 0; // steps until it happens; below 0: it never does
    enum class Then { fail, failForGood, die, tearAndDie } then = Then::fail;
    int number = ENOSPC;
    bool happened = false;
    std::vector<std::string> seen;
    std::function<void(const std::string &step)> watch;
} g_steps;

int onStep(const char *step, const std::string &)
{
    g_steps.seen.push_back(step);
    if (g_steps.watch) g_steps.watch(step);
    if (g_steps.happened) {
        if (g_steps.then == Steps::Then::tearAndDie) ::_exit(1);
        return g_steps.then == Steps::Then::failForGood ? g_steps.number : 0;
    }
    if (--g_steps.left != 0) return 0;
    g_steps.happened = true;
    if (g_steps.then == Steps::Then::die) ::_exit(1);
    return g_steps.then == Steps::Then::tearAndDie ? files::kTorn : g_steps.number;
}

class Hooked {
public:
    Hooked(int left, Steps::Then then, int number = ENOSPC)
    {
        g_steps = {left, then, number, false, {}, nullptr};
        files::setHook(onStep);
    }
    ~Hooked() { files::setHook(nullptr); }
    Hooked(const Hooked &) = delete;
    Hooked &operator=(const Hooked &) = delete;
};

// --- three ways to save ---------------------------------------------------------------------------

enum class Way { newPart, inPlace, saveAs };
constexpr Way kWays[] = {Way::newPart, Way::inPlace, Way::saveAs};

class CrashedSave : public testing::Test {
protected:
    ~CrashedSave() override { nxhost::reset(); }

    // A part ready to be saved to `path`; `oldListing` is what the file holds now, if there is one.
    Part &prepared(Way way)
    {
        nxhost::reset();
        for (const std::string &name : folder.names()) fs::remove(folder.file(name));
        Part *part = &samplePart(path, 90);
        oldListing.clear();
        if (way != Way::newPart) {
            const std::string file = way == Way::inPlace ? path : folder.file("first.prt");
            store::save(*part, file);
            nxhost::reset();
            part = &opened(file);
            oldListing = way == Way::inPlace ? listing(*part) : "";
            change(*part, 7);
        }
        newListing = listing(*part);
        firstBytes = bytesOf(folder.file("first.prt"));
        return *part;
    }

    // Enough to touch several pages of each table.
    static void change(Part &part, int seed)
    {
        Session &session = Session::get();
        session.setAttribute(part.tag, "NUMBER", "state " + std::to_string(seed));
        std::vector<Object *> notes;
        for (const auto &[ordinal, object] : part.byKind.at(Body(Note{}).index()))
            notes.push_back(object);
        for (Object *note : notes) {
            session.changing(*note, "text");
            note->as<Note>()->lines = {"state " + std::to_string(seed), std::string(600, 'x')};
        }
        for (int i = 0; i < 20; ++i) newNote(part, {"new in " + std::to_string(seed)});
        session.removeSheet(part.byKind.at(Body(Sheet{}).index()).begin()->second->tag);
    }

    enum class Found { nothing, oldPart, newPart };
    Found found(const std::string &file)
    {
        if (!fs::exists(file)) {
            EXPECT_EQ(oldListing, "") << "the old part is gone";
            return Found::nothing;
        }
        Part &part = opened(file);
        const std::string now = listing(part);
        Session::get().closePart(part);
        EXPECT_TRUE(now == newListing || (now == oldListing && !oldListing.empty()))
            << "neither the old part nor the new one";
        return now == newListing ? Found::newPart : Found::oldPart;
    }
    // Nothing is left beside the parts once they have been opened.
    void expectTidy()
    {
        for (const std::string &name : folder.names())
            EXPECT_TRUE(name == "crash.prt" || name == "first.prt") << name;
    }

    Folder folder;
    std::string path = folder.file("crash.prt");
    std::string oldListing;
    std::string newListing;
    std::string firstBytes; // of the file that a save-as leaves behind
};

std::vector<std::string> stepsOf(Part &part, const std::string &path)
{
    const Hooked hook(-1, Steps::Then::fail);
    store::save(part, path);
    return g_steps.seen;
}

} // namespace

TEST_F(CrashedSave, AllStepsAreSeen)
{
    EXPECT_EQ(stepsOf(prepared(Way::newPart), path),
              (std::vector<std::string>{"create", "write", "sync", "rename", "sync folder"}));
    const auto steps = stepsOf(prepared(Way::inPlace), path);
    for (const char *step : {"create journal", "write journal", "sync journal", "write database",
                             "sync database", "delete journal"})
        EXPECT_EQ(std::count(steps.begin(), steps.end(), step) > 0, true) << step;
    EXPECT_EQ(steps.back(), "delete journal");
}

// --- the process dies -----------------------------------------------------------------------------

TEST_F(CrashedSave, DeathAtAnyStepLeavesTheOldPartOrTheNewOne)
{
    for (const Way way : kWays) {
        const auto steps = static_cast<int>(stepsOf(prepared(way), path).size());
        for (const auto then : {Steps::Then::die, Steps::Then::tearAndDie})
            for (int n = 1; n <= steps; ++n) {
                SCOPED_TRACE("way " + std::to_string(static_cast<int>(way)) + " step " +
                             std::to_string(n) + " of " + std::to_string(steps));
                Part &part = prepared(way);
                const pid_t child = ::fork();
                if (child == 0) {
                    const Hooked hook(n, then);
                    try {
                        store::save(part, path);
                    } catch (const store::StoreError &) {
                    }
                    ::_exit(0);
                }
                statusOf(child);
                found(path);
                EXPECT_EQ(bytesOf(folder.file("first.prt")), firstBytes);
                expectTidy();
            }
    }
}

namespace {

// In the child: states 1, 2, 3 ... of one part, each saved and then reported.
[[noreturn]] void saveForever(Part &part, const std::string &path, int report)
{
    for (int state = 1;; ++state) {
        Session::get().setAttribute(part.tag, "STATE", std::to_string(state));
        for (const auto &[ordinal, object] : part.byKind.at(Body(Note{}).index())) {
            Session::get().changing(*object, "text");
            object->as<Note>()->lines = {"state " + std::to_string(state)};
        }
        newNote(part, {"state " + std::to_string(state)});
        store::save(part, path);
        if (::write(report, &state, sizeof state) != sizeof state) ::_exit(1);
    }
}

// The state that a part is in; -1 when it is in two at once.
int stateOf(const Part &part)
{
    int state = -1;
    for (const Attribute &attribute : part.attributes)
        if (attribute.title == "STATE") state = std::atoi(attribute.value.c_str());
    for (const auto &[ordinal, object] : part.byKind.at(Body(Note{}).index()))
        if (object->as<Note>()->lines != std::vector{"state " + std::to_string(state)}) return -1;
    return state;
}

} // namespace

// SIGKILL at a random moment. What was reported as saved is there, and no state is mixed.
TEST_F(CrashedSave, KillsAtRandomMomentsLoseNothingThatWasSavedSoak)
{
    std::mt19937 random(7);
    const int points = std::max(20, static_cast<int>(2000 * soakShare()));
    int midway = 0;
    for (int point = 0; point < points; ++point) {
        SCOPED_TRACE(point);
        const Way way = kWays[point % 3];
        Part &part = prepared(way == Way::newPart ? Way::newPart : Way::inPlace);
        const std::string file = way == Way::saveAs ? folder.file("as.prt") : path;
        int ends[2];
        ASSERT_EQ(::pipe(ends), 0);
        const pid_t child = ::fork();
        if (child == 0) saveForever(part, file, ends[1]);
        ::close(ends[1]);
        ::usleep(static_cast<useconds_t>(500 + random() % 60000));
        ::kill(child, SIGKILL);
        statusOf(child);
        int reported = 0;
        while (::read(ends[0], &reported, sizeof reported) == sizeof reported) {
        }
        ::close(ends[0]);
        midway += fs::exists(file + "-journal");
        if (!fs::exists(file)) {
            EXPECT_EQ(reported, 0);
        } else {
            const std::string before = reported || way == Way::saveAs ? "" : oldListing;
            Part &after = opened(file);
            if (before.empty() || listing(after) != before) {
                EXPECT_GE(stateOf(after), std::max(reported, 1));
                EXPECT_LE(stateOf(after), reported + 1);
            }
        }
        if (way == Way::saveAs) {
            EXPECT_EQ(listing(opened(path)), oldListing);
        }
        for (const std::string &name : folder.names())
            EXPECT_TRUE(name == "crash.prt" || name == "as.prt") << name;
        if (HasFailure()) return;
    }
    std::printf("%d points, %d of them in the middle of a save\n", points, midway);
}

// --- a step fails ---------------------------------------------------------------------------------

TEST_F(CrashedSave, AFailureAtAnyStepIsSaidAndTheFileIsAsItWas)
{
    for (const Way way : kWays) {
        const auto steps = static_cast<int>(stepsOf(prepared(way), path).size());
        for (const auto then : {Steps::Then::fail, Steps::Then::failForGood})
            for (int n = 1; n <= steps; ++n) {
                SCOPED_TRACE("way " + std::to_string(static_cast<int>(way)) + " step " +
                             std::to_string(n) + " of " + std::to_string(steps));
                Part &part = prepared(way);
                bool refused = false;
                {
                    const Hooked hook(n, then);
                    try {
                        store::save(part, path);
                    } catch (const store::StoreError &error) {
                        refused = true;
                        EXPECT_EQ(error.code, UF_PART_err_cannot_write) << error.message;
                        EXPECT_EQ(error.message.rfind(path + ": the part cannot be written", 0), 0u)
                            << error.message;
                    }
                }
                EXPECT_EQ(listing(part), newListing);
                if (refused) {
                    EXPECT_NE(found(path), Found::newPart);
                    store::save(part, path); // the trouble is over
                }
                EXPECT_EQ(found(path), Found::newPart);
                expectTidy();
            }
    }
}

TEST_F(CrashedSave, AFullDiskIsNamed)
{
    for (const char *step : {"write journal", "write database"}) {
        const auto seen = stepsOf(prepared(Way::inPlace), path);
        const auto n = std::find(seen.begin(), seen.end(), step) - seen.begin() + 1;
        Part &again = prepared(Way::inPlace);
        const Hooked hook(static_cast<int>(n), Steps::Then::failForGood);
        try {
            store::save(again, path);
            ADD_FAILURE() << "was saved";
        } catch (const store::StoreError &error) {
            EXPECT_NE(error.message.find("the disk is full"), std::string::npos) << error.message;
        }
    }
    Part &fresh = prepared(Way::newPart);
    const Hooked hook(2, Steps::Then::failForGood);
    try {
        store::save(fresh, path);
        ADD_FAILURE() << "was saved";
    } catch (const store::StoreError &error) {
        EXPECT_NE(error.message.find("write: No space left on device"), std::string::npos);
    }
}

// --- the power goes -------------------------------------------------------------------------------

namespace {

// What the disk may hold when the power goes: of everything written since the last sync of a file, any
// part may have arrived, sector by sector. A journal whose folder entry was not synced may be missing.
class Disk {
public:
    explicit Disk(std::string path) : m_path(std::move(path)), m_synced{bytesOf(m_path), ""} {}

    void watch(const std::string &step)
    {
        note(m_lastStep);
        m_lastStep = step;
    }
    // One of the states that are possible now.
    void lay(const std::string &path, std::mt19937 &random) const
    {
        putBytes(path, mixed(m_synced[0], bytesOf(m_path), random));
        const std::string journal = bytesOf(m_path + "-journal");
        fs::remove(path + "-journal");
        if (!journal.empty() && (m_journalSynced || random() % 2))
            putBytes(path + "-journal", mixed(m_synced[1], journal, random));
        // Deleted, but its folder not synced yet: it may still be there.
        else if (journal.empty() && m_journalSynced && random() % 2)
            putBytes(path + "-journal", m_synced[1]);
    }

private:
    void note(const std::string &done)
    {
        if (done == "sync database") m_synced[0] = bytesOf(m_path);
        if (done == "create journal") m_journalSynced = false, m_synced[1].clear();
        if (done == "sync journal")
            m_journalSynced = true, m_synced[1] = bytesOf(m_path + "-journal");
    }
    static std::string mixed(const std::string &synced, const std::string &written,
                             std::mt19937 &random)
    {
        constexpr std::size_t kSector = 512;
        std::string result = random() % 2 ? synced : written;
        const std::size_t common = std::min({synced.size(), written.size(), result.size()});
        for (std::size_t at = 0; at < common; at += kSector) {
            const std::size_t size = std::min(kSector, common - at);
            result.replace(at, size, random() % 2 ? synced : written, at, size);
        }
        return result;
    }

    std::string m_path;
    std::string m_synced[2]; // the database, its journal
    bool m_journalSynced = false;
    std::string m_lastStep;
};

} // namespace

TEST_F(CrashedSave, APowerCutAtAnyStepLeavesTheOldPartOrTheNewOne)
{
    std::mt19937 random(11);
    Part &part = prepared(Way::inPlace);
    Disk disk(path);
    const std::string lost = folder.file("lost.prt");
    int states = 0;
    {
        const Hooked hook(-1, Steps::Then::fail);
        g_steps.watch = [&](const std::string &step) {
            files::setHook(nullptr); // opening the lost part takes steps of its own
            disk.watch(step);
            for (int i = 0; i < 6; ++i, ++states) {
                SCOPED_TRACE(step);
                disk.lay(lost, random);
                found(lost);
            }
            files::setHook(onStep);
        };
        store::save(part, path);
        g_steps.watch = nullptr;
    }
    EXPECT_GT(states, 60);
    EXPECT_EQ(found(path), Found::newPart);
}

// --- what a crash left ----------------------------------------------------------------------------

TEST_F(CrashedSave, AJournalWithoutItsPartDoesNotSpoilANewOne)
{
    for (const std::string &left : {std::string("junk"), std::string(3000, '\xd9')}) {
        Part &fresh = prepared(Way::newPart);
        putBytes(path + "-journal", left);
        store::save(fresh, path);
        EXPECT_EQ(found(path), Found::newPart);
        expectTidy();
    }
}

TEST_F(CrashedSave, AnInterruptedSaveInAReadOnlyFolderSaysWhatToDo)
{
    const auto steps = stepsOf(prepared(Way::inPlace), path);
    const auto n = std::find(steps.begin(), steps.end(), "sync database") - steps.begin() + 1;
    Part &part = prepared(Way::inPlace);
    const pid_t child = ::fork();
    if (child == 0) {
        const Hooked hook(static_cast<int>(n), Steps::Then::die);
        store::save(part, path);
        ::_exit(0);
    }
    statusOf(child);
    ASSERT_TRUE(fs::exists(path + "-journal"));
    const std::string bytes = bytesOf(path);
    fs::permissions(path, fs::perms{0444});
    fs::permissions(path + "-journal", fs::perms{0444});
    fs::permissions(folder.path(), fs::perms{0555});
    const std::string said = inUnprivilegedProcess([&]() -> std::string {
        try {
            opened(path);
            return "opened";
        } catch (const store::StoreError &error) {
            return error.message;
        }
    });
    fs::permissions(folder.path(), fs::perms::owner_all);
    EXPECT_NE(said.find("Copy both files to a folder that may be written to"), std::string::npos)
        << said;
    EXPECT_EQ(bytesOf(path), bytes);
    fs::permissions(path, fs::perms{0644});
    EXPECT_EQ(found(path), Found::oldPart);
}
