// The host and the library, started for one command, and the part it works on.
#pragma once

#include "app/options.h"

#include "uf_defs.h"

#include <string>
#include <vector>

namespace app {

struct SheetRef {
    tag_t tag;
    std::string name;
};

// A command works on the open part and saves it last, so that one that fails changes no file.
class Workspace {
public:
    // Definitions are looked for in the folders of --defs; without them along the platform's search
    // directories, or in the installed share folder.
    explicit Workspace(const Options &options, bool loadDefinitions = true);
    ~Workspace();
    Workspace(const Workspace &) = delete;
    Workspace &operator=(const Workspace &) = delete;

    void open(const std::string &path);
    void create(const std::string &path, int units); // in memory until it is saved
    // Messages speak of this file instead: a part that is never saved is known to nobody.
    void speakOf(const std::string &path) { m_shown = path; }
    void save();
    // With `replace` in the place of a file that is there, which is the old or the whole new one.
    void saveAs(const std::string &path, bool replace = false);
    void close(); // without saving; another part can be opened then
    tag_t part() const { return m_part; }
    int units() const; // 1 millimetres, 2 inches
    const std::string &path() const { return m_path; }
    const std::string &shownPath() const { return m_shown.empty() ? m_path : m_shown; }

    std::vector<SheetRef> sheets() const;
    // Opens the named sheet; an empty name is the only sheet of the part, or a Problem that lists them.
    SheetRef openSheet(const std::string &name);
    // A sheet of that name, current; its size is set by the format placed on it.
    SheetRef addSheet(const std::string &name);

private:
    tag_t m_part = NULL_TAG;
    std::string m_path;
    std::string m_shown; // instead of the path, unless empty
};

// Raises the library's last error as a Problem, with `context` ("drawing.qdraw, sheet S1") before it.
void checkLibrary(int status, const std::string &context);

} // namespace app
