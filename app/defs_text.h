// defs: what looks at definitions as text and as parts.
#pragma once

#include "app/authoring/record.h"
#include "app/verbs.h"
#include "app/workspace.h"

#include <string>

namespace app {

// The records of a definition part; a file that is none is a Problem.
authoring::RecordFile readDefinitionPart(Workspace &work, const std::string &path);

void addDefinitionTextVerbs(CLI::App *family, Command command);
void addDefinitionCheckVerb(CLI::App *family, Command command);
void addDefinitionCompareVerbs(CLI::App *family, Command command);
void addDefinitionWhereVerbs(CLI::App *family, Command command);

} // namespace app
