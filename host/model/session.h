// The session: every part, object, class and preference of this process. One instance, made on
// first use (also during static initialisation) and never destroyed.
#pragma once

#include "object.h"
#include "uf_udobj.h"

#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string_view>
#include <unordered_map>

namespace host {

struct UdoClassRecord {
    ClassId id = 0;
    std::string name;
    std::string friendlyName;
    bool registered = false; // false: only met in a part file
    bool queryAllowed = false;
    int selection = 1;
    UF_UDOBJ_delete_f_t onDelete = nullptr;
    UF_UDOBJ_update_f_t onUpdate = nullptr;
    UF_UDOBJ_info_obj_f_t onInfo = nullptr;
    UF_UDOBJ_edit_f_t onEdit = nullptr;
};

// Settings for new notes and ID symbols.
struct DraftingPreferences {
    Lettering general;
    double frameHeightFactor = 2.0;
    std::array<Lettering, 3> otherTexts; // dimension, appended, tolerance: kept, never used
    std::array<double, 3> spaceFactors{1.0, 1.0, 1.0};
};

// What "W@TITLE", "W!tag@TITLE" and "W!tag@?TITLE" name; nothing when the text is no such reference.
struct AttributeReference {
    bool ofObject = false; // else of the part
    Tag holder = 0;
    std::string_view title;
};
std::optional<AttributeReference> attributeReference(std::string_view reference);

class Session {
public:
    static Session &get();

    // --- tags -------------------------------------------------------------------------------
    Tag newTag();             // rising, never used again in this process
    Object *find(Tag tag);    // alive or condemned; null otherwise
    Object &require(Tag tag); // Failure UF_err_unknown_tag
    Part *findPart(Tag tag);
    Part &requirePart(Tag tag);
    template <class T> T &requireBody(Tag tag, int codeOtherwise);

    // --- classes ------------------------------------------------------------------------------
    ClassId createClass(const std::string &name, const std::string &friendlyName);
    UdoClassRecord &classRecord(ClassId id); // Failure UF_err_unknown_class_id
    UdoClassRecord *findClass(std::string_view name);
    ClassId classIdForStored(const std::string &name); // makes an unregistered record when needed

    // --- parts --------------------------------------------------------------------------------
    Part &workPart(); // Failure UF_err_no_work_part
    Part *workPartOrNull();
    Part *displayPart();
    void setWorkPart(Part *part);
    void setDisplayPart(Part *part);
    Part &newPart(const std::string &path, int units); // with its font table; becomes work part
    Part &adoptPart(std::unique_ptr<Part> part, std::vector<std::unique_ptr<Object>> objects);
    Part *partByName(std::string_view name); // full path, or file name with or without extension
    const std::vector<std::unique_ptr<Part>> &parts() const { return m_parts; }
    void closePart(Part &part); // kills all its tags

    // --- objects ------------------------------------------------------------------------------
    // In the part, on the work layer, in the current sheet's view unless it is a UDO, a sheet or a view.
    Object &create(Part &part, Body body);
    Object &createSheet(Part &part, const std::string &name, const Sheet &info);
    // Every change of an object passes here first: it marks object and part as changed. `what` goes
    // into the record of changes.
    void changing(Object &object, std::string_view what);
    void changing(Part &part, std::string_view what);
    void rename(Object &object, const std::string &name); // names are looked up: never set directly
    void setView(Object &object, Tag view);               // moves it between views; 0 the model
    void remove(Tag tag);      // the delete algorithm, with its callbacks
    void removeSheet(Tag tag); // the sheet, then what is left in its view, then the view

    // --- links ----------------------------------------------------------------------------------
    // UDOs that link to the object, with the link: types 1 to 4, in the order made.
    struct Inbound {
        Tag udo;
        Link link;
    };
    std::vector<Inbound> linksTo(Tag target) const;
    void addLink(Object &udo, int type, Tag target);
    void addLinks(Object &udo, const std::vector<Link> &links); // all or none; types and targets
    void replaceLinks(Object &udo, std::size_t index, int type,
                      Tag target); // keeps place and sequence
    // Rewrites the links from `first` on, all at once: an array that is only put into another order
    // never lets go of a condemned object on the way.
    void rewriteLinks(Object &udo, std::size_t first, const std::vector<Link> &links);
    void removeLinkAt(Object &udo,
                      std::size_t index); // the target stays (condemned and free: goes)
    void own(Object &udo, const std::vector<Tag> &objects); // all or none
    void release(Object &udo, Tag object);
    void touch(Tag object);
    void updatePart(Part &part);

    // --- attributes: of an object or a part, by tag ----------------------------------------------
    const Attributes &attributesOf(Tag tag);
    const std::string *attribute(Tag tag, std::string_view title);
    void setAttribute(Tag tag, const std::string &title, const std::string &value); // or adds it
    bool removeAttribute(Tag tag, std::string_view title);

    // --- fonts and text ---------------------------------------------------------------------------
    int addFont(Part &part, const std::string &name);
    std::string evaluated(const Part &part, const std::string &line); // references resolved
    // The same with somebody else's answers: of a reference without its brackets ("W@TITLE"). Null
    // leaves it as it stands.
    using Resolve = std::function<const std::string *(std::string_view reference)>;
    static std::string evaluated(const std::string &line, const Resolve &resolve);

    // --- settings and captures --------------------------------------------------------------------
    DraftingPreferences drafting;
    bool customerSymbolFile = false;
    bool strictDrawingInfo = false;
    bool rejectUnknownFonts = false;
    bool interfaceAvailable = true;
    bool strictLimits = false;
    int initializeCount = 0;
    std::array<int, 3> patternSwitches{0, 0, 0};
    std::string infoWindow;
    bool infoWindowOpen = false;
    std::string syslog;
    std::function<double()> clock;
    std::size_t zeroLengthRefusals = 0;

    std::set<Tag> highlighted;
    std::string lastPartMessage; // why the last part was not opened, made or saved

    // Called with every tag that dies, after its object has gone.
    std::vector<std::function<void(Tag)>> retirementListeners;

    bool recordingChanges = false;
    std::vector<std::string> changes;

    void reset();

private:
    Session();
    struct Inner; // indexes
    std::unique_ptr<Inner> m_inner;
    std::vector<std::unique_ptr<Part>> m_parts;
};

template <class T> T &Session::requireBody(Tag tag, int codeOtherwise)
{
    if (T *body = require(tag).as<T>()) return *body;
    throw Failure{codeOtherwise, {}};
}

} // namespace host
