// What docs/ci.md and docs/fleet.md show is run as it stands there.
#include "fleet_shell.h"

namespace {

struct Block {
    std::string kind; // "sh", "sh parallel", "yaml"
    std::string text;
};

std::vector<Block> blocksOf(const std::string &document)
{
    std::ifstream file(std::string(QELFMT_SOURCE_DIR "/docs/") + document);
    std::vector<Block> blocks;
    bool inside = false;
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with("```")) {
            inside = !inside;
            if (inside) blocks.push_back({line.substr(3), ""});
        } else if (inside) {
            blocks.back().text += line + "\n";
        }
    }
    return blocks;
}

// A receiver of SARIF that keeps what it gets in "received.sarif" and prints its port.
constexpr const char *kReceiver = R"(
import http.server
class Receiver(http.server.BaseHTTPRequestHandler):
    def do_POST(self):
        with open('received.sarif', 'wb') as file:
            file.write(self.rfile.read(int(self.headers['Content-Length'])))
        self.send_response(202 if 'sarif' in self.headers['Content-Type'] else 415)
        self.end_headers()
    def log_message(self, *rest): pass
server = http.server.HTTPServer(('127.0.0.1', 0), Receiver)
with open('port.new', 'w') as file: file.write(str(server.server_port))
import os
os.rename('port.new', 'port')
server.timeout = 60
server.handle_request()
)";

class FleetDocs : public FleetShell {
protected:
    void SetUp() override
    {
        FleetShell::SetUp();
        stampMany(6);
        std::filesystem::rename(folder / "d", folder / "drawings");
        std::filesystem::create_directories(folder / "bin");
        std::filesystem::create_symlink(QELFMT_COMMAND, folder / "bin/qelfmt");
        write("rules.yaml", "rules:\n  - {field: TITLE.number, file-name: yes}\n");
        std::filesystem::copy_file(folder / "rules.yaml", folder / "site/rules.yaml");
    }
    // The lines of a block, as a script of their own.
    Outcome run(const std::string &text, const std::string &settings = "") const
    {
        write("block.sh", text);
        return shell("PATH=" + (folder / "bin").string() + ":$PATH " + settings + " sh block.sh");
    }
    bool has(const std::string &program) const
    {
        return shell("sh -c 'command -v " + program + "'").status == 0;
    }
    std::string slurmScript() const
    {
        std::string script;
        for (const Block &block : blocksOf("fleet.md"))
            if (block.kind == "sh slurm") script = block.text;
        return script;
    }
    static bool isScript(const Block &block) { return block.kind == "sh"; }
};

TEST_F(FleetDocs, TheJobPassesFailsAndKeepsItsFindings)
{
    const auto blocks = blocksOf("ci.md");
    int scripts = 0;
    for (const Block &block : blocks) scripts += isScript(block);
    ASSERT_EQ(scripts, 5);
    ASSERT_EQ(
        run("git init -q . && git add drawings && git -c user.name=a -c user.email=a@b commit "
            "-qm one && git -c user.name=a -c user.email=a@b commit -qm two --allow-empty")
            .status,
        0);
    for (const Block &block : blocks) {
        if (!isScript(block)) continue;
        const Outcome outcome = run(block.text);
        EXPECT_EQ(outcome.status, 0) << block.text << outcome.err;
    }
    EXPECT_TRUE(exists("drawings.sarif"));
    EXPECT_TRUE(exists("drawings-1.sarif"));

    ASSERT_EQ(qelfmt("field set drawings/d0003.qdraw number wrong").status, 0);
    ASSERT_EQ(run("git -c user.name=a -c user.email=a@b commit -qam three").status, 0);
    for (const Block &block : blocks) {
        if (!isScript(block)) continue;
        const bool inPart = !holds(block.text, "--shard") || holds(block.text, "4/4");
        const Outcome outcome = run(block.text, "PART=4"); // d0003 is the fourth drawing
        EXPECT_EQ(outcome.status, 1) << block.text << outcome.err << inPart;
        EXPECT_TRUE(holds(outcome.out, "drawings/d0003.qdraw, sheet SHEET1, TITLE.number: error: "
                                       "\"wrong\" is not the name of the file, d0003"))
            << outcome.out;
    }
    EXPECT_EQ(nlohmann::json::parse(read("drawings.sarif"))["runs"][0]["results"].size(), 1u);
}

TEST_F(FleetDocs, TheScriptOfTheJobIsThatOfTheText)
{
    std::string job, first;
    for (const Block &block : blocksOf("ci.md")) {
        if (block.kind == "yaml") job = block.text;
        if (first.empty() && isScript(block)) first = block.text;
    }
    EXPECT_TRUE(holds(job, "    - " + first)) << job;
}

TEST_F(FleetDocs, FindingsAreSentAwayWhenThereAreSome)
{
    ASSERT_EQ(qelfmt("field set drawings/d0003.qdraw number wrong").status, 0);
    write("receiver.py", kReceiver);
    std::string sending;
    for (const Block &block : blocksOf("ci.md"))
        if (holds(block.text, "SARIF_URL")) sending = block.text;
    ASSERT_FALSE(sending.empty());
    const Outcome outcome = run("python3 receiver.py & while [ ! -e port ]; do sleep 0.05; done\n"
                                "export SARIF_URL=http://127.0.0.1:$(cat port)/\n" +
                                sending);
    EXPECT_EQ(outcome.status, 1) << outcome.err;
    EXPECT_EQ(read("received.sarif"), read("drawings.sarif"));
    EXPECT_FALSE(read("received.sarif").empty());
}

TEST_F(FleetDocs, EveryCommandForManyDrawingsRuns)
{
    write("rows.csv", "number,title\r\nn1,One\r\nn2,Two\r\n");
    int scripts = 0;
    for (const Block &block : blocksOf("fleet.md")) {
        if (!isScript(block)) continue;
        ++scripts;
        const Outcome outcome = run("set -e\n" + block.text);
        EXPECT_EQ(outcome.status, 0) << block.text << outcome.err;
    }
    EXPECT_EQ(scripts, 5);
    for (const char *made :
         {"report.csv", "titles.json", "update.journal", "out/n1.qdraw", "pdf/n2.pdf", "all.pdf"})
        EXPECT_TRUE(exists(made)) << made;
}

TEST_F(FleetDocs, PartsOfAReportAreMadeUnderParallelAndMerged)
{
    if (!has("parallel")) GTEST_SKIP() << "GNU parallel is not installed";
    for (const Block &block : blocksOf("fleet.md")) {
        if (block.kind != "sh parallel") continue;
        const Outcome outcome = run("set -e\n" + block.text);
        EXPECT_EQ(outcome.status, 0) << outcome.err;
    }
    ASSERT_EQ(qelfmt("--defs site report drawings -o alone.csv").status, 0);
    EXPECT_EQ(read("whole.csv"), read("alone.csv"));
    EXPECT_EQ(lineCount(read("whole.csv")), 7u);
}

// Where Slurm is at work the tasks are its own; the next test is theirs elsewhere.
TEST_F(FleetDocs, SlurmRunsTheArrayJob)
{
    if (!has("sbatch") || shell("sinfo --noheader").status != 0)
        GTEST_SKIP() << "there is no Slurm that takes jobs";
    changeDefinitions();
    write("update.sbatch", slurmScript());
    const Outcome outcome = shell("PATH=" + (folder / "bin").string() +
                                  ":$PATH sbatch --wait --export=ALL --array=1-4 update.sbatch");
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(qelfmt("--defs site check drawings").status, 0);
}

TEST_F(FleetDocs, TheTasksOfTheArrayJobUpdateEveryDrawingOnce)
{
    const std::string script = slurmScript();
    ASSERT_TRUE(holds(script, "#SBATCH"));
    changeDefinitions();
    for (int task = 1; task <= 4; ++task) {
        const Outcome outcome =
            run(script, "SLURM_ARRAY_TASK_COUNT=4 SLURM_ARRAY_TASK_ID=" + std::to_string(task));
        EXPECT_EQ(outcome.status, 0) << outcome.err;
        EXPECT_TRUE(outcome.out.ends_with(task <= 2 ? "\n2 updated\n" : "\n1 updated\n")) // of 6
            << outcome.out;
    }
    EXPECT_EQ(qelfmt("--defs site check drawings").status, 0);
    EXPECT_EQ(qelfmt("undo update-3.journal").status, 0);
    EXPECT_EQ(qelfmt("--defs site check drawings").status, 1);
}

} // namespace
