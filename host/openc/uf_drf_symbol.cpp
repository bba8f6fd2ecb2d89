// ID symbols: balloons with one or two lines of text.
#include "openc/drafting.h"
#include "openc/raw_enum.h"
#include "openc/vec3_args.h"

#include "model/calls.h"

#include "uf.h"

using host::IdSymbol;
using host::Session;
namespace drafting = host::drafting;

namespace {

std::string symbolText(const char *text)
{
    std::string kept = text ? text : "";
    if (Session::get().strictLimits) drafting::requireValid(kept.size() <= MAX_ID_SYM_TEXT_LENGTH);
    return kept;
}

} // namespace

// Symbols stand without a leader here; a leader is refused, not dropped.
extern "C" int UF_DRF_create_id_symbol(UF_DRF_id_symbol_type_t id_symbol_type,
                                       const char *upper_text, const char *lower_text,
                                       double origin_3d[3], UF_DRF_leader_mode_t leader_mode,
                                       UF_DRF_leader_attach_type_t leader_attach_type,
                                       UF_DRF_object_p_t, double *, tag_t *id_symbol)
{
    return host::call("UF_DRF_create_id_symbol", [&] {
        host::require(id_symbol, UF_err_bad_parameter_number_5);
        *id_symbol = NULL_TAG;
        const int type = host::rawValue(id_symbol_type);
        const int mode = host::rawValue(leader_mode);
        const int attach = host::rawValue(leader_attach_type);
        drafting::requireValid(type >= UF_DRF_sym_circle && type < UF_DRF_sym_maximum);
        drafting::requireValid(origin_3d && mode == UF_DRF_without_leader);
        drafting::requireValid(attach >= UF_DRF_leader_attach_object &&
                               attach <= UF_DRF_leader_attach_triangle);
        host::Part &part = Session::get().workPart();
        IdSymbol made;
        made.type = type;
        made.upper = symbolText(upper_text);
        made.lower = symbolText(lower_text);
        made.textLines = made.lower.empty() ? 1 : 2;
        made.origin = host::toVec3(origin_3d);
        made.lettering = drafting::letteringForNew(part);
        made.leaderMode = mode;
        made.leaderAttach = attach;
        *id_symbol = Session::get().create(part, std::move(made)).tag;
    });
}

extern "C" int UF_DRF_ask_id_symbol_type(tag_t id_symbol, UF_DRF_id_symbol_type_t *type)
{
    return host::call("UF_DRF_ask_id_symbol_type", [&] {
        drafting::requireValid(type);
        const IdSymbol &symbol =
            Session::get().requireBody<IdSymbol>(id_symbol, UF_DRF_err_invalid_object);
        *type = static_cast<UF_DRF_id_symbol_type_t>(symbol.type);
    });
}
