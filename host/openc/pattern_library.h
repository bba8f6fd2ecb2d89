// Where patterns come from: the search for their files, and the masters read so far.
#pragma once

#include "model/object.h"

#include <memory>
#include <string>

namespace host::patterns {

// The file of a pattern, as passed or with ".prt" behind it: in the current directory, then in the
// directories of UGII_UTIL and UGII_PATDIR. Empty when there is none.
std::string fileOf(const std::string &name);

// The geometry of a master part; read again only when the file has changed. Failure with a code of
// the pattern calls.
std::shared_ptr<const PatternMaster> masterFrom(const std::string &path, const std::string &name);

// The same content that a pattern of the part has already, or the master itself: a part keeps each
// content once.
std::shared_ptr<const PatternMaster> sharedIn(const Part &part,
                                              std::shared_ptr<const PatternMaster> master);

} // namespace host::patterns
