#include "app/fleet/drawing_handler.h"

#include <memory>

namespace app::fleet {

namespace {

class Opened {
public:
    Opened(Workspace &work, const std::string &path) : m_work(work) { m_work.open(path); }
    ~Opened() { m_work.close(); }
    Opened(const Opened &) = delete;
    Opened &operator=(const Opened &) = delete;

private:
    Workspace &m_work;
};

} // namespace

std::function<Handler()> onDrawings(const Options &options, const std::vector<std::string> &paths,
                                    bool loadDefinitions,
                                    std::function<std::string(Workspace &)> work)
{
    return [&options, &paths, loadDefinitions, work]() -> Handler {
        const auto workspace = std::make_shared<Workspace>(options, loadDefinitions);
        return [&paths, workspace, work](std::size_t item) {
            const Opened opened(*workspace, paths[item]);
            return work(*workspace);
        };
    };
}

} // namespace app::fleet
