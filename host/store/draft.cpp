#include "draft.h"

#include "image.h"
#include "pack.h"
#include "schema.h"

#include <algorithm>
#include <limits>
#include <sqlite3.h>

namespace host::store {

// --- names ----------------------------------------------------------------------------------------

namespace {

// One line, short, without control characters.
std::string excerpt(std::string_view text)
{
    constexpr std::size_t kMost = 40;
    std::string shown(text.substr(0, text.find('\n')));
    if (shown.size() > kMost) {
        std::size_t end = kMost;
        while (end > 0 && (static_cast<unsigned char>(shown[end]) & 0xc0) == 0x80) --end;
        shown = shown.substr(0, end) + "...";
    }
    for (char &c : shown)
        if (static_cast<unsigned char>(c) < 0x20 || c == 0x7f) c = ' ';
    return " \"" + shown + '"';
}

// Nothing for a row whose kind is none.
std::string kindOf(const ObjectRow &row)
{
    try {
        kindIndex(row.kind);
    } catch (const Malformed &) {
        return {};
    }
    if (row.kind == "udo") return " (UDO " + std::string(row.className) + ')';
    std::string kind(row.kind);
    std::replace(kind.begin(), kind.end(), '_', ' ');
    const bool reads = row.kind == "note" || row.kind == "id_symbol";
    const std::string_view text = reads && row.name.empty() ? row.texts : row.name;
    return " (" + kind + (text.empty() ? "" : excerpt(text)) + ')';
}

} // namespace

std::string nameOf(Ordinal ordinal, const ObjectRow *row)
{
    return "object " + std::to_string(static_cast<std::int64_t>(ordinal)) +
           (row ? kindOf(*row) : "");
}

// --- the draft --------------------------------------------------------------------------------------

bool Draft::isLost(Ordinal ordinal) const
{
    if (partIsSure && ordinal >= static_cast<Ordinal>(part.nextOrdinal)) return false;
    return missing.count(ordinal) > 0;
}

Piece *Draft::find(Ordinal ordinal)
{
    const auto found = pieces.find(ordinal);
    return found == pieces.end() ? nullptr : &found->second;
}

Piece *Draft::find(Ordinal ordinal, std::string_view kind)
{
    Piece *piece = find(ordinal);
    return piece && piece->row.kind == kind ? piece : nullptr;
}

std::string Draft::name(Ordinal ordinal)
{
    const Piece *piece = find(ordinal);
    return nameOf(ordinal, piece ? &piece->row : nullptr);
}

void Draft::say(Finding::Kind kind, Ordinal object, std::string text, std::string mended)
{
    findings.push_back({kind, object, std::move(text), std::move(mended)});
}

void Draft::tell(Finding::Kind kind, Ordinal object, const std::string &what, std::string mended)
{
    say(kind, object, name(object) + ": " + what, std::move(mended));
}

Ordinal Draft::newOrdinal()
{
    Ordinal ordinal = pieces.empty() ? 1 : pieces.rbegin()->first + 1;
    if (partIsSure) ordinal = std::max(ordinal, static_cast<Ordinal>(part.nextOrdinal));
    while (missing.count(ordinal) || pieces.count(ordinal)) ++ordinal;
    return ordinal;
}

Piece &Draft::make(Ordinal ordinal, std::string_view kind)
{
    Piece &piece = pieces[ordinal];
    piece.row.ordinal = static_cast<std::int64_t>(ordinal);
    piece.row.kind = kind;
    piece.row.status = static_cast<std::int64_t>(Status::alive);
    piece.row.layer = 1;
    const Appearance look;
    piece.row.color = look.color;
    piece.row.lineFont = look.lineFont;
    return piece;
}

std::string_view Draft::keep(std::string text) { return texts.emplace_back(std::move(text)); }

// --- as a file ----------------------------------------------------------------------------------------

namespace {

Tally writeMasters(Database &database, const Draft &draft)
{
    Tally tally;
    Statement insert(database, MasterRow::kInsert);
    for (const auto &[id, row] : draft.masters) tally.add(write(insert, row));
    return tally;
}

Tally writeObjects(Database &database, Draft &draft)
{
    Tally tally;
    Statement insert(database, ObjectRow::kInsert);
    std::string links;
    std::string owned;
    for (auto &[ordinal, piece] : draft.pieces) {
        links.clear(), owned.clear();
        appendLinks(links, piece.links);
        appendNumbers(owned, piece.owned);
        piece.row.links = links;
        piece.row.owned = owned;
        tally.add(write(insert, piece.row));
    }
    return tally;
}

Tally writeAttributes(Database &database, const Draft &draft)
{
    Tally tally;
    Statement insert(database, AttributeRow::kInsert);
    for (const auto &[object, rows] : draft.attributes)
        for (const AttributeRow &row : rows) tally.add(write(insert, row));
    return tally;
}

} // namespace

std::string imageOf(Draft &draft)
{
    Database database(":memory:", SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_MEMORY);
    createTables(database);
    PartRow row = draft.part;
    row.masters = writeMasters(database, draft);
    row.objects = writeObjects(database, draft);
    row.attributes = writeAttributes(database, draft);
    {
        Statement insert(database, PartRow::kInsert);
        write(insert, row);
    }
    database.run("COMMIT");
    return bytesOf(database);
}

} // namespace host::store
