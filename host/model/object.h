// What a part holds: plain values. Only Session changes them (session.h), so that the indexes and the
// record of changes stay true.
#pragma once

#include "attributes.h"
#include "boxed.h"
#include "by_number.h"

#include "uf_defs.h"

#include <array>
#include <cstdint>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <type_traits>
#include <variant>
#include <vector>

namespace host {

using Tag = tag_t;
using ClassId = unsigned; // of a UDO class, valid in this process only

struct Vec3 {
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
    bool operator==(const Vec3 &) const = default;
};

// How an object is drawn. Numbers as in uf_obj.h; a line font of 0 is kept and drawn solid.
struct Appearance {
    int layer = 1;
    int color = 7;
    int lineFont = 1;
    int lineWidth = 0;
    bool blanked = false;
    bool operator==(const Appearance &) const = default;
};

// How a text looks. Lengths in sheet units, the angle in degrees.
struct Lettering {
    int site = 1;          // 1 top left ... 9 bottom right: which point of the box is the origin
    int justification = 1; // 1 left, 2 centre, 3 right
    double angle = 0.0;
    double size = 3.5; // height of a capital letter
    double aspect = 1.0;
    double charSpace = 1.0; // factor, 1 is the font's own spacing
    double lineSpace = 1.0; // factor, 1 gives a pitch of 1.5 heights
    int color = 7;
    int font = 1;  // index in the part's font table
    int width = 0; // pen
    bool operator==(const Lettering &) const = default;
};

struct Link {
    int type = 0;               // 1 to 4
    Tag target = 0;             // 0: a null link, kept and skipped
    unsigned status = 0;        // 1 out of date
    std::uint64_t sequence = 0; // when it was made, over the whole part
};

struct Udo {
    ClassId classId = 0;
    std::vector<int> ints;
    std::vector<double> doubles;
    std::vector<std::string> strings;
    std::vector<double> lengths;
    std::vector<double> areas;
    std::vector<double> volumes;
    std::vector<Link> links; // in order, over all types
    std::vector<Tag> owned;  // in order
};

struct Point {
    Vec3 position;
};
struct Line {
    Vec3 start;
    Vec3 end;
    bool operator==(const Line &) const = default;
};
struct Arc { // counter-clockwise; a full circle has end = start + 360
    Vec3 centre;
    double radius = 0.0;
    double startAngle = 0.0; // degrees
    double endAngle = 0.0;
    bool operator==(const Arc &) const = default;
};
struct Area { // filled by the even-odd rule
    std::vector<std::vector<Vec3>> outlines;
    bool operator==(const Area &) const = default;
};

// Preferences that only the numbered arrays know: index to value, where it differs from 0.
struct NumberedPreferences {
    std::map<int, int> ints;
    std::map<int, double> reals;
    bool operator==(const NumberedPreferences &) const = default;
};

struct Note {
    std::vector<std::string> lines; // as stored: references unresolved
    Vec3 origin;
    int orientation = 0; // 0 horizontal, 1 vertical
    Lettering lettering;
    int userSymbolSizeType = -1; // -1 until it was set
    double userSymbolLength = 0.0;
    double userSymbolHeight = 0.0;
    NumberedPreferences other;
    bool operator==(const Note &) const = default;
};

struct IdSymbol {
    int type = 1; // UF_DRF_id_symbol_type_e
    std::string upper;
    std::string lower;
    int textLines = 1;  // 1 or 2
    Vec3 origin;        // centre of the symbol
    double size = 13.0; // diameter or height over all, millimetres whatever the sheet's units
    int density = 1;    // pen
    Lettering lettering;
    int leaderMode = 1;
    int leaderAttach = 2;
    NumberedPreferences other;
};

// One shape of a pattern's geometry, in the master's own coordinates.
struct PatternShape {
    Appearance appearance;
    std::variant<Line, Arc, Area, Note> geometry;
    bool operator==(const PatternShape &) const = default;
};

// The geometry of a master part as it was when a pattern was retrieved; shared by all patterns of
// a part that were made from the same content.
struct PatternMaster {
    std::string fileName;           // as it was passed
    int units = 1;                  // 1 mm, 2 inches
    std::vector<std::string> fonts; // font table of the master, index 1 first
    std::vector<PatternShape> shapes;
    bool operator==(const PatternMaster &) const = default;
};

struct Pattern {
    std::shared_ptr<const PatternMaster> master;
    std::array<double, 9> rotation{1, 0, 0, 0, 1, 0, 0, 0, 1}; // rows
    Vec3 origin;
    double scale = 1.0;                   // unit conversion included
    std::array<int, 3> switches{0, 0, 0}; // origin, box, control points
};

struct Sheet {
    int sizeState = 0; // 0 metric code, 1 English code, 2 custom
    int sizeCode = 4;
    double customHeight = 0.0;
    double customLength = 0.0;
    double scale = 1.0;
    int units = 1;
    int projection = 1;
    Tag view = 0; // its own, made with it
};

struct View {
    Tag sheet = 0;
};

struct FontTable {
    std::vector<std::string> names; // index 1 first
};

// Most objects of a sheet are lines: what is larger stands beside.
template <class T> using InBody = std::conditional_t<(sizeof(T) > sizeof(Sheet)), Boxed<T>, T>;
using Body = std::variant<InBody<Udo>, Point, Line, Arc, Area, InBody<Note>, InBody<IdSymbol>,
                          InBody<Pattern>, Sheet, View, FontTable>;

template <class T> T *bodyAs(Body &body) // null when it is of another kind
{
    auto *held = std::get_if<InBody<T>>(&body);
    if constexpr (std::is_same_v<InBody<T>, T>)
        return held;
    else
        return held ? &**held : nullptr;
}
template <class T> const T *bodyAs(const Body &body) { return bodyAs<T>(const_cast<Body &>(body)); }

// Calls `take` with the value of whichever kind it is.
template <class Take, class B> // Body or const Body
decltype(auto) visitBody(Take &&take, B &body)
{
    return std::visit([&](auto &kind) -> decltype(auto) { return take(unboxed(kind)); }, body);
}

enum class Status { deleted = 0, temporary = 1, condemned = 2, alive = 3 };

struct Part;

struct Object {
    Tag tag = 0;
    Part *part = nullptr;
    std::uint64_t ordinal = 0; // order of creation in the part; its identity in the file
    Status status = Status::alive;
    std::string name;
    Appearance appearance;
    Tag view = 0;  // the view it depends on; 0 a model object
    Tag owner = 0; // the UDO that owns it
    Attributes attributes;
    Body body = Point{};

    template <class T> T *as() { return bodyAs<T>(body); }
    template <class T> const T *as() const { return bodyAs<T>(body); }
};

// Objects by order of creation.
using Ordered = ByNumber<Object *>;

// What the part's file holds and what has changed since, so that saving writes the difference. Kept
// by host/store; while there is no file nothing is noted.
struct Stored {
    std::string path;      // empty: neither saved nor loaded
    std::int64_t root = 0; // stands for the whole content of the file
    std::map<std::int64_t, std::shared_ptr<const PatternMaster>> masters; // by stored number
    std::uint64_t firstNew = 0;      // this object and all later ones were made since
    std::set<std::uint64_t> dirty;   // earlier ones, changed since
    std::set<std::uint64_t> removed; // earlier ones, deleted since
};

struct Part {
    Tag tag = 0;
    std::string path; // absolute
    int units = 1;    // 1 mm, 2 inches
    bool modified = false;
    bool everSaved = false;
    bool patternDataSaved = false;
    Tag currentSheet = 0;
    Tag fontTable = 0;
    Attributes attributes;
    std::array<int, 257> layerStatus{}; // [1] to [256]
    int workLayer = 1;
    std::uint64_t nextOrdinal = 1;
    std::uint64_t nextLinkSequence = 1;

    Ordered objects;                       // all that are alive or condemned
    std::map<std::size_t, Ordered> byKind; // by index of the body's alternative
    std::map<ClassId, Ordered> udosByClass;
    std::map<Tag, Ordered> byView; // by the view they depend on; 0: the model's
    std::map<std::string, Ordered, std::less<>> byName; // named objects

    Stored stored;
    void noteChange(const Object &object)
    {
        if (isStored(object)) stored.dirty.insert(object.ordinal);
    }
    void noteRemoval(const Object &object)
    {
        if (isStored(object)) stored.removed.insert(object.ordinal);
    }
    bool isStored(const Object &object) const
    {
        return !stored.path.empty() && object.ordinal < stored.firstNew;
    }
};

// Type and subtype as uf_object_types.h numbers them.
struct TypeNumbers {
    int type = 0;
    int subtype = 0;
};
TypeNumbers typeOf(const Object &object);
std::string_view kindName(const Object &object); // one word for people: "note", "sheet"

// Millimetres or inches: width and height of a sheet.
struct SheetSize {
    double width = 0.0;
    double height = 0.0;
};
SheetSize sizeOf(const Sheet &sheet); // an unknown code: Failure with UF_DRAW_err_invalid_parameter

// What a model function raises; the platform calls turn it into their code or exception.
struct Failure {
    int code;
    std::string detail; // for the system log; may be empty
};

} // namespace host
