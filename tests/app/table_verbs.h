// A drawing with a table, and the verbs on it.
#pragma once

#include "shell.h"

// Table REV grows downwards from (0, 60) in a block at (30, 20) of an A3 ISO sheet.
class TableVerbs : public Shell {
protected:
    void SetUp() override
    {
        Shell::SetUp();
        write("d.yaml", "units: mm\n"
                        "formats:\n"
                        "  F: {required: [B], sheets: iso, sizes: [A3]}\n"
                        "blocks:\n"
                        "  B:\n"
                        "    size: [100, 60]\n"
                        "    place: {at: [30, 20]}\n"
                        "    cells: {}\n"
                        "    tables:\n"
                        "      REV:\n"
                        "        at: [0, 60]\n"
                        "        direction: down\n"
                        "        row: 5\n"
                        "        symbol: {type: circle, lines: [rev]}\n"
                        "        columns:\n"
                        "          zone: {width: 15, zone: yes}\n"
                        "          rev: {width: 10}\n"
                        "          change: {width: 40, several-lines: yes}\n");
        const Outcome built = qelfmt("defs build d.yaml -o site --quiet");
        ASSERT_EQ(built.status, 0) << built.err;
        const Outcome stamped = qelfmt("stamp F/A3 --defs site -o a.qdraw");
        ASSERT_EQ(stamped.status, 0) << stamped.err;
    }
    Outcome table(const std::string &verb, const std::string &rest = "") const
    {
        return qelfmt("--defs site table " + verb + " a.qdraw REV " + rest);
    }
    Outcome symbol(const std::string &verb, const std::string &rest = "") const
    {
        return qelfmt("--defs site symbol " + verb + " a.qdraw REV " + rest);
    }
    nlohmann::json rows() const { return json("--defs site table rows a.qdraw REV"); }
    std::string order() const
    {
        std::string all;
        for (const auto &row : rows()) all += row["values"]["rev"].get<std::string>();
        return all;
    }
    void addRows(const std::string &revisions) const
    {
        for (const char rev : revisions)
            ASSERT_EQ(table("add", std::string("rev=") + rev).status, 0);
    }
};
