// Bringing a sheet up to date without mixing up its values.
#pragma once

#include "app/drift.h"
#include "app/update_values.h"

#include <array>
#include <string>
#include <vector>

namespace app {

// How a block was brought up to date. The library pairs the fields of a block with those of its new
// definition by their position; where that would give a field the place of another one, or leave
// behind what the definition says, the fields are made anew in the definition's order and get their
// values by their names.
enum class UpdateMethod { untouched, library, byId, orphan };

struct BlockUpdate {
    std::string id;
    UpdateMethod method = UpdateMethod::untouched;
    std::vector<std::string> reasons;   // why the library's own update would not do
    std::array<double, 2> from{}, to{}; // where it stood and where it stands
    bool moved() const { return from != to; }
};

struct UpdateReport {
    SheetDrift before;
    bool formatChanged = false;
    std::vector<BlockUpdate> blocks;
    std::vector<std::string> addedBlocks; // newly required, by the definition or by the site
    std::vector<ValueChange> values;
    bool changed() const; // something on the sheet
};

// What a sheet of an older generation shows before anybody looks at it: looking converts it, by which fields
// that their definition no longer has are lost. To be asked of every sheet of a drawing before one of them is
// updated, since a field may look at other sheets.
struct SheetBefore {
    bool legacy = false;
    std::vector<ShownValue> values; // of an older generation only
};
SheetBefore lookBefore(tag_t sheet);
// Of an older generation, and the definition that it is to be converted to is loaded.
bool canConvert(tag_t sheet, const SheetBefore &before);

std::string nameOf(UpdateMethod method);

// Brings blocks to the definitions of today, each field by its name, whatever else there is on the sheet, whose
// format is not touched. Only those that have drifted are: their identifiers are the result.
std::vector<std::string> rebuildDrifted(const std::vector<boost::shared_ptr<TrBlockBase>> &blocks);

// The sheet must be the current one and have a format whose definition is loaded; `place` names it in
// messages. When it fails the part is not to be saved.
UpdateReport updateSheet(tag_t sheet, const std::string &place, const SheetBefore &before);
UpdateReport updateSheet(tag_t sheet, const std::string &place);

// "TITLE.NUMBER = 4711", a text a value that was lost.
std::vector<std::string> lossesOf(const UpdateReport &report);

} // namespace app
