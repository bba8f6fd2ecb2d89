// The last steps of mending: what is lost, by name as far as it can be told, and what is in order and
// still worth a word.
#include "draft.h"

#include <algorithm>

namespace host::store {

namespace {

using Kind = Finding::Kind;

std::string counted(std::int64_t n, const std::string &thing)
{
    return std::to_string(n) + ' ' + thing + (n == 1 ? "" : "s");
}

template <class Row> bool isSpoiled(const Remains::Spoiled &row)
{
    return row.table == Row::kTable;
}

// --- objects --------------------------------------------------------------------------------------

class LostObjects {
public:
    LostObjects(const Remains &remains, Draft &draft) : m_remains(remains), m_draft(draft) {}

    void name()
    {
        for (const Remains::Spoiled &row : m_remains.spoiled)
            if (isSpoiled<ObjectRow>(row)) take(row);
        for (const Ordinal ordinal : m_draft.missing)
            if (m_draft.isLost(ordinal) &&
                !m_remains.objects.count(static_cast<std::int64_t>(ordinal)))
                m_lost.insert(ordinal);
        for (const auto &[ordinal, what] : m_draft.remade)
            if (!m_remains.objects.count(static_cast<std::int64_t>(ordinal)))
                m_lost.insert(ordinal);
        const std::int64_t stored = m_draft.partIsSure ? m_draft.part.objects.rows : -1;
        const auto found = static_cast<std::int64_t>(m_remains.objects.size());
        if (stored >= 0) fillGaps(stored - found);
        for (const Ordinal ordinal : m_lost) tell(ordinal);
        if (stored >= 0) tellRest(stored, found);
        m_draft.lostUnknown =
            stored < 0 || stored - found > static_cast<std::int64_t>(m_lost.size());
        m_draft.lost = std::move(m_lost);
    }

private:
    // A row that is there and wrong is the object that its key names, if there can be one.
    void take(const Remains::Spoiled &row)
    {
        const auto ordinal = static_cast<Ordinal>(row.key);
        const bool possible = row.key > 0 && !m_remains.objects.count(row.key) &&
                              (!m_draft.partIsSure || row.key < m_draft.part.nextOrdinal);
        if (!possible) {
            ++m_nameless;
            return;
        }
        m_lost.insert(ordinal);
        m_spoiled.emplace(ordinal, &row);
    }

    // Ordinals that were given out and are not there: lost, if none of them was deleted.
    void fillGaps(std::int64_t lost)
    {
        constexpr std::int64_t kMost = 1'000'000;
        const std::int64_t given = m_draft.part.nextOrdinal - 1;
        const auto found = static_cast<std::int64_t>(m_remains.objects.size());
        if (lost <= static_cast<std::int64_t>(m_lost.size()) || lost > kMost ||
            given - found != lost)
            return;
        for (std::int64_t ordinal = 1; ordinal <= given; ++ordinal)
            if (!m_remains.objects.count(ordinal)) m_lost.insert(static_cast<Ordinal>(ordinal));
    }

    void tell(Ordinal ordinal)
    {
        const auto spoiled = m_spoiled.find(ordinal);
        const bool isThere = spoiled != m_spoiled.end();
        const ObjectRow *row =
            isThere && spoiled->second->object ? &*spoiled->second->object : nullptr;
        const auto remade = m_draft.remade.find(ordinal);
        m_draft.say(Kind::damage, ordinal,
                    nameOf(ordinal, row) +
                        (isThere ? ": its row is damaged" : ": its row is not there"),
                    remade == m_draft.remade.end() ? "it is left out" : remade->second);
    }

    void tellRest(std::int64_t stored, std::int64_t found)
    {
        const std::int64_t rest = stored - found - static_cast<std::int64_t>(m_lost.size());
        if (rest > 0)
            m_draft.say(Kind::damage, 0,
                        "table object: " + counted(rest, "more row") +
                            (rest == 1 ? " was" : " were") +
                            " stored and cannot be read; of which objects cannot be told",
                        "they are left out");
        else if (stored < found)
            m_draft.say(Kind::damage, 0,
                        "table object has " + counted(found, "row") + " where " +
                            std::to_string(stored) + " were stored",
                        "all are taken");
        else if (m_nameless && rest == 0 && m_lost.empty())
            m_draft.say(Kind::damage, 0,
                        "table object: " + counted(m_nameless, "row") + " of no object",
                        "they are left out");
    }

    const Remains &m_remains;
    Draft &m_draft;
    std::set<Ordinal> m_lost;
    std::map<Ordinal, const Remains::Spoiled *> m_spoiled;
    std::int64_t m_nameless = 0;
};

// --- attributes -------------------------------------------------------------------------------------

// Lost ones show as gaps in the places of an object's attributes, or as damaged rows.
void nameLostAttributes(const Remains &remains, Draft &draft)
{
    struct Count {
        std::int64_t gaps = 0;
        std::int64_t spoiled = 0;
        std::int64_t next = 0;
    };
    std::map<std::int64_t, Count> objects;
    for (const auto &[key, row] : remains.attributes) {
        Count &count = objects[row.object];
        count.gaps += std::min<std::int64_t>(row.position - count.next, 1'000'000);
        count.next = row.position + 1;
    }
    for (const Remains::Spoiled &row : remains.spoiled)
        if (isSpoiled<AttributeRow>(row)) ++objects[row.key].spoiled;
    std::int64_t told = 0;
    for (const auto &[object, count] : objects) {
        const std::int64_t lost = std::max(count.gaps, count.spoiled);
        const auto ordinal = static_cast<Ordinal>(object);
        if (lost <= 0 || (object && !draft.find(ordinal))) continue;
        told += lost;
        draft.say(Kind::damage, ordinal,
                  (object ? draft.name(ordinal) : std::string("the part")) + ": " +
                      counted(lost, "attribute") + " cannot be read",
                  lost == 1 ? "it is left out" : "they are left out");
    }
    if (!draft.partIsSure) return;
    const auto found = static_cast<std::int64_t>(remains.attributes.size());
    const std::int64_t stored = draft.part.attributes.rows;
    if (stored - found > told)
        draft.say(Kind::damage, 0,
                  "table attribute: " + counted(stored - found - told, "more row") +
                      " cannot be read; of which objects cannot be told",
                  "they are left out");
    else if (stored < found)
        draft.say(Kind::damage, 0,
                  "table attribute has " + counted(found, "row") + " where " +
                      std::to_string(stored) + " were stored",
                  "all are taken");
}

// --- pattern masters --------------------------------------------------------------------------------

void nameLostMasters(const Remains &remains, Draft &draft)
{
    std::set<std::int64_t> spoiled;
    for (const Remains::Spoiled &row : remains.spoiled)
        if (isSpoiled<MasterRow>(row) && !remains.masters.count(row.key)) spoiled.insert(row.key);
    for (const std::int64_t id : spoiled)
        draft.say(Kind::damage, 0, "pattern master " + std::to_string(id) + ": its row is damaged",
                  "it is left out");
    if (!draft.partIsSure) return;
    const auto known = static_cast<std::int64_t>(remains.masters.size() + spoiled.size());
    const std::int64_t stored = draft.part.masters.rows;
    if (stored > known)
        draft.say(Kind::damage, 0,
                  "table pattern_master: " + counted(stored - known, "more row") +
                      " cannot be read",
                  "they are left out");
    else if (stored < known && spoiled.empty())
        draft.say(Kind::damage, 0,
                  "table pattern_master has " + counted(known, "row") + " where " +
                      std::to_string(stored) + " were stored",
                  "all are taken");
}

// --- the file ---------------------------------------------------------------------------------------

template <class Rows> std::int64_t sumOf(const Rows &rows)
{
    Tally tally;
    for (const auto &[key, row] : rows) tally.add(checksumOf(row));
    return tally.sum;
}

// As many rows as there should be, each in order, and not the right ones.
void nameOlderRows(const Remains &remains, Draft &draft)
{
    const auto compare = [&](const Tally &stored, const auto &rows, const char *table) {
        if (stored.rows == static_cast<std::int64_t>(rows.size()) && stored.sum != sumOf(rows))
            draft.say(Kind::damage, 0,
                      std::string("table ") + table +
                          ": rows are from another state of the part than the others",
                      "they are taken as they are");
    };
    if (!draft.partIsSure) return;
    compare(remains.part->objects, remains.objects, "object");
    compare(remains.part->attributes, remains.attributes, "attribute");
    compare(remains.part->masters, remains.masters, "pattern_master");
}

void nameDamagedPages(const Remains &remains, Draft &draft)
{
    const std::size_t n = remains.damagedPages.size();
    if (!n) return;
    constexpr std::size_t kShown = 8;
    std::string text = counted(static_cast<std::int64_t>(n), "page") + " cannot be read:";
    for (std::size_t i = 0; i < std::min(n, kShown); ++i)
        text += (i ? ", " : " ") + std::to_string(remains.damagedPages[i]);
    draft.say(Kind::damage, 0, text + (n > kShown ? " and so on" : ""),
              "what stood there is left out");
}

} // namespace

void nameLosses(const Remains &remains, Draft &draft)
{
    for (Finding &finding : draft.findings) { // impossible ones, too, may have been made again
        const auto remade = draft.remade.find(finding.object);
        if (remade != draft.remade.end() && draft.leftOut.count(finding.object))
            finding.mended = remade->second;
    }
    nameDamagedPages(remains, draft);
    LostObjects(remains, draft).name();
    nameLostAttributes(remains, draft);
    nameLostMasters(remains, draft);
    nameOlderRows(remains, draft);
    // Ordinals are never given out twice, also those of lost objects.
    const auto given = static_cast<Ordinal>(draft.part.nextOrdinal);
    const bool beyond =
        !remains.objects.empty() && static_cast<Ordinal>(remains.objects.rbegin()->first) >= given;
    if (draft.partIsSure && beyond)
        draft.say(Kind::damage, 0, "there are objects beyond those that the part has numbered",
                  "they are counted again");
    Ordinal next = draft.pieces.empty() ? 1 : draft.pieces.rbegin()->first + 1;
    if (!draft.missing.empty()) next = std::max(next, *draft.missing.rbegin() + 1);
    draft.part.nextOrdinal = static_cast<std::int64_t>(std::max(next, given));
}

// --- in order, and still ----------------------------------------------------------------------------

namespace {

struct Holders {
    std::map<Ordinal, Ordinal> byType2; // the first one
};

Holders holdersIn(const Draft &draft)
{
    Holders holders;
    for (const auto &[ordinal, piece] : draft.pieces)
        for (const StoredLink &link : piece.links)
            if (link.type == 2 && link.target) holders.byType2.try_emplace(link.target, ordinal);
    return holders;
}

bool contains(const std::vector<std::string> &names, std::string_view name)
{
    return std::find(names.begin(), names.end(), name) != names.end();
}

bool isOnASheet(const Piece &piece, Draft &draft)
{
    return std::any_of(piece.links.begin(), piece.links.end(), [&](const StoredLink &link) {
        return link.type == 1 && draft.find(link.target, "sheet");
    });
}

} // namespace

void lookAround(const RecordRules &rules, Draft &draft)
{
    const Holders holders = holdersIn(draft);
    std::set<std::int64_t> used;
    for (const auto &[ordinal, piece] : draft.pieces) {
        const auto holder = holders.byType2.find(ordinal);
        const bool held = holder != holders.byType2.end();
        if (piece.row.kind == "pattern") used.insert(piece.row.refers);
        if (piece.row.status == static_cast<std::int64_t>(Status::condemned)) {
            draft.tell(Kind::condemned, ordinal,
                       held ? "it is deleted, but " + draft.name(holder->second) +
                                  " still holds it by a link of type 2"
                            : "it is deleted, and nothing holds it any more");
            continue;
        }
        if (!held && !piece.row.owner && contains(rules.belowOthers, piece.row.className))
            draft.tell(Kind::orphan, ordinal, "it belongs to no other record");
        if (contains(rules.onSheets, piece.row.className) && !isOnASheet(piece, draft))
            draft.tell(Kind::orphan, ordinal, "it stands on no sheet");
    }
    for (const auto &[id, master] : draft.masters)
        if (!used.count(id))
            draft.say(Kind::orphan, 0,
                      "pattern master " + std::to_string(id) + " (" + std::string(master.fileName) +
                          "): no pattern shows it");
}

} // namespace host::store
