#include "nxhost/start.h"

#include "uf.h"
#include "ug_exception.hxx"

#include <dlfcn.h>
#include <link.h>

#include <set>
#include <string>
#include <vector>

namespace {

using StartFunction = void (*)();

struct LoadedLibrary {
    std::string path; // empty: the program itself
    ElfW(Addr) base;
};

std::vector<LoadedLibrary> loadedLibraries()
{
    std::vector<LoadedLibrary> libraries;
    dl_iterate_phdr(
        [](dl_phdr_info *info, std::size_t, void *list) {
            static_cast<std::vector<LoadedLibrary> *>(list)->push_back(
                {info->dlpi_name ? info->dlpi_name : "", info->dlpi_addr});
            return 0;
        },
        &libraries);
    return libraries;
}

// A look-up through a library also finds what its dependencies export: only its own one counts.
bool comesFrom(const LoadedLibrary &library, void *symbol)
{
    Dl_info info{};
    link_map *map = nullptr;
    return dladdr1(symbol, &info, reinterpret_cast<void **>(&map), RTLD_DL_LINKMAP) != 0 && map &&
           map->l_addr == library.base;
}

StartFunction startFunctionOf(const LoadedLibrary &library)
{
    void *handle =
        dlopen(library.path.empty() ? nullptr : library.path.c_str(), RTLD_NOLOAD | RTLD_LAZY);
    if (!handle) return nullptr;
    void *symbol = dlsym(handle, "ufsta");
    if (symbol && !comesFrom(library, symbol)) symbol = nullptr;
    dlclose(handle); // the library stays: someone else has it loaded
    return reinterpret_cast<StartFunction>(symbol);
}

} // namespace

namespace nxhost {

void start()
{
    UgException::throwOnFailure(UF_initialize());
    static std::set<StartFunction> started;
    // Listed first, called afterwards: a start function may load libraries itself.
    for (const LoadedLibrary &library : loadedLibraries()) {
        const StartFunction function = startFunctionOf(library);
        if (function && started.insert(function).second) function();
    }
}

} // namespace nxhost
