#include "uf_patt.h"

#include "openc/pattern_library.h"
#include "openc/raw_enum.h"
#include "openc/vec3_args.h"

#include "model/calls.h"
#include "model/session.h"

#include "uf.h"
#include "uf_obj.h"
#include "uf_part.h"

#include <algorithm>
#include <cmath>
#include <cstring>

using host::Pattern;
using host::Session;

namespace {

constexpr int kNotFound = 1;
constexpr int kInvalidName = 20;
constexpr int kNotOrthogonal = 21;
constexpr int kScaleNotPositive = 22;
constexpr int kConvertUnits = 1;
constexpr int kKeepUnits = 2;
constexpr double kMillimetresPerInch = 25.4;

bool isOrthogonal(const double rotation[9])
{
    for (int i = 0; i < 3; ++i) {
        for (int j = i; j < 3; ++j) {
            double dot = 0.0;
            for (int k = 0; k < 3; ++k) dot += rotation[3 * i + k] * rotation[3 * j + k];
            if (!(std::abs(dot - (i == j ? 1.0 : 0.0)) < 1e-6)) return false;
        }
    }
    return true;
}

// rotation, origin, scale as the interface lists them
Pattern placedAs(const double transform[13])
{
    host::require(isOrthogonal(transform), kNotOrthogonal);
    host::require(std::isfinite(transform[12]) && transform[12] > 0.0, kScaleNotPositive);
    const bool finite =
        std::isfinite(transform[9]) && std::isfinite(transform[10]) && std::isfinite(transform[11]);
    host::require(finite, UF_PATT_err_bad_argument);
    Pattern pattern;
    std::copy_n(transform, 9, pattern.rotation.begin());
    pattern.origin = host::toVec3(transform + 9);
    pattern.scale = transform[12];
    return pattern;
}

double unitFactor(int masterUnits, int partUnits)
{
    if (masterUnits == partUnits) return 1.0;
    return masterUnits == UF_PART_ENGLISH ? kMillimetresPerInch : 1.0 / kMillimetresPerInch;
}

// The name of the object: the one given, else the file name exactly as it was passed.
std::string nameFor(const char *pattern_name, const std::string &file)
{
    const std::string name = pattern_name ? pattern_name : "";
    host::require(name.size() <= UF_OBJ_NAME_LEN, kInvalidName);
    return name.empty() ? file : name;
}

std::shared_ptr<const host::PatternMaster> masterNamed(const std::string &file)
{
    const std::string path = host::patterns::fileOf(file);
    host::require(!path.empty(), kNotFound);
    return host::patterns::masterFrom(path, file);
}

int checkedSwitch(int value, int codeOtherwise)
{
    host::require(value == UF_PATT_off || value == UF_PATT_on, codeOtherwise);
    return value;
}

void copyText(char *to, const std::string &text)
{
    if (!to) return;
    const std::size_t length = std::min<std::size_t>(text.size(), MAX_FSPEC_BUFSIZE - 1);
    std::memcpy(to, text.data(), length);
    to[length] = '\0';
}

} // namespace

extern "C" int UF_PATT_set_params(tag_t pattern, UF_PATT_switch_t origin_status,
                                  UF_PATT_switch_t max_min_status,
                                  UF_PATT_switch_t control_pt_status)
{
    return host::call("UF_PATT_set_params", [&] {
        const std::array<int, 3> switches{
            checkedSwitch(host::rawValue(origin_status), UF_err_bad_parameter_number_2),
            checkedSwitch(host::rawValue(max_min_status), UF_err_bad_parameter_number_3),
            checkedSwitch(host::rawValue(control_pt_status), UF_err_bad_parameter_number_4)};
        if (pattern == NULL_TAG) {
            Session::get().patternSwitches = switches;
            return;
        }
        Pattern &body = Session::get().requireBody<Pattern>(pattern, UF_err_wrong_class);
        if (body.switches == switches) return;
        Session::get().changing(Session::get().require(pattern), "pattern switches");
        body.switches = switches;
    });
}

extern "C" int uc5823(char *file_name, char *pattern_name, int autoscale_option,
                      double transform_data[13], tag_t *pattern)
{
    return host::call("uc5823", [&] {
        host::require(pattern, UF_PATT_err_bad_argument);
        *pattern = NULL_TAG;
        host::require(file_name && transform_data, UF_PATT_err_bad_argument);
        host::require(autoscale_option == kConvertUnits || autoscale_option == kKeepUnits,
                      UF_PATT_err_bad_argument);
        host::Part &part = Session::get().workPart();
        const std::string name = nameFor(pattern_name, file_name);
        Pattern placed = placedAs(transform_data);
        placed.master = host::patterns::sharedIn(part, masterNamed(file_name));
        if (autoscale_option == kConvertUnits)
            placed.scale *= unitFactor(placed.master->units, part.units);
        placed.switches = Session::get().patternSwitches;
        host::Object &object = Session::get().create(part, std::move(placed));
        Session::get().rename(object, name);
        *pattern = object.tag;
    });
}

extern "C" int uc5822(tag_t pattern, char *name, char *file_name, int *view_dependent, int *layer,
                      int *status, double transform_data[13])
{
    return host::call("uc5822", [&] {
        const Pattern &body = Session::get().requireBody<Pattern>(pattern, UF_err_wrong_class);
        const host::Object &object = Session::get().require(pattern);
        copyText(name, object.name);
        copyText(file_name, body.master ? body.master->fileName : std::string());
        if (view_dependent) *view_dependent = object.view != NULL_TAG;
        if (layer) *layer = object.appearance.layer;
        if (status) *status = object.appearance.blanked;
        if (!transform_data) return;
        std::copy(body.rotation.begin(), body.rotation.end(), transform_data);
        host::copyTo(transform_data + 9, body.origin);
        transform_data[12] = body.scale;
    });
}
