// The first step of mending: each row by itself.
#include "draft.h"

#include "geometry_codec.h"
#include "pack.h"
#include "schema.h"

#include <algorithm>

namespace host::store {

namespace {

using Kind = Finding::Kind;

void takeMasters(const Remains &remains, Draft &draft, Masters &decoded)
{
    for (const auto &[id, row] : remains.masters) {
        try {
            if (id < 1) throw Malformed{"its number is below 1"};
            decoded[id] = std::make_shared<PatternMaster>(decodeMaster(row));
            draft.masters[id] = row;
        } catch (const Malformed &trouble) {
            draft.say(Kind::damage, 0, "pattern master " + std::to_string(id) + ": " + trouble.what,
                      "it is left out");
        }
    }
}

void takeObject(ObjectRow row, const Masters &masters, Draft &draft)
{
    const auto ordinal = static_cast<Ordinal>(row.ordinal);
    if (row.kind == "pattern" && row.refers && !masters.count(row.refers)) {
        draft.say(Kind::damage, ordinal,
                  nameOf(ordinal, &row) + ": pattern master " + std::to_string(row.refers) +
                      ", which it shows, is not there",
                  "it shows nothing");
        row.refers = 0;
    }
    try {
        if (row.ordinal < 1 || row.ordinal >= kMostNumbers)
            throw Malformed{"its ordinal is out of range"};
        References references;
        decodeObject(row, 0, masters, references);
        draft.pieces[ordinal] = {row, parseLinks(row.links), parseNumbers(row.owned)};
    } catch (const Malformed &trouble) {
        draft.say(Kind::damage, row.ordinal < 1 ? 0 : ordinal,
                  nameOf(ordinal, &row) + ": " + trouble.what, "it is left out");
        draft.leftOut.insert(ordinal);
    }
}

// --- the part's own row ---------------------------------------------------------------------------

// As in a new part.
std::string newLayers()
{
    std::string layers;
    Packer out(layers);
    for (int layer = 1; layer <= 256; ++layer) out.integer(layer == 1 ? 1 : 2);
    return layers;
}

// What most sheets are drawn in.
std::int64_t likelyUnits(const Draft &draft)
{
    constexpr std::size_t kUnits = 2 * 4 + 3 * 8; // in the numbers of a sheet
    int inches = 0;
    for (const auto &[ordinal, piece] : draft.pieces) {
        if (piece.row.kind != "sheet") continue;
        Unpacker in(piece.row.numbers.substr(kUnits));
        inches += in.integer() == 2 ? 1 : -1;
    }
    return inches > 0 ? 2 : 1;
}

class PartRowStep {
public:
    PartRowStep(const Remains &remains, Draft &draft)
        : m_remains(remains), m_draft(draft), m_part(draft.part)
    {}

    void run()
    {
        begin();
        m_part.id = 1;
        if (m_part.units != 1 && m_part.units != 2) {
            wrong("the units are unknown", "they are those of its sheets");
            m_part.units = likelyUnits(m_draft);
        }
        if (m_part.workLayer < 1 || m_part.workLayer > 256) {
            wrong("its work layer is not 1 to 256", "it is 1");
            m_part.workLayer = 1;
        }
        for (std::int64_t *counter : {&m_part.nextOrdinal, &m_part.nextLinkSequence}) {
            if (*counter >= 1 && *counter <= kMostNumbers) continue;
            wrong("a counter is out of range", "it is counted again");
            *counter = 1;
            m_draft.partIsSure = false;
        }
        if (m_part.layers.size() != newLayers().size()) {
            wrong("it has not 256 layers", "they are those of a new part");
            m_part.layers = m_draft.keep(newLayers());
        }
    }

private:
    void begin()
    {
        if (m_remains.part) {
            m_part = *m_remains.part;
            m_draft.partIsSure = true;
        } else if (m_remains.doubtfulPart) {
            m_part = *m_remains.doubtfulPart;
            m_part.nextOrdinal = m_part.nextLinkSequence = 1;
            wrong("its checksum does not match",
                  "units, layers and current sheet are taken as they stand there: check them");
        } else {
            m_part.units = likelyUnits(m_draft);
            m_part.workLayer = 1;
            m_part.layers = m_draft.keep(newLayers());
            wrong("it is not there", "units are those of its sheets, layers those of a new part");
        }
    }
    void wrong(const std::string &what, const std::string &mended)
    {
        m_draft.say(Kind::damage, 0, "the part's own row: " + what, mended);
    }

    const Remains &m_remains;
    Draft &m_draft;
    PartRow &m_part;
};

// --- attributes -------------------------------------------------------------------------------------

// Places are counted anew where some are missing; nameLosses() says which.
void takeAttributes(const Remains &remains, Draft &draft)
{
    for (const auto &[key, row] : remains.attributes) {
        const auto object = static_cast<Ordinal>(row.object);
        if (row.object && !draft.find(object)) {
            if (row.object > 0) draft.missing.insert(object);
            draft.say(Kind::damage, object,
                      nameOf(object, nullptr) + ": its attribute \"" + std::string(row.title) +
                          "\" is there, but not the object",
                      "it is left out");
            continue;
        }
        std::vector<AttributeRow> &rows = draft.attributes[object];
        rows.push_back(row);
        rows.back().position = static_cast<std::int64_t>(rows.size() - 1);
    }
}

} // namespace

void takeRows(const Remains &remains, Draft &draft)
{
    Masters masters;
    takeMasters(remains, draft, masters);
    for (const auto &[ordinal, row] : remains.objects) takeObject(row, masters, draft);
    PartRowStep(remains, draft).run();
    takeAttributes(remains, draft);
}

// Texts may name objects that were deleted long ago: what they refer to is not missed.
void findMissing(Draft &draft)
{
    const auto refer = [&](Ordinal ordinal) {
        if (ordinal && ordinal <= static_cast<Ordinal>(kMostNumbers) && !draft.find(ordinal))
            draft.missing.insert(ordinal);
    };
    for (const auto &[ordinal, piece] : draft.pieces) {
        refer(static_cast<Ordinal>(piece.row.view));
        refer(static_cast<Ordinal>(piece.row.owner));
        if (piece.row.kind != "pattern") refer(static_cast<Ordinal>(piece.row.refers));
        for (const StoredLink &link : piece.links) refer(link.target);
        for (const Ordinal owned : piece.owned) refer(owned);
    }
    refer(static_cast<Ordinal>(draft.part.currentSheet));
    refer(static_cast<Ordinal>(draft.part.fontTable));
}

} // namespace host::store
