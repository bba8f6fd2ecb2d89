// The names of the zones that the edges of a frame are divided into.
#pragma once

#include <string>

// The label of the zone at an index, by labelling type: 1 letters without I, any other numbers from 1.
// Far off the sheet, where no printed character has the letter's code, a number too.
std::string zoneLabel(int type, int index);

// The length of a zone: the one that is set; else the sheet's over the number of zones; else 0.
double zoneLength(double length, int count, double sheet);

// How many whole zones a distance holds; towards zero, so that index 0 reaches one zone to both
// sides. A distance that is not finite is refused with a standard exception.
int zoneIndex(double distance, double zone);
