#include "uf_layer.h"

#include "model/calls.h"
#include "model/session.h"
#include "uf.h"

using host::Object;
using host::Part;
using host::Session;

namespace {

void requireLayer(int layer)
{
    host::require(layer >= UF_LAYER_MIN_LAYER && layer <= UF_LAYER_MAX_LAYER, UF_err_layer_range);
}

int &statusOf(Part &part, int layer) { return part.layerStatus[static_cast<std::size_t>(layer)]; }

void makeWorkLayer(Part &part, int layer)
{
    if (part.workLayer == layer) return;
    Session::get().changing(part, "work layer");
    statusOf(part, part.workLayer) = UF_LAYER_ACTIVE_LAYER;
    statusOf(part, layer) = UF_LAYER_WORK_LAYER;
    part.workLayer = layer;
}

void setStatus(Part &part, int layer, int status)
{
    if (statusOf(part, layer) == status) return;
    Session::get().changing(part, "layer status");
    statusOf(part, layer) = status;
}

} // namespace

int UF_LAYER_set_status(const int layer, const int status)
{
    return host::call("UF_LAYER_set_status", [&] {
        requireLayer(layer);
        host::require(status >= UF_LAYER_WORK_LAYER && status <= UF_LAYER_INACTIVE_LAYER,
                      UF_err_bad_parameter_number_2);
        Part &part = Session::get().workPart();
        if (status == UF_LAYER_WORK_LAYER)
            makeWorkLayer(part, layer);
        else if (layer != part.workLayer) // the work layer keeps its status: no error
            setStatus(part, layer, status);
    });
}

int UF_LAYER_ask_status(const int layer, int *status)
{
    return host::call("UF_LAYER_ask_status", [&] {
        requireLayer(layer);
        host::require(status != nullptr, UF_err_bad_parameter_number_2);
        *status = statusOf(Session::get().workPart(), layer);
    });
}

int UF_LAYER_ask_work_layer(int *layer)
{
    return host::call("UF_LAYER_ask_work_layer", [&] {
        host::require(layer != nullptr, UF_err_bad_parameter_number_1);
        *layer = Session::get().workPart().workLayer;
    });
}

int UF_LAYER_set_all_but_work(const int status)
{
    return host::call("UF_LAYER_set_all_but_work", [&] {
        host::require(status >= UF_LAYER_ACTIVE_LAYER && status <= UF_LAYER_INACTIVE_LAYER,
                      UF_err_bad_parameter_number_1);
        Part &part = Session::get().workPart();
        for (int layer = UF_LAYER_MIN_LAYER; layer <= UF_LAYER_MAX_LAYER; ++layer)
            if (layer != part.workLayer) setStatus(part, layer, status);
    });
}

int UF_LAYER_cycle_by_layer(int layer, tag_t *object)
{
    return host::call("UF_LAYER_cycle_by_layer", [&] {
        requireLayer(layer);
        host::require(object != nullptr, UF_err_bad_parameter_number_2);
        const Part &part = Session::get().workPart();
        auto place = part.objects.begin();
        if (*object != NULL_TAG) {
            const Object &last = Session::get().require(*object);
            host::require(last.part == &part, UF_err_other_part);
            place = part.objects.upper_bound(last.ordinal);
        }
        const auto onLayer = [&](const Object &found) {
            return found.status == host::Status::alive && found.appearance.layer == layer &&
                   !found.as<host::Sheet>() && !found.as<host::View>() &&
                   !found.as<host::FontTable>();
        };
        while (place != part.objects.end() && !onLayer(*place->second)) ++place;
        *object = place == part.objects.end() ? NULL_TAG : place->second->tag;
    });
}
