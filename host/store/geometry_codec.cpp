#include "geometry_codec.h"

namespace host::store {

int checkedLayer(std::int64_t layer)
{
    if (layer < 1 || layer > 256) throw Malformed{"a layer is not 1 to 256"};
    return static_cast<int>(layer);
}

// --- writing --------------------------------------------------------------------------------

void pack(Packer &out, const Appearance &a)
{
    out.integer(a.layer), out.integer(a.color), out.integer(a.lineFont);
    out.integer(a.lineWidth), out.integer(a.blanked);
}

void pack(Packer &out, const Lettering &l)
{
    out.integer(l.site), out.integer(l.justification);
    out.real(l.angle), out.real(l.size), out.real(l.aspect);
    out.real(l.charSpace), out.real(l.lineSpace);
    out.integer(l.color), out.integer(l.font), out.integer(l.width);
}

void pack(Packer &out, const NumberedPreferences &preferences)
{
    out.count(preferences.ints.size());
    for (const auto &[index, value] : preferences.ints) out.integer(index), out.integer(value);
    out.count(preferences.reals.size());
    for (const auto &[index, value] : preferences.reals) out.integer(index), out.real(value);
}

void pack(Packer &out, const Line &line) { out.point(line.start), out.point(line.end); }

void pack(Packer &out, const Arc &arc)
{
    out.point(arc.centre), out.real(arc.radius);
    out.real(arc.startAngle), out.real(arc.endAngle);
}

void pack(Packer &out, const Area &area)
{
    out.count(area.outlines.size());
    for (const auto &outline : area.outlines) {
        out.count(outline.size());
        for (const Vec3 &corner : outline) out.point(corner);
    }
}

void pack(Packer &out, const Note &note)
{
    out.point(note.origin), out.integer(note.orientation);
    pack(out, note.lettering);
    out.integer(note.userSymbolSizeType);
    out.real(note.userSymbolLength), out.real(note.userSymbolHeight);
    pack(out, note.other);
}

// --- reading --------------------------------------------------------------------------------

void unpack(Unpacker &in, Appearance &a)
{
    a.layer = checkedLayer(in.integer());
    a.color = in.integer(), a.lineFont = in.integer(), a.lineWidth = in.integer();
    a.blanked = in.integer() != 0;
}

void unpack(Unpacker &in, Lettering &l)
{
    l.site = in.integer(), l.justification = in.integer();
    l.angle = in.real(), l.size = in.real(), l.aspect = in.real();
    l.charSpace = in.real(), l.lineSpace = in.real();
    l.color = in.integer(), l.font = in.integer(), l.width = in.integer();
}

void unpack(Unpacker &in, NumberedPreferences &preferences)
{
    for (std::size_t n = in.count(8); n; --n) {
        const int index = in.integer();
        preferences.ints[index] = in.integer();
    }
    for (std::size_t n = in.count(12); n; --n) {
        const int index = in.integer();
        preferences.reals[index] = in.real();
    }
}

void unpack(Unpacker &in, Line &line) { line.start = in.point(), line.end = in.point(); }

void unpack(Unpacker &in, Arc &arc)
{
    arc.centre = in.point(), arc.radius = in.real();
    arc.startAngle = in.real(), arc.endAngle = in.real();
}

void unpack(Unpacker &in, Area &area)
{
    area.outlines.resize(in.count(4));
    for (auto &outline : area.outlines) {
        outline.resize(in.count(24));
        for (Vec3 &corner : outline) corner = in.point();
    }
}

void unpack(Unpacker &in, Note &note)
{
    note.origin = in.point(), note.orientation = in.integer();
    unpack(in, note.lettering);
    note.userSymbolSizeType = in.integer();
    note.userSymbolLength = in.real(), note.userSymbolHeight = in.real();
    unpack(in, note.other);
}

} // namespace host::store
