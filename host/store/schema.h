// The tables of a part file, once: their names, columns and the numbers that mark the file. See
// docs/part-file.md.
#pragma once

#include <cstdint>

namespace host::store {

inline constexpr std::int64_t kApplicationId = 0x71647277; // "qdrw"
inline constexpr std::int64_t kVersion = 1;                // rises when the tables change
inline constexpr int kPageSize = 4096;
inline constexpr std::int64_t kMostNumbers = std::int64_t{1} << 62; // of objects and of links

inline constexpr const char *kTables[] = {
    "part",
    "object",
    "attribute",
    "pattern_master",
};

// Compared letter by letter when a part is opened: a table that is not what it should be could be
// anything. Parts in the field hold these texts: a change of any letter is a new version.
inline constexpr const char *kCreate[] = {
    "CREATE TABLE part(id INTEGER PRIMARY KEY,units INT,pattern_data INT,current_sheet INT,"
    "font_table INT,work_layer INT,layers BLOB,next_ordinal INT,next_link_sequence INT,"
    "objects INT,objects_sum INT,attributes INT,attributes_sum INT,"
    "pattern_masters INT,pattern_masters_sum INT,checksum INT)",

    "CREATE TABLE object(ordinal INTEGER PRIMARY KEY,kind TEXT,class TEXT,name TEXT,status INT,"
    "layer INT,color INT,line_font INT,width INT,blanked INT,view INT,owner INT,refers INT,"
    "links TEXT,owned TEXT,texts TEXT,numbers BLOB,checksum INT)",

    "CREATE TABLE attribute(object INT,position INT,title TEXT,value TEXT,checksum INT,"
    "PRIMARY KEY(object,position)) WITHOUT ROWID",

    "CREATE TABLE pattern_master(id INTEGER PRIMARY KEY,file_name TEXT,units INT,fonts TEXT,"
    "texts TEXT,shapes BLOB,checksum INT)",
};

} // namespace host::store
