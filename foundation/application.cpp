#include "foundation/application.h"

#include "foundation/guarded_singleton.h"
#include "foundation/log.h"
#include "foundation/registry.h"

namespace QelFmt {

namespace {

// Without a name until the first application gives it one.
struct ProcessRegistry : Registry {
    ProcessRegistry() : Registry("") {}
};

} // namespace

Application::Application(const std::string &name) : LumUg::Application(name)
{
    QELFMT_INFO << "reading in application registry files";
    getRegistry()->resetTo(name);
}

Application::~Application() = default;

Registry *Application::getRegistry() { return &GuardedSingleton<ProcessRegistry>::get(); }

} // namespace QelFmt
