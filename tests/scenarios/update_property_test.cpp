// A sheet that was brought up to date is the sheet that would be placed today with the same values,
// whatever somebody did to the definitions.
#include "app/update.h"
#include "tests/drawing/stage.h"
#include "tests/scenarios/update_world.h"

#include "content/entry.h"

#include "nxhost/authoring.h"
#include "uf_curve.h"
#include "uf_draw.h"

#include <algorithm>
#include <cstdio>
#include <iterator>
#include <map>
#include <regex>
#include <set>
#include <sstream>

namespace {

using Lines = std::vector<std::string>;

// --- a sheet as text -----------------------------------------------------------------------------------

// Numbers to a millionth: the same place reached by two ways.
std::string rounded(const std::string &line)
{
    static const std::regex number(R"(-?\d+\.\d+(e-?\d+)?|-?\d+e-\d+)");
    std::string result;
    auto at = line.begin();
    for (std::sregex_iterator one(line.begin(), line.end(), number), end; one != end; ++one) {
        result.append(at, line.begin() + one->position());
        char text[40];
        std::snprintf(text, sizeof text, "%.5f", std::stod(one->str()) + 0.0);
        std::string shown = text;
        while (shown.ends_with('0')) shown.pop_back();
        if (shown.ends_with('.')) shown.pop_back();
        result += shown == "-0" ? "0" : shown;
        at = line.begin() + one->position() + one->length();
    }
    return result.append(at, line.end());
}

// What can be seen, in no order. The carrier of shared values is left out, since what it holds is
// never withdrawn, and so are notes that have no lines any more: they show nothing.
std::string visible(tag_t sheet)
{
    std::vector<std::string> objects;
    std::istringstream lines(nxhost::listSheet(sheet));
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with("    "))
            objects.back() += "\n" + rounded(line);
        else
            objects.push_back(rounded(line));
    }
    std::string result;
    objects.front().erase(0, objects.front().rfind('"') + 1); // the sheet, without its name
    std::sort(objects.begin(), objects.end());
    for (const std::string &object : objects) {
        const bool emptyNote =
            object.starts_with("note") && object.find("\n    text ") == std::string::npos;
        if (!object.starts_with("point") && !emptyNote) result += object + "\n";
    }
    return result;
}

// The way to a field: block, table and row (both empty for the block's own), field.
struct Path {
    std::string block, table;
    int row = 0;
    std::string field;
    auto operator<=>(const Path &) const = default;
    friend std::ostream &operator<<(std::ostream &out, const Path &path)
    {
        return out << path.block << '/' << path.table << '/' << path.row << '/' << path.field;
    }
};
using Values = std::vector<std::pair<Path, Lines>>; // in stored order

class UpdateProperty : public testing::Test {
protected:
    void run(int edits, unsigned seed)
    {
        DefinitionWorld world(seed);
        for (int done = 0; done < edits && !HasFailure(); done += 20) {
            SCOPED_TRACE("history from edit " + std::to_string(done));
            world.reset();
            history(world, std::min(20, edits - done));
        }
    }

private:
    // One sheet through many definitions.
    void history(DefinitionWorld &world, int edits)
    {
        Story story;
        m_story = &story;
        m_art.clear();
        tag_t sheet = story.newSheet();
        load(world);
        place(world, sheet);
        for (int i = 0; i < edits && !HasFailure(); ++i) {
            SCOPED_TRACE("edit " + std::to_string(i));
            type(world, sheet);
            step(world, sheet);
            if (i % 5 == 4) sheet = reopened(sheet);
        }
        Catalog::unload();
    }

    void step(DefinitionWorld &world, tag_t sheet)
    {
        const Values before = valuesOn(sheet);
        // A field that was given a computed one's definition has lost its value before we come.
        const bool miswire = world.upTo(3) == 0 && !world.computesValues();
        world.sparing = miswire;
        std::string edited = world.edit();
        for (int more = world.upTo(3); more > 0; --more) edited += ", " + world.edit();
        SCOPED_TRACE(edited + (miswire ? ", after the library's own update" : ""));
        load(world);
        if (miswire) TrDrawing::getDrawing(sheet)->updateFormat();
        const Values found = valuesOn(sheet);
        const auto locks = locksOn(sheet);
        const auto report = app::updateSheet(sheet, "the sheet");
        EXPECT_EQ(app::nameOf(app::driftOf(sheet).state), "current");
        EXPECT_EQ(changesReported(report), changesBetween(found, valuesOn(sheet)));
        EXPECT_FALSE(app::updateSheet(sheet, "the sheet").changed());
        for (const auto &[path, locked] : locksOn(sheet))
            EXPECT_EQ(locked, locks.contains(path) && locks.at(path)) << path;
        // Blocks that the library had paired rightly are left as it drew them, new ones as it placed them.
        if (miswire || !report.addedBlocks.empty()) settle(sheet);

        const Values now = valuesOn(sheet);
        const tag_t fresh = freshSheet(world, sheet, before);
        EXPECT_EQ(nxhost::difference(visible(fresh), visible(sheet)), "");
        EXPECT_EQ(byBlock(now), byBlock(valuesOn(fresh)));
        expectSoundPart();
        m_story->open(sheet);
        UgException::throwOnFailure(UF_DRAW_delete_drawing(fresh));
    }

    tag_t reopened(tag_t sheet)
    {
        const std::string before = nxhost::listSheet(sheet);
        const Values values = valuesOn(sheet);
        m_story->saveAndReopen();
        const tag_t again = m_story->sheet(0);
        EXPECT_EQ(nxhost::difference(before, nxhost::listSheet(again)), "");
        EXPECT_EQ(valuesOn(again), values);
        EXPECT_EQ(app::nameOf(app::driftOf(again).state), "current");
        return again;
    }

    // --- what the report says ------------------------------------------------------------------------
    using Lists = std::set<std::string>; // "lost REV.T3[0].F1"

    static Lists changesReported(const app::UpdateReport &report)
    {
        Lists changes;
        for (const app::ValueChange &one : report.values)
            changes.insert(app::nameOf(one.kind) + " " + one.block + "." + one.field);
        return changes;
    }
    static std::string named(const Path &path)
    {
        const std::string row =
            path.table.empty() ? "" : path.table + "[" + std::to_string(path.row) + "].";
        return path.block + "." + row + path.field;
    }
    // A value of which nothing can be seen is not missed.
    static Lists changesBetween(const Values &before, const Values &after)
    {
        const std::map<Path, Lines> old(before.begin(), before.end());
        const std::map<Path, Lines> now(after.begin(), after.end());
        Lists changes;
        for (const auto &[path, lines] : old) {
            const bool blank = std::all_of(lines.begin(), lines.end(),
                                           [](const auto &line) { return line.empty(); });
            if (!now.contains(path) && !blank) changes.insert("lost " + named(path));
            if (now.contains(path) && now.at(path) != lines)
                changes.insert("recomputed " + named(path));
        }
        for (const auto &[path, lines] : now)
            if (!old.contains(path)) changes.insert("added " + named(path));
        return changes;
    }
    // Blocks that are required come first on a new sheet.
    static Values byBlock(Values values)
    {
        std::stable_sort(values.begin(), values.end(), [](const auto &a, const auto &b) {
            return a.first.block < b.first.block;
        });
        return values;
    }

    // --- definitions and their art ------------------------------------------------------------------
    void load(const DefinitionWorld &world)
    {
        for (const auto &[name, length] : world.allArt()) {
            if (m_art[name] == length) continue;
            drawArt(name, length);
            m_art[name] = length;
        }
        world.catalog().load(*m_story);
    }
    void drawArt(const std::string &name, int length) const
    {
        const tag_t work = UF_ASSEM_ask_work_part();
        const std::string path = m_story->patternsFolder() + "/" + name + ".prt";
        boost::filesystem::remove(path);
        tag_t part = NULL_TAG, line_tag = NULL_TAG;
        UgException::throwOnFailure(UF_PART_new(path.c_str(), UF_PART_METRIC, &part));
        UF_CURVE_line_t line{{0, 0, 0}, {double(length), 0, 0}};
        UgException::throwOnFailure(UF_CURVE_create_line(&line, &line_tag));
        nxhost::setPatternDataSaved(part, true);
        UgException::throwOnFailure(UF_PART_save());
        UgException::throwOnFailure(UF_PART_close(part, 0, 1));
        UgException::throwOnFailure(UF_PART_set_display_part(work));
        UgException::throwOnFailure(UF_ASSEM_set_work_part(work));
    }

    // --- sheets ---------------------------------------------------------------------------------------
    static boost::shared_ptr<TrFormatBase> formatOn(tag_t sheet)
    {
        return TrDrawing::getDrawing(sheet)->format();
    }
    static void addFormat(tag_t sheet, const std::string &size)
    {
        const auto def = TrDefinitionFileManager::GetFormatDefinition("ISO");
        TrDrawing::getDrawing(sheet)->addFormat(def, def->GetSizeDef(size));
    }
    void place(DefinitionWorld &world, tag_t sheet)
    {
        const std::string size = world.pick<const char *>({"A3", "A2"});
        addFormat(sheet, size);
        formatOn(sheet)->addBlock("REV");
        const auto notes = formatOn(sheet)->addBlock("NOTES");
        if (world.upTo(2))
            putAnywhere(world, *notes);
        else if (size == "A3") // the only one with two places
            putAtPlace(*notes, world.upTo(2));
        if (world.upTo(4) == 0) putAnywhere(world, *find(sheet, "TITLE"));
    }
    static void putAnywhere(DefinitionWorld &world, TrBlockBase &block)
    {
        const double point[] = {double(50 + world.upTo(100)), double(50 + world.upTo(100))};
        block.locateBlock(point);
    }
    static void putAtPlace(TrBlockBase &block, int index)
    {
        block.SetAlternateLocationIndex(index);
        block.locateBlock(nullptr);
    }
    // Some values and locks, and now and then a row; some of them hidden. A block that is not required may go.
    void type(DefinitionWorld &world, tag_t sheet)
    {
        for (auto &block : formatOn(sheet)->getBlocks()) {
            const std::string id = block->GetBlockDefName();
            if (id != "TITLE" && !world.isRequired(id) && world.upTo(30) == 0) {
                formatOn(sheet)->removeBlock(block);
                continue;
            }
            for (const auto &table : block->getTables())
                if (table->entryCount() < 3 && world.upTo(2)) table->AppendEntry();
            for (const auto &field : block->getFields()) typeInto(world, *field);
            for (const auto &table : block->getTables())
                for (const auto &row : table->getEntries()) {
                    for (const auto &field : row->getFields()) typeInto(world, *field);
                    if (world.upTo(8) == 0) row->SetHideEntry(row->GetHideEntry() ? 0 : 1);
                }
        }
        settle(sheet);
    }
    static void typeInto(DefinitionWorld &world, TrFieldBase &field)
    {
        static int count = 0;
        const std::string text = "V" + std::to_string(++count);
        switch (world.upTo(7)) {
        case 0:
            field.ModifyValue({text});
            break;
        case 1:
            field.ModifyValue({text, "", text + " again"});
            break;
        case 2:
            if (world.upTo(4) == 0) field.ModifyValue({""});
            break;
        case 3:
            if (world.upTo(2)) field.SetIsEditable(field.GetIsEditable() ? 0 : 1);
            break;
        case 4:
            if (world.upTo(4) == 0) field.ModifyValue({"  " + text}); // blanks of its own
            break;
        default:
            break;
        }
    }
    static std::map<Path, bool> locksOn(tag_t sheet)
    {
        std::map<Path, bool> locks;
        for (const auto &block : formatOn(sheet)->getBlocks()) {
            const std::string id = block->GetBlockDefName();
            for (const auto &field : block->getFields())
                locks[{id, "", 0, field->GetFieldDefName()}] = !field->GetIsEditable();
            for (const auto &table : block->getTables()) {
                int row = 0;
                for (const auto &entry : table->getEntries()) {
                    for (const auto &field : entry->getFields())
                        locks[{id, table->GetTableDefName(), row, field->GetFieldDefName()}] =
                            !field->GetIsEditable();
                    ++row;
                }
            }
        }
        return locks;
    }

    // The sheet that somebody places today and fills in with the old values, field by field.
    tag_t freshSheet(const DefinitionWorld &world, tag_t like, const Values &values) const
    {
        const auto old = formatOn(like);
        const tag_t sheet = m_story->addSheet("FRESH", 100, 100);
        addFormat(sheet, old->GetSizeName());
        for (const auto &block : old->getBlocks()) {
            const std::string id = block->GetBlockDefName();
            auto fresh = find(sheet, id); // when it is required
            if (!fresh) fresh = formatOn(sheet)->addBlock(id);
            const int index = block->GetAlternateLocationIndex();
            if (index > 0) putAtPlace(*fresh, index);
            if (index >= 0) continue;
            const double point[] = {block->GetX(), block->GetY()};
            fresh->locateBlock(point);
        }
        for (const auto &[path, lines] : values) {
            if (!world.isTyped(path.block, path.table, path.field)) {
                if (!path.table.empty()) rowOf(sheet, path);
                continue;
            }
            const auto field = fieldAt(sheet, path);
            if (field) field->ModifyValue(lines);
        }
        for (const auto &block : old->getBlocks())
            for (const auto &table : block->getTables()) hideLike(sheet, *block, *table);
        settle(sheet);
        return sheet;
    }
    static void hideLike(tag_t sheet, TrBlockBase &block, const TrTableBase &table)
    {
        int row = 0;
        for (const auto &entry : table.getEntries()) {
            const auto fresh =
                rowOf(sheet, {block.GetBlockDefName(), table.GetTableDefName(), row++, ""});
            if (fresh && entry->GetHideEntry()) fresh->SetHideEntry(1);
        }
    }
    // Text that is centred in its cell is centred when it is placed, not when it is typed; and what is
    // computed as it is placed, when it is placed again.
    static void settle(tag_t sheet)
    {
        for (int pass = 0; pass < 2; ++pass) settleOnce(sheet);
    }
    static void settleOnce(tag_t sheet)
    {
        for (const auto &block : formatOn(sheet)->getBlocks()) {
            for (const auto &table : block->getTables()) table->locate();
            for (const auto &field : block->getFields()) {
                field->locate();
                field->fitBorders();
            }
        }
    }
    static boost::shared_ptr<TrBlockBase> find(tag_t sheet, const std::string &id)
    {
        for (const auto &block : formatOn(sheet)->getBlocks())
            if (block->GetBlockDefName() == id) return block;
        return {};
    }
    // The rows up to that one are appended as they are asked for; empty without such a table.
    static boost::shared_ptr<TrEntryBase> rowOf(tag_t sheet, const Path &path)
    {
        const auto table = find(sheet, path.block)->getTable(path.table);
        if (!table) return {};
        while (static_cast<int>(table->entryCount()) <= path.row) table->AppendEntry();
        return table->entry(static_cast<std::size_t>(path.row));
    }
    static boost::shared_ptr<TrFieldBase> fieldAt(tag_t sheet, const Path &path)
    {
        if (!path.table.empty()) {
            const auto row = rowOf(sheet, path);
            return row ? row->field(path.field) : nullptr;
        }
        for (const auto &field : find(sheet, path.block)->getFields())
            if (field->GetFieldDefName() == path.field) return field;
        return {};
    }
    static Values valuesOn(tag_t sheet)
    {
        Values values;
        for (const auto &block : formatOn(sheet)->getBlocks()) {
            const std::string id = block->GetBlockDefName();
            for (const auto &field : block->getFields())
                values.push_back({{id, "", 0, field->GetFieldDefName()}, field->GetValue()});
            for (const auto &table : block->getTables()) {
                int row = 0;
                for (const auto &entry : table->getEntries()) {
                    for (const auto &field : entry->getFields())
                        values.push_back(
                            {{id, table->GetTableDefName(), row, field->GetFieldDefName()},
                             field->GetValue()});
                    ++row;
                }
            }
        }
        return values;
    }

    Story *m_story = nullptr;
    std::map<std::string, int> m_art; // as drawn
};

} // namespace

TEST_F(UpdateProperty, TwoHundredEdits) { run(200, 1); }

TEST_F(UpdateProperty, TenThousandEditsSoak) { run(static_cast<int>(10000 * soakShare()), 2); }
