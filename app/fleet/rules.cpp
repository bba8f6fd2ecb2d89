#include "app/fleet/rules.h"

#include "app/authoring/yaml_reader.h"
#include "app/output.h"
#include "app/read_text.h"

#include <fmt/format.h>
#include <fnmatch.h>

#include <algorithm>
#include <functional>
#include <set>
#include <stdexcept>

namespace app::fleet {

namespace {

using authoring::Mapping;
using authoring::YamlFile;

bool like(const std::string &pattern, const std::string &text)
{
    return fnmatch(pattern.c_str(), text.c_str(), 0) == 0;
}

constexpr std::initializer_list<authoring::Word> kSeverities{
    {"error", static_cast<int>(Severity::error)},
    {"warning", static_cast<int>(Severity::warning)},
    {"note", static_cast<int>(Severity::note)}};
constexpr int kOff = -1;

// --- what a rule asks -------------------------------------------------------------------------

class TestReader {
public:
    explicit TestReader(Mapping &mapping) : m_mapping(mapping) {}

    // The test of the key, which the rule has; null after a complaint.
    TestPtr read(const std::string &key)
    {
        try {
            return kTests.at(key)(*this, key);
        } catch (const std::invalid_argument &wrong) {
            m_mapping.complain(key, wrong.what());
            return nullptr;
        }
    }

    static std::vector<std::string> keys()
    {
        std::vector<std::string> all;
        for (const auto &[key, make] : kTests) all.push_back(key);
        return all;
    }

private:
    using Make = std::function<TestPtr(TestReader &, const std::string &key)>;

    static void requireYes(const std::string &text, const char *otherwise = "")
    {
        if (text != "yes" && text != "true")
            throw std::invalid_argument(fmt::format("write yes{}, or leave it out", otherwise));
    }
    template <TestPtr (*make)()> static TestPtr plain(TestReader &reader, const std::string &key)
    {
        requireYes(reader.text(key));
        return make();
    }
    // "yes" for the usual form.
    template <TestPtr (*make)(const std::string &)>
    static TestPtr formed(TestReader &reader, const std::string &key)
    {
        const std::string text = reader.text(key);
        if (text.empty() || text == "no" || text == "false") requireYes(text, ", or a form");
        return make(text == "yes" || text == "true" ? "" : text);
    }

    std::string text(const std::string &key)
    {
        const auto text = m_mapping.text(key);
        return text ? *text : throw Complained();
    }
    std::vector<std::string> texts(const std::string &key)
    {
        const auto texts = m_mapping.texts(key);
        return texts ? *texts : throw Complained();
    }
    TestPtr newestRevision(const std::string &key)
    {
        if (!m_mapping.node(key).IsMap()) return newestRevisionTest(text(key), {});
        Mapping inner(m_mapping.file(), m_mapping.node(key), m_mapping.what() + ", " + key);
        inner.require("column", "BLOCK.TABLE.COLUMN, as in REVISIONS.REVISIONS.index");
        const auto withoutRows = inner.text("without-rows");
        const auto column = inner.text("column");
        return column ? newestRevisionTest(*column, withoutRows) : nullptr;
    }

    static const std::map<std::string, Make> kTests;

    Mapping &m_mapping;

public:
    // The mapping has complained already.
    struct Complained {};
};

const std::map<std::string, TestReader::Make> TestReader::kTests{
    {"filled", plain<filledTest>},
    {"pattern", [](TestReader &r, const std::string &key) { return patternTest(r.text(key)); }},
    {"one-of", [](TestReader &r, const std::string &key) { return oneOfTest(r.texts(key)); }},
    {"date", [](TestReader &r, const std::string &key) { return dateTest(r.texts(key)); }},
    {"fits", plain<fitsTest>},
    {"file-name", formed<fileNameTest>},
    {"equals", [](TestReader &r, const std::string &key) { return equalsTest(r.text(key)); }},
    {"same-on-all-sheets", plain<sameOnAllSheetsTest>},
    {"newest-revision",
     [](TestReader &r, const std::string &key) { return r.newestRevision(key); }},
    {"sheet-count", formed<sheetCountTest>},
};

// --- the file -----------------------------------------------------------------------------------

class RulesReader {
public:
    explicit RulesReader(const std::string &path) : m_file{path, {}} {}

    Rules read()
    {
        m_rules = usualRules();
        m_rules.path = m_file.path;
        for (const auto &[state, severity] : m_rules.states) m_names.insert(nameOf(state));
        try {
            readFile(YAML::Load(readText(m_file.path)));
        } catch (const YAML::ParserException &broken) {
            m_file.complain(broken);
        }
        if (!m_file.complaints.empty()) throw authoring::Complaints(m_file.complaints);
        return std::move(m_rules);
    }

private:
    void readFile(const YAML::Node &root)
    {
        Mapping top(m_file, root, "the file");
        if (top.has("states")) readStates(top.node("states"));
        top.require("rules", "a list of rules; [] for none");
        const YAML::Node rules = top.node("rules");
        if (!rules.IsDefined() || rules.IsNull()) return;
        if (!rules.IsSequence()) return top.complain("rules", "must be a list of rules");
        for (const YAML::Node &rule : rules) readRule(rule);
    }

    void readStates(const YAML::Node &node)
    {
        if (node.IsScalar() && (node.Scalar() == "off" || node.Scalar() == "no")) {
            m_rules.states.clear();
            return;
        }
        Mapping states(m_file, node, "states");
        for (const auto &[state, usual] : usualRules().states) {
            const auto word =
                states.word(nameOf(state), {{"error", static_cast<int>(Severity::error)},
                                            {"warning", static_cast<int>(Severity::warning)},
                                            {"note", static_cast<int>(Severity::note)},
                                            {"off", kOff}});
            if (!word) continue;
            if (*word == kOff)
                m_rules.states.erase(state);
            else
                m_rules.states[state] = static_cast<Severity>(*word);
        }
    }

    void readRule(const YAML::Node &node)
    {
        Rule rule;
        rule.line = node.Mark().line + 1;
        Mapping mapping(m_file, node,
                        fmt::format("rule {}", ++m_count)); // before it is known by name
        if (!node.IsMap()) return;
        rule.name = mapping.text("name").value_or("");
        readFields(mapping, rule);
        rule.formats = mapping.texts("formats").value_or(std::vector<std::string>{});
        if (const auto word = mapping.word("severity", kSeverities))
            rule.severity = static_cast<Severity>(*word);
        readTest(mapping, rule);
        if (mapping.has("remedy")) rule.remedy = mapping.text("remedy").value_or("");
        if (!rule.question) return;
        if (rule.remedy.empty()) rule.remedy = rule.question->remedy();
        checkRows(mapping, rule);
        nameRule(mapping, rule);
        m_rules.rules.push_back(std::move(rule));
    }

    void readFields(Mapping &mapping, Rule &rule)
    {
        mapping.require("field", "BLOCK.FIELD, or a list of them; * and ? are allowed");
        for (const std::string &text : mapping.texts("field").value_or(m_none)) {
            try {
                rule.fields.emplace_back(text);
                m_fields.push_back(text);
            } catch (const std::invalid_argument &wrong) {
                mapping.complain("field", wrong.what());
            }
        }
    }

    void readTest(Mapping &mapping, Rule &rule)
    {
        std::vector<std::string> given;
        for (const std::string &key : TestReader::keys())
            if (mapping.has(key)) given.push_back(key);
        if (given.empty()) mapping.require("a test", "one of " + joined(TestReader::keys(), ", "));
        if (given.size() > 1)
            mapping.complain(given[1], fmt::format("the rule has {} already: give each test a "
                                                   "rule of its own",
                                                   given[0]));
        for (const std::string &key : given) { // all, for what else is wrong with them
            try {
                TestPtr test = TestReader(mapping).read(key);
                if (key != given[0]) continue;
                rule.test = key;
                rule.question = std::move(test);
            } catch (const TestReader::Complained &) {
            }
        }
    }

    static void checkRows(Mapping &mapping, const Rule &rule)
    {
        if (rule.question->takesRows()) return;
        for (const ValuePattern &field : rule.fields)
            if (field.ofRows())
                return mapping.complain(
                    "field", fmt::format("{} looks at fields of blocks, not at rows of tables: "
                                         "write BLOCK.FIELD",
                                         rule.test));
    }

    void nameRule(Mapping &mapping, Rule &rule)
    {
        const bool given = !rule.name.empty();
        if (!given) {
            const auto own = m_fields.end() - static_cast<std::ptrdiff_t>(rule.fields.size());
            rule.name = rule.test + " " + joined({own, m_fields.end()}, ", ");
            if (!rule.formats.empty()) rule.name += " (" + joined(rule.formats, ", ") + ")";
        }
        const std::string first = rule.name;
        for (int number = 2; !m_names.insert(rule.name).second; ++number) {
            if (given)
                return mapping.complain("name",
                                        fmt::format("\"{}\" is taken: give the rule a name of "
                                                    "its own",
                                                    first));
            rule.name = fmt::format("{} #{}", first, number);
        }
    }

    YamlFile m_file;
    Rules m_rules;
    int m_count = 0;
    std::set<std::string> m_names;
    std::vector<std::string> m_fields; // as they stand in the text
    const std::vector<std::string> m_none;
};

} // namespace

std::string nameOf(Severity severity)
{
    constexpr const char *kNames[] = {"note", "warning", "error"};
    return kNames[static_cast<int>(severity)];
}

ValuePattern::ValuePattern(const std::string &text)
{
    const std::size_t dot = text.find('.');
    if (dot == std::string::npos || dot == 0 || dot + 1 == text.size())
        throw std::invalid_argument(fmt::format(
            "\"{}\" has to be BLOCK.FIELD, as in TITLE.number, or *.number for every block", text));
    m_block = text.substr(0, dot);
    m_rest = text.substr(dot + 1);
}

bool ValuePattern::ofRows() const { return m_rest.find('.') != std::string::npos; }

bool ValuePattern::matches(const SeenValue &value) const
{
    if (!like(m_block, value.block)) return false;
    if (value.table.empty()) return like(m_rest, value.field);
    return ofRows() && like(m_rest, value.table + "." + value.field);
}

bool Rule::holdsFor(const SeenSheet &sheet) const
{
    const std::string placed = sheet.format + "/" + sheet.size;
    return formats.empty() ||
           std::any_of(formats.begin(), formats.end(), [&](const std::string &pattern) {
               return like(pattern.find('/') == std::string::npos ? pattern + "/*" : pattern,
                           placed);
           });
}

bool Rule::matches(const SeenValue &value) const
{
    return std::any_of(fields.begin(), fields.end(),
                       [&](const ValuePattern &pattern) { return pattern.matches(value); });
}

Rules usualRules()
{
    Rules rules;
    for (const SheetState state :
         {SheetState::legacy, SheetState::orphan, SheetState::miswired, SheetState::drifted})
        rules.states[state] = Severity::error;
    return rules;
}

Rules readRules(const std::string &path) { return RulesReader(path).read(); }

} // namespace app::fleet
