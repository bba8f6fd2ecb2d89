#include "app/read_text.h"

#include "app/problem.h"
#include "app/text_file.h"

#include <fmt/format.h>

#include <set>
#include <utility>
#include <vector>

namespace app {

namespace {

// Which keys each object that is open has had.
class Keys {
public:
    explicit Keys(const std::string &path) : m_path(path) {}

    bool see(Json::parse_event_t event, const Json &parsed)
    {
        if (event == Json::parse_event_t::object_start) m_seen.emplace_back();
        if (event == Json::parse_event_t::object_end) m_seen.pop_back();
        if (event == Json::parse_event_t::key) {
            const std::string key = parsed.get<std::string>();
            if (!m_seen.back().insert(key).second)
                throw Problem(
                    fmt::format("{}: \"{}\" stands twice in one object: remove one", m_path, key));
        }
        return true;
    }

private:
    const std::string &m_path;
    std::vector<std::set<std::string>> m_seen;
};

} // namespace

std::string readText(const std::string &path)
{
    std::string why;
    auto text = readTextFile(path, why);
    if (!text) throw Problem(path + ": " + why);
    return std::move(*text);
}

Json readJson(const std::string &path)
{
    const std::string text = readText(path);
    Keys keys(path);
    try {
        return Json::parse(text, [&](int, Json::parse_event_t event, Json &parsed) {
            return keys.see(event, parsed);
        });
    } catch (const Json::parse_error &broken) {
        // Behind the number of the mistake: "parse error at line 2, column 3: ...".
        const std::string why = broken.what();
        const std::size_t at = why.find("] ");
        throw Problem(fmt::format("{}: is no JSON: {}", path,
                                  at == std::string::npos ? why : why.substr(at + 2)));
    }
}

} // namespace app
