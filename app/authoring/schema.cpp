#include "app/authoring/schema.h"

#include "app/authoring/cell_schema.h"
#include "app/authoring/record_kinds.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace app::authoring {

namespace {

using Json = nlohmann::ordered_json;

const char *typeOf(SlotShape shape)
{
    switch (shape) {
    case SlotShape::integer:
        return "whole number";
    case SlotShape::real:
        return "number";
    case SlotShape::text:
    case SlotShape::attribute:
        return "text";
    case SlotShape::texts:
        return "list of texts";
    case SlotShape::reals:
        return "list of numbers";
    }
    return "";
}

std::string placeOf(const SlotInfo &slot)
{
    switch (slot.shape) {
    case SlotShape::integer:
        return fmt::format("int {}", slot.index);
    case SlotShape::real:
        return fmt::format("double {}", slot.index);
    case SlotShape::text:
        return fmt::format("string {}", slot.index);
    case SlotShape::texts:
        return fmt::format("strings from {}", slot.index);
    case SlotShape::reals:
        return fmt::format("doubles {}, {}, ...", slot.index, slot.index + slot.stride);
    case SlotShape::attribute:
        return "attribute " + slot.title;
    }
    return "";
}

Json reference(const std::string &word) { return Json{{"$ref", "#/$defs/" + word}}; }

// What YAML reads as a number is a text here too: `01`, `1.10`.
Json schemaOf(SlotShape shape)
{
    switch (shape) {
    case SlotShape::integer:
        return Json{{"type", "integer"}};
    case SlotShape::real:
        return reference("real");
    case SlotShape::text:
    case SlotShape::attribute:
        return reference("text");
    case SlotShape::texts:
        return Json{{"type", "array"}, {"items", reference("text")}};
    case SlotShape::reals:
        return Json{{"type", "array"}, {"items", reference("real")}};
    }
    return {};
}

Json recordSchema(const RecordKind &kind)
{
    Json keys{{"kind", Json{{"const", kind.word}}},
              {"layer", Json{{"type", "integer"}, {"minimum", 1}, {"maximum", 256}}},
              {"object_name", reference("text")}};
    for (const SlotInfo &slot : kind.slots) keys[slot.key] = schemaOf(slot.shape);
    keys["more_ints"] = Json{{"type", "array"}, {"items", Json{{"type", "integer"}}}};
    keys["more_doubles"] = Json{{"type", "array"}, {"items", reference("real")}};
    keys["more_strings"] = Json{{"type", "array"}, {"items", reference("text")}};
    keys["more_attributes"] = Json{{"type", "object"}, {"additionalProperties", reference("text")}};
    keys["children"] = Json{{"type", "array"}, {"items", reference("record")}};
    return Json{{"type", "object"},
                {"required", Json::array({"kind"})},
                {"additionalProperties", false},
                {"properties", keys}};
}

} // namespace

std::string definitionSchema()
{
    Json defs;
    defs["text"] = Json{{"type", Json::array({"string", "number", "boolean", "null"})}};
    defs["real"] =
        Json{{"anyOf",
              Json::array({Json{{"type", "number"}},
                           Json{{"type", "string"}, {"pattern", "^nan\\(0x[0-9a-f]{16}\\)$"}}})}};
    Json any = Json::array();
    for (const RecordKind &kind : recordKinds()) {
        any.push_back(reference(kind.word));
        defs[kind.word] = recordSchema(kind);
    }
    defs["record"] = Json{{"oneOf", any}};
    Json properties = cellFormProperties(defs);
    properties["records"] = Json{{"type", "array"}, {"items", reference("record")}};
    const Json schema{{"$schema", "https://json-schema.org/draft/2020-12/schema"},
                      {"title", "qelfmt definitions"},
                      {"type", "object"},
                      {"additionalProperties", false},
                      {"properties", properties},
                      {"$defs", defs}};
    return schema.dump(1) + "\n";
}

std::string slotTables()
{
    std::string text;
    for (const RecordKind &kind : recordKinds()) {
        text += fmt::format("### {}\n\nClass `{}`, stored as `{}`", kind.word, kind.owner,
                            kind.className);
        if (!kind.children.empty())
            text += fmt::format("; owns {}", fmt::join(kind.children, ", "));
        text += ".\n\n| Key | Type | Stored as |\n|---|---|---|\n";
        for (const SlotInfo &slot : kind.slots)
            text +=
                fmt::format("| `{}` | {} | {} |\n", slot.key, typeOf(slot.shape), placeOf(slot));
        text += "\n";
    }
    return text;
}

} // namespace app::authoring
