#include "body_codec.h"
#include "geometry_codec.h"
#include "model/session.h"
#include "texts.h"

namespace host::store {

Encoder::Encoder(const Part &part, const MasterIds &masterIds)
    : m_part(part), m_masterIds(masterIds), m_toOrdinal([this](std::uint64_t tag) {
          if (m_part.tag && tag == m_part.tag) return kPartItself;
          return tag <= Tag(-1) ? ordinalOf(static_cast<Tag>(tag)) : 0;
      })
{}

std::uint64_t Encoder::ordinalOf(Tag tag) const
{
    if (!tag) return 0;
    const Object *object = Session::get().find(tag);
    return object && object->part == &m_part ? object->ordinal : 0;
}

ObjectRow Encoder::row(const Object &object)
{
    ObjectRow row;
    row.ordinal = static_cast<std::int64_t>(object.ordinal);
    row.kind = storedKind(object.body.index());
    row.name = object.name;
    row.status = static_cast<std::int64_t>(object.status);
    row.layer = object.appearance.layer;
    row.color = object.appearance.color;
    row.lineFont = object.appearance.lineFont;
    row.lineWidth = object.appearance.lineWidth;
    row.blanked = object.appearance.blanked;
    row.view = static_cast<std::int64_t>(ordinalOf(object.view));
    row.owner = static_cast<std::int64_t>(ordinalOf(object.owner));
    for (std::string *text : {&m_links, &m_owned, &m_texts, &m_numbers}) text->clear();
    visitBody([&](const auto &body) { encode(body, row); }, object.body);
    row.links = m_links, row.owned = m_owned, row.texts = m_texts, row.numbers = m_numbers;
    return row;
}

void Encoder::encode(const Udo &udo, ObjectRow &row)
{
    row.className = Session::get().classRecord(udo.classId).name;
    std::vector<StoredLink> links;
    links.reserve(udo.links.size());
    for (const Link &link : udo.links)
        links.push_back({link.type, ordinalOf(link.target), link.status, link.sequence});
    appendLinks(m_links, links);
    std::vector<std::uint64_t> owned;
    for (const Tag tag : udo.owned) owned.push_back(ordinalOf(tag));
    appendNumbers(m_owned, owned);
    for (const std::string &text : udo.strings) appendLine(m_texts, text);
    Packer out(m_numbers);
    out.count(udo.ints.size());
    for (const auto *reals : {&udo.doubles, &udo.lengths, &udo.areas, &udo.volumes})
        out.count(reals->size());
    out.values(udo.ints);
    for (const auto *reals : {&udo.doubles, &udo.lengths, &udo.areas, &udo.volumes})
        out.values(*reals);
}

void Encoder::encode(const Point &point, ObjectRow &) { Packer(m_numbers).point(point.position); }

namespace {
template <class Geometry> void packAlone(std::string &numbers, const Geometry &geometry)
{
    Packer out(numbers);
    pack(out, geometry);
}
} // namespace

void Encoder::encode(const Line &line, ObjectRow &) { packAlone(m_numbers, line); }
void Encoder::encode(const Arc &arc, ObjectRow &) { packAlone(m_numbers, arc); }
void Encoder::encode(const Area &area, ObjectRow &) { packAlone(m_numbers, area); }

void Encoder::addReferring(const std::string &text)
{
    if (hasReference(text))
        appendLine(m_texts, withReferences(text, m_toOrdinal));
    else
        appendLine(m_texts, text);
}

void Encoder::encode(const Note &note, ObjectRow &)
{
    for (const std::string &line : note.lines) addReferring(line);
    packAlone(m_numbers, note);
}

void Encoder::encode(const IdSymbol &symbol, ObjectRow &)
{
    addReferring(symbol.upper);
    addReferring(symbol.lower);
    Packer out(m_numbers);
    out.integer(symbol.type), out.integer(symbol.textLines), out.point(symbol.origin);
    out.real(symbol.size), out.integer(symbol.density);
    pack(out, symbol.lettering);
    out.integer(symbol.leaderMode), out.integer(symbol.leaderAttach);
    pack(out, symbol.other);
}

void Encoder::encode(const Pattern &pattern, ObjectRow &row)
{
    if (pattern.master) row.refers = m_masterIds.at(pattern.master.get());
    Packer out(m_numbers);
    for (const double value : pattern.rotation) out.real(value);
    out.point(pattern.origin), out.real(pattern.scale);
    for (const int value : pattern.switches) out.integer(value);
}

void Encoder::encode(const Sheet &sheet, ObjectRow &row)
{
    row.refers = static_cast<std::int64_t>(ordinalOf(sheet.view));
    Packer out(m_numbers);
    out.integer(sheet.sizeState), out.integer(sheet.sizeCode);
    out.real(sheet.customHeight), out.real(sheet.customLength), out.real(sheet.scale);
    out.integer(sheet.units), out.integer(sheet.projection);
}

void Encoder::encode(const View &view, ObjectRow &row)
{
    row.refers = static_cast<std::int64_t>(ordinalOf(view.sheet));
}

void Encoder::encode(const FontTable &fonts, ObjectRow &)
{
    for (const std::string &name : fonts.names) appendLine(m_texts, name);
}

// --- pattern masters ------------------------------------------------------------------------

MasterRow Encoder::row(std::int64_t id, const PatternMaster &master)
{
    for (std::string *text : {&m_texts, &m_numbers, &m_fonts}) text->clear();
    for (const std::string &font : master.fonts) appendLine(m_fonts, font);
    Packer out(m_numbers);
    out.count(master.shapes.size());
    for (const PatternShape &shape : master.shapes) {
        out.integer(static_cast<int>(shape.geometry.index()));
        pack(out, shape.appearance);
        std::visit([&](const auto &geometry) { pack(out, geometry); }, shape.geometry);
        if (const Note *note = std::get_if<Note>(&shape.geometry)) {
            out.count(note->lines.size());
            for (const std::string &line : note->lines) addReferring(line);
        }
    }
    return {id, master.fileName, master.units, m_fonts, m_texts, m_numbers};
}

} // namespace host::store
