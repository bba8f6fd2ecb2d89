#include "app/authoring/cell_schema.h"

#include "app/authoring/asme_sheets.h"
#include "app/authoring/iso_sheets.h"
#include "app/authoring/record_kinds.h"
#include "app/authoring/words.h"

#include <string>
#include <vector>

namespace app::authoring {

namespace {

using Json = nlohmann::ordered_json;

Json reference(const std::string &name) { return Json{{"$ref", "#/$defs/" + name}}; }

// What an editor shows while the key is typed.
Json told(Json schema, const std::string &meaning)
{
    if (schema.contains("$ref")) schema = Json{{"allOf", Json::array({schema})}};
    schema["description"] = meaning;
    return schema;
}

Json number() { return Json{{"type", "number"}}; }
Json positive() { return Json{{"type", "number"}, {"exclusiveMinimum", 0}}; }
Json integer(int least) { return Json{{"type", "integer"}, {"minimum", least}}; }
Json text() { return reference("text"); }

Json texts() // one, or a list
{
    return Json{{"anyOf", Json::array({text(), Json{{"type", "array"}, {"items", text()}}})}};
}

Json numbers(int least, int most)
{
    Json list{{"type", "array"}, {"items", number()}, {"minItems", least}, {"maxItems", most}};
    if (least > 1) return list;
    return Json{{"anyOf", Json::array({number(), list})}};
}

Json oneOf(std::initializer_list<Word> words)
{
    Json choices = Json::array();
    for (const Word &word : words) choices.push_back(word.word);
    return Json{{"enum", choices}};
}

// `yes` is a text to some readers of YAML and a truth value to others.
Json yesOrNo() { return Json{{"enum", Json::array({"yes", "no", true, false})}}; }

Json matching(const std::string &pattern) { return Json{{"type", "string"}, {"pattern", pattern}}; }

Json mapping(const Json &properties, const std::vector<std::string> &required = {})
{
    Json schema{{"type", "object"}, {"additionalProperties", false}, {"properties", properties}};
    if (!required.empty()) schema["required"] = required;
    return schema;
}

Json anyKey(const Json &value) { return Json{{"type", "object"}, {"additionalProperties", value}}; }

void add(Json &properties, const Json &more)
{
    for (const auto &[key, value] : more.items())
        if (!properties.contains(key)) properties[key] = value;
}

// Keys of the full form that stand beside the words.
void addSlots(Json &properties, const Json &defs, const std::string &kind)
{
    for (const SlotInfo &slot : kindOfWord(kind)->slots)
        if (!properties.contains(slot.key))
            properties[slot.key] = defs[kind]["properties"][slot.key];
}

// The words, or the record as a whole.
Json orWhole(const Json &words, const std::vector<std::string> &kinds)
{
    Json any = Json::array({words});
    for (const std::string &kind : kinds) any.push_back(reference(kind));
    return Json{{"anyOf", any}};
}

Json styleKeys()
{
    return Json{{"size", told(positive(), "Height of a capital letter")},
                {"font", told(text(), "Font of the drafting table")},
                {"at", told(oneOf(kSites), "Where in its cell a text stands")},
                {"margin",
                 told(numbers(1, 2), "Distance from the cell's lines: both, or width and height")},
                {"aspect", told(positive(), "Width of the letters, 1 is the font's own")},
                {"line-space", told(positive(), "1 is a pitch of 1.5 heights")},
                {"color", told(integer(0), "Colour number, up to 216")},
                {"too-long", told(Json{{"enum", Json::array({"report", "narrow", "smaller"})}},
                                  "What becomes of a value with more letters than fit")}};
}

// What cells and columns have in common.
Json valueKeys()
{
    return Json{
        {"style", told(text(), "One of the styles; \"value\" unless set")},
        {"label", told(Json{{"anyOf", Json::array({text(), anyKey(text())})}},
                       "A small text at the upper left, or one a language")},
        {"value", told(texts(), "What a new block starts with")},
        {"from", told(matching("^(size|(part|sheet|site|environment) +.+)$"),
                      "Where the value comes from: part NAME, sheet NAME, site NAME, environment "
                      "NAME, size")},
        {"keep", told(Json{{"enum", Json::array({"typed", "recompute"})}},
                      "Computed once, or whenever the block moves")},
        {"share", told(matching("^(part|sheet) +.+$"),
                       "The attribute that follows the value: part NAME, sheet NAME")},
        {"all-sheets", told(yesOrNo(), "The value goes to every sheet with a format")},
        {"characters", told(integer(1), "A value of that many characters is to fit: asked by 'defs "
                                        "check'")}};
}

Json cellSchema(const Json &defs)
{
    Json keys{
        {"cell", told(numbers(4, 4), "x, y, width, height from the block's lower left corner")},
        {"box", told(Json{{"anyOf", Json::array({numbers(4, 4), Json{{"const", "none"}}})}},
                     "What is drawn instead of the cell")},
        {"label-inset", told(numbers(2, 2), "Of the label from the cell's left and upper line")},
        {"rows", told(integer(1), "More than 1: a value of several lines")}};
    add(keys, valueKeys());
    add(keys, styleKeys());
    addSlots(keys, defs, "field");
    return orWhole(mapping(keys, {"cell"}), {"field"});
}

Json bordersSchema()
{
    const Json side{{"enum", Json::array({"left", "right", "top", "bottom", "middle", "none"})}};
    return told(Json{{"anyOf", Json::array({side, Json{{"type", "array"}, {"items", side}}})}},
                "Lines around each field, as they are seen");
}

Json columnSchema(const Json &defs)
{
    Json keys{{"width", positive()},
              {"borders", bordersSchema()},
              {"zone", told(yesOrNo(), "Shows the zone of the row's symbols")},
              {"several-lines", yesOrNo()},
              {"share-rows", told(Json{{"enum", Json::array({"one", "numbered"})}},
                                  "One attribute for all rows, or one a row")}};
    add(keys, valueKeys());
    add(keys, styleKeys());
    addSlots(keys, defs, "field");
    return orWhole(mapping(keys, {"width"}), {"field"});
}

Json symbolSchema()
{
    return mapping(Json{{"type", oneOf(kSymbols)},
                        {"lines", told(texts(), "One or two; the id of a column stands for its "
                                                "value")},
                        {"id-type", integer(0)},
                        {"color", integer(0)},
                        {"layer", integer(1)},
                        {"font", text()},
                        {"size", number()},
                        {"text-size", number()},
                        {"aspect", number()}});
}

Json tableSchema(const Json &defs)
{
    Json keys{{"at", told(numbers(2, 2), "Of the first row: its upper left corner with down, its "
                                         "lower left one with up")},
              {"direction", told(oneOf(kDirections), "Which way rows grow")},
              {"heading", told(number(), "Height of a row of labels")},
              {"row", told(positive(), "Height of a row of one line")},
              {"style", text()},
              {"borders", bordersSchema()},
              {"symbol", symbolSchema()},
              {"entry-list", text()},
              {"columns", anyKey(reference("column"))}};
    addSlots(keys, defs, "table");
    return orWhole(mapping(keys, {"at", "direction", "columns"}), {"table"});
}

Json artSchema()
{
    const Json point = numbers(2, 2);
    const Json points{{"type", "array"}, {"items", point}, {"minItems", 2}};
    const Json width = told(number(), "Of the line in mm");
    const auto item = [&](const std::string &key, const Json &value, Json more) {
        more[key] = value;
        return mapping(more, {key});
    };
    const Json pen{{"width", width}};
    Json words = styleKeys();
    add(words, Json{{"where", point}, {"angle", number()}, {"width", width}});
    const Json outlines{
        {"anyOf", Json::array({points, Json{{"type", "array"}, {"items", points}}})}};
    return Json{
        {"type", "array"},
        {"items",
         Json{{"anyOf",
               Json::array(
                   {item("line", numbers(4, 4), pen), item("polyline", points, pen),
                    item("rectangle", numbers(4, 4), pen), item("circle", numbers(3, 3), pen),
                    item("arc", numbers(5, 5), pen), item("area", outlines, pen),
                    item("text", text(), words),
                    item("svg", text(), Json{{"cell", numbers(4, 4)}, {"width", width}})})}}}};
}

// `rest`: what other keys hold, if there may be any.
Json placeSchema(const Json &rest)
{
    Json keys{{"corner", told(oneOf(kCorners), "Of the sheet, and of the block")},
              {"inset", told(numbers(2, 2), "From that corner of the sheet to that of the block")},
              {"at", told(numbers(2, 2), "The block's lower left corner from the sheet's")},
              {"name", text()}};
    Json choice = mapping(keys);
    choice["required"] = Json::array({"name"});
    keys["also"] = told(Json{{"type", "array"}, {"items", choice}}, "Places to choose from");
    Json place = mapping(keys);
    if (!rest.is_null()) {
        place["properties"]["formats"] = told(texts(), "All of the file unless set");
        place["additionalProperties"] = rest;
    }
    return place;
}

Json blockSchema(const Json &defs)
{
    const Json place =
        orWhole(placeSchema(placeSchema({})), {"block_location", "block_location_v1"});
    const Json lines = mapping(Json{{"outline", number()}, {"cells", number()}});
    Json keys{
        {"size", told(numbers(2, 2), "Width and height")},
        {"description", text()},
        {"category", text()},
        {"dialog", text()},
        {"excludes", texts()},
        {"movable", yesOrNo()},
        {"can-delete", yesOrNo()},
        {"layers", mapping(Json{{"pattern", integer(1)}, {"text", integer(1)}})},
        {"place",
         told(Json{{"anyOf", Json::array({place, Json{{"type", "array"}, {"items", place}}})}},
              "Where the block stands on a sheet")},
        {"lines", told(Json{{"anyOf", Json::array({Json{{"const", "none"}}, lines})}},
                       "Widths in mm: 0.13, 0.18, 0.25, 0.35, 0.5, 0.7, 1, 1.4, 2")},
        {"cells", told(anyKey(reference("cell")), "The fields, in stored order")},
        {"tables", anyKey(reference("tableOfCells"))},
        {"art", reference("art")}};
    addSlots(keys, defs, "block");
    return orWhole(mapping(keys, {"size", "place"}), {"block"});
}

Json sizeSchema(const Json &defs)
{
    Json keys{{"sheet", told(numbers(2, 2), "Width and height")},
              {"label", text()},
              {"description", text()},
              {"frame", reference("art")},
              {"zones", mapping(Json{{"columns", integer(0)},
                                     {"rows", integer(0)},
                                     {"width", number()},
                                     {"height", number()},
                                     {"right-offset", number()},
                                     {"column-labels", oneOf(kZoneLabels)},
                                     {"row-labels", oneOf(kZoneLabels)}})}};
    addSlots(keys, defs, "size");
    return orWhole(mapping(keys, {"sheet"}), {"size"});
}

Json formatSchema(const Json &defs)
{
    Json keys{{"description", text()},
              {"category", text()},
              {"suite", text()},
              {"obsolete", yesOrNo()},
              {"required", told(texts(), "Blocks that every sheet gets")},
              {"sheets", told(Json{{"enum", Json::array({"iso", "asme"})}},
                              "iso: " + isoSheetIds() + "; asme: " + asmeSheetIds())},
              {"sizes",
               Json{{"type", "array"},
                    {"items", Json{{"anyOf", Json::array({text(), anyKey(sizeSchema(defs))})}}}}},
              {"suites", told(anyKey(texts()), "NAME: [sizes]")}};
    addSlots(keys, defs, "format");
    return orWhole(mapping(keys, {"sizes"}), {"format"});
}

} // namespace

Json cellFormProperties(Json &defs)
{
    Json style = styleKeys();
    style["like"] = told(text(), "Another style to start from, above this one");
    // Made while the kinds of records alone stand there.
    const Json format = formatSchema(defs), block = blockSchema(defs), cell = cellSchema(defs),
               column = columnSchema(defs), table = tableSchema(defs);
    defs["art"] = artSchema();
    defs["cell"] = cell;
    defs["column"] = column;
    defs["tableOfCells"] = table;
    return Json{
        {"units", Json{{"enum", Json::array({"mm", "in"})}}},
        {"styles", anyKey(mapping(style))},
        {"labels", mapping(Json{{"size", positive()}, {"font", text()}, {"inset", numbers(2, 2)}})},
        {"formats", anyKey(format)},
        {"blocks", anyKey(block)}};
}

} // namespace app::authoring
