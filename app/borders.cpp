#include "app/borders.h"

#include "content/field.h"
#include "definitions/field_def.h"

namespace app {

Borders bordersOf(const TrFieldBase &field)
{
    return {field.GetHasBottomBorder(), field.GetHasLeftBorder(), field.GetHasMiddleBorder(),
            field.GetHasRightBorder(), field.GetHasTopBorder()};
}

Borders policiesOf(const TrFieldDefV1 &def)
{
    return {def.GetBottomBorderPolicy(), def.GetLeftBorderPolicy(), def.GetMiddleBorderPolicy(),
            def.GetRightBorderPolicy(), def.GetTopBorderPolicy()};
}

} // namespace app
