// Every persistent class of the library, a row each. The order is that of the stored class table; it
// holds because static objects of one file are built from top to bottom, and that is why this file
// alone may know every folder.
#include "content/entry.h"
#include "content/field.h"
#include "content/symbol.h"
#include "content/table.h"
#include "definitions/block_def.h"
#include "definitions/field_def.h"
#include "definitions/format_def.h"
#include "definitions/format_size.h"
#include "definitions/locations.h"
#include "definitions/table_def.h"
#include "drawing/block.h"
#include "drawing/format.h"
#include "udo/class_names.h"
#include "udo/udo_class.h"

using namespace QelFmt;
using LumUg::UDOClass;

// The first text is stored in parts and never changes; the platform shows the second one to users.
// clang-format off
UDOClass TrBlockV1::mUDOClass        {kBlockV1Classname,         "Drawing Format Block",      TrBlockV1::CreateInstance};
UDOClass ZemBlockV1::mUDOClass       {kZemBlockV1Classname,      "ZEM Block",                 ZemBlockV1::CreateInstance};
UDOClass TrBlockDefV1::mUDOClass     {kBlockDefV1Classname,      "Format Block Definition",   TrBlockDefV1::CreateInstance};
UDOClass BlockLocationV2::mUDOClass  {kBlockLocationV2Classname, "Format Block Location",     BlockLocationV2::CreateInstance};
UDOClass TrBlockLocationV1::mUDOClass{kBlockLocationV1Classname, "Format Block Location",     TrBlockLocationV1::CreateInstance};
UDOClass LocationV1::mUDOClass       {kLocationV1Classname,      "Format Location",           LocationV1::CreateInstance};
UDOClass SizeLocationV1::mUDOClass   {kSizeLocationV1Classname,  "Format Size Location",      SizeLocationV1::CreateInstance};
UDOClass TrEntryV1::mUDOClass        {kEntryV1Classname,         "Drawing Format Entry",      TrEntryV1::CreateInstance};
UDOClass TrEntryV2::mUDOClass        {kEntryV2Classname,         "Drawing Format Entry",      TrEntryV2::CreateInstance};
UDOClass ZemEntryV1::mUDOClass       {kZemEntryV1Classname,      "ZEM Entry",                 ZemEntryV1::CreateInstance};
UDOClass TrFieldV1::mUDOClass        {kFieldV1Classname,         "Drawing Format Field",      TrFieldV1::CreateInstance};
UDOClass ZemFieldV1::mUDOClass       {kZemFieldV1Classname,      "ZEM Field",                 ZemFieldV1::CreateInstance};
UDOClass TrFieldDefV1::mUDOClass     {kFieldDefV1Classname,      "Format Field Definition",   TrFieldDefV1::CreateInstance};
UDOClass TrFormatV1::mUDOClass       {kFormatV1Classname,        "Drawing Format",            TrFormatV1::CreateInstance};
UDOClass TrFormatDefV1::mUDOClass    {kFormatDefV1Classname,     "Drawing Format Definition", TrFormatDefV1::CreateInstance};
UDOClass TrFormatSizeV1::mUDOClass   {kFormatSizeV1Classname,    "Format Size Definition",    TrFormatSizeV1::CreateInstance};
UDOClass SymbolV1::mUDOClass         {kSymbolV1Classname,        "Drawing Format Symbol",     SymbolV1::CreateInstance};
UDOClass TrTableV1::mUDOClass        {kTableV1Classname,         "Drawing Format Table",      TrTableV1::CreateInstance};
UDOClass ZemTableV1::mUDOClass       {kZemTableV1Classname,      "ZEM Table",                 ZemTableV1::CreateInstance};
UDOClass TrTableDefV1::mUDOClass     {kTableDefV1Classname,      "Format Table Definition",   TrTableDefV1::CreateInstance};
// clang-format on
