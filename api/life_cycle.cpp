// Start and end of the library: the application object and the definition files.
#include "api/guard.h"
#include "api/trv_fmt.h"

#include "definitions/definition_file_manager.h"
#include "foundation/application.h"

#include "uf.h"

#include <vector>

namespace {

constexpr const char *kApplicationName = "tr_format";

// Every application object that lives. The framework points at the newest alone: after a second
// initialise the first one stays here, the process's own until it ends.
std::vector<QelFmt::Application *> &applications()
{
    static auto *living = new std::vector<QelFmt::Application *>;
    return *living;
}

void initialize(bool load_definitions)
{
    applications().push_back(new QelFmt::Application(kApplicationName));
    if (load_definitions) TrDefinitionFileManager::LoadDefinitionFiles();
}

void terminate()
{
    TrDefinitionFileManager::UnloadDefinitionFiles();
    auto *application = dynamic_cast<QelFmt::Application *>(Lum::App::app());
    std::erase(applications(), application);
    delete application;
}

} // namespace

extern "C" int TRV_FMT_initialize(void)
{
    return QelFmt::api::guarded([] { initialize(true); });
}

extern "C" int QEL_FMT_initialize(char load_definitions)
{
    return QelFmt::api::guarded([&] { initialize(load_definitions != 0); });
}

extern "C" int TRV_FMT_terminate(void)
{
    return QelFmt::api::guarded([] {
        try {
            terminate();
        } catch (const UgException &failure) {
            // The platform's interface is gone already: there is nothing left to end.
            if (failure.askErrorCode() != UF_err_program_not_initialized) throw;
        }
    });
}
