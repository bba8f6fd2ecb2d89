// The platform's start-up user exit.
#include "api/trv_fmt.h"

#include "foundation/application.h"
#include "foundation/registry.h"
#include "udo/class_names.h"
#include "udo/udo_class.h"

#include "uf.h"
#include "ug_exception.hxx"
#include "ug_session.hxx"

#include <exception>
#include <string>

namespace {

// Lets users pick the notes and borders of fields, rows and blocks instead of the records.
void allowFieldSelection()
{
    for (const char *name :
         {QelFmt::kFieldV1Classname, QelFmt::kEntryV2Classname, QelFmt::kBlockV1Classname})
        LumUg::UDOClass::setOwnedObjSelection(name, UF_UDOBJ_ALLOW_SELECTION);
}

void applySettings()
{
    const UgSession session(true);
    const QelFmt::Application application("tr_format");
    if (QelFmt::Application::getRegistry()->readIntEntry("Settings", "Field Selection", 0) != 0)
        allowFieldSelection();
}

} // namespace

extern "C" void ufsta(void)
{
    try {
        applySettings();
    } catch (const UgException &failure) {
        // Without a licence of the platform's interface there is nothing to report.
        if (failure.askErrorCode() == UF_err_program_not_initialized) return;
        std::string text = failure.askErrorText();
        UF_print_syslog(text.data(), FALSE);
    } catch (const std::exception &) {
        // The platform starts without the setting: nothing may pass through its call.
    }
}
