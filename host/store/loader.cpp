#include "loader.h"

#include "errors.h"
#include "geometry_codec.h"
#include "model/session.h"
#include "part_row.h"
#include "texts.h"

#include <algorithm>

namespace host::store {

Loader::Loader(Database &database, std::int64_t fileSize)
    : m_database(database), m_budget(static_cast<std::size_t>(fileSize)),
      m_part(std::make_unique<Part>())
{}

LoadedPart Loader::run()
{
    m_part->tag = Session::get().newTag();
    readPart();
    readMasters();
    readObjects();
    readAttributes();
    resolve();
    try {
        checkLinks(m_objects, m_part->nextLinkSequence);
        checkOwners(m_objects);
    } catch (const Malformed &trouble) {
        fail(trouble.what);
    }
    giveOut();
    return {std::move(m_part), std::move(m_objects)};
}

void Loader::fail(const std::string &what) const { throw damaged(m_database.path(), what); }

void Loader::fail(const Object &holder, const char *what) const
{
    fail("object " + std::to_string(holder.ordinal) + ": " + what);
}

// --- rows -----------------------------------------------------------------------------------

template <class Row, class Take>
Tally Loader::readTable(std::int64_t (*key)(const Row &), Take &&take)
{
    Statement &select = m_database.kept(Row::kSelect);
    Tally tally;
    Row row;
    while (select.next()) {
        try {
            tally.add(read(select, row));
            if (select.bytesRead() > m_budget) throw Malformed{"it holds more than the file"};
            take(row);
        } catch (const Malformed &trouble) {
            fail(std::string(Row::kTable) + " " + std::to_string(key(row)) + ": " + trouble.what);
        }
    }
    return tally;
}

void Loader::readPart()
{
    const auto key = [](const PartRow &row) { return row.id; };
    const Tally tally = readTable<PartRow>(key, [&](const PartRow &row) {
        decodePart(row, *m_part);
        m_row = row;
    });
    if (tally.rows != 1) fail("the part's own row is missing");
    m_root = tally.sum;
}

namespace {
std::string mismatch(std::string_view table, const Tally &found, const Tally &stored)
{
    std::string text = "table " + std::string(table);
    if (found.rows != stored.rows)
        return text + " has " + std::to_string(found.rows) + " rows where " +
               std::to_string(stored.rows) + " were stored";
    return text + ": rows are from another state of the part";
}
} // namespace

void Loader::readMasters()
{
    const auto key = [](const MasterRow &row) { return row.id; };
    const Tally tally = readTable<MasterRow>(key, [&](const MasterRow &row) {
        auto &master = m_masters[row.id];
        if (row.id < 1 || master) throw Malformed{"its number is used twice or below 1"};
        master = std::make_shared<PatternMaster>(decodeMaster(row));
    });
    if (tally != m_row.masters) fail(mismatch(MasterRow::kTable, tally, m_row.masters));
}

void Loader::readObjects()
{
    // No more than the file can hold, whatever the count says: a row takes 60 bytes at least.
    const auto likely =
        std::min(static_cast<std::uint64_t>(std::max<std::int64_t>(m_row.objects.rows, 0)),
                 static_cast<std::uint64_t>(m_budget / 60));
    m_objects.reserve(likely);
    m_outer.reserve(likely);
    const auto key = [](const ObjectRow &row) { return row.ordinal; };
    const Tally tally = readTable<ObjectRow>(key, [&](const ObjectRow &row) { take(row); });
    if (tally != m_row.objects) fail(mismatch(ObjectRow::kTable, tally, m_row.objects));
    m_ordinals.finish();
}

void Loader::readAttributes()
{
    const auto key = [](const AttributeRow &row) { return row.object; };
    const Tally tally = readTable<AttributeRow>(key, [&](const AttributeRow &row) { take(row); });
    if (tally != m_row.attributes) fail(mismatch(AttributeRow::kTable, tally, m_row.attributes));
}

// A refused file leaves no class behind: names become ids at the very end.
ClassId Loader::placeOfClass(std::string_view name)
{
    const auto known = m_classPlaces.find(name);
    if (known != m_classPlaces.end()) return known->second;
    m_classNames.emplace_back(name);
    return m_classPlaces[m_classNames.back()] = static_cast<ClassId>(m_classNames.size() - 1);
}

void Loader::giveOut()
{
    std::vector<ClassId> ids;
    for (const std::string &name : m_classNames)
        ids.push_back(Session::get().classIdForStored(name));
    for (const auto &object : m_objects)
        if (Udo *udo = object->as<Udo>()) udo->classId = ids[udo->classId];
    m_part->stored.root = m_root;
    m_part->stored.masters.insert(m_masters.begin(), m_masters.end());
}

namespace {
bool mayRefer(const ObjectRow &row)
{
    return (row.kind == "note" || row.kind == "id_symbol") && hasReference(row.texts);
}
} // namespace

void Loader::take(const ObjectRow &row)
{
    const auto ordinal = static_cast<std::uint64_t>(row.ordinal);
    if (row.ordinal < 1 || ordinal >= m_part->nextOrdinal ||
        (m_ordinals.size() && ordinal <= m_ordinals[m_ordinals.size() - 1]))
        throw Malformed{"its ordinal is out of range or out of order"};
    const ClassId id = row.kind == "udo" ? placeOfClass(row.className) : 0;
    auto object = decodeObject(row, id, m_masters, m_references);
    object->part = m_part.get();
    object->tag = Session::get().newTag();
    m_outer.push_back({static_cast<std::uint64_t>(row.view), static_cast<std::uint64_t>(row.owner),
                       static_cast<std::uint64_t>(row.refers)});
    if (mayRefer(row)) m_referring.push_back(object.get());
    m_ordinals.add(ordinal);
    m_objects.push_back(std::move(object));
}

void Loader::take(const AttributeRow &row)
{
    Attributes *attributes = &m_part->attributes;
    if (row.object) {
        const std::size_t place = m_ordinals.find(static_cast<std::uint64_t>(row.object));
        if (place == Ordinals::kNone)
            throw Malformed{"an attribute of an object that is not there"};
        attributes = &m_objects[place]->attributes;
    }
    if (row.position != static_cast<std::int64_t>(attributes->size()))
        throw Malformed{"an attribute is missing or out of order"};
    attributes->add({std::string(row.title), std::string(row.value)});
}

// --- references -----------------------------------------------------------------------------

Object &Loader::require(std::uint64_t ordinal, const Object &holder, const char *as)
{
    const std::size_t place = m_ordinals.find(ordinal);
    if (place == Ordinals::kNone)
        fail(holder, (std::string(as) + " " + std::to_string(ordinal) + " is not there").c_str());
    return *m_objects[place];
}

std::uint64_t Loader::tagOf(std::uint64_t ordinal) const
{
    if (ordinal == kPartItself) return m_part->tag;
    const std::size_t place = m_ordinals.find(ordinal);
    return place == Ordinals::kNone ? 0 : m_objects[place]->tag;
}

void Loader::resolve()
{
    for (std::size_t place = 0; place < m_objects.size(); ++place) resolveObject(place);
    resolveTexts();
    const auto partRefers = [&](std::int64_t ordinal, const char *as) -> Object * {
        if (!ordinal) return nullptr;
        const std::size_t place = m_ordinals.find(static_cast<std::uint64_t>(ordinal));
        if (place == Ordinals::kNone) fail(std::string("the part's ") + as + " is not there");
        return m_objects[place].get();
    };
    if (const Object *sheet = partRefers(m_row.currentSheet, "current sheet")) {
        if (!sheet->as<Sheet>()) fail("the part's current sheet is no sheet");
        m_part->currentSheet = sheet->tag;
    }
    const Object *fonts = partRefers(m_row.fontTable, "font table");
    if (!fonts) fail("the part has no font table");
    if (!fonts->as<FontTable>()) fail("the part's font table is no font table");
    m_part->fontTable = fonts->tag;
    for (const auto &object : m_objects)
        if (object->as<FontTable>() && object.get() != fonts) fail("the part has two font tables");
}

void Loader::resolveObject(std::size_t place)
{
    Object &object = *m_objects[place];
    const Outer &outer = m_outer[place];
    if (outer.view) {
        const Object &view = require(outer.view, object, "its view");
        if (!view.as<View>()) fail(object, "its view is no view");
        object.view = view.tag;
    }
    if (Udo *udo = object.as<Udo>()) resolveUdo(object, *udo);
    if (object.as<Sheet>() || object.as<View>()) resolveSheetAndView(object, outer.refers);
    if (!outer.owner) return;
    // The owner's list names it, whichever of the two comes first; checkOwners() sees the rest.
    const Object &owner = require(outer.owner, object, "its owner");
    if (!owner.as<Udo>()) fail(object, "its owner is no UDO");
    object.owner = owner.tag;
}

void Loader::resolveUdo(Object &object, Udo &udo)
{
    for (Link &link : udo.links) {
        const std::uint64_t ordinal = m_references.linkTargets[m_nextTarget++];
        if (!ordinal) continue; // a null link
        const Object &target = require(ordinal, object, "the linked object");
        if (target.as<FontTable>()) fail(object, "it is linked to the font table");
        link.target = target.tag;
    }
    for (Tag &tag : udo.owned) {
        const std::uint64_t ordinal = m_references.owned[m_nextOwned++];
        const std::size_t place = m_ordinals.find(ordinal);
        if (place == Ordinals::kNone || m_outer[place].owner != object.ordinal)
            fail(object, "an owned object is not there or owned by another");
        tag = m_objects[place]->tag;
    }
}

void Loader::resolveSheetAndView(Object &object, std::uint64_t refers)
{
    const auto agree = [&](const Object &other) {
        if (m_outer[m_ordinals.find(other.ordinal)].refers != object.ordinal)
            fail(object, "a sheet and its view do not belong together");
        return other.tag;
    };
    if (Sheet *sheet = object.as<Sheet>()) {
        const Object &view = require(refers, object, "its view");
        if (!view.as<View>()) fail(object, "its view is no view");
        sheet->view = agree(view);
    } else if (View *view = object.as<View>()) {
        const Object &sheetOfView = require(refers, object, "its sheet");
        if (!sheetOfView.as<Sheet>()) fail(object, "its sheet is no sheet");
        view->sheet = agree(sheetOfView);
    }
}

void Loader::resolveTexts()
{
    const auto toTag = [this](std::uint64_t ordinal) { return tagOf(ordinal); };
    const auto follow = [&](std::string &text) {
        if (hasReference(text)) text = withReferences(text, toTag);
    };
    for (Object *object : m_referring) {
        if (Note *note = object->as<Note>())
            for (std::string &line : note->lines) follow(line);
        if (IdSymbol *symbol = object->as<IdSymbol>()) follow(symbol->upper), follow(symbol->lower);
    }
    for (auto &[id, master] : m_masters)
        for (PatternShape &shape : master->shapes)
            if (Note *note = std::get_if<Note>(&shape.geometry))
                for (std::string &line : note->lines) follow(line);
}

} // namespace host::store
