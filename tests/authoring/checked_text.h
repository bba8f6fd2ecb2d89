// Definition texts, and what the checks find in them.
#pragma once

#include "app/authoring/check.h"
#include "app/authoring/library_reader.h"
#include "app/authoring/record_builder.h"

#include "nxhost/control.h"
#include "nxhost/start.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace app::authoring;

class Check : public testing::Test {
protected:
    void SetUp() override
    {
        nxhost::start();
        nxhost::reset();
    }

    static std::string textOf(const std::vector<Complaint> &findings)
    {
        std::string text;
        for (const Complaint &finding : findings) text += toText(finding) + "\n";
        return text;
    }

    // Of a whole text file, one finding a line.
    static std::string findingsIn(const std::string &text)
    {
        try {
            const Library library = parseLibrary(text, "d.yaml");
            return textOf(checkDefinitions({{"d.yaml", recordsOf(library), &library, {}, {}}}));
        } catch (const Complaints &complaints) {
            return std::string(complaints.what()) + "\n";
        }
    }

    // Of a block of 60 x 20 that is fine but for what stands in `block`: its lines from line 8 on.
    static std::string findingsInBlock(const std::string &block)
    {
        return findingsIn("units: mm\n"
                          "formats:\n"
                          "  F: {required: [B], sheets: iso, sizes: [A3]}\n"
                          "blocks:\n"
                          "  B:\n"
                          "    size: [60, 20]\n"
                          "    place: {corner: bottom-right, inset: [10, 10]}\n" +
                          block);
    }

    // Of a block with the cell a all over it and the keys in that cell.
    static std::string findingsInCell(const std::string &keys)
    {
        return findingsInBlock("    cells:\n"
                               "      a: {cell: [0, 0, 60, 20], " +
                               keys + "}\n");
    }

    // Of a block without cells and with a table of one column of 20.
    static std::string findingsInColumn(const std::string &keys, const std::string &direction)
    {
        return findingsInBlock("    lines: none\n"
                               "    cells: {}\n"
                               "    tables:\n"
                               "      T:\n"
                               "        at: [0, 20]\n"
                               "        direction: " +
                               direction +
                               "\n"
                               "        borders: [left]\n"
                               "        columns:\n"
                               "          c: {width: 20, " +
                               keys + "}\n");
    }
};
