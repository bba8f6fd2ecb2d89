#include "app/fleet/sarif.h"

#include "app/fleet/images.h"
#include "app/fleet/report_output.h"
#include "app/version.h"

#include <fmt/format.h>

#include <map>

namespace app::fleet {

namespace {

constexpr const char *kSchema =
    "https://docs.oasis-open.org/sarif/sarif/v2.1.0/os/schemas/sarif-schema-2.1.0.json";

struct StateRule {
    SheetState state;
    const char *text;
    const char *help;
};
constexpr StateRule kStateRules[] = {
    {SheetState::legacy, "The sheet holds records of an older generation",
     "Run 'qelfmt update' on the drawing."},
    {SheetState::orphan, "The definition of the sheet's format, or of a block, is missing",
     "Add it to the definitions, or give the sheet another format."},
    {SheetState::miswired, "A field shows by the definition of another field",
     "Run 'qelfmt update' on the drawing."},
    {SheetState::drifted, "The sheet is not as the definitions say",
     "Run 'qelfmt update' on the drawing."}};

// Every byte that a URI cannot hold as it is.
std::string uriOf(const std::string &path)
{
    std::string uri = path.starts_with("/") ? "file://" : "";
    for (const char c : path) {
        const auto byte = static_cast<unsigned char>(c);
        const bool plain = (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') ||
                           (c >= '0' && c <= '9') ||
                           std::string_view("-._~/!$&'()*+,;=@").find(c) != std::string_view::npos;
        uri += plain ? std::string(1, c) : fmt::format("%{:02X}", byte);
    }
    return uri;
}

Json artifact(const std::string &path)
{
    Json location{{"uri", uriOf(path)}};
    if (!path.starts_with("/")) location["uriBaseId"] = "%SRCROOT%";
    return location;
}

Json message(const std::string &text) { return {{"text", text}}; }

// Readers of SARIF want a line; drawings have none.
Json placeOf(const Finding &finding)
{
    Json logical = Json::array();
    logical.push_back({{"name", finding.sheet},
                       {"fullyQualifiedName", "sheet " + finding.sheet},
                       {"kind", "module"}});
    if (!finding.field.empty())
        logical.push_back(
            {{"name", finding.field}, {"fullyQualifiedName", finding.place()}, {"kind", "member"}});
    return {{"physicalLocation",
             {{"artifactLocation", artifact(finding.file)}, {"region", {{"startLine", 1}}}}},
            {"logicalLocations", logical}};
}

class Writer {
public:
    Writer(const CheckResults &results, std::FILE *to) : m_results(results), m_to(to) {}

    void write()
    {
        const Json rules = listedRules();
        put(fmt::format("{{\"$schema\":\"{}\",\"version\":\"2.1.0\",\"runs\":[{{\n", kSchema));
        put("\"tool\":" +
            compact({{"driver", {{"name", "qelfmt"}, {"version", kVersion}, {"rules", rules}}}}));
        put(",\n\"results\":[");
        bool first = true;
        m_results.source({[&](const Finding &finding) {
                              put((first ? "\n" : ",\n") + compact(resultOf(finding)));
                              first = false;
                          },
                          [](const UnreadDrawing &) {}});
        put("\n],\n\"invocations\":[{\"executionSuccessful\":");
        put(m_results.totals.unread == 0 ? "true" : "false");
        put(",\"toolExecutionNotifications\":[");
        writeNotifications();
        put("\n]}]}]}\n");
    }

private:
    void put(const std::string &text) { std::fwrite(text.data(), 1, text.size(), m_to); }

    Json listedRules()
    {
        Json rules = Json::array();
        const auto add = [&](const std::string &id, const std::string &text,
                             const std::string &help, Severity severity) {
            m_indices[id] = rules.size();
            rules.push_back({{"id", id},
                             {"shortDescription", message(text)},
                             {"help", message(help)},
                             {"defaultConfiguration", {{"level", nameOf(severity)}}}});
        };
        for (const StateRule &rule : kStateRules) {
            const auto &states = m_results.rules.states;
            if (const auto found = states.find(rule.state); found != states.end())
                add(nameOf(rule.state), rule.text, rule.help, found->second);
        }
        for (const Rule &rule : m_results.rules.rules)
            add(rule.name, fmt::format("{} ({}:{})", rule.name, m_results.rules.path, rule.line),
                rule.remedy, rule.severity);
        return rules;
    }

    Json resultOf(const Finding &finding)
    {
        Json properties{{"sheet", finding.sheet}, {"remedy", finding.remedy}};
        if (!finding.field.empty())
            properties.update({{"block", finding.block},
                               {"field", finding.field},
                               {"value", finding.valueText()}});
        const std::string place = compact({finding.file, finding.place(), finding.rule});
        return {{"ruleId", finding.rule},
                {"ruleIndex", m_indices[finding.rule]},
                {"level", nameOf(finding.severity)},
                {"message", message(fmt::format("{}: {}: {}", finding.place(), finding.text(),
                                                finding.remedy))},
                {"locations", Json::array({placeOf(finding)})},
                {"partialFingerprints", {{"place/v1", sumOf(place)}}},
                {"properties", properties}};
    }

    void writeNotifications()
    {
        bool first = true;
        const auto add = [&](const char *level, const std::string &text, const Json &location) {
            Json notification{{"level", level}, {"message", message(text)}};
            notification["locations"] =
                Json::array({{{"physicalLocation", {{"artifactLocation", location}}}}});
            put((first ? "\n" : ",\n") + compact(notification));
            first = false;
        };
        m_results.source(
            {[](const Finding &) {},
             [&](const UnreadDrawing &one) { add("error", one.reason, artifact(one.file)); }});
        for (const Rule *rule : m_results.unmatched())
            add("note", fmt::format("rule \"{}\" has matched no field", rule->name),
                artifact(m_results.rules.path));
    }

    const CheckResults &m_results;
    std::FILE *m_to;
    std::map<std::string, std::size_t> m_indices;
};

} // namespace

void writeSarif(const CheckResults &results, std::FILE *to) { Writer(results, to).write(); }

} // namespace app::fleet
