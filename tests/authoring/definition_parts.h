// Definition parts, their texts, and the parts that are built from the texts.
#pragma once

#include "app/authoring/record_text.h"

#include "nxhost/control.h"
#include "nxhost/start.h"
#include "uf_part.h"
#include "ug_exception.hxx"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include <unistd.h>

inline void check(int status) { UgException::throwOnFailure(status); }

inline std::string bytesOf(const std::filesystem::path &path)
{
    std::ifstream file(path, std::ios::binary);
    std::ostringstream bytes;
    bytes << file.rdbuf();
    return bytes.str();
}

// A folder of its own, and parts in it as texts and back.
class DefinitionParts : public testing::Test {
protected:
    void SetUp() override
    {
        nxhost::start();
        nxhost::reset();
        char name[] = "/tmp/qelfmt-parts-XXXXXX";
        folder = mkdtemp(name);
    }
    void TearDown() override
    {
        nxhost::reset();
        std::filesystem::remove_all(folder);
    }

    tag_t newPart(const std::string &name, int partUnits = 1)
    {
        tag_t part = NULL_TAG;
        check(UF_PART_new((folder / name).c_str(), partUnits, &part));
        return part;
    }

    // Saves and closes the part; its file.
    std::string close(tag_t part, const std::string &name)
    {
        check(UF_PART_save());
        check(UF_PART_close(part, 0, 1));
        return bytesOf(folder / name);
    }

    app::authoring::RecordFile scan(const std::string &name)
    {
        tag_t part = NULL_TAG;
        UF_PART_load_status_t status{};
        check(UF_PART_open((folder / name).c_str(), &part, &status));
        UF_PART_free_load_status(&status);
        const app::authoring::RecordFile file = app::authoring::scanPart(part);
        EXPECT_TRUE(file.leftOut.empty());
        units = file.units;
        check(UF_PART_close(part, 0, 1));
        return file;
    }

    std::string textOfPart(const std::string &name)
    {
        return app::authoring::recordsToText(scan(name));
    }

    std::vector<app::authoring::RecordTree> read(const std::string &text)
    {
        app::authoring::YamlFile file{"text.yaml", {}};
        auto records = app::authoring::readRecords(file, YAML::Load(text)["records"]);
        complaints.clear();
        for (const app::authoring::Complaint &complaint : file.complaints)
            complaints += app::authoring::toText(complaint) + "\n";
        return records;
    }

    std::string build(const std::string &text, const std::string &name)
    {
        const auto records = read(text);
        EXPECT_EQ(complaints, "");
        const tag_t part = newPart(name, units);
        app::authoring::writeRecords(records);
        return close(part, name);
    }

    std::filesystem::path folder;
    std::string complaints;
    int units = 1;
};

// How much of a soak is run.
inline double soakShare()
{
    const char *share = std::getenv("QELFMT_SOAK_SHARE");
    return share ? std::atof(share) : 0.05;
}
