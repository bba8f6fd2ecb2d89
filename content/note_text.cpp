#include "content/note_text.h"

#include "ug_exception.hxx"

#include <algorithm>

namespace QelFmt {

namespace {

constexpr int kMainText = 1;

struct Row {
    char text[MAX_LINE_LENGTH + 1];
};

// The number of bytes that fit a row. A character of several bytes that would be cut is left out.
std::size_t fittingBytes(const std::string &line)
{
    if (line.size() <= MAX_LINE_LENGTH) return line.size();
    std::size_t length = MAX_LINE_LENGTH;
    const auto isContinuation = [&](std::size_t at) {
        return (static_cast<unsigned char>(line[at]) & 0xC0) == 0x80;
    };
    while (length > MAX_LINE_LENGTH - 4 && isContinuation(length)) --length;
    return isContinuation(length) ? MAX_LINE_LENGTH : length; // not UTF-8: cut where the row ends
}

} // namespace

NoteText::NoteText(tag_t annotation)
{
    UgException::throwOnFailure(UF_DRF_ask_draft_aid_text_info(annotation, &m_count, &m_info));
}

NoteText::~NoteText() { UF_DRF_free_text(m_count, &m_info); }

std::vector<std::string> NoteText::lines() const
{
    std::vector<std::string> lines;
    for (int record = 0; record < m_count; ++record) {
        for (int line = 0; line < m_info[record].num_lines; ++line) {
            const UF_DRF_draft_aid_text_t &text = m_info[record].text[line];
            lines.emplace_back(text.full_string ? text.full_string : text.string);
        }
    }
    return lines;
}

double NoteText::height() const { return m_count > 0 ? m_info[0].height : 0.0; }

void replaceText(tag_t annotation, const std::vector<std::string> &lines)
{
    std::vector<Row> rows(lines.size() + 1); // one more: there is always an address to pass
    for (std::size_t i = 0; i < lines.size(); ++i)
        std::copy_n(lines[i].data(), fittingBytes(lines[i]), rows[i].text);
    UgException::throwOnFailure(
        uc5566(annotation, kMainText, static_cast<int>(lines.size()), &rows.front().text));
}

AnnotationPreferences::AnnotationPreferences(tag_t annotation) : m_annotation(annotation)
{
    UgException::throwOnFailure(
        UF_DRF_ask_object_preferences(annotation, ints.data(), reals.data(), m_radius, m_diameter));
}

void AnnotationPreferences::write()
{
    UgException::throwOnFailure(UF_DRF_set_object_preferences(m_annotation, ints.data(),
                                                              reals.data(), m_radius, m_diameter));
}

} // namespace QelFmt
