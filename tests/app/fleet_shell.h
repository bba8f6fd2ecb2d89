// Folders full of drawings, and commands over all of them.
#pragma once

#include "shell.h"

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <functional>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

class FleetShell : public Shell {
protected:
    void SetUp() override
    {
        Shell::SetUp();
        buildIso();
        setenv("XDG_STATE_HOME", (folder / "state").c_str(), 1);
    }
    void TearDown() override
    {
        unsetenv("XDG_STATE_HOME");
        Shell::TearDown();
    }

    // A sheet ISO/A3, "SHEET1", with values as fields and their texts.
    void stamp(const std::string &name, const nlohmann::json &values = nlohmann::json::object(),
               const std::string &format = "ISO/A3") const
    {
        std::filesystem::create_directories((folder / name).parent_path());
        write("stamped.json", values.dump());
        const Outcome outcome =
            qelfmt("--defs site -q stamp " + format + " --data stamped.json -o " + name);
        ASSERT_EQ(outcome.status, 0) << outcome.err;
    }

    // d/d0000.qdraw and so on, each with its name as its number.
    void stampMany(int count) const
    {
        stamp("first.qdraw", {{"title", "Casing"}, {"revision", "A"}});
        std::string report = "file,sheet,TITLE.number\r\n";
        std::filesystem::create_directories(folder / "d");
        for (int i = 0; i < count; ++i) {
            std::filesystem::copy_file(folder / "first.qdraw", folder / drawing(i));
            report += drawing(i) + ",SHEET1," + number(i) + "\r\n";
        }
        std::filesystem::remove(folder / "first.qdraw");
        write("numbers.csv", report);
        const Outcome filled = qelfmt("-q fill --data numbers.csv");
        ASSERT_EQ(filled.status, 0) << filled.err;
    }
    static std::string number(int i)
    {
        std::string digits = std::to_string(i);
        return "d" + std::string(digits.size() < 4 ? 4 - digits.size() : 0, '0') + digits;
    }
    static std::string drawing(int i) { return "d/" + number(i) + ".qdraw"; }

    std::vector<std::string> drawings(int count) const
    {
        std::vector<std::string> all;
        for (int i = 0; i < count; ++i) all.push_back(drawing(i));
        return all;
    }

    // Every text of every block goes to another layer: what was placed before has drifted.
    void changeDefinitions(const std::string &layer = "55") const
    {
        ASSERT_EQ(qelfmt("defs dump site/format_defs/iso.prt -o iso.yaml").status, 0);
        std::string text = read("iso.yaml");
        const std::string key = "text_layer: ";
        for (std::size_t at = 0; (at = text.find(key, at)) != std::string::npos; at += key.size())
            text.replace(at + key.size(), text.find('\n', at) - at - key.size(), layer);
        write("iso.yaml", text);
        const Outcome built = qelfmt("defs build iso.yaml -o site --quiet");
        ASSERT_EQ(built.status, 0) << built.err;
    }

    nlohmann::json jsonOf(const Outcome &outcome) const
    {
        return nlohmann::json::parse(outcome.out, nullptr, false);
    }
    std::size_t lineCount(const std::string &text) const
    {
        return static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
    }
    static bool holds(const std::string &text, const std::string &part)
    {
        return text.find(part) != std::string::npos;
    }

    std::string contentsOf(const std::vector<std::string> &names) const
    {
        std::string all;
        for (const std::string &name : names) all += read(name);
        return all;
    }
};

// The command while it runs; killed when nobody has waited for its end.
class RunningCommand {
public:
    // `before`: words that stand before the command.
    RunningCommand(const std::filesystem::path &folder, std::vector<std::string> arguments,
                   std::vector<std::string> before = {})
        : m_folder(folder)
    {
        m_process = fork();
        if (m_process != 0) return;
        if (chdir(folder.c_str()) != 0) _exit(126);
        for (const char *name :
             {"UGII_SITE_DIR", "UGII_USER_DIR", "UGII_VENDOR_DIR", "UGII_GROUP_DIR", "UGII_PATDIR"})
            unsetenv(name);
        redirect(".running-out", STDOUT_FILENO);
        redirect(".running-err", STDERR_FILENO);
        std::vector<char *> line;
        for (std::string &word : before) line.push_back(word.data());
        line.push_back(const_cast<char *>(QELFMT_COMMAND));
        for (std::string &argument : arguments) line.push_back(argument.data());
        line.push_back(nullptr);
        execvp(line[0], line.data());
        _exit(127);
    }
    ~RunningCommand()
    {
        if (m_process <= 0) return;
        kill(m_process, SIGKILL);
        waitpid(m_process, nullptr, 0);
    }
    RunningCommand(const RunningCommand &) = delete;
    RunningCommand &operator=(const RunningCommand &) = delete;

    pid_t process() const { return m_process; }
    void signal(int number) const { kill(m_process, number); }

    std::vector<pid_t> workers() const
    {
        std::vector<pid_t> found;
        for (const auto &entry : std::filesystem::directory_iterator("/proc")) {
            const std::string name = entry.path().filename();
            if (name.find_first_not_of("0123456789") != std::string::npos) continue;
            std::ifstream file(entry.path() / "stat");
            std::string text;
            std::getline(file, text);
            const std::size_t end = text.rfind(')'); // "PID (NAME) STATE PPID ..."
            if (end == std::string::npos) continue;
            std::istringstream rest(text.substr(end + 1));
            std::string state;
            pid_t parent = 0;
            if (rest >> state >> parent && parent == m_process && state != "Z")
                found.push_back(std::stoi(name));
        }
        return found;
    }

    // Until `done`, or for so long. What it was told at the end.
    static bool waitFor(const std::function<bool()> &done,
                        std::chrono::seconds most = std::chrono::seconds(120))
    {
        const auto end = std::chrono::steady_clock::now() + most;
        while (!done()) {
            if (std::chrono::steady_clock::now() > end) return false;
            std::this_thread::sleep_for(std::chrono::milliseconds(2));
        }
        return true;
    }

    // Waits for its end; -1 with the signal's number below it when a signal ended it: -9 for SIGKILL.
    Outcome end()
    {
        int status = 0;
        waitpid(m_process, &status, 0);
        m_process = 0;
        return {WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status), text(".running-out"),
                text(".running-err")};
    }
    bool hasEnded() const
    {
        siginfo_t info{};
        return waitid(P_PID, static_cast<id_t>(m_process), &info, WEXITED | WNOHANG | WNOWAIT) ==
                   0 &&
               info.si_pid != 0;
    }

private:
    void redirect(const char *name, int to) const
    {
        const int file = open(name, O_WRONLY | O_CREAT | O_TRUNC, 0644);
        dup2(file, to);
        close(file);
    }
    std::string text(const char *name) const
    {
        std::ifstream file(m_folder / name, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    std::filesystem::path m_folder;
    pid_t m_process;
};
