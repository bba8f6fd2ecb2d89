#include "copy.h"

#include "model/session.h"
#include "texts.h"

#include <algorithm>
#include <unordered_map>

namespace host::store {

namespace {

// Tags are given out one after the other, to the part and then to its objects: from the original to the
// copy all of them rise by the same.
class Copier {
public:
    explicit Copier(const LoadedPart &original)
        : m_original(original), m_part(std::make_unique<Part>(*original.part)),
          m_rise((m_part->tag = Session::get().newTag()) - original.part->tag)
    {}

    LoadedPart copy()
    {
        for (auto &[id, master] : m_part->stored.masters) master = copied(master);
        raise(m_part->currentSheet), raise(m_part->fontTable);
        LoadedPart result;
        result.objects.reserve(m_original.objects.size());
        for (const auto &object : m_original.objects) result.objects.push_back(copied(*object));
        result.part = std::move(m_part);
        return result;
    }

private:
    void raise(Tag &tag) const
    {
        if (tag) tag += m_rise;
    }

    void raise(std::string &text) const
    {
        if (!hasReference(text)) return;
        text = withReferences(text, [this](std::uint64_t tag) { return tag ? tag + m_rise : 0; });
    }

    void raise(Note &note) const
    {
        for (std::string &line : note.lines) raise(line);
    }

    // Shared with the original unless its texts refer to objects.
    std::shared_ptr<const PatternMaster> copied(const std::shared_ptr<const PatternMaster> &master)
    {
        const auto refers = [](const PatternShape &shape) {
            const Note *note = std::get_if<Note>(&shape.geometry);
            return note && std::any_of(note->lines.begin(), note->lines.end(), hasReference);
        };
        if (std::none_of(master->shapes.begin(), master->shapes.end(), refers)) return master;
        const auto own = std::make_shared<PatternMaster>(*master);
        for (PatternShape &shape : own->shapes)
            if (Note *note = std::get_if<Note>(&shape.geometry)) raise(*note);
        return m_masters[master.get()] = own;
    }

    std::unique_ptr<Object> copied(const Object &original) const
    {
        auto object = std::make_unique<Object>(original);
        object->tag = Session::get().newTag();
        object->part = m_part.get();
        raise(object->view), raise(object->owner);
        visitBody([this](auto &body) { follow(body); }, object->body);
        return object;
    }

    template <class Body> void follow(Body &) const {} // refers to nothing
    void follow(Udo &udo) const
    {
        for (Link &link : udo.links) raise(link.target);
        for (Tag &owned : udo.owned) raise(owned);
    }
    void follow(Note &note) const { raise(note); }
    void follow(IdSymbol &symbol) const { raise(symbol.upper), raise(symbol.lower); }
    void follow(Sheet &sheet) const { raise(sheet.view); }
    void follow(View &view) const { raise(view.sheet); }
    void follow(Pattern &pattern) const
    {
        const auto own = m_masters.find(pattern.master.get());
        if (own != m_masters.end()) pattern.master = own->second;
    }

    const LoadedPart &m_original;
    std::unique_ptr<Part> m_part;
    const Tag m_rise;
    std::unordered_map<const PatternMaster *, std::shared_ptr<const PatternMaster>> m_masters;
};

} // namespace

LoadedPart copyOf(const LoadedPart &loaded) { return Copier(loaded).copy(); }

} // namespace host::store
