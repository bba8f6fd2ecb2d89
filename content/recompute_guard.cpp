#include "content/recompute_guard.h"

#include <algorithm>
#include <vector>

namespace QelFmt {

namespace {

std::vector<tag_t> &fieldsBeingWritten()
{
    static std::vector<tag_t> fields; // the innermost is the last
    return fields;
}

int valuesStayDepth = 0;

} // namespace

WritingField::WritingField(tag_t field) { fieldsBeingWritten().push_back(field); }
WritingField::~WritingField() { fieldsBeingWritten().pop_back(); }

ValuesStay::ValuesStay() { ++valuesStayDepth; }
ValuesStay::~ValuesStay() { --valuesStayDepth; }

bool mayRecompute(tag_t field)
{
    const auto &fields = fieldsBeingWritten();
    return valuesStayDepth == 0 && std::find(fields.begin(), fields.end(), field) == fields.end();
}

} // namespace QelFmt
