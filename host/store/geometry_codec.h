// The numbers of geometry and lettering, in the order in which they are stored. Objects and the
// shapes of pattern masters share them. Order and width of every value are part of the file format.
#pragma once

#include "pack.h"

namespace host::store {

void pack(Packer &out, const Appearance &appearance);
void pack(Packer &out, const Lettering &lettering);
void pack(Packer &out, const NumberedPreferences &preferences);
void pack(Packer &out, const Line &line);
void pack(Packer &out, const Arc &arc);
void pack(Packer &out, const Area &area);
void pack(Packer &out, const Note &note); // without its lines

void unpack(Unpacker &in, Appearance &appearance);
void unpack(Unpacker &in, Lettering &lettering);
void unpack(Unpacker &in, NumberedPreferences &preferences);
void unpack(Unpacker &in, Line &line);
void unpack(Unpacker &in, Arc &arc);
void unpack(Unpacker &in, Area &area);
void unpack(Unpacker &in, Note &note);

// Layers are indices elsewhere: an impossible one raises Malformed.
int checkedLayer(std::int64_t layer);

} // namespace host::store
