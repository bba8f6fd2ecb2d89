// A site's rules for the values on its drawings, as a text says them.
#pragma once

#include "app/drift.h"
#include "app/fleet/rule_tests.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace app::fleet {

// By their weight; named as in SARIF.
enum class Severity { note, warning, error };
std::string nameOf(Severity severity);

// "BLOCK.FIELD", or "BLOCK.TABLE.COLUMN" of the visible rows; "*" and "?" stand for any text and any
// character.
class ValuePattern {
public:
    explicit ValuePattern(const std::string &text); // std::invalid_argument without a block
    bool matches(const SeenValue &value) const;
    bool ofRows() const; // of tables

private:
    std::string m_block;
    std::string m_rest;
};

struct Rule {
    std::string name; // one of its own; the text's, or made of what the rule asks
    int line = 0;
    std::string test; // its key: "filled"
    std::vector<ValuePattern> fields;
    std::vector<std::string> formats; // "ISO/A3", "ISO/*"; none: all
    Severity severity = Severity::error;
    std::string remedy;
    TestPtr question;

    bool holdsFor(const SeenSheet &sheet) const;
    bool matches(const SeenValue &value) const;
};

// Which states of a sheet are findings, and how grave. None is there for "none" and "current".
using StateSeverities = std::map<SheetState, Severity>;

struct Rules {
    std::string path; // empty: none were read
    std::vector<Rule> rules;
    StateSeverities states;
};

// Sheets as they should be, and nothing of their values.
Rules usualRules();
// Complaints of everything that is wrong with the text, in one go.
Rules readRules(const std::string &path);

} // namespace app::fleet
