#include "app/authoring/record_text.h"

#include "app/authoring/scalars.h"
#include "app/authoring/suggestion.h"

#include <fmt/format.h>

#include <algorithm>
#include <set>

namespace app::authoring {

namespace {

// Elements that a record holds beyond those its class knows: a later version of it wrote them.
constexpr const char *kMoreInts = "more_ints";
constexpr const char *kMoreDoubles = "more_doubles";
constexpr const char *kMoreStrings = "more_strings";
constexpr const char *kMoreAttributes = "more_attributes";

struct Known {
    std::size_t ints = 0;
    std::size_t doubles = 0;
    std::size_t strings = 0;
    bool tail = false;   // takes all strings
    bool family = false; // takes all doubles
};

Known knownOf(const RecordKind &kind)
{
    Known known;
    for (const SlotInfo &slot : kind.slots) {
        known.ints += slot.shape == SlotShape::integer;
        known.doubles += slot.shape == SlotShape::real;
        known.strings += slot.shape == SlotShape::text;
        known.tail = known.tail || slot.shape == SlotShape::texts;
        known.family = known.family || slot.shape == SlotShape::reals;
    }
    return known;
}

class Writer {
public:
    std::string text() { return std::move(m_text); }

    void write(const RecordTree &record, int depth)
    {
        m_first = true;
        m_indent = std::string(4 * depth, ' ');
        key("kind", record.kind->word);
        writeKeys(record);
        if (record.children.empty()) return;
        key("children", "");
        for (const RecordTree &child : record.children) write(child, depth + 1);
    }

    // Instead of a text.
    std::vector<std::pair<std::string, std::string>> keysOf(const RecordTree &record)
    {
        m_listed.emplace();
        writeKeys(record);
        return std::move(*m_listed);
    }

private:
    void writeKeys(const RecordTree &record)
    {
        if (record.layer != kRecordLayer) key("layer", std::to_string(record.layer));
        if (!record.name.empty()) key("object_name", quoted(record.name));
        writeAttributes(record);
        for (const SlotInfo &slot : record.kind->slots) writeSlot(record, slot);
        writeMore(record);
    }

    void key(const std::string &name, const std::string &value)
    {
        if (m_listed) {
            m_listed->emplace_back(name, value);
            return;
        }
        m_text += m_indent + (m_first ? "- " : "  ") + name + ":" + (value.empty() ? "" : " ") +
                  value + "\n";
        m_first = false;
    }

    template <class Values, class ToText>
    void list(const std::string &name, const Values &values, ToText toText)
    {
        std::string line;
        for (const auto &value : values) line += (line.empty() ? "" : ", ") + toText(value);
        key(name, "[" + line + "]");
    }

    // In the order in which they were set.
    void writeAttributes(const RecordTree &record)
    {
        bool known = true;
        for (const auto &[title, value] : record.attributes) {
            const SlotInfo *slot = record.kind->attribute(title);
            known = known && slot;
            if (slot) key(slot->key, quoted(value));
        }
        if (known) return;
        std::string line;
        for (const auto &[title, value] : record.attributes)
            if (!record.kind->attribute(title))
                line += (line.empty() ? "" : ", ") + quoted(title) + ": " + quoted(value);
        key(kMoreAttributes, "{" + line + "}");
    }

    void writeSlot(const RecordTree &record, const SlotInfo &slot)
    {
        switch (slot.shape) {
        case SlotShape::integer:
            if (slot.index < record.ints.size())
                key(slot.key, std::to_string(record.ints[slot.index]));
            break;
        case SlotShape::real:
            if (slot.index < record.doubles.size())
                key(slot.key, realText(record.doubles[slot.index]));
            break;
        case SlotShape::text:
            if (slot.index < record.strings.size())
                key(slot.key, quoted(record.strings[slot.index]));
            break;
        case SlotShape::texts:
            if (slot.index < record.strings.size()) list(slot.key, record.texts(slot.key), quoted);
            break;
        case SlotShape::reals:
            writeFamily(record, slot);
            break;
        case SlotShape::attribute:
            break; // written before
        }
    }

    void writeFamily(const RecordTree &record, const SlotInfo &slot)
    {
        std::vector<double> values;
        for (std::size_t i = slot.index; i < record.doubles.size(); i += slot.stride)
            values.push_back(record.doubles[i]);
        if (!values.empty()) list(slot.key, values, realText);
    }

    template <class Values> static Values beyond(const Values &values, std::size_t known)
    {
        return known < values.size() ? Values(values.begin() + known, values.end()) : Values();
    }

    void writeMore(const RecordTree &record)
    {
        const Known known = knownOf(*record.kind);
        const auto ints = beyond(record.ints, known.ints);
        const auto doubles =
            known.family ? std::vector<double>() : beyond(record.doubles, known.doubles);
        const auto strings =
            known.tail ? std::vector<std::string>() : beyond(record.strings, known.strings);
        if (!ints.empty()) list(kMoreInts, ints, [](int value) { return std::to_string(value); });
        if (!doubles.empty()) list(kMoreDoubles, doubles, realText);
        if (!strings.empty()) list(kMoreStrings, strings, quoted);
    }

    std::string m_text;
    std::string m_indent;
    bool m_first = true;
    std::optional<std::vector<std::pair<std::string, std::string>>> m_listed;
};

class Reader {
public:
    explicit Reader(YamlFile &file) : m_file(file) {}

    // `owner` is null at the top; `where` names it.
    void readList(const YAML::Node &node, const RecordKind *owner, const std::string &where,
                  std::vector<RecordTree> &records)
    {
        if (!node.IsSequence() && !node.IsNull()) {
            complain(node, where, owner ? "children" : "records",
                     "must be a list of records, each with its kind");
            return;
        }
        for (const YAML::Node &one : node) {
            // A record of any kind can stand anywhere in a part, so that only the word can be wrong.
            const auto words = owner ? owner->children : allWords();
            if (const RecordKind *kind = kindOfNode(one, words, where))
                records.push_back(readRecord(one, *kind, owner ? where : std::string()));
        }
    }

    std::optional<RecordTree> readOne(const YAML::Node &node, const std::vector<std::string> &words,
                                      const std::string &where)
    {
        const RecordKind *kind = kindOfNode(node, words, where);
        if (!kind) return {};
        if (std::find(words.begin(), words.end(), kind->word) == words.end()) {
            complain(node["kind"], where, "kind", notOneOf(kind->word, words));
            return {};
        }
        return readRecord(node, *kind, where);
    }

private:
    static std::vector<std::string> allWords()
    {
        std::vector<std::string> words;
        for (const RecordKind &kind : recordKinds()) words.push_back(kind.word);
        return words;
    }

    static std::string notOneOf(const std::string &word, const std::vector<std::string> &words)
    {
        return fmt::format("\"{}\" is none of {}", word, fmt::join(words, ", "));
    }

    void complain(const YAML::Node &node, const std::string &where, const std::string &key,
                  const std::string &text)
    {
        m_file.complain(node, where, key, text);
    }

    const RecordKind *kindOfNode(const YAML::Node &node, const std::vector<std::string> &words,
                                 const std::string &where)
    {
        const YAML::Node word = node.IsMap() ? node["kind"] : YAML::Node();
        if (!word.IsDefined() || !word.IsScalar()) {
            complain(node, where, "kind",
                     fmt::format("is missing: one of {}", fmt::join(words, ", ")));
            return nullptr;
        }
        const RecordKind *kind = kindOfWord(word.Scalar());
        if (!kind) complain(word, where, "kind", notOneOf(word.Scalar(), words));
        return kind;
    }

    // "block TITLE, field number"
    static std::string nameOf(const YAML::Node &node, const RecordKind &kind,
                              const std::string &owner)
    {
        const YAML::Node id = node["id"];
        const std::string name = id.IsDefined() && id.IsScalar() && !id.Scalar().empty()
                                     ? kind.word + " " + id.Scalar()
                                     : kind.word;
        return owner.empty() ? name : owner + ", " + name;
    }

    RecordTree readRecord(const YAML::Node &node, const RecordKind &kind, const std::string &owner)
    {
        RecordTree record;
        record.kind = &kind;
        record.origin = {"", markOf(node)};
        const Known known = knownOf(kind);
        const std::string where = nameOf(node, kind, owner);
        std::set<std::string> seen;
        for (const auto &entry : node) {
            const std::string key = entry.first.Scalar();
            m_where = where;
            if (!seen.insert(key).second)
                complain(entry.first, where, key, "stands here twice: remove one of them");
            if (key == "kind") continue;
            if (key == "children")
                readList(entry.second, &kind, where, record.children);
            else if (key == "layer")
                one<int>(entry.second, key, [&](int value) { record.layer = value; });
            else if (key == "object_name")
                one<std::string>(entry.second, key,
                                 [&](const std::string &value) { record.name = value; });
            else if (key == kMoreInts)
                append(entry.second, key, known.ints, record.ints);
            else if (key == kMoreDoubles)
                append(entry.second, key, known.doubles, record.doubles);
            else if (key == kMoreStrings)
                append(entry.second, key, known.strings, record.strings);
            else if (key == kMoreAttributes)
                readAttributes(entry.second, record);
            else if (const SlotInfo *slot = kind.slot(key))
                readSlot(entry.second, *slot, record);
            else
                complain(entry.first, where, key, "unknown key" + suggestionFor(key, keysOf(kind)));
        }
        return record;
    }

    static std::set<std::string> keysOf(const RecordKind &kind)
    {
        std::set<std::string> keys{"kind", "children", "layer"};
        for (const SlotInfo &slot : kind.slots) keys.insert(slot.key);
        return keys;
    }

    static std::optional<int> valueOf(const YAML::Node &node, int *) { return integerOf(node); }
    static std::optional<double> valueOf(const YAML::Node &node, double *) { return realOf(node); }
    static std::optional<std::string> valueOf(const YAML::Node &node, std::string *)
    {
        return textOf(node);
    }
    static const char *wanted(int *) { return "a whole number"; }
    static const char *wanted(double *) { return "a number"; }
    static const char *wanted(std::string *) { return "a text"; }

    template <class T> void one(const YAML::Node &node, const std::string &key, auto use)
    {
        if (const auto value = valueOf(node, static_cast<T *>(nullptr)))
            use(*value);
        else
            complain(node, m_where, key,
                     fmt::format("must be {}", wanted(static_cast<T *>(nullptr))));
    }

    template <class T> std::vector<T> many(const YAML::Node &node, const std::string &key)
    {
        std::vector<T> values;
        if (!node.IsSequence())
            complain(node, m_where, key, "must be a list");
        else
            for (const YAML::Node &item : node)
                one<T>(item, key, [&](const T &value) { values.push_back(value); });
        return values;
    }

    template <class T>
    void append(const YAML::Node &node, const std::string &key, std::size_t known,
                std::vector<T> &target)
    {
        if (target.size() < known) target.resize(known);
        for (T &value : many<T>(node, key)) target.push_back(std::move(value));
    }

    void readAttributes(const YAML::Node &node, RecordTree &record)
    {
        if (!node.IsMap()) {
            complain(node, m_where, kMoreAttributes, "must be a mapping of titles to texts");
            return;
        }
        for (const auto &entry : node) {
            const auto title = textOf(entry.first);
            one<std::string>(entry.second, kMoreAttributes, [&](const std::string &value) {
                record.attributes.emplace_back(title.value_or(""), value);
            });
        }
    }

    void readSlot(const YAML::Node &node, const SlotInfo &slot, RecordTree &record)
    {
        record.origins[slot.key] = {slot.key, markOf(node)};
        const auto put = [&](const auto &value) { record.put(slot, value); };
        switch (slot.shape) {
        case SlotShape::integer:
            one<int>(node, slot.key, put);
            break;
        case SlotShape::real:
            one<double>(node, slot.key, put);
            break;
        case SlotShape::text:
        case SlotShape::attribute:
            one<std::string>(node, slot.key, put);
            break;
        case SlotShape::texts:
            put(many<std::string>(node, slot.key));
            break;
        case SlotShape::reals:
            put(many<double>(node, slot.key));
            break;
        }
    }

    YamlFile &m_file;
    std::string m_where; // of the record being read
};

} // namespace

std::string recordsToText(const RecordFile &file)
{
    Writer writer;
    for (const RecordTree &record : file.records) writer.write(record, 0);
    return fmt::format("# The full form: every slot of every record by its name, in stored order.\n"
                       "units: {}\nrecords:{}\n",
                       file.units == 1 ? "mm" : "in", file.records.empty() ? " []" : "") +
           writer.text();
}

std::string slotText(const RecordTree &record, const SlotInfo &slot)
{
    const auto listed = [](const auto &values, auto toText) {
        std::string text;
        for (const auto &value : values) text += (text.empty() ? "" : ", ") + toText(value);
        return "[" + text + "]";
    };
    switch (slot.shape) {
    case SlotShape::integer:
        return std::to_string(record.integer(slot.key));
    case SlotShape::real:
        return realText(record.real(slot.key));
    case SlotShape::text:
    case SlotShape::attribute:
        return quoted(record.text(slot.key));
    case SlotShape::texts:
        return listed(record.texts(slot.key), quoted);
    case SlotShape::reals: {
        std::vector<double> values;
        for (std::size_t i = slot.index; i < record.doubles.size(); i += slot.stride)
            values.push_back(record.doubles[i]);
        return listed(values, realText);
    }
    }
    return {};
}

std::vector<std::pair<std::string, std::string>> storedKeys(const RecordTree &record)
{
    return Writer().keysOf(record);
}

std::string recordToText(const RecordTree &record, int depth)
{
    Writer writer;
    writer.write(record, depth);
    return writer.text();
}

std::vector<RecordTree> readRecords(YamlFile &file, const YAML::Node &node)
{
    std::vector<RecordTree> records;
    Reader(file).readList(node, nullptr, "records", records);
    return records;
}

std::optional<RecordTree> readRecord(YamlFile &file, const YAML::Node &node,
                                     const std::vector<std::string> &words,
                                     const std::string &where)
{
    return Reader(file).readOne(node, words, where);
}

bool isWholeRecord(const YAML::Node &node) { return node.IsMap() && node["kind"].IsDefined(); }

} // namespace app::authoring
