#include "drawing/block_not_exist.h"

TrBlockNotExist::TrBlockNotExist() : std::runtime_error("Block no longer exists") {}

TrBlockNotExist::~TrBlockNotExist() = default;
