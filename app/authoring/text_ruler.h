// How much room a text takes, by the host's own metrics.
#pragma once

#include "uf_defs.h"

#include <string>
#include <vector>

namespace app::authoring {

struct TextLook {
    std::string font;
    double size = 0.0;
    double aspect = 1.0;
    double charSpace = 1.0;
    double lineSpace = 1.0;
};

struct TextExtent {
    double width = 0.0;
    double height = 0.0;
};

// Measures with a note in a part of its own, which is never saved. The work part is left as it was.
class TextRuler {
public:
    TextRuler();
    ~TextRuler();
    TextRuler(const TextRuler &) = delete;
    TextRuler &operator=(const TextRuler &) = delete;

    TextExtent measure(const std::vector<std::string> &lines, const TextLook &look);
    // Of that many characters of average width, on each of that many lines.
    TextExtent measure(int characters, int lines, const TextLook &look);
    // Whether the platform brings the font along.
    bool knowsFont(const std::string &font);

private:
    tag_t m_part = NULL_TAG;
    tag_t m_fonts = NULL_TAG;
};

} // namespace app::authoring
