#include "session_inner.h"

#include "calls.h"
#include "uf.h"
#include "uf_draw.h"
#include "uf_part.h"

#include <algorithm>
#include <filesystem>

namespace host {

namespace {

bool samePart(const Part &part, const std::filesystem::path &asked)
{
    const std::filesystem::path path = part.path;
    if (path == asked) return true;
    return asked.extension().empty() && path.parent_path() == asked.parent_path() &&
           path.stem() == asked.filename() &&
           (path.extension() == ".prt" || path.extension() == ".qdraw");
}

bool sameFileName(const Part &part, const std::filesystem::path &asked)
{
    const std::filesystem::path name = std::filesystem::path(part.path).filename();
    return name == asked || (asked.extension().empty() && name.stem() == asked &&
                             (name.extension() == ".prt" || name.extension() == ".qdraw"));
}

} // namespace

Part &Session::workPart()
{
    if (m_inner->work) return *m_inner->work;
    throw Failure{UF_err_no_work_part, {}};
}

Part *Session::workPartOrNull() { return m_inner->work; }

Part *Session::displayPart() { return m_inner->display; }

void Session::setWorkPart(Part *part) { m_inner->work = part; }

void Session::setDisplayPart(Part *part)
{
    m_inner->display = part;
    m_inner->work = part;
}

Part &Session::newPart(const std::string &path, int units)
{
    host::require(units == UF_PART_METRIC || units == UF_PART_ENGLISH,
                  UF_err_bad_parameter_number_2);
    auto made = std::make_unique<Part>();
    made->path = std::filesystem::absolute(path).lexically_normal().string();
    made->units = units;
    made->layerStatus.fill(2);
    made->layerStatus[1] = 1;
    made->modified = true;
    Part &part = adoptPart(std::move(made), {});
    setDisplayPart(&part);
    if (recordingChanges) changes.push_back("part made");
    return part;
}

Part &Session::adoptPart(std::unique_ptr<Part> adopted,
                         std::vector<std::unique_ptr<Object>> objects)
{
    Part &part = *m_parts.emplace_back(std::move(adopted));
    if (!part.tag) part.tag = newTag(); // a loaded one has its tag: texts may refer to it
    m_inner->partsByTag[part.tag] = &part;
    for (auto &owned : objects) {
        Object &object = *owned;
        object.part = &part;
        m_inner->entries[object.tag].object = std::move(owned);
        m_inner->index(object);
        part.nextOrdinal = std::max(part.nextOrdinal, object.ordinal + 1);
        if (object.as<FontTable>()) part.fontTable = object.tag;
    }
    // Links can point forward: they are indexed when every object is known.
    for (const auto &[ordinal, object] : part.objects) {
        Udo *udo = object->as<Udo>();
        if (!udo) continue;
        std::sort(udo->links.begin(), udo->links.end(),
                  [](const Link &a, const Link &b) { return a.sequence < b.sequence; });
        for (const Link &link : udo->links) {
            m_inner->indexLink(*object, link);
            if (link.status) m_inner->outOfDateTargets.insert(link.target);
            part.nextLinkSequence = std::max(part.nextLinkSequence, link.sequence + 1);
        }
        for (const Tag owned : udo->owned)
            if (Object *below = find(owned)) below->owner = object->tag;
    }
    if (!find(part.fontTable)) {
        const bool wasModified = part.modified;
        part.fontTable = create(part, FontTable{{"blockfont"}}).tag;
        part.modified = wasModified;
    }
    if (!find(part.currentSheet)) part.currentSheet = 0;
    return part;
}

Part *Session::partByName(std::string_view name)
{
    if (name.empty()) return nullptr;
    const std::filesystem::path asked = name;
    const std::filesystem::path absolute = std::filesystem::absolute(asked).lexically_normal();
    for (const auto &part : m_parts)
        if (samePart(*part, absolute)) return part.get();
    if (asked.has_parent_path()) return nullptr;
    for (const auto &part : m_parts)
        if (sameFileName(*part, asked)) return part.get();
    return nullptr;
}

void Session::closePart(Part &part)
{
    Inner::DeletionScope scope{*m_inner};
    std::vector<Tag> dead;
    dead.reserve(part.objects.size() + 1);
    for (const auto &[ordinal, object] : part.objects) {
        object->status = Status::deleted;
        dead.push_back(object->tag);
        m_inner->deadObjects.push_back(std::move(m_inner->entries[object->tag].object));
        m_inner->entries.erase(object->tag);
        m_inner->outOfDateTargets.erase(object->tag);
        highlighted.erase(object->tag);
    }
    dead.push_back(part.tag);
    m_inner->partsByTag.erase(part.tag);
    if (m_inner->display == &part) m_inner->display = nullptr;
    if (m_inner->work == &part) m_inner->work = m_inner->display;
    const auto place = std::find_if(m_parts.begin(), m_parts.end(),
                                    [&](const auto &held) { return held.get() == &part; });
    m_inner->deadParts.push_back(std::move(*place));
    m_parts.erase(place);
    for (const auto &listener : retirementListeners)
        for (const Tag tag : dead) listener(tag);
}

SheetSize sizeOf(const Sheet &sheet)
{
    constexpr SheetSize kMetric[] = {{1189, 841}, {841, 594}, {594, 420}, {420, 297}, {297, 210}};
    constexpr SheetSize kEnglish[] = {{11, 8.5}, {17, 11}, {22, 17}, {34, 22},
                                      {44, 34},  {40, 28}, {44, 28}, {55, 34}};
    const auto coded = [&](const auto &table) {
        host::require(sheet.sizeCode >= 1 && sheet.sizeCode <= static_cast<int>(std::size(table)),
                      UF_DRAW_err_invalid_parameter);
        return table[sheet.sizeCode - 1];
    };
    if (sheet.sizeState == UF_DRAW_METRIC_SIZE) return coded(kMetric);
    if (sheet.sizeState == UF_DRAW_ENGLISH_SIZE) return coded(kEnglish);
    host::require(sheet.sizeState == UF_DRAW_CUSTOM_SIZE && sheet.customHeight > 0.0 &&
                      sheet.customLength > 0.0,
                  UF_DRAW_err_invalid_parameter);
    return {sheet.customLength, sheet.customHeight};
}

} // namespace host
