// Part files looked at, rescued, replaced and kept. Looking opens no part and changes no file.
#pragma once

#include "../uf_defs.h"

#include <cstddef>
#include <string>
#include <vector>

namespace nxhost {

struct PartFinding {
    std::string kind;              // "damage", "dangling", "orphan" or "condemned"
    unsigned long long object = 0; // its ordinal in the file; 0: of the part or the file
    std::string text;              // names the object and says what is wrong
    std::string mended;            // what a salvaged part has instead; empty: the same
};

// Which records must hang on something, by the names under which their classes are stored.
struct PartRules {
    std::vector<std::string> belowOthers; // a link of type 2 leads to them
    std::vector<std::string> onSheets;    // they link to their sheet by type 1
};

struct PartCheck {
    std::string refusal;      // why the part cannot be opened; empty: it can
    std::size_t objects = 0;  // that can be read
    bool salvageable = false; // enough is left for a new part
    std::vector<PartFinding> findings;
};

// Both raise UgException with a code of uf_part.h, and lastPartMessage() (control.h) says why: there is
// no such file, it is no part, it is being saved; for a salvage also when nothing of a part is left or
// there is a file of the new name.
DllExport PartCheck checkPartFile(const std::string &path, const PartRules &rules = {});

// Saves the work part as `path` in the place of the file that is there: a save of that file which was cut off
// is undone first, one that is under way refuses it, and what a link leads to is replaced, not the link. The
// part has that name from then on. Raises UgException as above; the file is then as it was.
DllExport void saveWorkPartOver(const std::string &path);

// A part file that is opened many times: it is read and checked once, and as long as this lives whoever opens it
// gets the part as it was then, at a fraction of the cost. What becomes of the file meanwhile is not seen. It takes
// about the memory of the open part. One at a time for a file.
class KeptPartFile {
public:
    DllExport explicit KeptPartFile(const std::string &path); // UgException as above
    DllExport ~KeptPartFile();
    KeptPartFile(const KeptPartFile &) = delete;
    KeptPartFile &operator=(const KeptPartFile &) = delete;

private:
    std::string m_path;
};

// Writes what can be read as a new part. Result: its objects, and everything that was lost or changed.
struct PartSalvage {
    std::size_t objects = 0;
    std::vector<PartFinding> lost;
};
DllExport PartSalvage salvagePartFile(const std::string &path, const std::string &new_path);

} // namespace nxhost
