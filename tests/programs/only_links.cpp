// A program that does nothing but link the library: before its main() the session is open and the
// twenty persistent classes are registered, in the order of their table. It speaks to the platform
// alone.
#include "uf.h"
#include "uf_udobj.h"
#include "ug_session.hxx"

#include <cstdio>
#include <string>
#include <vector>

namespace {

const std::vector<std::string> kInOrder{
    "TRV_FORMAT_BLOCK_V1",        "KORVAN_FORMAT_BLOCK_V1",     "KORVAN_FORMAT_BLOCK_DEF_V1",
    "KORVAN_FORMAT_BLOCK_LOC_V2", "KORVAN_FORMAT_BLOCK_LOC_V1", "KORVAN_FORMAT_LOCATION_V1",
    "KORVAN_FORMAT_SIZE_LOC_V1",  "TRV_FORMAT_ENTRY_V1",        "TRV_FORMAT_ENTRY_V2",
    "KORVAN_FORMAT_ENTRY_V1",     "TRV_FORMAT_FIELD_V1",        "KORVAN_FORMAT_FIELD_V1",
    "KORVAN_FORMAT_FIELD_DEF_V1", "TRV_FORMAT_FORMAT_V1",       "KORVAN_FORMAT_FORMAT_DEF_V1",
    "KORVAN_FORMAT_SIZE_V1",      "QEL_FORMAT_SYMBOL_V1",       "TRV_FORMAT_TABLE_V1",
    "KORVAN_FORMAT_TABLE_V1",     "KORVAN_FORMAT_TABLE_DEF_V1",
};

// By rising class id, which the platform gives out in the order of registration.
std::vector<std::string> registeredClasses()
{
    std::vector<std::string> names;
    for (UF_UDOBJ_class_t id = 1; id < 100000; ++id) {
        char *name = nullptr, *friendly_name = nullptr;
        if (UF_UDOBJ_ask_class_data(id, &name, &friendly_name) != 0) continue;
        names.emplace_back(name);
        UF_free(name);
        UF_free(friendly_name);
    }
    return names;
}

} // namespace

int main()
{
    if (!UgSession::isInitialized()) {
        std::fprintf(stderr, "no session is open at the start of the program\n");
        return 1;
    }
    const std::vector<std::string> names = registeredClasses();
    if (names == kInOrder) return 0;
    std::fprintf(stderr, "registered instead of the twenty classes in their order:\n");
    for (const std::string &name : names) std::fprintf(stderr, "  %s\n", name.c_str());
    return 1;
}
