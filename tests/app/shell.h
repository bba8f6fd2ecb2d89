// Runs the command in a folder of its own, as a user would.
#pragma once

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include <sys/wait.h>
#include <unistd.h>

struct Outcome {
    int status;
    std::string out;
    std::string err;
};

class Shell : public testing::Test {
protected:
    void SetUp() override
    {
        char name[] = "/tmp/qelfmt-test-XXXXXX";
        folder = mkdtemp(name);
        write("site/config/tr_format", "[Format Defaults]\nCOMPANY0 = \"Nordhaven Pumps\"\n");
    }
    void TearDown() override { std::filesystem::remove_all(folder); }

    // The whole line after the program's name, read by the shell.
    Outcome qelfmt(const std::string &arguments) const
    {
        return shell(std::string(QELFMT_COMMAND) + " " + arguments);
    }

    // Environment variables of the machine play no part.
    Outcome shell(const std::string &line) const
    {
        const auto out = folder / ".out", err = folder / ".err";
        const std::string whole = "cd " + folder.string() +
                                  " && env -u UGII_SITE_DIR -u UGII_USER_DIR -u UGII_VENDOR_DIR"
                                  " -u UGII_GROUP_DIR -u UGII_PATDIR " +
                                  line + " >" + out.string() + " 2>" + err.string();
        const int status = std::system(whole.c_str());
        return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, read(out), read(err)};
    }

    void write(const std::string &name, const std::string &text) const
    {
        std::filesystem::create_directories((folder / name).parent_path());
        std::ofstream(folder / name, std::ios::binary) << text;
    }

    std::string read(const std::filesystem::path &path) const
    {
        std::ifstream file(folder / path, std::ios::binary);
        std::ostringstream text;
        text << file.rdbuf();
        return text.str();
    }

    bool exists(const std::string &name) const { return std::filesystem::exists(folder / name); }

    nlohmann::json json(const std::string &arguments) const
    {
        const Outcome outcome = qelfmt("--json " + arguments);
        EXPECT_EQ(outcome.status, 0) << outcome.err;
        return nlohmann::json::parse(outcome.out, nullptr, false);
    }

    // The shipped ISO definitions in the folder "site".
    void buildIso() const
    {
        const Outcome outcome =
            qelfmt("defs build " QELFMT_SOURCE_DIR "/formats/iso.yaml -o site --quiet");
        ASSERT_EQ(outcome.status, 0) << outcome.err;
    }

    std::filesystem::path folder;
};
