// Parts for the fuzzer to begin with: small, and together with every kind of object in them.
#include "model/session.h"
#include "store/part_store.h"

#include <cstdio>
#include <filesystem>
#include <string>

using namespace host;

namespace {

std::shared_ptr<const PatternMaster> master()
{
    PatternMaster made;
    made.fileName = "FRAME";
    made.fonts = {"blockfont"};
    Note note;
    note.lines = {"a", "b"};
    made.shapes = {{{}, Line{}}, {{}, Arc{}}, {{}, Area{{{{}, {}, {}}}}}, {{}, note}};
    return std::make_shared<const PatternMaster>(made);
}

Object &udo(Part &part, const char *className)
{
    Udo made;
    made.classId = Session::get().classIdForStored(className);
    made.ints = {1, 2};
    made.doubles = {0.5};
    made.strings = {"", "text\n"};
    made.lengths = made.areas = made.volumes = {1.0};
    return Session::get().create(part, made);
}

void fill(Part &part)
{
    Session &session = Session::get();
    part.attributes = {{"NUMBER", "D-1"}};
    part.currentSheet = session.createSheet(part, "SH1", {0, 4, 0, 0, 1, 1, 1, 0}).tag;
    Object &root = udo(part, "ROOT");
    Object &child = udo(part, "CHILD");
    const Tag point = session.create(part, Point{}).tag;
    Note note;
    note.lines = {"<W!" + std::to_string(point) + "@REV>", "$<x", ""};
    note.other.ints[3] = 4;
    note.other.reals[5] = 6;
    const Tag noteTag = session.create(part, note).tag;
    session.create(part, IdSymbol{});
    session.create(part, Line{});
    session.create(part, Arc{});
    session.create(part, Area{{{{}, {}, {}}}});
    Pattern pattern;
    pattern.master = master();
    session.create(part, pattern);
    session.addLink(root, 2, child.tag);
    session.addLink(child, 4, point);
    session.addLink(child, 3, 0);
    session.own(child, {noteTag});
    session.setAttribute(point, "REV", "A");
}

} // namespace

int main(int count, char **arguments)
{
    if (count != 2) return std::fprintf(stderr, "usage: %s FOLDER\n", arguments[0]), 2;
    const std::filesystem::path folder = arguments[1];
    std::filesystem::create_directories(folder);
    store::writeImage(Session::get().newPart("/empty.prt", 1), folder / "empty");
    Part &part = Session::get().newPart("/full.prt", 2);
    fill(part);
    store::writeImage(part, folder / "full");
}
