// Raised when a placed block is updated and its definition is gone.
#pragma once

#include "udo/export.h"

#include <stdexcept>

class QELFMT_API TrBlockNotExist : public std::runtime_error {
public:
    TrBlockNotExist();
    ~TrBlockNotExist() override;
};
