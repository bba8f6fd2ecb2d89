// A block made anew from its definition, with the values that it had.
#pragma once

class TrBlockBase;
class TrBlockDefV1;
class TrFormatBase;

namespace app {

// Values, locks and rows are remembered by the names of fields and tables; the fields are then made in
// the order of the definition, and everything is put where the definition has it. A block that stands
// at a point the user chose stays there.
void rebuildBlock(TrBlockBase &block, const TrBlockDefV1 &disk);

// Puts a block and all it holds where the present definitions of block and format have it. A block at a
// point of the user's own stays there, as does one that its definition has no place for.
void placeAnew(TrBlockBase &block);

// Whether a block of the definition can be placed on the format at its present size.
bool hasPlace(const TrBlockDefV1 &def, const TrFormatBase &format);

} // namespace app
