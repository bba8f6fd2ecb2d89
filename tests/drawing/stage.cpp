#include "tests/drawing/stage.h"

#include "drawing/pattern.h"
#include "udo/udo_class.h"

#include "uf_drf.h"
#include "uf_obj.h"
#include "uf_patt.h"
#include "uf_udobj.h"
#include "ug_session.hxx"

#include <map>

Stage::Stage(Catalog definitions) : catalog(std::move(definitions))
{
    sheet = story.newSheet();
    for (const char *name : {"frameA3", "frameA2", "frameTall", "framePlain", "title", "rev"})
        makePattern(story, name);
    reload();
}

Stage::~Stage()
{
    try {
        expectSound();
    } catch (const UgException &failure) {
        ADD_FAILURE() << failure.askErrorText();
    }
    TrFormatBase::addBlockCB() = nullptr;
    Catalog::unload();
}

boost::shared_ptr<TrFormatDefV1> Stage::formatDef(const std::string &id) const
{
    return TrDefinitionFileManager::GetFormatDefinition(id);
}

boost::shared_ptr<TrBlockDefV1> Stage::blockDef(const std::string &id) const
{
    return TrDefinitionFileManager::GetBlockDefinition(id);
}

TrFormatSizeV1 Stage::size(const std::string &id, const std::string &formatId) const
{
    return formatDef(formatId)->GetSizeDef(id);
}

boost::shared_ptr<TrBlockBase> Stage::block(const std::string &id) const
{
    for (const auto &block : format()->getBlocks())
        if (block->GetBlockDefName() == id) return block;
    throw std::out_of_range("no block " + id);
}

boost::shared_ptr<TrFieldBase> Stage::field(const std::string &blockId, const std::string &id) const
{
    for (const auto &field : block(blockId)->getFields())
        if (field->GetFieldDefName() == id) return field;
    throw std::out_of_range("no field " + id);
}

std::vector<std::string> Stage::blockNames() const
{
    std::vector<std::string> names;
    for (const auto &block : format()->getBlocks()) names.push_back(block->GetBlockDefName());
    return names;
}

std::vector<std::string> Stage::fieldNames(const std::string &blockId) const
{
    std::vector<std::string> names;
    for (const auto &field : block(blockId)->getFields()) names.push_back(field->GetFieldDefName());
    return names;
}

At Stage::blockAt(const std::string &id) const
{
    const auto found = block(id);
    return {found->GetX(), found->GetY()};
}

tag_t Stage::note(const std::string &blockId, const std::string &id) const
{
    const UgDisplayableObject *found = field(blockId, id)->GetNote();
    return found ? found->getTag() : NULL_TAG;
}

At Stage::noteAt(const std::string &blockId, const std::string &id) const
{
    double origin[3];
    UgException::throwOnFailure(UF_DRF_ask_origin(note(blockId, id), origin));
    return {origin[0], origin[1]};
}

std::string Stage::value(const std::string &blockId, const std::string &id) const
{
    return field(blockId, id)->GetValue().at(0);
}

std::vector<tag_t> Stage::patterns(const LumUg::UDO &owner) const
{
    std::vector<tag_t> tags;
    for (const UgTypedObject *pattern : owner.GetOwnedObjects(ZemPattern::kObjectType))
        tags.push_back(pattern->getTag());
    return tags;
}

std::vector<std::string> Stage::patternNames(const LumUg::UDO &owner) const
{
    std::vector<std::string> names;
    for (const UgTypedObject *pattern : owner.GetOwnedObjects(ZemPattern::kObjectType))
        names.push_back(pattern->getName());
    return names;
}

At Stage::patternAt(tag_t pattern) const
{
    char name[MAX_FSPEC_BUFSIZE], file[MAX_FSPEC_BUFSIZE];
    int viewDependent = 0, layer = 0, status = 0;
    double placement[13];
    UgException::throwOnFailure(
        uc5822(pattern, name, file, &viewDependent, &layer, &status, placement));
    return {placement[9], placement[10]};
}

std::size_t Stage::count(const char *className) const
{
    const auto *registered = LumUg::UDOClass::GetClass(className);
    return LumUg::UDO::GetAllUgUDOsOfClass(UgSession::getWorkPart(), registered->GetClassId())
        .size();
}

void expectSoundPart(bool leavesRecords)
{
    const UgPart *part = UgSession::getWorkPart();
    std::map<tag_t, int> parents, owners;
    std::vector<tag_t> children; // records of the library that hang on another one: all but formats
    for (UgTypedObject *object = part->iterateFirst(); object; object = part->iterateNext(object)) {
        EXPECT_NE(UF_OBJ_ask_status(object->getTag()), UF_OBJ_CONDEMNED) << object->getTag();
        const auto *udo = dynamic_cast<UgUDO *>(object);
        if (!udo) continue;
        const auto record = LumUg::UDO::Create(object);
        if (record && !boost::dynamic_pointer_cast<TrFormatBase>(record))
            children.push_back(object->getTag());
        for (unsigned type = 1; type <= 4; ++type) {
            for (const UgObject *target : udo->getLinks(type)) {
                ASSERT_TRUE(target && target->isAlive()) << "dangling link of type " << type;
                EXPECT_NE(UF_OBJ_ask_status(target->getTag()), UF_OBJ_CONDEMNED);
                if (type == LumUg::kChildLink) ++parents[target->getTag()];
            }
        }
        for (const UgObject *owned : udo->getOwnedObjects()) ++owners[owned->getTag()];
    }
    for (const auto &[tag, times] : parents) EXPECT_EQ(times, 1) << "child " << tag;
    for (const tag_t tag : children)
        EXPECT_TRUE(leavesRecords || parents.contains(tag)) << "left over: " << tag;
    for (const auto &[tag, times] : owners) EXPECT_EQ(times, 1) << "owned object " << tag;
}

std::vector<std::string> infoLines(const std::function<void()> &body)
{
    Base::log::Recording recording{&QelFmt::info_log()};
    body();
    return recording.texts();
}
