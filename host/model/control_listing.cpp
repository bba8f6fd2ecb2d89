// Parts and sheets as text. Two with the same content list the same: no tags, no paths, doubles in
// the shortest form that gives them back bit by bit.
#include "nxhost/control.h"

#include "session.h"
#include "uf.h"
#include "uf_layer.h"
#include "ug_exception.hxx"

#include <charconv>
#include <unordered_map>

using namespace host;

namespace {

std::string number(double value)
{
    char text[32];
    const auto end = std::to_chars(text, text + sizeof text, value).ptr;
    return std::string(text, end);
}

std::string number(int value) { return std::to_string(value); }

std::string place(const Vec3 &at)
{
    return "(" + number(at.x) + ", " + number(at.y) + ", " + number(at.z) + ")";
}

std::string quoted(std::string_view text)
{
    constexpr char kHex[] = "0123456789abcdef";
    std::string result = "\"";
    for (const char letter : text) {
        const auto byte = static_cast<unsigned char>(letter);
        if (letter == '"' || letter == '\\')
            result.append("\\").push_back(letter);
        else if (byte < 0x20 || byte == 0x7F)
            result.append("\\x").append({kHex[byte >> 4], kHex[byte & 15]});
        else
            result.push_back(letter);
    }
    return result + "\"";
}

template <class T> std::string list(const std::vector<T> &values)
{
    std::string result;
    for (const T &value : values) result.append(" ").append(number(value));
    return result;
}

class Listing {
public:
    // The objects that get a line, in order of creation. Numbered: each line starts with its place.
    Listing(std::vector<const Object *> objects, bool numbered)
        : m_objects(std::move(objects)), m_numbered(numbered)
    {
        for (std::size_t i = 0; i < m_objects.size(); ++i) m_places[m_objects[i]->tag] = i + 1;
    }

    void line(std::string text)
    {
        while (text.ends_with(' ')) text.pop_back();
        m_text.append(text).append("\n");
    }
    void detail(const std::string &text) { line("    " + text); }

    std::string take()
    {
        for (const Object *object : m_objects) add(*object);
        return std::move(m_text);
    }

private:
    void add(const Object &object);
    std::string head(const Object &object) const;
    std::string reference(Tag tag) const;
    std::string withPlaces(const std::string &text) const;
    std::string lettering(const Lettering &look) const;
    void addPreferences(const NumberedPreferences &other);
    void addShape(const PatternShape &shape);

    std::string values(const Udo &udo) const;
    std::string values(const Point &point) const { return place(point.position); }
    std::string values(const Line &at) const { return place(at.start) + " to " + place(at.end); }
    std::string values(const Arc &arc) const;
    std::string values(const Area &area) const;
    std::string values(const Note &note) const;
    std::string values(const IdSymbol &symbol) const;
    std::string values(const Pattern &pattern) const;
    std::string values(const Sheet &sheet) const;
    std::string values(const View &view) const { return "of " + reference(view.sheet); }
    std::string values(const FontTable &fonts) const;

    void details(const Udo &udo);
    void details(const Area &area);
    void details(const Note &note);
    void details(const IdSymbol &symbol);
    void details(const Pattern &pattern);
    template <class T> void details(const T &) {} // all on the object's own line

    std::vector<const Object *> m_objects;
    bool m_numbered;
    std::unordered_map<Tag, std::size_t> m_places;
    std::string m_text;
};

// --- an object's line -------------------------------------------------------------------------------

void Listing::add(const Object &object)
{
    line(head(object) + visitBody([&](const auto &body) { return values(body); }, object.body));
    for (const Attribute &attribute : object.attributes)
        detail("attribute " + quoted(attribute.title) + " = " + quoted(attribute.value));
    visitBody([&](const auto &body) { details(body); }, object.body);
}

std::string Listing::head(const Object &object) const
{
    std::string text = m_numbered ? std::to_string(m_places.at(object.tag)) + " " : std::string();
    text.append(kindName(object)).append(" ");
    if (!object.name.empty()) text += quoted(object.name) + " ";
    const Appearance &look = object.appearance;
    if (!object.as<Sheet>() && !object.as<View>() && !object.as<FontTable>())
        text += "layer " + number(look.layer) + " color " + number(look.color) + " font " +
                number(look.lineFont) + " width " + number(look.lineWidth) + " ";
    if (look.blanked) text += "blanked ";
    if (object.status == Status::condemned) text += "condemned ";
    if (m_numbered && object.view) text += "in " + reference(object.view) + " ";
    if (object.owner) text += "owned by " + reference(object.owner) + " ";
    return text;
}

// The place in the listing; of an object without one, what it is.
std::string Listing::reference(Tag tag) const
{
    if (!tag) return "nothing";
    if (const auto found = m_places.find(tag); found != m_places.end())
        return "#" + std::to_string(found->second);
    Session &session = Session::get();
    const Object *object = session.find(tag);
    if (!object) return session.findPart(tag) ? "part" : "dead";
    if (const Udo *udo = object->as<Udo>()) return session.classRecord(udo->classId).name;
    return std::string(kindName(*object));
}

// "<W!tag@" with what the tag stands for.
std::string Listing::withPlaces(const std::string &text) const
{
    std::string result;
    std::size_t done = 0;
    for (std::size_t at = text.find("<W!"); at != std::string::npos; at = text.find("<W!", at)) {
        at += 3;
        Tag tag = 0;
        const char *const end = text.data() + text.size();
        const auto [behind, error] = std::from_chars(text.data() + at, end, tag);
        if (error != std::errc{} || behind == end || *behind != '@') continue;
        if (!Session::get().find(tag) && !Session::get().findPart(tag)) continue;
        result.append(text, done, at - done).append(reference(tag));
        done = static_cast<std::size_t>(behind - text.data());
    }
    return result.append(text, done, std::string::npos);
}

// --- values -----------------------------------------------------------------------------------------

std::string Listing::values(const Udo &udo) const
{
    return Session::get().classRecord(udo.classId).name;
}

std::string Listing::values(const Arc &arc) const
{
    return place(arc.centre) + " radius " + number(arc.radius) + " from " + number(arc.startAngle) +
           " to " + number(arc.endAngle);
}

std::string Listing::values(const Area &area) const
{
    return number(static_cast<int>(area.outlines.size())) + " outlines";
}

std::string Listing::values(const Note &note) const
{
    return place(note.origin) + (note.orientation ? " vertical" : "");
}

std::string Listing::values(const IdSymbol &symbol) const
{
    return place(symbol.origin) + " type " + number(symbol.type) + " size " + number(symbol.size) +
           " density " + number(symbol.density) + " leader " + number(symbol.leaderMode) + " " +
           number(symbol.leaderAttach);
}

std::string Listing::values(const Pattern &pattern) const
{
    std::string text = place(pattern.origin) + " scale " + number(pattern.scale) + " rotation";
    for (const double cell : pattern.rotation) text.append(" ").append(number(cell));
    text += " switches";
    for (const int state : pattern.switches) text.append(" ").append(number(state));
    return text;
}

std::string Listing::values(const Sheet &sheet) const
{
    const std::string size =
        sheet.sizeState == 2
            ? "custom " + number(sheet.customHeight) + " x " + number(sheet.customLength)
            : (sheet.sizeState ? "english " : "metric ") + number(sheet.sizeCode);
    return size + " scale " + number(sheet.scale) + " units " + number(sheet.units) +
           " projection " + number(sheet.projection);
}

std::string Listing::values(const FontTable &fonts) const
{
    std::string text;
    for (const std::string &name : fonts.names) text.append(quoted(name)).append(" ");
    return text;
}

// --- details ----------------------------------------------------------------------------------------

void Listing::details(const Udo &udo)
{
    if (!udo.ints.empty()) detail("ints" + list(udo.ints));
    if (!udo.doubles.empty()) detail("doubles" + list(udo.doubles));
    if (!udo.lengths.empty()) detail("lengths" + list(udo.lengths));
    if (!udo.areas.empty()) detail("areas" + list(udo.areas));
    if (!udo.volumes.empty()) detail("volumes" + list(udo.volumes));
    for (std::size_t i = 0; i < udo.strings.size(); ++i)
        detail("string " + std::to_string(i) + " " + quoted(udo.strings[i]));
    for (const Link &link : udo.links)
        detail("link " + number(link.type) + " " + reference(link.target));
    for (const Tag owned : udo.owned) detail("owns " + reference(owned));
}

void Listing::details(const Area &area)
{
    for (const std::vector<Vec3> &outline : area.outlines) {
        std::string text = "outline";
        for (const Vec3 &corner : outline) text.append(" ").append(place(corner));
        detail(text);
    }
}

std::string Listing::lettering(const Lettering &look) const
{
    return "lettering site " + number(look.site) + " justification " + number(look.justification) +
           " angle " + number(look.angle) + " size " + number(look.size) + " aspect " +
           number(look.aspect) + " gap " + number(look.charSpace) + " line space " +
           number(look.lineSpace) + " color " + number(look.color) + " font " + number(look.font) +
           " width " + number(look.width);
}

void Listing::addPreferences(const NumberedPreferences &other)
{
    for (const auto &[index, value] : other.ints)
        detail("mpi " + number(index) + " = " + number(value));
    for (const auto &[index, value] : other.reals)
        detail("mpr " + number(index) + " = " + number(value));
}

void Listing::details(const Note &note)
{
    detail(lettering(note.lettering));
    for (const std::string &text : note.lines) detail("text " + quoted(withPlaces(text)));
    if (note.userSymbolSizeType != -1)
        detail("user symbols type " + number(note.userSymbolSizeType) + " " +
               number(note.userSymbolLength) + " " + number(note.userSymbolHeight));
    addPreferences(note.other);
}

void Listing::details(const IdSymbol &symbol)
{
    detail(lettering(symbol.lettering));
    detail("text " + quoted(withPlaces(symbol.upper)));
    if (symbol.textLines > 1) detail("text " + quoted(withPlaces(symbol.lower)));
    addPreferences(symbol.other);
}

void Listing::details(const Pattern &pattern)
{
    if (!pattern.master) return;
    detail("file " + quoted(pattern.master->fileName) + " units " + number(pattern.master->units) +
           " fonts " + values(FontTable{pattern.master->fonts}));
    for (const PatternShape &shape : pattern.master->shapes) addShape(shape);
}

void Listing::addShape(const PatternShape &shape)
{
    Object drawn; // listed like an object of the part, below its pattern
    drawn.appearance = shape.appearance;
    std::visit([&](const auto &geometry) { drawn.body = geometry; }, shape.geometry);
    Listing one({&drawn}, false);
    for (std::string text = one.take(); !text.empty();) {
        const std::size_t end = text.find('\n');
        detail("shape " + text.substr(0, end));
        text.erase(0, end + 1);
    }
}

// --- what is listed ---------------------------------------------------------------------------------

std::string partLine(const Part &part)
{
    return std::string("part ") + (part.units == 1 ? "mm" : "inch") + " work layer " +
           number(part.workLayer) + (part.patternDataSaved ? " with pattern data" : "");
}

std::string layersLine(const Part &part)
{
    std::string text;
    for (int layer = UF_LAYER_MIN_LAYER; layer <= UF_LAYER_MAX_LAYER; ++layer) {
        const int status = part.layerStatus[static_cast<std::size_t>(layer)];
        if (status == UF_LAYER_REFERENCE_LAYER) text += " " + number(layer) + " reference";
        if (status == UF_LAYER_INACTIVE_LAYER) text += " " + number(layer) + " inactive";
    }
    return text;
}

} // namespace

namespace nxhost {

std::string listSheet(tag_t sheet)
{
    const Object *object = Session::get().find(sheet);
    if (!object || !object->as<Sheet>()) throw UgException(UF_err_unknown_tag);
    std::vector<const Object *> objects{object};
    const auto &views = object->part->byView;
    if (const auto found = views.find(object->as<Sheet>()->view); found != views.end())
        for (const auto &[ordinal, inView] : found->second) objects.push_back(inView);
    return Listing(std::move(objects), false).take();
}

std::string listPart(tag_t tag)
{
    const Part *part = Session::get().findPart(tag);
    if (!part) throw UgException(UF_err_unknown_tag);
    std::vector<const Object *> objects;
    objects.reserve(part->objects.size());
    for (const auto &[ordinal, object] : part->objects) objects.push_back(object);
    Listing listing(std::move(objects), true);
    listing.line(partLine(*part));
    if (const std::string layers = layersLine(*part); !layers.empty())
        listing.detail("layers" + layers);
    for (const Attribute &attribute : part->attributes)
        listing.detail("attribute " + quoted(attribute.title) + " = " + quoted(attribute.value));
    return listing.take();
}

} // namespace nxhost
