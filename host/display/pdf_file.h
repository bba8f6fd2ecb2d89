// The objects of a PDF file and its cross-reference table.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace host::display {

class PdfFile {
public:
    PdfFile();
    int reserve(); // a number to refer to before the object is written
    void put(int id, std::string_view body);
    int put(std::string_view body);
    void putStream(int id, std::string_view deflatedData, std::string_view entries = {});
    int putStream(std::string_view deflatedData, std::string_view entries = {});
    std::string take();                        // what is there so far; the rest goes on behind it
    std::string finish(int catalog, int info); // the rest

private:
    std::size_t place() const { return m_taken + m_bytes.size(); }

    std::string m_bytes;
    std::size_t m_taken = 0;
    std::vector<std::size_t> m_offsets; // by number - 1
};

std::string reference(int id); // "7 0 R"
// A text string: as it is when it is plain ASCII, else UTF-16.
std::string pdfText(std::string_view utf8);
// RenderError when it is no date of ISO 8601.
std::string pdfDate(std::string_view iso);

} // namespace host::display
