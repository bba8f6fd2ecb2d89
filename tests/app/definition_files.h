// Small definition texts, and what is built from them.
#pragma once

#include "shell.h"

#include <sstream>
#include <string>

class DefinitionFiles : public Shell {
protected:
    // A format F and a block B of 60 x 20 with these cells, as NAME.yaml.
    void writeText(const std::string &name, const std::string &cells,
                   const std::string &place = "{corner: bottom-right, inset: [10, 10]}") const
    {
        write(name, "units: mm\n"
                    "formats:\n"
                    "  F: {description: Sheets, required: [B], sheets: iso, sizes: [A3, A4]}\n"
                    "blocks:\n"
                    "  B:\n"
                    "    size: [60, 20]\n"
                    "    place: " +
                        place +
                        "\n"
                        "    cells:\n" +
                        cells);
    }

    static std::string cell(const std::string &id, int x)
    {
        return "      " + id + ": {cell: [" + std::to_string(x) + ", 0, 20, 20], value: " + id +
               "}\n";
    }

    // The ids of the fields of B, in stored order.
    std::string storedOrder(const std::string &part) const
    {
        std::string ids;
        std::istringstream lines(qelfmt("defs dump " + part).out);
        bool field = false;
        for (std::string line; std::getline(lines, line);) {
            if (line.find("kind: ") != std::string::npos)
                field = line.find("kind: field") != std::string::npos;
            else if (field && line.find(" id: ") != std::string::npos)
                ids += line.substr(line.find(" id: ") + 5);
        }
        return ids;
    }
};
