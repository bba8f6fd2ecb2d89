#include "app/authoring/suggestion.h"

#include <fmt/format.h>

#include <algorithm>
#include <numeric>
#include <vector>

namespace app::authoring {

namespace {

constexpr std::size_t kClose = 2; // letters inserted, left out or exchanged

std::size_t distance(const std::string &a, const std::string &b)
{
    std::vector<std::size_t> row(b.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 0; i < a.size(); ++i) {
        std::size_t diagonal = row[0];
        row[0] = i + 1;
        for (std::size_t k = 0; k < b.size(); ++k) {
            const std::size_t exchanged = diagonal + (a[i] != b[k]);
            diagonal = row[k + 1];
            row[k + 1] = std::min({row[k + 1] + 1, row[k] + 1, exchanged});
        }
    }
    return row.back();
}

} // namespace

std::string suggestionFor(const std::string &word, const std::set<std::string> &known)
{
    const auto closest =
        std::min_element(known.begin(), known.end(), [&](const auto &a, const auto &b) {
            return distance(word, a) < distance(word, b);
        });
    if (closest != known.end() && distance(word, *closest) <= kClose)
        return fmt::format(": did you mean {}?", *closest);
    std::vector<std::string> words;
    for (const std::string &one : known)
        if (one.find('_') == std::string::npos) words.push_back(one);
    if (words.empty()) return {};
    return fmt::format(": it is none of {}", fmt::join(words, ", "));
}

} // namespace app::authoring
