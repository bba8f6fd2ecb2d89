// How the text of a field's note looks, by its definition.
#pragma once

#include "udo/udo.h"
#include "uf_drf.h"

#include <cstddef>
#include <string>

namespace QelFmt {

// What lettering preferences and the preferences of a note have in common. A site or a font that
// the definition does not name leaves the present one.
struct NoteStyle {
    int site, justification, font, width, color;
    double angle, lineSpace;

    explicit NoteStyle(const LumUg::Record &fieldDef);
    bool hasSite() const { return site >= 1 && site <= 9; }
    bool hasFont() const { return font > 0; }
};

// The lettering preferences of the session, set for one note.
class LetteringForNote {
public:
    explicit LetteringForNote(const NoteStyle &style);
    ~LetteringForNote();                            // for the way out through an exception
    LetteringForNote(LetteringForNote &&) = delete; // neither copied nor moved: one owner

    void restore(); // the good way out, which tells when it fails

private:
    UF_DRF_lettering_preferences_t m_saved{};
    bool m_changed = true;
};

// A size or an aspect for values longer than so many characters.
struct Alternative {
    int longerThan;
    double value;

    bool exists() const { return longerThan > 0 && value != 0.0; }
    bool applies(std::size_t characters) const
    {
        return exists() && characters > static_cast<std::size_t>(longerThan);
    }
};

Alternative altSize(const LumUg::Record &fieldDef);
Alternative altAspect(const LumUg::Record &fieldDef);

std::size_t charactersIn(const std::string &utf8); // not bytes

} // namespace QelFmt
