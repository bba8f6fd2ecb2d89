#include "drawing/transformation.h"

#include "uf_trns.h"
#include "ug_exception.hxx"

#include <stdexcept>
#include <string>

namespace {

constexpr int kLastReason = 12;

const char *rotationFailure(int status)
{
    return status == 1 ? "the axis has no direction" : "a parameter is out of range";
}

const char *moveFailure(int status)
{
    switch (status) {
    case 1:
        return "there are too many or too few of them";
    case 2:
        return "a parameter is out of range";
    case 3:
        return "one of them is gone, or is of a kind that cannot be moved";
    }
    return "the platform's modeller refused";
}

// The routines count their reasons from one. These are no codes of the platform: as such they would
// be read as the reasons for which a pattern cannot be retrieved.
void raiseFailure(int status, const char *routine, const char *(*reasonOf)(int))
{
    if (status >= 1 && status <= kLastReason)
        throw std::runtime_error(std::string("Objects of the sheet cannot be moved: ") +
                                 reasonOf(status) + " (" + routine + ", status " +
                                 std::to_string(status) + ").");
    UgException::throwOnFailure(status);
}

void transform(const double matrix[12], const std::vector<tag_t> &objects)
{
    const int count = static_cast<int>(objects.size());
    const int move = 1, originalLayer = 0, noTrace = 2;
    int status = 0;
    FTN(uf5947)
    (matrix, objects.data(), &count, &move, &originalLayer, &noTrace, nullptr, nullptr, &status);
    raiseFailure(status, "uf5947", moveFailure);
}

} // namespace

void moveObjects(const std::vector<tag_t> &objects, double dx, double dy)
{
    double translation[3] = {dx, dy, 0.0};
    double matrix[12];
    FTN(uf5943)(translation, matrix);
    transform(matrix, objects);
}

void turnObject(tag_t object, double x, double y, double degrees)
{
    double origin[3] = {x, y, 0.0};
    double axis[3] = {0.0, 0.0, 1.0};
    double matrix[12] = {};
    int status = 0;
    FTN(uf5945)(origin, axis, &degrees, matrix, &status);
    raiseFailure(status, "uf5945", rotationFailure);
    transform(matrix, {object});
}
