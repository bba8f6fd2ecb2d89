#include "app/authoring/record_text.h"

#include "app/authoring/scalars.h"

#include <fmt/format.h>

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
        if (record.layer != kRecordLayer) key("layer", std::to_string(record.layer));
        if (!record.name.empty()) key("object_name", quoted(record.name));
        writeAttributes(record);
        for (const SlotInfo &slot : record.kind->slots) writeSlot(record, slot);
        writeMore(record);
        if (record.children.empty()) return;
        key("children", "");
        for (const RecordTree &child : record.children) write(child, depth + 1);
    }

private:
    void key(const std::string &name, const std::string &value)
    {
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
};

class Reader {
public:
    explicit Reader(YamlFile &file) : m_file(file) {}

    // `owner` is null at the top.
    void readList(const YAML::Node &node, const RecordKind *owner, std::vector<RecordTree> &records)
    {
        const std::string what = owner ? owner->word + ": children" : "records";
        if (!node.IsSequence() && !node.IsNull()) {
            m_file.complain(node, what + " must be a list of records, each with its kind");
            return;
        }
        for (const YAML::Node &one : node) {
            const RecordKind *kind = kindOfNode(one, owner, what);
            if (kind) records.push_back(readRecord(one, *kind));
        }
    }

private:
    static std::string joined(const std::vector<std::string> &words)
    {
        return fmt::format("{}", fmt::join(words, ", "));
    }

    const RecordKind *kindOfNode(const YAML::Node &node, const RecordKind *owner,
                                 const std::string &what)
    {
        std::vector<std::string> words = owner ? owner->children : std::vector<std::string>();
        if (!owner)
            for (const RecordKind &kind : recordKinds()) words.push_back(kind.word);
        const YAML::Node word = node.IsMap() ? node["kind"] : YAML::Node();
        if (!word.IsDefined() || !word.IsScalar()) {
            m_file.complain(node,
                            fmt::format("{}: a record lacks kind: one of {}", what, joined(words)));
            return nullptr;
        }
        // A record of any kind can stand anywhere in a part, so that only the word itself can be wrong.
        const RecordKind *kind = kindOfWord(word.Scalar());
        if (!kind)
            m_file.complain(word, fmt::format("{}: kind: \"{}\" is none of {}", what, word.Scalar(),
                                              joined(words)));
        return kind;
    }

    RecordTree readRecord(const YAML::Node &node, const RecordKind &kind)
    {
        RecordTree record;
        record.kind = &kind;
        const Known known = knownOf(kind);
        std::set<std::string> seen;
        for (const auto &entry : node) {
            const std::string key = entry.first.Scalar();
            m_what = kind.word;
            if (!seen.insert(key).second)
                m_file.complain(entry.first,
                                fmt::format("{}: {} stands here twice", kind.word, key));
            if (key == "kind") continue;
            if (key == "children")
                readList(entry.second, &kind, record.children);
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
                m_file.complain(entry.first, fmt::format("{}: unknown key \"{}\"", kind.word, key));
        }
        return record;
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

    template <class T, class Use> void one(const YAML::Node &node, const std::string &key, Use use)
    {
        if (const auto value = valueOf(node, static_cast<T *>(nullptr)))
            use(*value);
        else
            m_file.complain(node, fmt::format("{}: {}: must be {}", m_what, key,
                                              wanted(static_cast<T *>(nullptr))));
    }

    template <class T> std::vector<T> many(const YAML::Node &node, const std::string &key)
    {
        std::vector<T> values;
        if (!node.IsSequence())
            m_file.complain(node, fmt::format("{}: {}: must be a list", m_what, key));
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
            m_file.complain(node, fmt::format("{}: {}: must be a mapping of titles to texts",
                                              m_what, kMoreAttributes));
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
    std::string m_what;
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

std::vector<RecordTree> readRecords(YamlFile &file, const YAML::Node &node)
{
    std::vector<RecordTree> records;
    Reader(file).readList(node, nullptr, records);
    return records;
}

} // namespace app::authoring
