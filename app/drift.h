// Sheets against the definitions that are loaded: in which state a sheet is, and what differs, slot by
// slot.
#pragma once

#include "uf_defs.h"

#include <boost/shared_ptr.hpp>

#include <string>
#include <vector>

class TrBlockBase;
class TrBlockDefV1;
class TrFormatBase;
class TrFormatDefV1;

namespace app {

// Named in this order, the first that applies: what cannot be repaired comes before what can.
enum class SheetState {
    none,     // no format
    legacy,   // records of an older generation: the first change of the sheet converts them
    orphan,   // the definition of the format, or of a block, is gone
    miswired, // a placed field shows the definition of another one
    drifted,  // placed from another definition than the one that is loaded
    current,
};

std::string nameOf(SheetState state);

// A slot of a record, or something else that is one thing on the sheet and another on disk.
struct Difference {
    std::string where; // "field NAME", "size A3"; empty for the format or the block itself
    std::string what;  // the slot: "text_size"; or "record", "order", "pattern art", ...
    std::string stored;
    std::string disk;
};
using Differences = std::vector<Difference>;

// What a size or a block that should be there differs in: nothing that stands on the sheet is wrong.
constexpr const char *kMissing = "definition";

struct BlockDrift {
    std::string id;
    bool orphan = false;
    std::vector<std::string> miswired; // the names of the fields
    Differences definition;            // of the private copy
    Differences placed;                // what stands on the sheet, against that copy
    bool current() const
    {
        return !orphan && miswired.empty() && definition.empty() && placed.empty();
    }
};

struct SheetDrift {
    SheetState state = SheetState::none;
    std::string format;
    std::string size;
    bool orphan = false;    // the format
    Differences definition; // of the format
    Differences placed;     // frame and size of the sheet, blocks that the site requires
    std::vector<std::string>
        unreadable;                 // patterns whose files are gone: nobody can compare their art
    std::vector<BlockDrift> blocks; // in the order of the format's
};

// Looking at a sheet converts records of older generations: to be asked before anything else is.
bool hasLegacyRecords(tag_t sheet);
// The format as it is stored, of whatever generation; empty without one. Nothing is converted.
boost::shared_ptr<TrFormatBase> storedFormat(tag_t sheet);
// The sheet must be the current one.
SheetDrift driftOf(tag_t sheet);

BlockDrift driftOf(TrBlockBase &block);

// Changed art keeps the name of its pattern: the drawn lines are compared, not names alone.
struct Art {
    std::vector<std::string>
        changed; // names of patterns on the sheet that would be drawn otherwise today
    std::vector<std::string> unreadable; // that could not be drawn at all
};
Art lookAtArt(tag_t sheet);

} // namespace app
