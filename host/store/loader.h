// Reads a part out of its database, one pass a table, then puts tags where ordinals were stored.
#pragma once

#include "body_codec.h"
#include "database.h"
#include "ordinals.h"
#include "part_store.h"

#include <map>
#include <memory>
#include <string>
#include <vector>

namespace host::store {

class Loader {
public:
    // No row set of a sound part is bigger than its file: more is damage and ends the reading.
    Loader(Database &database, std::int64_t fileSize);

    LoadedPart run();

private:
    // What an object's row refers to outside its body.
    struct Outer {
        std::uint64_t view;
        std::uint64_t owner;
        std::uint64_t refers;
    };
    template <class Row, class Take> Tally readTable(std::int64_t (*key)(const Row &), Take &&take);

    void readPart();
    void readMasters();
    void readObjects();
    void readAttributes();
    void take(const ObjectRow &row);
    void take(const AttributeRow &row);
    ClassId placeOfClass(std::string_view name);

    // --- references: each names the row that holds it when it is refused
    void resolve();
    void resolveObject(std::size_t place);
    void resolveUdo(Object &object, Udo &udo);
    void resolveSheetAndView(Object &object, std::uint64_t refers);
    void resolveTexts();
    void giveOut(); // what the session and later saves need to know of a sound part
    Object &require(std::uint64_t ordinal, const Object &holder, const char *as);
    std::uint64_t tagOf(std::uint64_t ordinal) const; // of a reference inside a text
    [[noreturn]] void fail(const Object &holder, const char *what) const;
    [[noreturn]] void fail(const std::string &what) const;

    Database &m_database;
    std::size_t m_budget;
    std::int64_t m_root = 0; // checksum of the part's own row
    std::unique_ptr<Part> m_part;
    std::vector<std::unique_ptr<Object>> m_objects;
    Ordinals m_ordinals;
    PartRow m_row; // its views do not outlive readPart()
    Masters m_masters;
    std::map<std::string, ClassId, std::less<>> m_classPlaces; // UDOs hold them until all is read
    std::vector<std::string> m_classNames;
    std::vector<Outer> m_outer;   // by place
    References m_references;      // of all bodies, one after the other
    std::size_t m_nextTarget = 0; // how far resolve() has used them
    std::size_t m_nextOwned = 0;
    std::vector<Object *> m_referring; // notes and symbols with references in their texts
};

// Links that a live part could not have: cycles, or two with one sequence. Throws Malformed.
void checkLinks(const std::vector<std::unique_ptr<Object>> &objects, std::uint64_t nextSequence);
void checkOwners(const std::vector<std::unique_ptr<Object>> &objects);

} // namespace host::store
