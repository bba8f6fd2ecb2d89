#include "uf_trns.h"

#include "openc/transformation.h"
#include "openc/vec3_args.h"

#include "model/calls.h"
#include "model/session.h"

#include "uf_layer.h"

#include <algorithm>
#include <cmath>

using host::Body;
using host::Object;
using host::Session;
using host::Transformation;

namespace {

enum Status { kDone = 0, kBadCount = 1, kBadParameter = 2, kInvalidObject = 3 };
enum Mode { kMove = 1, kCopy = 2 };
constexpr int kOriginalLayer = 0;
constexpr int kWorkLayer = -1;
constexpr int kNoTraceCurves = 2;
constexpr int kMostObjects = 32767;

// One object and what becomes of it: everything is worked out before anything is changed.
struct Step {
    Object *object;
    Body body;
    int layer;
};

int layerFor(const Object &object, int destination)
{
    if (destination == kOriginalLayer) return object.appearance.layer;
    return destination == kWorkLayer ? object.part->workLayer : destination;
}

std::vector<Step> stepsFor(const Transformation &transformation, const tag_t objects[], int count,
                           int destination)
{
    std::vector<Step> steps;
    steps.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) {
        Object *object = Session::get().find(objects[i]);
        host::require(object && object->status == host::Status::alive, kInvalidObject);
        auto body = transformation.appliedTo(object->body);
        host::require(body.has_value(), kInvalidObject);
        steps.push_back({object, std::move(*body), layerFor(*object, destination)});
    }
    return steps;
}

void move(Step &step)
{
    Session::get().changing(*step.object, "place");
    step.object->body = std::move(step.body);
    step.object->appearance.layer = step.layer;
}

// A copy stands in the view of its original and carries its attributes; nobody owns it.
tag_t copy(Step &step)
{
    Object &made = Session::get().create(*step.object->part, std::move(step.body));
    made.appearance = step.object->appearance;
    made.appearance.layer = step.layer;
    made.attributes = step.object->attributes;
    Session::get().rename(made, step.object->name);
    Session::get().setView(made, step.object->view);
    return made.tag;
}

} // namespace

extern "C" void FTN(uf5941)(double position[3], double matrix[12])
{
    if (host::enterCall("uf5941") || !position || !matrix) return;
    host::copyTo(position, Transformation(matrix).appliedTo(host::toVec3(position)));
}

extern "C" void FTN(uf5943)(double translation[3], double matrix[12])
{
    if (host::enterCall("uf5943") || !translation || !matrix) return;
    Transformation::translation(host::toVec3(translation)).copyTo(matrix);
}

extern "C" void FTN(uf5945)(double origin[3], double direction[3], double *degrees_rotation,
                            double matrix[12], int *status)
{
    const int code = host::call("uf5945", [&] {
        const bool complete = origin && direction && degrees_rotation && matrix && status;
        host::require(complete && std::isfinite(*degrees_rotation), kBadParameter);
        const host::Vec3 axis = host::toVec3(direction);
        host::require(std::hypot(axis.x, axis.y, axis.z) > 0.0, 1);
        Transformation::rotation(host::toVec3(origin), axis, *degrees_rotation).copyTo(matrix);
    });
    if (status) *status = code;
}

extern "C" void FTN(uf5947)(const double matrix[12], const tag_t objects[], const int *n_objects,
                            const int *move_or_copy, const int *dest_layer, const int *trace_curves,
                            tag_t *copies, tag_t *, int *status)
{
    const int code = host::call("uf5947", [&] {
        host::require(matrix && n_objects && move_or_copy && dest_layer && trace_curves && status,
                      kBadParameter);
        host::require(*n_objects >= 1 && *n_objects <= kMostObjects, kBadCount);
        host::require(*move_or_copy == kMove || (*move_or_copy == kCopy && copies), kBadParameter);
        host::require(*dest_layer >= kWorkLayer && *dest_layer <= UF_LAYER_MAX_LAYER,
                      kBadParameter);
        // Annotation and frame lines leave no trace behind: the option is refused, not ignored.
        host::require(objects && *trace_curves == kNoTraceCurves, kBadParameter);
        const Transformation transformation(matrix);
        host::require(transformation.isFinite(), kBadParameter);
        auto steps = stepsFor(transformation, objects, *n_objects, *dest_layer);
        for (std::size_t i = 0; i < steps.size(); ++i) {
            if (*move_or_copy == kMove)
                move(steps[i]);
            else
                copies[i] = copy(steps[i]);
        }
    });
    if (status) *status = code;
}
