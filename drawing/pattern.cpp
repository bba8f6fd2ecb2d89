#include "drawing/pattern.h"

#include "uf_patt.h"
#include "ug_exception.hxx"
#include "ug_session.hxx"

#include <stdexcept>

namespace {

constexpr int kScaleToPartUnits = 1;
constexpr int kSelectable = 2; // layer status
constexpr int kFileNotFound = 1;

tag_t retrieve(std::string name, const std::vector<double> &location)
{
    double placement[13] = {1, 0, 0, 0, 1, 0, 0, 0, 1, location.at(0), location.at(1), 0.0, 1.0};
    char nameOfInstance[] = ""; // empty: the instance is named after the file
    tag_t pattern = NULL_TAG;
    UgException::throwOnFailure(
        uc5823(name.data(), nameOfInstance, kScaleToPartUnits, placement, &pattern));
    return pattern;
}

// In the words of users. That a part without pattern data is not told apart from other failures is
// what callers have always got.
std::runtime_error retrievalError(const std::string &name, int code)
{
    if (code == kFileNotFound)
        return std::runtime_error("Unable to find pattern " + name +
                                  ".\nCheck UGII_PATDIR environment variable.");
    return std::runtime_error("Error while retrieving pattern");
}

tag_t retrieveOrExplain(const std::string &name, const std::vector<double> &location)
{
    try {
        return retrieve(name, location);
    } catch (const UgException &exception) {
        throw retrievalError(name, exception.askErrorCode());
    }
}

} // namespace

ZemPattern *ZemPattern::Create(const std::string &patternName, int layer,
                               const std::vector<double> &location)
{
    const tag_t tag = retrieveOrExplain(patternName, location);
    UgException::throwOnFailure(UF_PATT_set_params(tag, UF_PATT_off, UF_PATT_off, UF_PATT_off));
    auto *pattern = new ZemPattern(tag); // the object table keeps it from here on
    UgSession::setLayerStatus(layer, kSelectable);
    pattern->setLayer(layer);
    return pattern;
}

ZemPattern::ZemPattern(unsigned int tag) : UgDisplayableObject(tag)
{
    if (tag != NULL_TAG && askType() != kObjectType)
        throw std::runtime_error("Passed tag was not a pattern.\n");
}

ZemPattern::~ZemPattern() = default;
