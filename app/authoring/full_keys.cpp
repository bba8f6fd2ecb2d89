#include "app/authoring/full_keys.h"

#include "definitions/block_def.h"
#include "definitions/field_def.h"
#include "definitions/format_def.h"
#include "definitions/format_size.h"
#include "definitions/table_def.h"

namespace app::authoring {

void readFullFieldKeys(Mapping &mapping, SlotValues &values)
{
    readFullKeys(mapping, TrFieldDefV1::kLayout, values);
}

void readFullTableKeys(Mapping &mapping, SlotValues &values)
{
    readFullKeys(mapping, TrTableDefV1::kLayout, values);
}

void readFullBlockKeys(Mapping &mapping, SlotValues &values)
{
    readFullKeys(mapping, TrBlockDefV1::kLayout, values);
}

void readFullFormatKeys(Mapping &mapping, SlotValues &values)
{
    readFullKeys(mapping, TrFormatDefV1::kLayout, values);
}

void readFullSizeKeys(Mapping &mapping, SlotValues &values)
{
    readFullKeys(mapping, TrFormatSizeV1::kLayout, values);
}

} // namespace app::authoring
