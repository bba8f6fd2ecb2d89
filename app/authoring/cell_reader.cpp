#include "app/authoring/cell_reader.h"

#include "app/authoring/full_keys.h"
#include "app/authoring/record_text.h"
#include "app/authoring/words.h"

#include <fmt/format.h>

namespace app::authoring {

namespace {

std::optional<Box> readBox(Mapping &cell, const std::string &key)
{
    const auto numbers = cell.numbers(key, 4, 4);
    if (!numbers) return {};
    const Box box{(*numbers)[0], (*numbers)[1], (*numbers)[2], (*numbers)[3]};
    if (box.width <= 0 || box.height <= 0) {
        cell.complain(key, "width and height must be greater than 0");
        return {};
    }
    return box;
}

// "part DB_TITLE": a kind, and the name for those kinds that have one.
struct Source {
    int type = kOwnText;
    std::string name;
    bool fromSite = false;
};

// "part DB_TITLE" in two; the name is empty when there is none.
std::pair<std::string, std::string> kindAndName(const std::string &text)
{
    const auto blank = text.find(' ');
    const auto name = text.find_first_not_of(' ', blank);
    return {text.substr(0, blank), name == std::string::npos ? "" : text.substr(name)};
}

Source readSource(Mapping &cell)
{
    constexpr const char *kRight =
        "must be one of: part NAME, sheet NAME, site NAME, environment NAME, size";
    Source source;
    const auto text = cell.text("from");
    if (!text) return source;
    const auto [kind, name] = kindAndName(*text);
    source.name = name;
    if (kind == "part")
        source.type = kPartAttribute;
    else if (kind == "sheet")
        source.type = kSheetAttribute;
    else if (kind == "environment")
        source.type = kEnvironment;
    else if (kind == "size")
        source.type = kSizeLabel;
    else if (kind == "site")
        source.fromSite = true;
    else
        cell.complain("from", fmt::format("\"{}\" {}", *text, kRight));
    if ((kind == "size") != source.name.empty()) cell.complain("from", kRight);
    return source;
}

void placeText(const Box &box, const Style &style, int rows, SlotValues &slots)
{
    const int column = (style.site - 1) % 3; // 0 left, 1 centre, 2 right
    const int row = (style.site - 1) / 3;    // 0 top, 1 middle, 2 bottom
    double y = box.y;
    double margin = style.marginHeight;
    int site = style.site;
    if (row == 0) {
        y = box.y + box.height;
    } else if (row == 1) {
        // Centred by the margin below the text. The stored middle sites depend on the text's height at the
        // moment of placing, and a field is first placed while it has none.
        site += 3;
        const double text = rows * style.size + (rows - 1) * style.size * style.lineSpace * 0.5;
        margin = (box.height - text) / 2;
    }
    slots.ints["TextSite"] = site;
    slots.ints["TextJustification"] = column + 1;
    slots.doubles["LocationX"] = box.x;
    slots.doubles["LocationY"] = y;
    slots.doubles["Width"] = box.width;
    slots.doubles["Height"] = box.height;
    slots.doubles["MarginWidth"] = style.marginWidth;
    slots.doubles["MarginHeight"] = margin;
}

std::optional<ArtText> readLabel(Mapping &cell, const Box &box, const CellContext &context)
{
    const std::string text = labelText(cell, context);
    LabelStyle style = context.labels;
    if (const auto inset = cell.numbers("label-inset", 2, 2)) {
        style.fromLeft = (*inset)[0];
        style.fromTop = (*inset)[1];
    }
    if (text.empty()) return {};
    const ArtPoint at{box.x + style.fromLeft, box.y + box.height - style.fromTop};
    return ArtText{text, at, 1, style.size, style.font, 1.0, 0.0, cell.origin("label")};
}

} // namespace

LabelStyle plainLabels(int units)
{
    return units == 2 ? LabelStyle{0.065, "osifont", 0.04, 0.03} : LabelStyle();
}

void dressText(double width, const Style &style, SlotValues &slots)
{
    slots.strings["TextFontName"] = style.font;
    slots.doubles["TextSize"] = style.size;
    slots.doubles["TextAspect"] = style.aspect;
    slots.doubles["LineSpace"] = style.lineSpace;
    slots.doubles["CharSpaceFactor"] = 1.0;
    slots.ints["TextColor"] = style.color;
    slots.ints["BorderColor"] = style.color;
    slots.origins.insert(style.origins.begin(), style.origins.end());
    if (style.tooLong == TooLong::narrow) {
        slots.doubles["AltTextAspect"] = style.narrowAspect * style.aspect;
        slots.ints["AltTextAspectNumChars"] = capacity(width, style);
    } else if (style.tooLong == TooLong::smaller) {
        slots.doubles["AltTextSize"] = smallerSize(style);
        slots.ints["AltTextSizeNumChars"] = capacity(width, style);
    }
}

// Where the value comes from and whether it is computed again whenever the field moves.
void sourceOf(Mapping &cell, SlotValues &slots)
{
    const Source source = readSource(cell);
    const auto values = cell.texts("value").value_or(std::vector<std::string>{});
    slots.ints["DefaultType"] = source.type;
    slots.lists["DefaultString"] = source.type == kOwnText ? values : std::vector{source.name};
    if (source.type == kSizeLabel) slots.lists["DefaultString"].clear();
    if (source.fromSite) slots.strings["RegistryString"] = source.name;
    for (const char *key : {"from", "value"})
        if (cell.has(key)) slots.origins["default_string"] = cell.origin(key);
    if (!values.empty() && source.type != kOwnText)
        cell.complain("value", "a value of its own and one from elsewhere exclude each other");

    const auto keep = cell.word("keep", {{"typed", 1}, {"recompute", 0}});
    slots.ints["UseDefaultInitially"] = keep.value_or(source.type == kSizeLabel ? 0 : 1);
}

void sharing(Mapping &cell, SlotValues &slots)
{
    if (const auto share = cell.text("share")) {
        const auto [target, name] = kindAndName(*share);
        if (name.empty() || (target != "part" && target != "sheet"))
            cell.complain("share", "must be part NAME or sheet NAME");
        else
            slots.strings["BroadcastString"] = name;
        slots.ints["BroadcastType"] = target == "part" ? 1 : 0;
    }
    if (const auto all = cell.word("all-sheets", kYesNo)) slots.ints["SyncAllDrawings"] = *all;
}

int charactersOf(Mapping &cell)
{
    const int characters = cell.integer("characters").value_or(0);
    if (characters < 0) cell.complain("characters", "must be 1 or more");
    return characters;
}

Style namedStyle(Mapping &cell, const CellContext &context)
{
    Style style = plainStyle(context.units);
    const std::string name = cell.text("style").value_or("value");
    const auto found = context.styles.find(name);
    if (found != context.styles.end())
        style = found->second;
    else if (cell.has("style"))
        cell.complain("style", fmt::format("no style \"{}\" is defined under styles", name));
    return style;
}

Style styleOf(Mapping &cell, const CellContext &context)
{
    Style style = namedStyle(cell, context);
    readStyle(cell, style);
    return style;
}

std::string labelText(Mapping &mapping, const CellContext &context)
{
    if (!mapping.has("label")) return {};
    const YAML::Node node = mapping.node("label");
    if (!node.IsMap()) return mapping.text("label").value_or("");
    std::string text;
    Mapping languages(mapping.file(), node, mapping.what() + ", label");
    for (const auto &[language, value] : languages.entries()) {
        const auto words = languages.text(language);
        if (words && (text.empty() || language == context.language)) text = *words;
    }
    return text;
}

Cell readCell(YamlFile &file, const std::string &id, const YAML::Node &node,
              const CellContext &context)
{
    Cell cell;
    if (isWholeRecord(node)) {
        cell.field.whole = readRecord(file, node, {"field"}, context.where + ", cell " + id);
        return cell;
    }
    Mapping mapping(file, node, context.where + ", cell " + id);
    mapping.require("cell", "its box in the block: cell: [x, y, width, height]");
    const Box box = readBox(mapping, "cell").value_or(Box{0, 0, 1, 1});
    const Style style = styleOf(mapping, context);
    const int rows = mapping.integer("rows").value_or(1);
    if (rows < 1) mapping.complain("rows", "must be 1 or more");
    cell.field.rows = rows;
    cell.field.characters = charactersOf(mapping);

    SlotValues &slots = cell.field.slots;
    slots.origin = mapping.origin();
    for (const char *slot : {"location_x", "location_y", "width", "height"})
        slots.origins[slot] = mapping.origin("cell");
    if (mapping.has("characters")) slots.origins["characters"] = mapping.origin("characters");
    slots.strings["Id"] = id;
    slots.ints["Multiline"] = rows > 1;
    placeText(box, style, rows < 1 ? 1 : rows, slots);
    dressText(box.width, style, slots);
    sourceOf(mapping, slots);
    sharing(mapping, slots);

    cell.lines = box;
    cell.box = mapping.origin("cell");
    if (mapping.has("box")) {
        cell.box = mapping.origin("box");
        const YAML::Node drawn = mapping.node("box");
        if (drawn.IsScalar() && drawn.Scalar() == "none")
            cell.lines.reset();
        else
            cell.lines = readBox(mapping, "box");
    }
    const Box around = cell.lines.value_or(box);
    cell.label = readLabel(mapping, around, context);
    if (const auto &label = cell.label)
        cell.field.label = {label->text,
                            label->size,
                            label->font,
                            around.x + around.width - label->at.x,
                            label->at.y - label->size,
                            label->origin};
    readFullFieldKeys(mapping, slots);
    return cell;
}

} // namespace app::authoring
