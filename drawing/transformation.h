// Moving and turning objects on the sheet.
#pragma once

#include "uf_defs.h"

#include <vector>

// Moves the objects, all or none.
void moveObjects(const std::vector<tag_t> &objects, double dx, double dy);
// Turns the object by so many degrees about a point of the sheet.
void turnObject(tag_t object, double x, double y, double degrees);
