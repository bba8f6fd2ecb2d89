// Runs that are interrupted or killed, and go on.
#include "fleet_shell.h"

#include <sys/stat.h>

namespace {

constexpr int kCount = 100;

class FleetResume : public FleetShell {
protected:
    void SetUp() override
    {
        FleetShell::SetUp();
        stampMany(kCount);
        before = images();
        changeDefinitions();
    }
    std::vector<std::string> images() const
    {
        std::vector<std::string> all;
        for (const std::string &name : drawings(kCount)) all.push_back(read(name));
        return all;
    }
    // Whether the first so many have been saved, going by the times of the files.
    bool someAreSaved(int count) const
    {
        int saved = 0;
        for (const std::string &name : drawings(kCount))
            saved += changedAt(name) != m_times.at(name);
        return saved >= count;
    }
    void rememberTimes()
    {
        for (const std::string &name : drawings(kCount)) m_times[name] = changedAt(name);
    }
    // The command, running since at least `saved` drawings are done.
    std::unique_ptr<RunningCommand> start(std::vector<std::string> arguments, int saved)
    {
        rememberTimes();
        auto running = std::make_unique<RunningCommand>(folder, std::move(arguments));
        EXPECT_TRUE(RunningCommand::waitFor([&] { return someAreSaved(saved); }));
        return running;
    }
    std::vector<std::string> updating(std::vector<std::string> more = {}) const
    {
        std::vector<std::string> line{"--defs", "site", "update", "d", "-j", "2", "--journal", "j"};
        line.insert(line.end(), more.begin(), more.end());
        return line;
    }
    Outcome resume() const
    {
        return qelfmt("--defs site --json update d -j 2 --journal j --resume");
    }
    std::map<std::string, int> counts(const Outcome &outcome) const
    {
        std::map<std::string, int> found;
        for (const auto &row : jsonOf(outcome)) ++found[row["result"]];
        return found;
    }
    void expectAllUpdatedAndUndone() const
    {
        const auto rows =
            jsonOf(qelfmt("--defs site report d --as json --columns state,TITLE.number"));
        ASSERT_EQ(rows.size(), static_cast<std::size_t>(kCount));
        for (int i = 0; i < kCount; ++i) {
            EXPECT_EQ(rows[i]["state"], "current") << i;
            EXPECT_EQ(rows[i]["values"]["TITLE.number"], number(i));
        }
        EXPECT_EQ(qelfmt("undo j").status, 0);
        EXPECT_EQ(images(), before);
    }
    using Counts = std::map<std::string, int>;

    std::vector<std::string> before;

private:
    std::int64_t changedAt(const std::string &name) const // nanoseconds
    {
        struct stat status {};
        stat((folder / name).c_str(), &status);
        return status.st_mtim.tv_sec * 1'000'000'000LL + status.st_mtim.tv_nsec;
    }

    std::map<std::string, std::int64_t> m_times;
};

TEST_F(FleetResume, AWorkerThatDiesTakesDownItsOwnDrawingAlone)
{
    const auto running = start(updating({"--json"}), 5);
    const auto workers = running->workers();
    ASSERT_EQ(workers.size(), 2u);
    kill(workers[0], SIGKILL);
    const Outcome end = running->end();
    EXPECT_EQ(end.status, 3);
    EXPECT_TRUE(holds(end.err, "the process that worked on it was ended by signal 9")) << end.err;
    EXPECT_EQ(counts(end), Counts({{"updated", kCount - 1}, {"failed", 1}}));

    const Outcome resumed = resume();
    EXPECT_EQ(resumed.status, 0) << resumed.err;
    EXPECT_EQ(counts(resumed), Counts({{"updated", kCount}}));
    expectAllUpdatedAndUndone();
}

TEST_F(FleetResume, AKilledRunGoesOnWhereItWas)
{
    const auto running = start(updating(), 5);
    running->signal(SIGKILL);
    EXPECT_EQ(running->end().status, -SIGKILL);
    const Outcome resumed = resume();
    EXPECT_EQ(resumed.status, 0) << resumed.err;
    EXPECT_TRUE(holds(resumed.err, " of 100 were done before")) << resumed.err;
    EXPECT_EQ(counts(resumed),
              Counts({{"updated", kCount}})); // none twice: that would be "current"
    expectAllUpdatedAndUndone();
}

TEST_F(FleetResume, AnInterruptEndsAfterTheDrawingsInWorkAndSaysWhatIsDone)
{
    const auto running = start(updating({"--json"}), 5);
    running->signal(SIGINT);
    const Outcome end = running->end();
    EXPECT_EQ(end.status, 130);
    const int done = counts(end)["updated"];
    EXPECT_GE(done, 5);
    EXPECT_LT(done, kCount);
    EXPECT_TRUE(holds(end.err, "interrupted: " + std::to_string(done) +
                                   " of 100 done; give the "
                                   "same command with --resume"))
        << end.err;
    const std::vector<std::string> now = images();
    int changed = 0;
    for (int i = 0; i < kCount; ++i) changed += now[i] != before[i];
    EXPECT_EQ(changed, done);

    const Outcome resumed = resume();
    EXPECT_EQ(resumed.status, 0) << resumed.err;
    EXPECT_EQ(counts(resumed), Counts({{"updated", kCount}}));
    expectAllUpdatedAndUndone();
}

TEST_F(FleetResume, ARunWithoutAJournalOfItsOwnGoesOnToo)
{
    std::vector<std::string> line{"--defs", "site", "update", "d", "-j", "2"};
    const auto running = start(line, 5);
    running->signal(SIGINT);
    EXPECT_EQ(running->end().status, 130);

    const Outcome other = qelfmt("--defs site update d --force --resume");
    EXPECT_EQ(other.status, 3);
    EXPECT_TRUE(holds(other.err, "nothing to resume")) << other.err;
    const Outcome resumed = qelfmt("--defs site --json update d -j 1 --resume");
    EXPECT_EQ(resumed.status, 0) << resumed.err;
    EXPECT_EQ(counts(resumed), Counts({{"updated", kCount}}));
    EXPECT_EQ(qelfmt("--defs site update d --resume").status, 3); // there is nothing left of it
}

TEST_F(FleetResume, AJournalIsForTheCommandThatMadeIt)
{
    ASSERT_EQ(qelfmt("check d --defs site --journal j").status, 1); // drifted
    const Outcome other = qelfmt("check d --defs site --shard 1/2 --journal j --resume");
    EXPECT_EQ(other.status, 3);
    EXPECT_TRUE(holds(other.err, "j: is the journal of another command: check")) << other.err;
    EXPECT_EQ(qelfmt("check d --defs site --journal none --resume").status, 3);
    write("text", "this is no journal, and never was one, whatever its name may say");
    const Outcome foreign = qelfmt("check d --defs site --journal text --resume");
    EXPECT_EQ(foreign.status, 3);
    EXPECT_TRUE(holds(foreign.err, "text: ")) << foreign.err;
    EXPECT_EQ(read("text"), "this is no journal, and never was one, whatever its name may say");
}

TEST_F(FleetResume, NobodyElseWorksWithTheJournalOfARun)
{
    const auto running = start(updating(), 2);
    running->signal(SIGSTOP);
    const Outcome undone = qelfmt("undo j");
    EXPECT_EQ(undone.status, 3);
    EXPECT_TRUE(holds(undone.err, "j: a run is at work with it")) << undone.err;
    running->signal(SIGCONT);
    EXPECT_EQ(running->end().status, 0);
    expectAllUpdatedAndUndone();
}

TEST_F(FleetResume, TheSameCommandTwiceAtATimeIsTwoRuns)
{
    const std::vector<std::string> line{"--defs", "site", "--json", "report", "d", "--as", "json"};
    RunningCommand first(folder, line);
    ASSERT_TRUE(RunningCommand::waitFor([&] { return !first.workers().empty(); }));
    first.signal(SIGSTOP);
    const Outcome second = qelfmt("--defs site --json report d --as json");
    EXPECT_EQ(second.status, 0) << second.err;
    first.signal(SIGCONT);
    const Outcome end = first.end();
    EXPECT_EQ(end.status, 0) << end.err;
    EXPECT_EQ(end.out, second.out);
    EXPECT_EQ(jsonOf(end).size(), static_cast<std::size_t>(kCount));
}

TEST_F(FleetResume, ATerminalShowsABarAndAFileNone)
{
    const Outcome terminal =
        shell("script -qec '" QELFMT_COMMAND " --defs site update d -j 1' typescript");
    EXPECT_EQ(terminal.status, 0) << terminal.err;
    const std::string shown = read("typescript");
    EXPECT_TRUE(holds(shown, " of 100 ")) << shown;
    EXPECT_TRUE(holds(shown, "/s, ")) << shown;
    EXPECT_TRUE(holds(shown, "left  ")) << shown;
    EXPECT_TRUE(holds(shown, "d/d00")) << shown;
    const Outcome plain = qelfmt("--defs site update d -j 1");
    EXPECT_EQ(plain.out, "100 current\n");
    EXPECT_FALSE(holds(plain.err, "\r")) << plain.err;
}

} // namespace
