#include "content/symbol_pass.h"

#include <algorithm>
#include <vector>

namespace QelFmt {

namespace {

std::vector<SymbolPass *> &passes()
{
    static std::vector<SymbolPass *> going; // the innermost is the last
    return going;
}

} // namespace

SymbolPass::SymbolPass(tag_t table) : m_table(table) { passes().push_back(this); }
SymbolPass::~SymbolPass() { passes().pop_back(); }

SymbolPass *SymbolPass::over(tag_t table)
{
    const auto found = std::find_if(passes().rbegin(), passes().rend(),
                                    [&](const SymbolPass *one) { return one->m_table == table; });
    return found == passes().rend() ? nullptr : *found;
}

void SymbolPass::rowsChanged(tag_t table)
{
    for (SymbolPass *pass : passes())
        if (pass->m_table == table) pass->m_said.clear();
}

void SymbolPass::valueChanged(std::size_t row)
{
    std::erase_if(m_said, [&](const auto &field) { return field.second.index > row; });
    if (row < m_position) m_leftBehind = true;
}

const std::string *SymbolPass::saidBefore(tag_t row, const std::string &field) const
{
    const auto found = m_said.find(field);
    return found != m_said.end() && found->second.row == row ? &found->second.text : nullptr;
}

void SymbolPass::remember(std::size_t index, tag_t row, const std::string &field, std::string text)
{
    m_said[field] = {index, row, std::move(text)};
}

} // namespace QelFmt
