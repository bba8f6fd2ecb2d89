#include "uf_disp.h"

#include "model/calls.h"
#include "model/session.h"
#include "uf.h"

using host::Session;

// Everything is drawn when a sheet is painted, so showing an object means that it is not blanked.
int UF_DISP_add_item_to_display(tag_t object)
{
    return host::call("UF_DISP_add_item_to_display", [&] {
        host::Object &shown = Session::get().require(object);
        if (!shown.appearance.blanked) return;
        Session::get().changing(shown, "blank status");
        shown.appearance.blanked = false;
    });
}

int UF_DISP_set_highlight(tag_t object, int on)
{
    return host::call("UF_DISP_set_highlight", [&] {
        host::require(on == 0 || on == 1, UF_err_bad_parameter_number_2);
        Session::get().require(object);
        if (on)
            Session::get().highlighted.insert(object);
        else
            Session::get().highlighted.erase(object);
    });
}
