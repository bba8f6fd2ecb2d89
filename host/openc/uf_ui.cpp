#include "uf_ui.h"

#include "model/calls.h"
#include "model/session.h"
#include "uf.h"

using host::Session;

// The text is collected whether the window is open or not: opening is remembered apart.

int UF_UI_open_listing_window(void)
{
    return host::call("UF_UI_open_listing_window", [] { Session::get().infoWindowOpen = true; });
}

int UF_UI_write_listing_window(const char *text)
{
    return host::call("UF_UI_write_listing_window", [&] {
        host::require(text != nullptr, UF_err_bad_parameter_number_1);
        Session::get().infoWindow += text;
    });
}

int UF_UI_close_listing_window(void)
{
    return host::call("UF_UI_close_listing_window", [] { Session::get().infoWindowOpen = false; });
}
