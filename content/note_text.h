// One reading of the text of a note or an ID symbol.
#pragma once

#include "uf_defs.h"
#include "uf_drf.h"

#include <array>
#include <string>
#include <vector>

namespace QelFmt {

class NoteText {
public:
    explicit NoteText(tag_t annotation);
    ~NoteText();
    NoteText(NoteText &&) = delete; // neither copied nor moved: one owner

    std::vector<std::string> lines() const; // as stored, references not resolved
    double height() const;                  // of the first text record; 0 without one

private:
    int m_count = 0;
    UF_DRF_draft_aid_text_info_t *m_info = nullptr;
};

// Replaces the text of a note or an ID symbol. The platform takes rows of 132 bytes: a longer line
// is cut, never inside a character.
void replaceText(tag_t annotation, const std::vector<std::string> &lines);

// The object preferences of an annotation, read, changed and written back as a whole.
class AnnotationPreferences {
public:
    explicit AnnotationPreferences(tag_t annotation);
    void write();

    std::array<int, NUM_INT_PARAMS> ints{};
    std::array<double, NUM_REAL_PARAMS> reals{};

private:
    tag_t m_annotation;
    char m_radius[27] = {};
    char m_diameter[27] = {};
};

} // namespace QelFmt
