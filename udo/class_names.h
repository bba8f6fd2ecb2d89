// The names under which the persistent classes are stored in parts. They never change: parts in the
// field hold them. Constant-initialised, so that they can be used while the library is loaded.
#pragma once

namespace QelFmt {

inline constexpr char kBlockV1Classname[] = "TRV_FORMAT_BLOCK_V1";
inline constexpr char kZemBlockV1Classname[] = "KORVAN_FORMAT_BLOCK_V1";
inline constexpr char kBlockDefV1Classname[] = "KORVAN_FORMAT_BLOCK_DEF_V1";
inline constexpr char kBlockLocationV2Classname[] = "KORVAN_FORMAT_BLOCK_LOC_V2";
inline constexpr char kBlockLocationV1Classname[] = "KORVAN_FORMAT_BLOCK_LOC_V1";
inline constexpr char kLocationV1Classname[] = "KORVAN_FORMAT_LOCATION_V1";
inline constexpr char kSizeLocationV1Classname[] = "KORVAN_FORMAT_SIZE_LOC_V1";
inline constexpr char kEntryV1Classname[] = "TRV_FORMAT_ENTRY_V1";
inline constexpr char kEntryV2Classname[] = "TRV_FORMAT_ENTRY_V2";
inline constexpr char kZemEntryV1Classname[] = "KORVAN_FORMAT_ENTRY_V1";
inline constexpr char kFieldV1Classname[] = "TRV_FORMAT_FIELD_V1";
inline constexpr char kZemFieldV1Classname[] = "KORVAN_FORMAT_FIELD_V1";
inline constexpr char kFieldDefV1Classname[] = "KORVAN_FORMAT_FIELD_DEF_V1";
inline constexpr char kFormatV1Classname[] = "TRV_FORMAT_FORMAT_V1";
inline constexpr char kFormatDefV1Classname[] = "KORVAN_FORMAT_FORMAT_DEF_V1";
inline constexpr char kFormatSizeV1Classname[] = "KORVAN_FORMAT_SIZE_V1";
inline constexpr char kSymbolV1Classname[] = "QEL_FORMAT_SYMBOL_V1";
inline constexpr char kTableV1Classname[] = "TRV_FORMAT_TABLE_V1";
inline constexpr char kZemTableV1Classname[] = "KORVAN_FORMAT_TABLE_V1";
inline constexpr char kTableDefV1Classname[] = "KORVAN_FORMAT_TABLE_DEF_V1";

} // namespace QelFmt
