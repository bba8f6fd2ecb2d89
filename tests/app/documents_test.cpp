// What the documents tell people to type.
#include "shell.h"

#include <regex>

namespace {

// The lines of a document that call the command, without their remarks. What may be left out, in brackets,
// is there; ROW is a row.
std::vector<std::string> commandsIn(const std::string &document)
{
    std::ifstream file(std::string(QELFMT_SOURCE_DIR "/docs/") + document);
    std::vector<std::string> commands;
    for (std::string line; std::getline(file, line);) {
        if (!line.starts_with("    qelfmt ")) continue;
        line = line.substr(11, line.find("  #") - 11);
        line = std::regex_replace(line, std::regex(R"([\[\]])"), "");
        commands.push_back(std::regex_replace(line, std::regex("ROW"), "0"));
    }
    return commands;
}

// A drawing as the documents speak of it: fields title and number, a table REV of five rows with the columns
// rev, change and zone, and a symbol.
class Documents : public Shell {
protected:
    void SetUp() override
    {
        Shell::SetUp();
        write("d.yaml", "units: mm\n"
                        "formats:\n"
                        "  F: {required: [TITLE], sheets: iso, sizes: [A3]}\n"
                        "blocks:\n"
                        "  TITLE:\n"
                        "    size: [180, 36]\n"
                        "    place: {at: [30, 20]}\n"
                        "    cells:\n"
                        "      title: {cell: [0, 0, 90, 12]}\n"
                        "      number: {cell: [90, 0, 90, 12]}\n"
                        "    tables:\n"
                        "      REV:\n"
                        "        at: [0, 36]\n"
                        "        direction: up\n"
                        "        symbol: {type: circle, lines: [rev]}\n"
                        "        columns:\n"
                        "          rev: {width: 10}\n"
                        "          change: {width: 90, several-lines: yes}\n"
                        "          zone: {width: 20, zone: yes}\n");
        write("values.json", R"({"title": "Pump shaft"})");
        write("rows.csv", "rev,change\nA,first\nB,second\nC,third\nD,fourth\nE,fifth\n");
        for (const char *line :
             {"defs build d.yaml -o site", "stamp F/A3 --defs site -o drawing.qdraw",
              "--defs site table import drawing.qdraw REV rows.csv",
              "--defs site symbol place drawing.qdraw REV 0 200 200"}) {
            const Outcome made = qelfmt(line);
            ASSERT_EQ(made.status, 0) << line << "\n" << made.err;
        }
    }

    void expectToRun(const std::string &document) const
    {
        const auto commands = commandsIn(document);
        ASSERT_FALSE(commands.empty()) << document;
        for (const std::string &command : commands) {
            std::filesystem::copy_file(folder / "drawing.qdraw", folder / "a.qdraw",
                                       std::filesystem::copy_options::overwrite_existing);
            const Outcome outcome = qelfmt("--defs site " + command);
            EXPECT_EQ(outcome.status, 0) << document << ": " << command << "\n" << outcome.err;
        }
    }
};

TEST_F(Documents, FieldsAreSetAndReadAsWritten) { expectToRun("fields.md"); }

TEST_F(Documents, RowsAndSymbolsAreMadeAsWritten) { expectToRun("tables.md"); }

TEST_F(Documents, DrawingsAreCheckedAndUpdatedAsWritten) { expectToRun("updates.md"); }

} // namespace
