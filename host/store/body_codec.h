// Objects as rows and back. What refers to other objects goes by ordinal.
#pragma once

#include "model/object.h"
#include "rows.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

namespace host::store {

// The kinds by index of the body's alternative; the names stand in every row.
std::string_view storedKind(std::size_t index);
std::size_t kindIndex(std::string_view kind); // throws Malformed

using Translate = std::function<std::uint64_t(std::uint64_t)>; // tag to ordinal, or the reverse

class Encoder {
public:
    // Ids of the pattern masters by address.
    using MasterIds = std::unordered_map<const PatternMaster *, std::int64_t>;

    Encoder(const Part &part, const MasterIds &masterIds);

    ObjectRow row(const Object &object); // its texts live until the next row
    MasterRow row(std::int64_t id, const PatternMaster &master);

    // 0 for what is no object of this part: such a reference finds nothing when it is read back.
    std::uint64_t ordinalOf(Tag tag) const;

private:
    void encode(const Udo &udo, ObjectRow &row);
    void encode(const Point &point, ObjectRow &row);
    void encode(const Line &line, ObjectRow &row);
    void encode(const Arc &arc, ObjectRow &row);
    void encode(const Area &area, ObjectRow &row);
    void encode(const Note &note, ObjectRow &row);
    void encode(const IdSymbol &symbol, ObjectRow &row);
    void encode(const Pattern &pattern, ObjectRow &row);
    void encode(const Sheet &sheet, ObjectRow &row);
    void encode(const View &view, ObjectRow &row);
    void encode(const FontTable &fonts, ObjectRow &row);
    void addReferring(const std::string &text);

    const Part &m_part;
    const MasterIds &m_masterIds;
    Translate m_toOrdinal;
    std::string m_links, m_owned, m_texts, m_numbers, m_fonts;
};

// What a decoded body refers to, by ordinal, in the order in which it stands in the body.
struct References {
    std::vector<std::uint64_t> linkTargets;
    std::vector<std::uint64_t> owned;
};

using Masters = std::unordered_map<std::int64_t, std::shared_ptr<PatternMaster>>;

// Decoding raises Malformed. Targets of links, owned objects and what a sheet or view refers to stay
// 0; texts keep ordinals in their references: the loader puts tags there once all are known.
// What only some kinds have must be absent in the others, or saving again would lose it.
void checkUnused(const ObjectRow &row);
Body decodeBody(const ObjectRow &row, ClassId classId, const Masters &masters,
                References &references);
PatternMaster decodeMaster(const MasterRow &row);
// All that a row says by itself; tag, part, view and owner are left out.
std::unique_ptr<Object> decodeObject(const ObjectRow &row, ClassId classId, const Masters &masters,
                                     References &references);

} // namespace host::store
