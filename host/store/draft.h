// A part that is being made of what is left of another. Each step of mending lets go of what does not fit
// together and says so.
#pragma once

#include "body_codec.h"
#include "remains.h"
#include "salvage.h"
#include "texts.h"

#include <deque>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace host::store {

using Ordinal = std::uint64_t;

// An object's row with its lists taken apart.
struct Piece {
    ObjectRow row;
    std::vector<StoredLink> links;
    std::vector<Ordinal> owned;
};

struct Draft {
    std::map<std::int64_t, MasterRow> masters;
    std::map<Ordinal, Piece> pieces;
    std::map<Ordinal, std::vector<AttributeRow>> attributes; // by object, 0: of the part
    PartRow part;
    bool partIsSure = false; // its own row was verified

    std::set<Ordinal> missing;             // named by somebody, and not there
    std::set<Ordinal> leftOut;             // there, and impossible
    std::set<Ordinal> lost;                // not there, or damaged
    bool lostUnknown = false;              // more are lost than can be named
    std::map<Ordinal, std::string> remade; // made anew in place of a lost one: what
    std::vector<Finding> findings;
    std::deque<std::string> texts; // of rows that are made here

    // Missing, and it was there once.
    bool isLost(Ordinal ordinal) const;
    Piece *find(Ordinal ordinal);
    Piece *find(Ordinal ordinal, std::string_view kind);
    std::string name(Ordinal ordinal); // "object 17 (note "DRG-1")"
    void say(Finding::Kind kind, Ordinal object, std::string text, std::string mended = {});
    // Of the object by its name.
    void tell(Finding::Kind kind, Ordinal object, const std::string &what, std::string mended = {});
    Ordinal newOrdinal();
    Piece &make(Ordinal ordinal, std::string_view kind);
    std::string_view keep(std::string text);
};

std::string nameOf(Ordinal ordinal, const ObjectRow *row);

// --- the steps, in their order ---------------------------------------------------------------------
void takeRows(const Remains &remains, Draft &draft);
void findMissing(Draft &draft);
void mendSheetsAndViews(Draft &draft);
void mendFontTable(Draft &draft);
void mendOwners(Draft &draft);
void mendLinks(Draft &draft);
void nameLosses(const Remains &remains, Draft &draft);
void mendTexts(Draft &draft);
// What is in order and still worth a word: what is condemned, and what nothing leads to.
void lookAround(const RecordRules &rules, Draft &draft);

// The whole part as a file.
std::string imageOf(Draft &draft);

} // namespace host::store
