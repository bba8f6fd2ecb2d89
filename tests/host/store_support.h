// What the tests of part files share: folders that go away, sample parts, and a listing of a part that
// shows every stored bit.
#pragma once

#include "model/session.h"
#include "store/part_store.h"

#include <bit>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <limits>
#include <sstream>
#include <string>
#include <unistd.h>

namespace store_test {

namespace fs = std::filesystem;
using namespace host;

class Folder {
public:
    Folder()
    {
        std::string name = (fs::temp_directory_path() / "qelfmt-store-XXXXXX").string();
        m_path = ::mkdtemp(name.data());
    }
    ~Folder()
    {
        std::error_code ignored;
        fs::permissions(m_path, fs::perms::owner_all, ignored);
        fs::remove_all(m_path, ignored);
    }
    Folder(const Folder &) = delete;
    Folder &operator=(const Folder &) = delete;

    std::string file(const std::string &name) const { return (m_path / name).string(); }
    std::string path() const { return m_path.string(); }
    std::vector<std::string> names() const
    {
        std::vector<std::string> all;
        for (const auto &entry : fs::directory_iterator(m_path))
            all.push_back(entry.path().filename().string());
        std::sort(all.begin(), all.end());
        return all;
    }

private:
    fs::path m_path;
};

inline std::string bytesOf(const std::string &path)
{
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

inline void putBytes(const std::string &path, const std::string &bytes)
{
    std::ofstream(path, std::ios::binary | std::ios::trunc) << bytes;
}

inline void putByte(const std::string &path, std::size_t at, int byte)
{
    std::fstream file(path, std::ios::binary | std::ios::in | std::ios::out);
    file.seekp(static_cast<std::streamoff>(at)).put(static_cast<char>(byte));
}

inline Part &opened(const std::string &path)
{
    store::LoadedPart loaded = store::load(path);
    return Session::get().adoptPart(std::move(loaded.part), std::move(loaded.objects));
}

// Writes the part, closes it and opens it again.
inline Part &reopened(Part &part, const std::string &path)
{
    store::writeImage(part, path);
    Session::get().closePart(part);
    return opened(path);
}

inline double soakShare()
{
    const char *share = std::getenv("QELFMT_SOAK_SHARE");
    return share ? std::atof(share) : 0.05;
}

// --- every bit of a part as text ------------------------------------------------------------------

class Listing {
public:
    explicit Listing(const Part &part) : m_part(part)
    {
        m_out << "part " << part.units << ' ' << part.patternDataSaved << ' ' << part.workLayer
              << ' ' << ordinal(part.currentSheet) << ' ' << ordinal(part.fontTable) << ' '
              << part.nextOrdinal << ' ' << part.nextLinkSequence << '\n';
        for (std::size_t i = 1; i < part.layerStatus.size(); ++i) m_out << part.layerStatus[i];
        attributes(part.attributes);
        for (const auto &[number, object] : part.objects) add(*object);
    }

    std::string text() const { return m_out.str(); }

private:
    std::string ordinal(Tag tag) const
    {
        const Object *object = Session::get().find(tag);
        if (!object) return "-";
        return (object->part == &m_part ? "#" : "foreign #") + std::to_string(object->ordinal);
    }
    void add(const Object &object)
    {
        m_out << "\n#" << object.ordinal << ' ' << kindName(object) << ' '
              << static_cast<int>(object.status) << " '" << object.name << "' view "
              << ordinal(object.view) << " owner " << ordinal(object.owner);
        add(object.appearance);
        attributes(object.attributes);
        visitBody([&](const auto &body) { add(body); }, object.body);
    }
    void attributes(const Attributes &all)
    {
        for (const Attribute &attribute : all)
            m_out << " [" << attribute.title << '=' << attribute.value << ']';
    }
    void add(int value) { m_out << ' ' << value; }
    void add(double value)
    {
        m_out << ' ' << std::hex << std::bit_cast<std::uint64_t>(value) << std::dec;
    }
    void add(const Vec3 &p) { add(p.x), add(p.y), add(p.z); }
    void add(const std::string &text) { m_out << " '" << text << '\''; }
    template <class T> void add(const std::vector<T> &all)
    {
        m_out << " (" << all.size();
        for (const T &one : all) add(one);
        m_out << ')';
    }
    void add(const Appearance &a)
    {
        m_out << " look " << a.layer << ' ' << a.color << ' ' << a.lineFont << ' ' << a.lineWidth
              << ' ' << a.blanked;
    }
    void add(const Lettering &l)
    {
        for (const int value : {l.site, l.justification, l.color, l.font, l.width}) add(value);
        for (const double value : {l.angle, l.size, l.aspect, l.charSpace, l.lineSpace}) add(value);
    }
    void add(const NumberedPreferences &other)
    {
        for (const auto &[index, value] : other.ints) m_out << " i" << index << '=' << value;
        for (const auto &[index, value] : other.reals) m_out << " r" << index << '=', add(value);
    }
    void add(const Link &link)
    {
        m_out << " {" << link.type << ' ' << ordinal(link.target) << ' ' << link.status << ' '
              << link.sequence << '}';
    }
    void add(const Udo &udo)
    {
        m_out << ' ' << Session::get().classRecord(udo.classId).name;
        add(udo.ints), add(udo.doubles), add(udo.strings);
        add(udo.lengths), add(udo.areas), add(udo.volumes), add(udo.links);
        for (const Tag tag : udo.owned) m_out << " owns " << ordinal(tag);
    }
    void add(const Point &point) { add(point.position); }
    void add(const Line &line) { add(line.start), add(line.end); }
    void add(const Arc &arc)
    {
        add(arc.centre), add(arc.radius), add(arc.startAngle), add(arc.endAngle);
    }
    void add(const Area &area) { add(area.outlines); }
    void add(const Note &note)
    {
        add(withoutTags(note.lines)), add(note.origin), add(note.orientation), add(note.lettering);
        add(note.userSymbolSizeType), add(note.userSymbolLength), add(note.userSymbolHeight);
        add(note.other);
    }
    void add(const IdSymbol &symbol)
    {
        add(symbol.type), add(withoutTags({symbol.upper, symbol.lower})), add(symbol.textLines);
        add(symbol.origin), add(symbol.size), add(symbol.density), add(symbol.lettering);
        add(symbol.leaderMode), add(symbol.leaderAttach), add(symbol.other);
    }
    void add(const PatternShape &shape)
    {
        add(shape.appearance);
        std::visit([&](const auto &geometry) { add(geometry); }, shape.geometry);
    }
    void add(const Pattern &pattern)
    {
        if (!pattern.master) return;
        add(pattern.master->fileName), add(pattern.master->units), add(pattern.master->fonts);
        add(pattern.master->shapes);
        for (const double value : pattern.rotation) add(value);
        add(pattern.origin), add(pattern.scale);
        for (const int value : pattern.switches) add(value);
    }
    void add(const Sheet &sheet)
    {
        for (const int value : {sheet.sizeState, sheet.sizeCode, sheet.units, sheet.projection})
            add(value);
        add(sheet.customHeight), add(sheet.customLength), add(sheet.scale);
        m_out << " shown by " << ordinal(sheet.view);
    }
    void add(const View &view) { m_out << " of " << ordinal(view.sheet); }
    void add(const FontTable &fonts) { add(fonts.names); }

    // "<W!20017@X>" as "<W!#5@X>": tags differ from session to session.
    std::vector<std::string> withoutTags(std::vector<std::string> lines) const
    {
        for (std::string &line : lines) {
            const std::size_t at = line.find("<W!");
            const std::size_t end = at == line.npos ? at : line.find('@', at);
            if (end == line.npos) continue;
            const auto tag = std::strtoul(line.c_str() + at + 3, nullptr, 10);
            line.replace(at + 3, end - at - 3, ordinal(static_cast<Tag>(tag)));
        }
        return lines;
    }

    const Part &m_part;
    std::ostringstream m_out;
};

inline std::string listing(const Part &part) { return Listing(part).text(); }

// --- sample parts ---------------------------------------------------------------------------------

inline double nanWithPayload() { return std::bit_cast<double>(std::uint64_t{0xfff4dead00beef01}); }

inline Object &newUdo(Part &part, const std::string &className)
{
    Udo udo;
    udo.classId = Session::get().classIdForStored(className);
    return Session::get().create(part, std::move(udo));
}

inline Object &newNote(Part &part, std::vector<std::string> lines)
{
    Note note;
    note.lines = std::move(lines);
    return Session::get().create(part, std::move(note));
}

inline std::shared_ptr<const PatternMaster> sampleMaster()
{
    PatternMaster master;
    master.fileName = "FRAME_A3";
    master.units = 2;
    master.fonts = {"blockfont", "leroy"};
    Note note;
    note.lines = {"two", "lines\\n"};
    note.other.reals[7] = -0.0;
    Area area{{{{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}, {}}};
    master.shapes = {{{}, Line{{0, 0, 0}, {420, 297, 0}}},
                     {{3, 5, 2, 5, true}, Arc{{1, 2, 3}, 4, 0, 360}},
                     {{}, area},
                     {{}, note}};
    return std::make_shared<const PatternMaster>(master);
}

// One object of every kind that is not a UDO, sheet, view or font table, all values unlike the
// defaults.
inline std::vector<Tag> addOneOfEach(Part &part, int seed)
{
    Session &session = Session::get();
    const double x = seed / 7.0;
    std::vector<Tag> made;
    const auto add = [&](Body body) -> Object & {
        Object &object = session.create(part, std::move(body));
        object.appearance = {1 + seed % 256, 11, 2, 5, seed % 3 == 0};
        made.push_back(object.tag);
        return object;
    };
    add(Point{{x, -0.0, 1e300}});
    add(Line{{x, 0, 0}, {0, x, 0}});
    add(Arc{{x, x, 0}, 5, 10, 370});
    add(Area{{{{0, 0, 0}, {x, 0, 0}, {0, x, 0}}, {{1, 1, 0}}}});
    Note note;
    note.lines = {"Ma\xdf \xe9 caf\xc3\xa9", "", "<W!" + std::to_string(made[0]) + "@REV>"};
    note.origin = {x, 1, 2};
    note.orientation = 1;
    note.lettering = {9, 3, 12.5, 7, 0.8, 1.1, 1.2, 4, 2, 5};
    note.userSymbolSizeType = 2, note.userSymbolLength = x, note.userSymbolHeight = 3;
    note.other.ints = {{4, 1}, {90, -2}};
    note.other.reals = {{12, nanWithPayload()}};
    session.rename(add(note), "note " + std::to_string(seed));
    IdSymbol symbol;
    symbol.type = 7, symbol.upper = "A\\B\nC", symbol.textLines = 2, symbol.size = x;
    symbol.density = 2, symbol.leaderMode = 3, symbol.leaderAttach = 4;
    symbol.other.ints[1] = seed;
    add(symbol);
    Pattern pattern;
    pattern.master = sampleMaster();
    pattern.rotation[3] = x, pattern.origin = {1, 2, 3}, pattern.scale = 25.4;
    pattern.switches = {1, 0, 1};
    add(pattern);
    return made;
}

// Three sheets and about as many objects as asked for, of every kind, linked and owned.
inline Part &samplePart(const std::string &path, int objects)
{
    Session &session = Session::get();
    Part &part = session.newPart(path, 1);
    part.attributes = {{"NUMBER", "D-100"}, {"", "no title"}, {"EMPTY", ""}};
    part.layerStatus[7] = 4, part.workLayer = 3, part.patternDataSaved = true;
    part.currentSheet = 0;
    std::vector<Tag> sheets;
    for (const char *name : {"SH1", "SH2", "SH3"})
        sheets.push_back(session.createSheet(part, name, {2, 0, 297, 420, 1.5, 2, 2, 0}).tag);
    Object &root = newUdo(part, "SAMPLE_ROOT");
    for (int seed = 1; static_cast<int>(part.objects.size()) < objects; ++seed) {
        part.currentSheet = seed % 4 ? sheets[static_cast<std::size_t>(seed % 3)] : 0;
        const std::vector<Tag> made = addOneOfEach(part, seed);
        Object &child = newUdo(part, seed % 2 ? "SAMPLE_ODD" : "SAMPLE_EVEN");
        *child.as<Udo>() = {child.as<Udo>()->classId,
                            {seed, -1, 1 << 30},
                            {seed / 3.0, nanWithPayload(), -0.0},
                            {"text " + std::to_string(seed), "", "tab\there\n\\n\n"},
                            {1.5},
                            {2.5, 3.5},
                            {},
                            {},
                            {}};
        session.own(child, {made[4], made[1], made[2]});
        session.addLink(root, 2, child.tag);
        session.addLink(child, 4, made[3]);
        session.addLink(child, 3, made[0]);
        session.addLink(child, 1, sheets[0]);
        session.addLink(child, 3, 0);
        child.attributes = {{"TITLE", "value " + std::to_string(seed)}, {"\xff\xfe", "\x80"}};
        if (seed % 5 == 0) session.remove(made[3]);
    }
    part.currentSheet = sheets[1];
    return part;
}

} // namespace store_test
