#include "app/fleet/findings.h"

#include "app/fleet/report_output.h"

#include <fmt/format.h>

#include <cstdio>

namespace app::fleet {

namespace {

// A value in one line, not too long.
std::string shown(const std::string &value)
{
    constexpr std::size_t kMost = 60;
    std::string text;
    for (const char c : value) text += c == '\n' ? std::string(" | ") : std::string(1, c);
    if (text.size() <= kMost) return '"' + text + '"';
    std::size_t end = kMost;
    while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80) --end;
    return '"' + text.substr(0, end) + "...\"";
}

std::string counted(std::size_t count, const std::string &thing)
{
    return fmt::format("{} {}{}", count, thing, count == 1 ? "" : "s");
}

Json toJson(const Finding &finding)
{
    Json json{{"file", finding.file}, {"sheet", finding.sheet}};
    if (!finding.field.empty()) {
        json["block"] = finding.block;
        json["field"] = finding.field;
        json["value"] = finding.value;
    }
    json["rule"] = finding.rule;
    json["severity"] = nameOf(finding.severity);
    json["message"] = finding.message;
    json["remedy"] = finding.remedy;
    return json;
}

// An array of `key`, an element a line, as they come.
class StreamedArray {
public:
    explicit StreamedArray(const char *key) { fmt::print("\"{}\": [", key); }
    void add(const Json &element)
    {
        fmt::print("{}\n{}", m_first ? "" : ",", compact(element));
        m_first = false;
    }
    void end() const { fmt::print("{}]", m_first ? "" : "\n"); }

private:
    bool m_first = true;
};

} // namespace

std::string Finding::place() const
{
    return field.empty() ? fmt::format("sheet {}", sheet)
                         : fmt::format("sheet {}, {}.{}", sheet, block, field);
}

std::string Finding::valueText() const { return value.is_null() ? "" : cellOf(value); }

std::string Finding::text() const
{
    const std::string now = valueText();
    return now.empty() ? message : shown(now) + " " + message;
}

std::vector<const Rule *> CheckResults::unmatched() const
{
    std::vector<const Rule *> found;
    for (std::size_t i = 0; i < rules.rules.size(); ++i)
        if (!totals.matched[i]) found.push_back(&rules.rules[i]);
    return found;
}

void printFindings(const CheckResults &results)
{
    results.source({[](const Finding &one) {
                        printLine(fmt::format("{}, {}: {}: {}: {} [{}]", one.file, one.place(),
                                              nameOf(one.severity), one.text(), one.remedy,
                                              one.rule));
                    },
                    [](const UnreadDrawing &) {}}); // said when it happened
    const CheckTotals &totals = results.totals;
    std::string parts;
    for (const Severity severity : {Severity::error, Severity::warning, Severity::note})
        if (const auto count = totals.findings[static_cast<std::size_t>(severity)])
            parts += (parts.empty() ? " (" : ", ") + counted(count, nameOf(severity));
    printLine(fmt::format(
        "{}, {}: {}{}{}", counted(totals.drawings, "drawing"), counted(totals.sheets, "sheet"),
        counted(totals.all(), "finding"), parts.empty() ? "" : parts + ")",
        totals.unread > 0 ? fmt::format("; {} could not be read", counted(totals.unread, "drawing"))
                          : ""));
}

void printFindingsJson(const CheckResults &results)
{
    const CheckTotals &totals = results.totals;
    fmt::print("{{\"drawings\": {}, \"sheets\": {},\n", totals.drawings, totals.sheets);
    StreamedArray findings("findings");
    results.source(
        {[&](const Finding &one) { findings.add(toJson(one)); }, [](const UnreadDrawing &) {}});
    findings.end();
    fmt::print(",\n");
    StreamedArray unread("unread");
    results.source({[](const Finding &) {},
                    [&](const UnreadDrawing &one) {
                        unread.add({{"file", one.file}, {"reason", one.reason}});
                    }});
    unread.end();
    Json unmatched = Json::array();
    for (const Rule *rule : results.unmatched()) unmatched.push_back(rule->name);
    fmt::print(",\n\"unmatched\": {}}}\n", compact(unmatched));
}

} // namespace app::fleet
