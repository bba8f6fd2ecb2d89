// A report of every shipped format, with difficult texts in every field, filled in again.
#include "fleet_shell.h"

namespace {

// Texts that tables of cells have trouble with, one after the other.
constexpr const char *kTexts[] = {"0815",       "007",  "a, b; c",   "say \"so\"", "one\ntwo",
                                  "Größe 5 µm", "+1-2", "\"",        " edges ",    "=A1",
                                  "1.10",       "no",   "日本",      "a,\"b\"\nc", "\n",
                                  "'x'",        ",",    "\"\"\n\"\""};

class FleetRoundTrip : public FleetShell {
protected:
    void SetUp() override
    {
        FleetShell::SetUp();
        const Outcome built =
            qelfmt("defs build " QELFMT_SOURCE_DIR "/formats/asme.yaml -o site --quiet");
        ASSERT_EQ(built.status, 0) << built.err;
    }
    // "ISO/A3": the first size of every format of the definitions.
    std::vector<std::string> formats() const
    {
        std::vector<std::string> found;
        for (const char *units : {"mm", "in"}) {
            const std::string part = std::string("units-") + units + ".qdraw";
            EXPECT_EQ(qelfmt("--defs site part new " + part + " --units " + units).status, 0);
            for (const auto &one : json("--defs site format list " + part))
                found.push_back(one["id"].get<std::string>() + "/" +
                                one["sizes"][0].get<std::string>());
            std::filesystem::remove(folder / part);
        }
        return found;
    }
    nlohmann::json report() const
    {
        const Outcome outcome = qelfmt("--defs site report d -o r.json");
        EXPECT_EQ(outcome.status, 0) << outcome.err;
        return nlohmann::json::parse(read("r.json"));
    }
    std::vector<std::string> names(std::size_t count) const
    {
        std::vector<std::string> all;
        for (std::size_t i = 0; i < count; ++i) all.push_back("d/" + std::to_string(i) + ".qdraw");
        return all;
    }
};

TEST_F(FleetRoundTrip, EveryShippedFormatTakesItsReportBack)
{
    const auto all = formats();
    ASSERT_GE(all.size(), 5u);
    for (std::size_t i = 0; i < all.size(); ++i)
        stamp(names(all.size())[i], nlohmann::json::object(), all[i]);

    // Different texts in every field, by way of a JSON report.
    auto wanted = report();
    std::size_t next = 0, fields = 0;
    for (auto &row : wanted)
        for (auto &value : row["values"]) {
            const std::string text = kTexts[next++ % std::size(kTexts)];
            nlohmann::json lines = nlohmann::json::array();
            std::istringstream stream(text + "\n");
            for (std::string line; std::getline(stream, line);) lines.push_back(line);
            value = lines.size() == 1 ? lines[0] : lines;
            ++fields;
        }
    EXPECT_GE(fields, 15u * all.size());
    write("r.json", wanted.dump());
    const Outcome filled = qelfmt("fill --data r.json");
    ASSERT_EQ(filled.status, 0) << filled.err;
    EXPECT_EQ(report(), wanted);

    // The CSV report of them all changes nothing, and a cell of it one value.
    const std::string before = contentsOf(names(all.size()));
    ASSERT_EQ(qelfmt("--defs site report d -o r.csv").status, 0);
    const Outcome same = qelfmt("fill --data r.csv");
    EXPECT_EQ(same.status, 0) << same.err;
    EXPECT_EQ(same.out,
              "0 values set in 0 drawings, " + std::to_string(all.size()) + " unchanged\n");
    EXPECT_EQ(contentsOf(names(all.size())), before);

    for (std::size_t i = 0; i < all.size(); ++i) {
        SCOPED_TRACE(all[i]);
        auto one = report();
        auto &values = one[i]["values"];
        const std::string field = values.begin().key();
        values[field] = "00, \"changed\"";
        write("one.csv", "file,sheet," + field + "\r\n" + names(all.size())[i] + "," +
                             one[i]["sheet"].get<std::string>() + ",\"00, \"\"changed\"\"\"\r\n");
        EXPECT_EQ(qelfmt("fill --data one.csv").status, 0);
        EXPECT_EQ(report(), one);
    }
}

} // namespace
