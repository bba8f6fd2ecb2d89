// Fields and tables find their place from where their block stands.
#pragma once

#include <vector>

// Gives wrappers of a block's children the way to the block's point, which is read whenever they
// ask. Holds on to the record, not to the wrapper of the block, which may be gone by then.
template <class Block, class Children> Children withBase(const Block &block, Children children)
{
    const auto base = [record = block.GetUdoObject()] {
        const Block at(record);
        return std::vector<double>{at.GetX(), at.GetY()};
    };
    for (const auto &child : children) child->getBaseLocationCmd() = base;
    return children;
}
