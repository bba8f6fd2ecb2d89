// The library's settings: named values in sections, read from text files.
#pragma once

#include "foundation/reg_string.h"
#include "udo/export.h"

#include <boost/filesystem/path.hpp>

#include <map>
#include <string>
#include <vector>

namespace QelFmt {

// The files are those of the registry's name in the "config" folders along the platform's search
// directories; of a key that stands twice the last value holds, so that later directories override
// earlier ones. Bad lines are told on the standard output and skipped; nothing here raises an error
// for what a file holds. A setting that is missing, or that is no number where one is asked for,
// reads as the caller's default.
class QELFMT_API Registry {
public:
    explicit Registry(const std::string &name); // and reads; an empty name reads nothing

    void read();
    void resetTo(const std::string &name); // empties all sections and reads the files of the name

    bool isModified() const { return m_modified; }
    void setModified(bool modified) { m_modified = modified; }

    bool keyExists(const std::string &section, const std::string &key) const;
    std::vector<std::string> getKeys(const std::string &section) const; // in byte order

    // "0x" or "0X" starts a hexadecimal number, any other digit a decimal one.
    int readIntEntry(const std::string &section, const std::string &key, int fallback) const;
    unsigned readUnsignedEntry(const std::string &section, const std::string &key,
                               unsigned fallback) const;
    double readRealEntry(const std::string &section, const std::string &key, double fallback) const;
    std::string readStringEntry(const std::string &section, const std::string &key,
                                const std::string &fallback) const;

protected:
    using Section = std::map<RegString, RegString>;

    void parsePath(const boost::filesystem::path &path);
    void parseFile(const std::string &file_name);
    // The line with its end, if it has one. False for a line in error. A section header changes
    // `current`, null before the first one.
    bool parseBuffer(Section *&current, const std::string &line, const std::string &file_name,
                     int line_number);
    bool parseValue(RegString &destination, const std::string &text, const std::string &file_name,
                    int line_number);

private:
    bool parseSectionName(Section *&current, const std::string &line, std::size_t at,
                          const std::string &file_name, int line_number);
    bool parseEntry(Section &section, const std::string &line, std::size_t at,
                    const std::string &file_name, int line_number);
    const RegString *find(const std::string &section, const std::string &key) const;

    std::map<RegString, Section> m_sections;
    std::string m_name;
    bool m_modified = false;
};

} // namespace QelFmt
