// Two thousand drawings, with some among them that give trouble, and a machine that goes down twice.
#include "fleet_shell.h"
#include "troubled_drawings.h"

#include "tests/support/soak.h"

#include <cmath>
#include <map>

#include <sys/stat.h>

namespace {

// Nanoseconds; 0 for what is not there.
std::int64_t changedAt(const std::filesystem::path &path)
{
    struct stat status {};
    if (stat(path.c_str(), &status) != 0) return 0;
    return status.st_mtim.tv_sec * 1'000'000'000LL + status.st_mtim.tv_nsec;
}

class FleetAtScale : public FleetShell {
protected:
    void SetUp() override
    {
        FleetShell::SetUp();
        stampMany(count);
        changeDefinitions();
        for (const std::string &name : drawings(count)) before[name] = read(name);
        breakDrawing(folder / drawing(kBroken));
        lock.emplace(folder / drawing(kLocked));
        ASSERT_TRUE(lock->held());
        makeUnwritable(folder / drawing(kUnwritable));
    }

    static bool isTrouble(int i) { return i == kBroken || i == kLocked || i == kUnwritable; }

    std::vector<std::string> line(const std::string &verb, std::vector<std::string> more) const
    {
        std::vector<std::string> all{"--defs", "site",      "--json",   verb,
                                     "d",      "--journal", verb + ".j"};
        all.insert(all.end(), more.begin(), more.end());
        return all;
    }

    // How many items a run has done, by its journal.
    int done(const std::string &journal) const
    {
        sqlite3 *database = nullptr;
        sqlite3_stmt *statement = nullptr;
        int found = 0;
        if (sqlite3_open_v2((folder / journal).c_str(), &database, SQLITE_OPEN_READONLY, nullptr) ==
                SQLITE_OK &&
            sqlite3_prepare_v2(database, "SELECT count(*) FROM item WHERE state=2", -1, &statement,
                               nullptr) == SQLITE_OK &&
            sqlite3_step(statement) == SQLITE_ROW)
            found = sqlite3_column_int(statement, 0);
        sqlite3_finalize(statement);
        sqlite3_close(database);
        return found;
    }

    // Killed when a third is done, killed again when two thirds are, then left alone. `atKill` sees what
    // stands there after each kill. A few hundred drawings may all be done before the second one.
    Outcome killedTwice(const std::string &verb, const std::vector<std::string> &more,
                        const std::function<void()> &atKill)
    {
        auto arguments = line(verb, more);
        for (const int part : {1, 2}) {
            RunningCommand running(folder, arguments, wordsWithoutPrivileges());
            EXPECT_TRUE(RunningCommand::waitFor(
                [&] { return done(verb + ".j") >= part * count / 3; }, std::chrono::seconds(600)));
            running.signal(SIGKILL);
            EXPECT_EQ(running.end().status, -SIGKILL);
            atKill();
            if (part == 1) arguments.push_back("--resume");
        }
        return RunningCommand(folder, arguments, wordsWithoutPrivileges()).end();
    }

    void expectNamed(const Outcome &outcome, std::initializer_list<int> numbers) const
    {
        EXPECT_EQ(outcome.status, 3);
        for (const int i : numbers) EXPECT_TRUE(holds(outcome.err, drawing(i))) << outcome.err;
    }

    // All but the one that was broken on purpose.
    void expectUntouched() const
    {
        for (const auto &[name, bytes] : before) {
            if (name == drawing(kBroken)) continue;
            EXPECT_TRUE(read(name) == bytes) << name;
        }
    }

    static constexpr int kBroken = 7, kLocked = 11, kUnwritable = 17;
    const int count = std::max(400, static_cast<int>(2000 * soakShare()));
    std::map<std::string, std::string> before;
    std::optional<DrawingLock> lock;
};

// A drawing that was saved just when its run was killed is not known to be done: the next run finds it
// up to date. There are at most as many of them as workers.
TEST_F(FleetAtScale, AnUpdateKilledTwiceUpdatesEachDrawingOnceSoak)
{
    std::map<std::string, std::string> saved; // by the runs that were killed
    const Outcome end = killedTwice("update", {"-j", "2"}, [&] {
        for (const auto &[name, bytes] : before) {
            const std::string now = read(name);
            if (now == bytes || name == drawing(kBroken)) continue;
            const auto first = saved.emplace(name, now).first;
            EXPECT_TRUE(first->second == now) << name << " was saved twice";
        }
    });
    EXPECT_GE(saved.size(), static_cast<std::size_t>(2 * count / 3));
    expectNamed(end, {kBroken, kLocked, kUnwritable});
    std::map<std::string, int> results;
    const auto rows = jsonOf(end);
    ASSERT_EQ(rows.size(), static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) {
        ++results[rows[i]["result"]];
        if (isTrouble(i)) {
            EXPECT_EQ(rows[i]["result"], "failed") << rows[i];
        }
    }
    EXPECT_EQ(results["failed"], 3);
    EXPECT_EQ(results["updated"] + results["current"], count - 3);
    EXPECT_LE(results["current"], 4);

    lock.reset();
    for (const auto &[name, bytes] : saved) EXPECT_TRUE(read(name) == bytes) << name;
    const auto report =
        jsonOf(qelfmt("--defs site report d --as json --columns state,TITLE.number"));
    ASSERT_EQ(report.size(), static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) {
        if (i == kBroken) continue;
        EXPECT_EQ(report[i]["state"], isTrouble(i) ? "drifted" : "current") << i;
        EXPECT_EQ(report[i]["values"]["TITLE.number"], number(i));
    }
    EXPECT_TRUE(read(drawing(kUnwritable)) == before[drawing(kUnwritable)]);

    const Outcome undone = qelfmt("undo update.j");
    EXPECT_EQ(undone.status, 0) << undone.err;
    expectUntouched();
}

TEST_F(FleetAtScale, ACheckKilledTwiceFindsWhatAnUndisturbedOneFindsSoak)
{
    const Outcome end = killedTwice("check", {"-j", "1"}, [] {});
    expectNamed(end, {kBroken, kLocked});
    const Outcome whole = qelfmt("--defs site --json check d");
    EXPECT_TRUE(jsonOf(end) == jsonOf(whole));
    const auto found = jsonOf(end);
    EXPECT_EQ(found["drawings"], count - 2);
    EXPECT_EQ(found["findings"].size(), static_cast<std::size_t>(count - 2)); // drifted
    EXPECT_EQ(found["unread"].size(), 2u);
    expectUntouched();
}

TEST_F(FleetAtScale, RenderingKilledTwiceDrawsEverySheetSoak)
{
    std::map<std::string, std::int64_t> drawn;
    int again = 0;
    const auto look = [&] {
        for (const std::string &name : drawings(count)) {
            const std::string pdf = "pdf/" + std::filesystem::path(name).stem().string() + ".pdf";
            const std::int64_t time = changedAt(folder / pdf);
            if (time == 0) continue;
            const auto [at, fresh] = drawn.emplace(pdf, time);
            again += !fresh && at->second != time;
            at->second = time;
        }
    };
    const Outcome end = killedTwice("render", {"--pdf", "-o", "pdf", "-j", "2"}, look);
    look();
    expectNamed(end, {kBroken, kLocked});
    EXPECT_EQ(drawn.size(), static_cast<std::size_t>(count - 2));
    // What was done is noted a few at a time, since drawing a sheet twice does no harm.
    EXPECT_LE(again, 2 * count / 3);

    lock.reset();
    int compared = 0;
    for (const auto &[pdf, time] : drawn) {
        if (compared++ % 20 != 0) continue;
        const std::string name = "d/" + std::filesystem::path(pdf).stem().string() + ".qdraw";
        ASSERT_EQ(qelfmt("render " + name + " -o one.pdf").status, 0);
        EXPECT_TRUE(read("one.pdf") == read(pdf)) << pdf;
    }
}

// --- what a drawing costs ----------------------------------------------------------------------------

class FleetCost : public FleetShell {
protected:
    struct Cost {
        double seconds;
        long peak; // kilobytes
    };

    void SetUp() override
    {
        FleetShell::SetUp();
        stampMany(count);
        changeDefinitions();
        for (const int some : {kFew, count}) {
            std::string list;
            for (const std::string &name : drawings(some)) list += name + "\n";
            write(std::to_string(some) + ".txt", list);
        }
    }

    // Of the first so many drawings, by one worker. Started from a small process, since what a process was
    // before it became the command counts for its peak.
    Cost cost(const std::string &verb, int some) const
    {
        write("cost.py", "import resource, subprocess, sys\n"
                         "status = subprocess.call(sys.argv[1:])\n"
                         "used = resource.getrusage(resource.RUSAGE_CHILDREN)\n"
                         "print(used.ru_utime + used.ru_stime, used.ru_maxrss)\n"
                         "sys.exit(status)\n");
        const Outcome outcome = shell("python3 cost.py " QELFMT_COMMAND " --defs site -q " + verb +
                                      " -j 1 --files-from " + std::to_string(some) + ".txt");
        EXPECT_LE(outcome.status, 1) << outcome.err;
        std::istringstream last(
            outcome.out.substr(outcome.out.rfind('\n', outcome.out.size() - 2) + 1));
        Cost cost{};
        EXPECT_TRUE(last >> cost.seconds >> cost.peak) << outcome.out;
        return cost;
    }

    static constexpr int kFew = 20;
    const int count = std::max(100, static_cast<int>(2000 * soakShare()));
};

TEST_F(FleetCost, ADrawingCostsTheSameAndTakesNoMoreMemoryAmongManySoak)
{
    for (const std::string verb : {"report -o r.csv", "report --columns 'format,TITLE.*' -o r.json",
                                   "check", "update --dry-run", "render --svg -o svg", "update"}) {
        SCOPED_TRACE(verb);
        const Cost few = cost(verb, kFew), many = cost(verb, count);
        const double growth = std::log(many.seconds / few.seconds) / std::log(double(count) / kFew);
        std::printf(
            "%-40s %6.2f ms a drawing of %d, %6.2f of %d: exponent %.3f; peak %ld and %ld KB\n",
            verb.c_str(), 1e3 * few.seconds / kFew, kFew, 1e3 * many.seconds / count, count, growth,
            few.peak, many.peak);
        // Starting is shared by more of them, so that the exponent is below 1 where nothing adds up.
        EXPECT_LE(growth, 1.02);
        EXPECT_LE(many.peak, few.peak * 1.25 + 4096);
    }
}

} // namespace
