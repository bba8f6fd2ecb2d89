#include "display/note_text.h"

#include <algorithm>

#include "display/utf8.h"

namespace host::display {

namespace {

struct Command {
    char letter = 0;
    std::string_view parameter;
    std::size_t length = 0; // with its brackets; 0: the text does not begin with a command
};

bool isNumber(std::string_view text)
{
    if (!text.empty() && (text[0] == '-' || text[0] == '+')) text.remove_prefix(1);
    const auto digits =
        std::count_if(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
    const auto points =
        std::count_if(text.begin(), text.end(), [](char c) { return c == '.' || c == ','; });
    return digits > 0 && points <= 1 && digits + points == static_cast<std::ptrdiff_t>(text.size());
}

// Commands are capitals with no parameter, a number, or strings with `!` or `@` between.
Command commandAt(std::string_view text)
{
    if (text.size() < 3 || text[0] != '<' || text[1] < 'A' || text[1] > 'Z') return {};
    const auto end = text.find_first_of("<>", 1);
    if (end == std::string_view::npos || text[end] != '>') return {};
    const auto parameter = text.substr(2, end - 2);
    if (!parameter.empty() && !isNumber(parameter) &&
        parameter.find_first_of("!@") == std::string_view::npos)
        return {};
    return {text[1], parameter, end + 1};
}

void appendShown(std::string &shown, const Command &command)
{
    const auto bar = command.parameter.find('!');
    const bool reference = command.letter == 'W' || command.letter == 'X' ||
                           command.parameter.find('@') != std::string_view::npos;
    if (reference || bar == std::string_view::npos) return;
    // A fraction or tolerance must not vanish from a drawing.
    shown.append(command.parameter.substr(0, bar));
    shown += '/';
    shown.append(command.parameter.substr(bar + 1));
}

} // namespace

std::string visibleText(std::string_view evaluated)
{
    std::string shown;
    shown.reserve(evaluated.size());
    while (!evaluated.empty()) {
        if (evaluated[0] == '$' && evaluated.size() > 1 &&
            (evaluated[1] == '<' || evaluated[1] == '>')) {
            shown += evaluated[1];
            evaluated.remove_prefix(2);
        } else if (const Command command = commandAt(evaluated); command.length > 0) {
            appendShown(shown, command);
            evaluated.remove_prefix(command.length);
        } else {
            shown += evaluated[0];
            evaluated.remove_prefix(1);
        }
    }
    return validUtf8(shown);
}

} // namespace host::display
