#include "app/unknown_verb.h"

#include "app/output.h"

#include <fmt/format.h>

#include <string_view>

namespace app {

std::string unknownVerb(const CLI::App &parser, int argc, char **argv)
{
    const CLI::App *at = &parser;
    std::string path = parser.get_name();
    for (int i = 1; i < argc; ++i) {
        const std::string word = argv[i];
        const auto verbs = at->get_subcommands([](const CLI::App *) { return true; });
        if (verbs.empty()) return {};
        if (word.starts_with('-')) {
            if (word == "--defs") ++i; // its folder is no verb
            continue;
        }
        std::vector<std::string> names;
        const CLI::App *next = nullptr;
        for (const CLI::App *verb : verbs) {
            names.push_back(verb->get_name());
            if (verb->get_name() == word) next = verb;
        }
        if (!next)
            return fmt::format("\"{}\" is no verb of {}: use one of {}", word, path,
                               joined(names, ", "));
        path += " " + word;
        at = next;
    }
    return {};
}

} // namespace app
