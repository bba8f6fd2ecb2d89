// How the indexed arrays grow when an index past their end is written.
#pragma once

#include <string>
#include <vector>

namespace LumUg {

// The elements to append to an array of `size` so that element `index` is `value`. Those in between
// are 0, 1, 2, ... counted from the old end: parts in the field hold that, and must compare equal.
template <class T> std::vector<T> appendedRun(std::size_t size, std::size_t index, const T &value)
{
    std::vector<T> run(index - size + 1);
    for (std::size_t i = 0; i + 1 < run.size(); ++i) run[i] = static_cast<T>(i);
    run.back() = value;
    return run;
}

// Texts in between are empty.
template <>
inline std::vector<std::string> appendedRun(std::size_t size, std::size_t index,
                                            const std::string &value)
{
    std::vector<std::string> run(index - size + 1);
    run.back() = value;
    return run;
}

} // namespace LumUg
