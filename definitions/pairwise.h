// Lists of owned records are equal when they are equal in number and, in link order, one by one.
#pragma once

#include <algorithm>

namespace QelFmt {

template <class List, class Same> bool pairwise(const List &a, const List &b, Same same)
{
    return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(), same);
}

// Shared pointers: what they point to is compared.
template <class List> bool pairwiseEqualTo(const List &a, const List &b)
{
    return pairwise(a, b, [](const auto &x, const auto &y) { return x->equalTo(y.get()); });
}

} // namespace QelFmt
