// The settings for new notes and ID symbols, and the symbol files that they draw from.
#include "openc/drafting.h"

#include "model/calls.h"

#include "uf.h"

using host::Lettering;
using host::Session;
namespace drafting = host::drafting;

namespace {

UF_DRF_lettering_t outward(const Lettering &text)
{
    return {text.size,
            text.charSpace,
            text.aspect,
            text.lineSpace,
            {text.color, text.font, text.width}};
}

// Site, justification and angle are kept apart from the four texts.
void takeOver(Lettering &text, const UF_DRF_lettering_t &from)
{
    text.size = from.size;
    text.charSpace = from.character_space_factor;
    text.aspect = from.aspect_ratio;
    text.lineSpace = from.line_space_factor;
    text.color = from.cfw.color;
    text.font = from.cfw.font;
    text.width = from.cfw.width;
}

} // namespace

extern "C" int UF_DRF_ask_lettering_preferences(UF_DRF_lettering_preferences_t *preferences)
{
    return host::call("UF_DRF_ask_lettering_preferences", [&] {
        host::require(preferences, UF_err_bad_parameter_number_1);
        const host::DraftingPreferences &set = Session::get().drafting;
        preferences->align_position = set.general.site;
        preferences->horiz_text_just = set.general.justification;
        preferences->gdt_frame_height_factor = set.frameHeightFactor;
        preferences->angle = set.general.angle;
        preferences->dimension_text = outward(set.otherTexts[0]);
        preferences->appended_text = outward(set.otherTexts[1]);
        preferences->tolerance_text = outward(set.otherTexts[2]);
        preferences->general_text = outward(set.general);
        preferences->dim_dim_line_space_factor = set.spaceFactors[0];
        preferences->dim_app_text_space_factor = set.spaceFactors[1];
        preferences->dim_tol_text_space_factor = set.spaceFactors[2];
    });
}

extern "C" int UF_DRF_set_lettering_preferences(UF_DRF_lettering_preferences_p_t preferences)
{
    return host::call("UF_DRF_set_lettering_preferences", [&] {
        host::require(preferences, UF_err_bad_parameter_number_1);
        host::DraftingPreferences set = Session::get().drafting;
        set.general.site = preferences->align_position;
        set.general.justification = preferences->horiz_text_just;
        set.frameHeightFactor = preferences->gdt_frame_height_factor;
        set.general.angle = preferences->angle;
        takeOver(set.otherTexts[0], preferences->dimension_text);
        takeOver(set.otherTexts[1], preferences->appended_text);
        takeOver(set.otherTexts[2], preferences->tolerance_text);
        takeOver(set.general, preferences->general_text);
        set.spaceFactors = {preferences->dim_dim_line_space_factor,
                            preferences->dim_app_text_space_factor,
                            preferences->dim_tol_text_space_factor};
        drafting::checkLettering(set.general);
        Session::get().drafting = set;
    });
}

extern "C" int UF_DRF_set_customer_sbf_file(void)
{
    return host::call("UF_DRF_set_customer_sbf_file",
                      [] { Session::get().customerSymbolFile = true; });
}

extern "C" int UF_DRF_set_ugdefault_sbf_file(void)
{
    return host::call("UF_DRF_set_ugdefault_sbf_file",
                      [] { Session::get().customerSymbolFile = false; });
}
