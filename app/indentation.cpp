#include "app/indentation.h"

#include "content/attributes.h"
#include "content/field.h"
#include "definitions/block_def.h"
#include "definitions/field_def.h"
#include "drawing/block.h"

#include <algorithm>

namespace app {

namespace {

// Of the definition that bears the field's name, also when the field shows that of another one by now.
int definedIndentation(const TrFieldBase &field)
{
    const TrFieldDefV1 linked = field.GetDefinition();
    if (linked.IsNull()) return 0;
    const std::string name = field.GetFieldDefName();
    if (linked.GetId() != name)
        if (const auto block = field.GetBlock())
            if (const auto own = block->GetDefinition()->GetFieldDefinition(name); !own.IsNull())
                return own.GetIndentation();
    return linked.GetIndentation();
}

std::string withoutBlanks(const std::string &text)
{
    return text.substr(static_cast<std::size_t>(blanksBefore(text)));
}

} // namespace

int blanksBefore(const std::string &text)
{
    const std::size_t end = text.find_first_not_of(' ');
    return static_cast<int>(end == std::string::npos ? text.size() : end);
}

// An attribute holds the first line as it was typed; only the first value of a field, which is mostly its
// default, is in the note alone.
int drawnIndentation(const TrFieldBase &field)
{
    const TrFieldBase::Value lines = field.GetNoteValue();
    if (lines.empty() || lines.front().empty() || lines.front().front() != ' ') return 0;
    const std::string &shown = lines.front();
    const int blanks = blanksBefore(shown);
    const auto typed = QelFmt::readAttribute(*field.GetUdoObject(), "VALUE0");
    if (typed && withoutBlanks(*typed) == withoutBlanks(shown))
        return std::max(0, blanks - blanksBefore(*typed));
    if (!typed && !field.GetDefinition().IsNull()) {
        const std::string initial = field.defaultValue().front();
        if (withoutBlanks(initial) == withoutBlanks(shown))
            return std::max(0, blanks - blanksBefore(initial));
    }
    return std::min(blanks, definedIndentation(field));
}

} // namespace app
