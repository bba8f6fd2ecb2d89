// Definitions as plain values: a test writes them to a definition part, loads them, edits them and
// writes them again, as somebody does who maintains a site's definitions.
#pragma once

#include "tests/support/story.h"

#include <array>
#include <functional>
#include <string>
#include <utility>
#include <vector>

class TrFieldDefV1;

struct FieldDesc {
    std::string id;
    double x = 0.0, y = 0.0;
    std::vector<std::string> defaults = {};
    double width = 0.0, height = 0.0;
    std::array<int, 5> borders = {}; // policies: bottom, left, middle, right, top; 1 is on
    int corner = 0;                  // what x and y are measured from
    int textSite = 7;                // lower left
    int useDefaultInitially = 1;
    std::function<void(TrFieldDefV1 &)> more = {};
};

struct TableDesc {
    std::string id;
    double x = 0.0, y = 0.0;
    std::vector<FieldDesc> fields = {};
    int direction = 1; // rows grow upwards
};

struct PlaceDesc {
    std::string name;
    double x = 0.0, y = 0.0;
    int corner = 0;
};

// The places on the sheets of one format, size by size.
struct PlacesDesc {
    std::string format;
    std::vector<std::pair<std::string, std::vector<PlaceDesc>>> sizes;
};

struct BlockDesc {
    std::string id;
    std::vector<PlacesDesc> places = {};
    std::vector<FieldDesc> fields = {};
    std::vector<TableDesc> tables = {};
    std::string pattern = {};
    int movable = 0;
    int canDelete = 0;
    int units = 1;
    int patternLayer = 20;
    int textLayer = 30;
};

struct SizeDesc {
    std::string id;
    double height = 297.0, length = 420.0;
    int code = 0; // the platform's size code; 0: the height and length above
    std::string frame = {};
    int frameLayer = 10;
    std::string label = {};
    std::string suite = {};
    double rightOffset = 10.0;
    double horzZoneLength = 0.0, vertZoneLength = 0.0;
    int horzZones = 8, vertZones = 6;
    int horzZoneType = 0, vertZoneType = 1;
};

struct FormatDesc {
    std::string id;
    std::vector<SizeDesc> sizes = {};
    std::vector<std::string> required = {};
    int units = 1;
    std::string suite = {};
    std::string category = {};
};

struct Catalog {
    std::vector<FormatDesc> formats;
    std::vector<BlockDesc> blocks;

    FormatDesc &format(const std::string &id);
    BlockDesc &block(const std::string &id);
    FieldDesc &field(const std::string &block, const std::string &id);

    // Writes the definition part anew and loads it; what was loaded before is gone.
    void load(const Story &story) const;
    static void unload();
};

// Format ISO in the sizes A3, A2 and TALL with the required block TITLE and the movable blocks NOTES
// and REV; format PLAIN, in A3 only, which shares TITLE.
Catalog isoCatalog();
