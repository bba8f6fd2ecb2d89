// The JSON Schema that editors get: it takes what the reader takes, and refuses what it refuses.
#include "app/authoring/library_reader.h"
#include "app/authoring/schema.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <valijson/adapters/nlohmann_json_adapter.hpp>
#include <valijson/schema.hpp>
#include <valijson/schema_parser.hpp>
#include <valijson/validator.hpp>
#include <yaml-cpp/yaml.h>

#include <fstream>
#include <regex>
#include <sstream>

using namespace app::authoring;

namespace {

using Json = nlohmann::json;
using Adapter = valijson::adapters::NlohmannJsonAdapter;

// As an editor reads YAML: plain numbers and truth values are no texts.
Json jsonOf(const YAML::Node &node)
{
    static const std::regex whole("[-+]?[0-9]+"),
        real("[-+]?(\\.[0-9]+|[0-9]+(\\.[0-9]*)?)([eE][-+]?[0-9]+)?");
    if (node.IsMap()) {
        Json object = Json::object();
        for (const auto &entry : node) object[entry.first.Scalar()] = jsonOf(entry.second);
        return object;
    }
    if (node.IsSequence()) {
        Json list = Json::array();
        for (const YAML::Node &item : node) list.push_back(jsonOf(item));
        return list;
    }
    if (node.IsNull()) return nullptr;
    const std::string &text = node.Scalar();
    if (node.Tag() == "!") return text; // in quotes
    if (text == "true" || text == "false") return text == "true";
    if (std::regex_match(text, whole)) return std::stoi(text);
    if (std::regex_match(text, real)) return std::stod(text);
    return text;
}

class DefinitionSchema : public testing::Test {
protected:
    DefinitionSchema()
    {
        const Json document = Json::parse(definitionSchema());
        valijson::SchemaParser().populateSchema(Adapter(document), m_schema);
    }

    // Empty when the schema takes the text.
    std::string refusalOf(const std::string &text)
    {
        const Json document = jsonOf(YAML::Load(text));
        valijson::ValidationResults results;
        if (valijson::Validator().validate(m_schema, Adapter(document), &results)) return {};
        std::string all;
        for (valijson::ValidationResults::Error error; results.popError(error);) {
            for (const std::string &step : error.context) all += step;
            all += ": " + error.description + "\n";
        }
        return all;
    }

    static bool isRead(const std::string &text)
    {
        try {
            parseLibrary(text, "text");
            return true;
        } catch (const Complaints &) {
            return false;
        }
    }

    static std::string blockWith(const std::string &keys)
    {
        return "blocks: {B: {size: [9, 9], place: {formats: F, at: [0, 0]}, " + keys + "}}";
    }

private:
    valijson::Schema m_schema;
};

TEST_F(DefinitionSchema, TakesTheShippedTexts)
{
    for (const char *name : {"iso", "asme", "example-site/own"}) {
        std::ifstream file(std::string(QELFMT_SOURCE_DIR "/formats/") + name + ".yaml");
        std::ostringstream text;
        text << file.rdbuf();
        EXPECT_EQ(refusalOf(text.str()), "") << name;
    }
}

// Each with a mistake in one key, or none.
TEST_F(DefinitionSchema, RefusesWhatTheReaderRefuses)
{
    for (const std::string &text :
         {blockWith("cells: {a: {cell: [0, 0, 9, 9], value: 01, rows: 2, text_color: 3}}"),
          blockWith("cells: {a: {cell: [0, 0, 9], value: x}}"),
          blockWith("cells: {a: {cell: [0, 0, 9, 9], colour: 3}}"),
          blockWith("cells: {a: {cell: [0, 0, 9, 9], from: nowhere X}}"),
          blockWith("cells: {a: {cell: [0, 0, 9, 9], from: size}}"),
          blockWith("cells: {a: {cell: [0, 0, 9, 9], at: somewhere}}"),
          blockWith("cells: {a: {value: x}}"),
          blockWith("cells: {a: {kind: field, id: a, text_size: 2.5}}"),
          blockWith("cells: {a: {kind: field, id: a, text_sighs: 2.5}}"),
          blockWith("movable: yes"),
          blockWith("movable: perhaps"),
          blockWith("tables: {T: {at: [0, 0], direction: up, columns: {a: {width: 3}}}}"),
          blockWith("tables: {T: {at: [0, 0], direction: sideways, columns: {a: {width: 3}}}}"),
          blockWith("art: [{line: [0, 0, 1, 1], width: 0.5}]"),
          blockWith("art: [{line: [0, 0, 1], width: 0.5}]"),
          std::string("blocks: {B: {size: [9, 9]}}"),
          std::string("formats: {F: {sheets: iso, sizes: [A3]}}"),
          std::string("formats: {F: {sheets: din, sizes: [A3]}}"),
          std::string("formats: {F: {sizes: [X: {sheet: [9, 9], zones: {columns: 2}}]}}"),
          std::string("styles: {value: {size: 2.5}}\nrecords: [{kind: field}]"),
          std::string("records: [{kind: filed}]"),
          std::string("titles: {}")})
        EXPECT_EQ(refusalOf(text).empty(), isRead(text)) << text << "\n" << refusalOf(text);
}

} // namespace
