// What the slot tables say, for editors and for readers.
#pragma once

#include <string>

namespace app::authoring {

std::string fullFormSchema(); // JSON Schema of definition texts
std::string slotTables();     // Markdown: the keys of each kind of record

} // namespace app::authoring
