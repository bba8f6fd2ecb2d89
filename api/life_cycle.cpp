// Start and end of the library: the application object and the definition files.
#include "api/guard.h"
#include "api/trv_fmt.h"

#include "definitions/definition_file_manager.h"
#include "foundation/application.h"

#include "uf.h"

namespace {

constexpr const char *kApplicationName = "tr_format";

void initialize(bool load_definitions)
{
    // Reachable through the framework's application pointer until terminate destroys it.
    new QelFmt::Application(kApplicationName);
    if (load_definitions) TrDefinitionFileManager::LoadDefinitionFiles();
}

void terminate()
{
    TrDefinitionFileManager::UnloadDefinitionFiles();
    delete dynamic_cast<QelFmt::Application *>(Lum::App::app());
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
