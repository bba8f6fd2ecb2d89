#include "app/text_file.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <system_error>

namespace app {

std::optional<std::string> readTextFile(const std::string &path, std::string &why)
{
    std::error_code error;
    if (std::filesystem::is_directory(path, error)) { // which opens, and only fails to be read
        why = "is a folder: name a file in it";
        return {};
    }
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        why = "cannot be opened: check the path";
        return {};
    }
    std::string text{std::istreambuf_iterator<char>(file), {}};
    if (file.bad()) {
        why = "cannot be read to its end: check the disk";
        return {};
    }
    return text;
}

} // namespace app
