#include "definitions/definition_file_manager.h"

#include "definitions/block_def.h"
#include "definitions/format_def.h"
#include "definitions/require.h"
#include "drawing/format.h"
#include "foundation/log.h"

#include "lumug/nx_search_file_list.h"
#include "uf.h"
#include "uf_part.h"
#include "ug_exception.hxx"
#include "ug_part.hxx"
#include "ug_session.hxx"

#include <algorithm>

namespace {

constexpr char kSearchList[] = "format_defs";
constexpr char kFilePattern[] = "*.prt";

constexpr char kFirstCategory[] = "Corporate"; // always offered, and before all others
constexpr char kNoCategory[] = "Default";
constexpr char kAllCategories[] = "ALL";

// Definitions in other units than the work part's are never offered, nor those whose code is none.
class UnitFilter {
public:
    UnitFilter() : m_code(UgSession::getWorkPart()->isMillimeters() ? 1 : 2) {}
    template <class Definition> bool operator()(const Definition &definition) const
    {
        return definition.GetUnits() == m_code;
    }

private:
    int m_code;
};

template <class Definition>
bool isOfCategory(const Definition &definition, const std::string &asked)
{
    if (asked == kAllCategories) return true;
    const std::string category = definition.GetCategory();
    return asked == category || (asked == kNoCategory && category.empty());
}

template <class Definition>
void addCategory(std::vector<std::string> &categories, const Definition &definition)
{
    std::string category = definition.GetCategory();
    if (category.empty()) category = kNoCategory;
    if (std::find(categories.begin(), categories.end(), category) == categories.end())
        categories.push_back(category);
}

bool hasPlaceOn(const TrFormatDefV1 &format, const TrBlockDefV1 &block)
{
    const std::string id = format.GetId();
    const std::vector<std::string> ids = block.GetFormatIds();
    return std::any_of(ids.begin(), ids.end(), [&](const std::string &offered) {
        return offered == id || offered == kNoCategory || format.inSuite(offered);
    });
}

// The definitions of one class in a part, in the order in which they were made.
template <class Definition>
void collect(UgPart *part, std::map<std::string, boost::shared_ptr<Definition>> &definitions)
{
    for (UgUDO *udo : LumUg::UDO::GetAllUgUDOsOfClass(part, Definition::mUDOClass.GetClassId())) {
        const boost::shared_ptr<Definition> definition(new Definition(udo));
        definitions.emplace(definition->GetId(), definition); // the first one stays
    }
}

// What the platform tells of an opening; its lists are the caller's.
struct LoadStatus : UF_PART_load_status_t {
    LoadStatus() : UF_PART_load_status_t{} {}
    ~LoadStatus()
    {
        UF_free_string_array(n_parts, file_names);
        UF_free(statuses);
    }
    LoadStatus(LoadStatus &&) = delete; // neither copied nor moved: one owner
};

} // namespace

TrDefinitionFileManager *TrDefinitionFileManager::s_instance = nullptr;

TrDefinitionFileManager::TrDefinitionFileManager() = default;
TrDefinitionFileManager::~TrDefinitionFileManager() = default;

// --- loading and unloading ----------------------------------------------------------------------------

// A definition without an identifier ends the loading with an error; what was loaded before stays.
void TrDefinitionFileManager::LoadDefinitionFiles()
{
    if (s_instance) return;
    s_instance = new TrDefinitionFileManager;
    for (const boost::filesystem::path &path :
         LumUg::NxSearchFileList(kSearchList).filePaths(kFilePattern))
        LoadPartFile(path);
}

void TrDefinitionFileManager::LoadPartFile(const boost::filesystem::path &path)
{
    QelFmt::require(s_instance != nullptr,
                    "TrDefinitionFileManager::LoadPartFile: there is no manager to load into");
    const std::string file = path.string();
    QELFMT_INFO << "Loading definition file: " << file;
    const tag_t tag = s_instance->openDefinitionPart(file);
    if (tag == NULL_TAG) return;

    auto *part = dynamic_cast<UgPart *>(UgObject::find(tag));
    collect(part, s_instance->m_formats);
    collect(part, s_instance->m_blocks);
}

// A part that is loaded already belongs to someone else, who also closes it.
tag_t TrDefinitionFileManager::openDefinitionPart(const std::string &file)
{
    if (UF_PART_is_loaded(file.c_str()) != 0) return UF_PART_ask_part_tag(file.c_str());

    LoadStatus status;
    tag_t part = NULL_TAG;
    try {
        UgException::throwOnFailure(UF_PART_open_quiet(file.c_str(), &part, &status));
    } catch (const UgException &failure) {
        char message[133] = "";
        UF_get_fail_message(failure.askErrorCode(), message);
        QELFMT_VERBOSE << "Skipping definition file " << file << ": " << message;
        return NULL_TAG;
    }
    m_opened.push_back(part);
    return part;
}

void TrDefinitionFileManager::UnloadDefinitionFiles()
{
    if (!s_instance) return;
    const std::vector<tag_t> opened = s_instance->m_opened;
    delete s_instance;
    s_instance = nullptr;
    for (const tag_t part : opened) {
        if (!UgObject::find(part)) continue; // someone else has closed it
        UgException::throwOnFailure(UF_PART_close(part, 0, 1));
    }
}

// --- single definitions -------------------------------------------------------------------------------

const TrDefinitionFileManager::Formats &TrDefinitionFileManager::allFormatDefinitions()
{
    static const Formats none;
    return s_instance ? s_instance->m_formats : none;
}

const TrDefinitionFileManager::Blocks &TrDefinitionFileManager::allBlockDefinitions()
{
    static const Blocks none;
    return s_instance ? s_instance->m_blocks : none;
}

boost::shared_ptr<TrFormatDefV1> TrDefinitionFileManager::GetFormatDefinition(const std::string &id)
{
    const Formats &formats = allFormatDefinitions();
    const auto found = formats.find(id);
    return found == formats.end() ? boost::shared_ptr<TrFormatDefV1>() : found->second;
}

boost::shared_ptr<TrBlockDefV1> TrDefinitionFileManager::GetBlockDefinition(const std::string &id)
{
    const Blocks &blocks = allBlockDefinitions();
    const auto found = blocks.find(id);
    return found == blocks.end() ? boost::shared_ptr<TrBlockDefV1>() : found->second;
}

// --- categories ---------------------------------------------------------------------------------------

std::vector<std::string> TrDefinitionFileManager::GetFormatCategories()
{
    std::vector<std::string> categories{kFirstCategory};
    if (!s_instance) return categories;
    const UnitFilter isInUnits;
    for (const auto &[id, format] : s_instance->m_formats) {
        if (isInUnits(*format)) addCategory(categories, *format);
    }
    return categories;
}

std::vector<std::string>
TrDefinitionFileManager::GetBlockCategories(const boost::shared_ptr<TrFormatBase> &format)
{
    std::vector<std::string> categories{kFirstCategory};
    if (!s_instance) return categories;
    QelFmt::require(format != nullptr,
                    "TrDefinitionFileManager::GetBlockCategories: there is no format");
    const UnitFilter isInUnits;
    const std::string name = format->GetFormatDefName();
    // By name only: the categories of blocks that are offered for a suite, or for every format, do
    // not count here.
    for (const auto &[id, block] : s_instance->m_blocks) {
        const std::vector<std::string> ids = block->GetFormatIds();
        if (std::find(ids.begin(), ids.end(), name) != ids.end() && isInUnits(*block))
            addCategory(categories, *block);
    }
    return categories;
}

// --- lists --------------------------------------------------------------------------------------------

std::vector<boost::shared_ptr<TrFormatDefV1>>
TrDefinitionFileManager::GetFormatDefinitions(const std::string &category)
{
    std::vector<boost::shared_ptr<TrFormatDefV1>> offered;
    if (!s_instance) return offered;
    const UnitFilter isInUnits;
    for (const auto &[id, format] : s_instance->m_formats) {
        if (!format->GetObsolete(true) && isInUnits(*format) && isOfCategory(*format, category))
            offered.push_back(format);
    }
    return offered;
}

std::vector<boost::shared_ptr<TrBlockDefV1>>
TrDefinitionFileManager::GetBlockDefinitions(const std::string &category)
{
    std::vector<boost::shared_ptr<TrBlockDefV1>> offered;
    if (!s_instance) return offered;
    const UnitFilter isInUnits;
    for (const auto &[id, block] : s_instance->m_blocks) {
        if (block->GetShowInMenu() != 0 && isInUnits(*block) && isOfCategory(*block, category))
            offered.push_back(block);
    }
    return offered;
}

std::vector<boost::shared_ptr<TrBlockDefV1>>
TrDefinitionFileManager::GetBlockDefinitions(const boost::shared_ptr<TrFormatDefV1> &format,
                                             const std::string &category, bool for_menu)
{
    std::vector<boost::shared_ptr<TrBlockDefV1>> offered;
    if (!s_instance) return offered;
    QelFmt::require(format != nullptr,
                    "TrDefinitionFileManager::GetBlockDefinitions: there is no format");
    const UnitFilter isInUnits;
    for (const auto &[id, block] : s_instance->m_blocks) {
        if (!hasPlaceOn(*format, *block)) continue;
        if (for_menu && block->GetShowInMenu() == 0) continue;
        if (isInUnits(*block) && isOfCategory(*block, category)) offered.push_back(block);
    }
    return offered;
}

std::vector<boost::shared_ptr<TrBlockDefV1>>
TrDefinitionFileManager::GetBlockDefinitions(const boost::shared_ptr<TrFormatBase> &format,
                                             const std::string &category)
{
    if (!s_instance) return {};
    QelFmt::require(format != nullptr,
                    "TrDefinitionFileManager::GetBlockDefinitions: there is no format");
    const boost::shared_ptr<TrFormatDefV1> definition = format->getDefinition();
    if (!definition || definition->IsNull()) return {}; // a sheet without a format
    return GetBlockDefinitions(definition, category, true);
}
