// References to attributes in the text of symbols, as older drawings have them.
#include "content/symbol.h"
#include "foundation/log.h"

#include "ug_part.hxx"
#include "ug_session.hxx"

#include <cstdio>
#include <optional>
#include <vector>

namespace QelFmt {

namespace {

// What a line refers to. The target is null when there is no such object.
struct Reference {
    UgAttributableObject *target;
    std::string title;
};

// The scan formats end in a letter that a text which matched so far never has: what counts is how
// many values were read, not that the whole format was met. A line that only begins like a
// reference is one.
std::optional<std::string> titleInPart(const char *line, std::vector<char> &title)
{
    if (std::sscanf(line, "<W@%[^>]s>", title.data()) == 1) return title.data();
    return {};
}

struct ObjectTitle {
    unsigned object;
    std::string title;
};

std::optional<ObjectTitle> titleOnObject(const char *line, std::vector<char> &title)
{
    unsigned object = 0;
    if (std::sscanf(line, "<W!%u@?%[^>]s>", &object, title.data()) == 2 ||
        std::sscanf(line, "<W!%u@%[^>]s>", &object, title.data()) == 2)
        return ObjectTitle{object, title.data()};
    return {};
}

std::optional<Reference> referenceIn(const std::string &line)
{
    std::vector<char> title(line.size() + 1);
    if (const auto found = titleInPart(line.c_str(), title))
        return Reference{UgSession::getWorkPart(), *found};
    if (const auto found = titleOnObject(line.c_str(), title)) {
        QELFMT_INFO << "Looking for object " << found->object;
        return Reference{dynamic_cast<UgAttributableObject *>(UgObject::find(found->object)),
                         found->title};
    }
    return {};
}

std::string evaluated(const std::string &line)
{
    QELFMT_INFO << "Symbol: EvaluateNoteValue: orig Value = " << line;
    const std::optional<Reference> reference = referenceIn(line);
    if (!reference) {
        QELFMT_INFO << "Symbol: coould not find OLD school W attribute.";
        return line;
    }
    if (!reference->target) return line;
    if (!reference->target->hasStringAttribute(reference->title))
        reference->target->addStringAttribute(reference->title, "");
    const std::string value = reference->target->getStringAttributeValue(reference->title);
    QELFMT_INFO << "Symbol: EvaluateNoteValue(): current Value = " << value;
    return value;
}

} // namespace

std::vector<std::string> evaluateSymbolText(const std::vector<std::string> &lines)
{
    std::vector<std::string> values;
    for (const std::string &line : lines) values.push_back(evaluated(line));
    return values;
}

} // namespace QelFmt
