// The indexes behind Session and the delete algorithm that walks them. Private to this folder.
#pragma once

#include "session.h"
#include "tag_table.h"

#include <deque>

namespace host {

struct Session::Inner {
    explicit Inner(Session &owner) : session(owner) {}

    // What the session knows of an object beside its values.
    struct Entry {
        std::unique_ptr<Object> object;
        ByNumber<Tag> inbound; // link sequence -> linking UDO
        bool going = false;    // its deletion has begun
        bool ending = false;   // a UDO that drops its own links: they need no upkeep any more
    };

    // Condemned and just deleted objects may still be referred to by the calls above us on the
    // stack, so memory is given back only when the outermost deletion is over.
    class DeletionScope {
    public:
        explicit DeletionScope(Inner &inner) : m_inner(inner) { ++m_inner.deletionDepth; }
        ~DeletionScope();
        DeletionScope(const DeletionScope &) = delete;
        DeletionScope &operator=(const DeletionScope &) = delete;

    private:
        Inner &m_inner;
    };

    Entry *entry(Tag tag);
    Object *find(Tag tag);

    // --- indexes of the part
    void index(Object &object);
    void unindex(Object &object);
    void indexLink(const Object &udo, const Link &link);
    void unindexLink(const Link &link);
    bool heldByType2(Tag target);
    void removeInbound(Tag udo, std::uint64_t sequence); // the link goes from the UDO's array
    Link *linkOf(Tag udo, std::uint64_t sequence);

    // --- links
    void checkTarget(const Object &udo, int type, Tag target);
    bool reaches(Tag from, Tag to); // along links, from UDO to target
    void letGo(Tag target); // after a type-2 link went: a condemned target nobody holds dies

    // --- deletion
    void erase(Object &object);
    struct Deletion; // of one object, under way
    struct Callback {
        Tag udo;
        Link link;
    };
    struct Consequences {
        std::vector<Tag> dying;        // UDOs linked by type 1
        std::vector<Callback> updated; // UDOs linked by type 3
    };
    bool tellHolders(Object &object, Consequences &consequences); // false: it ends condemned
    void dropInboundLinks(Tag target, bool ofLivingHoldersToo);
    Object *advance(Deletion &deletion);
    Object *nextBelow(Deletion &deletion);
    bool beginDeletion(Deletion &deletion);
    static std::vector<Tag> linkedByType2(const Object &udo);
    void leave(Deletion &deletion);
    void disown(Object &object);
    void retire(Object &object);
    void runDeleteCallback(Tag udo, const Link &link);
    void runUpdateCallback(Tag udo, const Link &link);

    void record(std::string_view what, const Object &object);
    void markOutOfDate(Tag target);

    Session &session;
    Tag nextTag = 20001;
    TagTable<Entry> entries;
    std::unordered_map<Tag, Part *> partsByTag;
    std::deque<UdoClassRecord> classes; // the id of the first one is kFirstClassId
    std::map<std::string, ClassId, std::less<>> classIds;
    Part *work = nullptr;
    Part *display = nullptr;
    std::set<Tag> outOfDateTargets;

    int deletionDepth = 0;
    std::vector<std::unique_ptr<Object>> deadObjects;
    std::vector<std::unique_ptr<Part>> deadParts;
};

inline constexpr ClassId kFirstClassId = 501;

} // namespace host
