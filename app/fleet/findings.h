// What a check has found in many drawings, for those who print it.
#pragma once

#include "app/fleet/rules.h"
#include "app/output.h"

#include <array>
#include <functional>
#include <string>
#include <vector>

namespace app::fleet {

struct Finding {
    std::string file;
    std::string sheet;
    std::string block; // this and the next two are empty when the sheet itself is meant
    std::string field;
    Json value;       // a text, or a list of lines
    std::string rule; // its name; of a sheet its state
    Severity severity = Severity::error;
    std::string message;
    std::string remedy;

    std::string place() const; // "sheet S1, TITLE.number"
    std::string text() const;  // "\"08 15\" does not match [0-9]{4}"
    std::string valueText() const;
};

struct UnreadDrawing {
    std::string file;
    std::string reason;
};

struct CheckTotals {
    std::size_t drawings = 0; // that were read
    std::size_t sheets = 0;   // with a format
    std::size_t unread = 0;
    std::array<std::size_t, 3> findings{}; // by severity
    std::vector<bool> matched;             // the rules that had something to look at

    std::size_t all() const { return findings[0] + findings[1] + findings[2]; }
};

// Calls what takes each finding and each drawing that could not be read, file by file, each time it is
// called: nobody keeps them all.
struct FindingTaker {
    std::function<void(const Finding &)> finding;
    std::function<void(const UnreadDrawing &)> unread;
};
using FindingSource = std::function<void(const FindingTaker &)>;

struct CheckResults {
    const Rules &rules;
    CheckTotals totals;
    FindingSource source;

    std::vector<const Rule *> unmatched() const;
};

void printFindings(const CheckResults &results);
void printFindingsJson(const CheckResults &results);

} // namespace app::fleet
