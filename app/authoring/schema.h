// What the slot tables say, for editors and for readers.
#pragma once

#include <string>

namespace app::authoring {

std::string definitionSchema(); // JSON Schema of definition texts, both forms
std::string slotTables();       // Markdown: the keys of each kind of record

} // namespace app::authoring
