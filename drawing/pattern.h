// A pattern instance: the fixed graphics of a block or the frame of a format.
#pragma once

#include "udo/export.h"

#include "ug_displayable.hxx"

#include <string>
#include <vector>

// A thin wrapper of one pattern in the work part. Whoever makes the pattern takes it into its owned
// objects; the wrapper itself belongs to the object table and is never deleted by callers.
class QELFMT_API ZemPattern : public UgDisplayableObject {
public:
    // The platform's type of patterns.
    static constexpr int kObjectType = 10;

    // Retrieves the named pattern at a point (x, y; what follows is ignored) and puts it on a layer,
    // which becomes selectable.
    static ZemPattern *Create(const std::string &patternName, int layer,
                              const std::vector<double> &location);

protected:
    explicit ZemPattern(unsigned int tag); // 0: unbound
    ~ZemPattern() override;
};
