// The drafting font, and the fonts that stand in where it lacks a character.
#pragma once

#include "display/face.h"

#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

namespace host::display {

class FontBook {
public:
    // Of this process; the drafting font is looked for on first use. QELFMT_FONT_PATH names a font
    // file or a list of folders; then the system's folder of osifont and the installed share folder
    // are tried. RenderError with all of them when there is none.
    static FontBook &get();

    const Face &drafting() const { return *m_drafting; }
    // A face that has the character; null: this machine has none. Asks fontconfig, and only
    // for characters that the drafting font lacks: looking through a system's fonts takes long.
    const Face *faceFor(char32_t character);

private:
    FontBook();
    const Face *searchSystem(char32_t character);

    std::unique_ptr<Face> m_drafting;
    std::vector<std::unique_ptr<Face>> m_fallbacks; // in order of first use
    std::unordered_map<char32_t, const Face *> m_answers;
};

} // namespace host::display
