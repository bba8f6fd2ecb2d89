// Finds the definition parts, loads what they hold and answers what may be offered.
#pragma once

#include "udo/export.h"

#include "uf_defs.h"

#include <boost/filesystem/path.hpp>
#include <boost/shared_ptr.hpp>

#include <map>
#include <string>
#include <vector>

class TrBlockDefV1;
class TrFormatBase;
class TrFormatDefV1;

// The definitions are loaded once and serve all drawings of the session. Lists are in the byte order
// of the identifiers and hold only what is in the units of the work part; while nothing is loaded
// every answer is empty. Nothing but LoadDefinitionFiles() loads.
class QELFMT_API TrDefinitionFileManager {
public:
    using Formats = std::map<std::string, boost::shared_ptr<TrFormatDefV1>>;
    using Blocks = std::map<std::string, boost::shared_ptr<TrBlockDefV1>>;

    // Of a definition that stands in several files, or several times in one, the first one counts.
    // A file that cannot be opened is passed over.
    static void LoadDefinitionFiles();
    // Closes the parts that loading opened. Definitions that are still held lose their records.
    static void UnloadDefinitionFiles();

    static boost::shared_ptr<TrFormatDefV1> GetFormatDefinition(const std::string &id);
    static boost::shared_ptr<TrBlockDefV1> GetBlockDefinition(const std::string &id);

    // "Corporate" first, also while nothing is loaded; "Default" for definitions without a category.
    static std::vector<std::string> GetFormatCategories();
    static std::vector<std::string>
    GetBlockCategories(const boost::shared_ptr<TrFormatBase> &format);

    // Of the category; "ALL" is every one, "Default" also that of definitions without one. Obsolete
    // formats and blocks hidden from the menu are left out.
    static std::vector<boost::shared_ptr<TrFormatDefV1>>
    GetFormatDefinitions(const std::string &category);
    static std::vector<boost::shared_ptr<TrBlockDefV1>>
    GetBlockDefinitions(const std::string &category);
    // The blocks that have a place on the format; those hidden from the menu only when wanted.
    static std::vector<boost::shared_ptr<TrBlockDefV1>>
    GetBlockDefinitions(const boost::shared_ptr<TrFormatDefV1> &format, const std::string &category,
                        bool for_menu);
    static std::vector<boost::shared_ptr<TrBlockDefV1>>
    GetBlockDefinitions(const boost::shared_ptr<TrFormatBase> &format, const std::string &category);

    // Everything that is loaded, whatever its units, category or obsolescence.
    static const Formats &allFormatDefinitions();
    static const Blocks &allBlockDefinitions();

protected:
    TrDefinitionFileManager();
    virtual ~TrDefinitionFileManager();

    static void LoadPartFile(const boost::filesystem::path &path);

private:
    tag_t openDefinitionPart(const std::string &file); // NULL_TAG when it cannot be

    static TrDefinitionFileManager *s_instance;

    std::vector<tag_t> m_opened; // by this manager
    Formats m_formats;
    Blocks m_blocks;
};
