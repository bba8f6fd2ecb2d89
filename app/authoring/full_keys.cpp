#include "app/authoring/full_keys.h"

#include "definitions/field_def.h"

#include <cctype>

namespace app::authoring {

std::string snakeCase(const std::string &accessor)
{
    std::string key;
    for (std::size_t i = 0; i < accessor.size(); ++i) {
        const auto c = static_cast<unsigned char>(accessor[i]);
        if (std::isupper(c) && i > 0) key += '_';
        key += static_cast<char>(std::tolower(c));
    }
    return key;
}

void readFullFieldKeys(Mapping &mapping, SlotValues &values)
{
    readFullKeys(mapping, TrFieldDefV1::kLayout, values);
}

} // namespace app::authoring
