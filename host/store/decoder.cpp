#include "body_codec.h"
#include "geometry_codec.h"
#include "texts.h"

#include <iterator>

namespace host::store {

namespace {

// In the order of Body's alternatives. Stored in every row: append, never rename.
constexpr std::string_view kKinds[] = {"udo",       "point",   "line",  "arc",  "area",      "note",
                                       "id_symbol", "pattern", "sheet", "view", "font_table"};
static_assert(std::size(kKinds) == std::variant_size_v<Body>);

} // namespace

std::string_view storedKind(std::size_t index) { return kKinds[index]; }

std::size_t kindIndex(std::string_view kind)
{
    for (std::size_t i = 0; i < std::size(kKinds); ++i)
        if (kKinds[i] == kind) return i;
    throw Malformed{"its kind is unknown"};
}

namespace {

struct Source {
    const ObjectRow &row;
    ClassId classId;
    const Masters &masters;
    References &references;
    Unpacker numbers;
};

Body decode(Source &in, Udo udo)
{
    udo.classId = in.classId;
    for (const StoredLink &link : parseLinks(in.row.links)) {
        if (link.type < 1 || link.type > 4) throw Malformed{"a link's type is not 1 to 4"};
        udo.links.push_back({link.type, 0, link.status, link.sequence});
        in.references.linkTargets.push_back(link.target);
    }
    const auto owned = parseNumbers(in.row.owned);
    udo.owned.resize(owned.size());
    in.references.owned.insert(in.references.owned.end(), owned.begin(), owned.end());
    udo.strings = splitLines(in.row.texts);
    const std::size_t ints = in.numbers.count(4);
    std::size_t reals[4];
    for (std::size_t &n : reals) n = in.numbers.count(8);
    in.numbers.values(udo.ints, ints);
    in.numbers.values(udo.doubles, reals[0]);
    in.numbers.values(udo.lengths, reals[1]);
    in.numbers.values(udo.areas, reals[2]);
    in.numbers.values(udo.volumes, reals[3]);
    return udo;
}

Body decode(Source &in, Point point)
{
    point.position = in.numbers.point();
    return point;
}

template <class Geometry> Body unpacked(Source &in, Geometry geometry)
{
    unpack(in.numbers, geometry);
    return geometry;
}

Body decode(Source &in, Line line) { return unpacked(in, line); }
Body decode(Source &in, Arc arc) { return unpacked(in, arc); }
Body decode(Source &in, Area area) { return unpacked(in, std::move(area)); }

Body decode(Source &in, Note note)
{
    note.lines = splitLines(in.row.texts);
    return unpacked(in, std::move(note));
}

Body decode(Source &in, IdSymbol symbol)
{
    std::vector<std::string> lines = splitLines(in.row.texts);
    if (lines.size() != 2) throw Malformed{"a symbol has not two texts"};
    symbol.upper = std::move(lines[0]), symbol.lower = std::move(lines[1]);
    symbol.type = in.numbers.integer(), symbol.textLines = in.numbers.integer();
    if (symbol.textLines != 1 && symbol.textLines != 2)
        throw Malformed{"a symbol shows neither one nor two texts"};
    symbol.origin = in.numbers.point(), symbol.size = in.numbers.real();
    symbol.density = in.numbers.integer();
    unpack(in.numbers, symbol.lettering);
    symbol.leaderMode = in.numbers.integer(), symbol.leaderAttach = in.numbers.integer();
    unpack(in.numbers, symbol.other);
    return symbol;
}

Body decode(Source &in, Pattern pattern)
{
    const auto master = in.masters.find(in.row.refers);
    if (in.row.refers && master == in.masters.end())
        throw Malformed{"its pattern master is missing"};
    if (in.row.refers) pattern.master = master->second;
    for (double &value : pattern.rotation) value = in.numbers.real();
    pattern.origin = in.numbers.point(), pattern.scale = in.numbers.real();
    for (int &value : pattern.switches) value = in.numbers.integer();
    return pattern;
}

Body decode(Source &in, Sheet sheet)
{
    sheet.sizeState = in.numbers.integer(), sheet.sizeCode = in.numbers.integer();
    sheet.customHeight = in.numbers.real(), sheet.customLength = in.numbers.real();
    sheet.scale = in.numbers.real();
    sheet.units = in.numbers.integer(), sheet.projection = in.numbers.integer();
    try {
        sizeOf(sheet);
    } catch (const Failure &) {
        throw Malformed{"a sheet's size is impossible"};
    }
    return sheet;
}

Body decode(Source &, View view) { return view; }

Body decode(Source &in, FontTable fonts)
{
    fonts.names = splitLines(in.row.texts);
    return fonts;
}

template <std::size_t I> Body decodeAs(Source &in)
{
    using Kind = std::remove_cvref_t<decltype(unboxed(
        std::declval<std::variant_alternative_t<I, Body> &>()))>;
    return decode(in, Kind{});
}

template <std::size_t... I> Body decodeKind(std::size_t kind, Source &in, std::index_sequence<I...>)
{
    static constexpr Body (*kDecoders[])(Source &) = {decodeAs<I>...};
    return kDecoders[kind](in);
}

} // namespace

void checkUnused(const ObjectRow &row)
{
    const bool udo = row.kind == "udo";
    const bool refers = row.kind == "sheet" || row.kind == "view" || row.kind == "pattern";
    const bool texts =
        udo || row.kind == "note" || row.kind == "id_symbol" || row.kind == "font_table";
    if ((!udo && !(row.className.empty() && row.links.empty() && row.owned.empty())) ||
        (!refers && row.refers) || (!texts && !row.texts.empty()))
        throw Malformed{"it has values that its kind does not know"};
}

Body decodeBody(const ObjectRow &row, ClassId classId, const Masters &masters,
                References &references)
{
    checkUnused(row);
    Source in{row, classId, masters, references, Unpacker(row.numbers)};
    Body body =
        decodeKind(kindIndex(row.kind), in, std::make_index_sequence<std::variant_size_v<Body>>{});
    in.numbers.end();
    return body;
}

namespace {
Status statusOf(std::int64_t stored)
{
    if (stored < 1 || stored > 3) throw Malformed{"its status is unknown"};
    return static_cast<Status>(stored);
}
} // namespace

std::unique_ptr<Object> decodeObject(const ObjectRow &row, ClassId classId, const Masters &masters,
                                     References &references)
{
    auto object = std::make_unique<Object>();
    object->ordinal = static_cast<std::uint64_t>(row.ordinal);
    object->status = statusOf(row.status);
    object->name = row.name;
    object->appearance = {checkedLayer(row.layer), narrowed(row.color), narrowed(row.lineFont),
                          narrowed(row.lineWidth), row.blanked != 0};
    object->body = decodeBody(row, classId, masters, references);
    return object;
}

// --- pattern masters ------------------------------------------------------------------------

namespace {

class ShapeReader {
public:
    explicit ShapeReader(const MasterRow &row) : m_in(row.shapes), m_lines(splitLines(row.texts)) {}

    std::vector<PatternShape> all()
    {
        constexpr std::size_t kSmallest = 28; // kind, appearance, an area without outlines
        std::vector<PatternShape> shapes(m_in.count(kSmallest));
        for (PatternShape &shape : shapes) read(shape);
        m_in.end();
        if (m_next != m_lines.size()) throw Malformed{"there are more texts than shapes use"};
        return shapes;
    }

private:
    void read(PatternShape &shape)
    {
        const int kind = m_in.integer();
        unpack(m_in, shape.appearance);
        switch (kind) {
        case 0:
            readAs<Line>(shape);
            break;
        case 1:
            readAs<Arc>(shape);
            break;
        case 2:
            readAs<Area>(shape);
            break;
        case 3:
            takeLines(readAs<Note>(shape));
            break;
        default:
            throw Malformed{"a shape's kind is unknown"};
        }
    }

    template <class Geometry> Geometry &readAs(PatternShape &shape)
    {
        auto &geometry = shape.geometry.emplace<Geometry>();
        unpack(m_in, geometry);
        return geometry;
    }

    void takeLines(Note &note)
    {
        const std::size_t n = m_in.countElsewhere();
        if (n > m_lines.size() - m_next) throw Malformed{"texts of a shape are missing"};
        const auto from = m_lines.begin() + static_cast<std::ptrdiff_t>(m_next);
        note.lines.assign(std::make_move_iterator(from),
                          std::make_move_iterator(from + static_cast<std::ptrdiff_t>(n)));
        m_next += n;
    }

    Unpacker m_in;
    std::vector<std::string> m_lines;
    std::size_t m_next = 0;
};

} // namespace

PatternMaster decodeMaster(const MasterRow &row)
{
    PatternMaster master;
    master.fileName = row.fileName;
    master.units = narrowed(row.units);
    master.fonts = splitLines(row.fonts);
    master.shapes = ShapeReader(row).all();
    return master;
}

} // namespace host::store
