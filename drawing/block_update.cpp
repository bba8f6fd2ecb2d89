// A block against the definition on disk.
#include "content/field.h"
#include "content/table.h"
#include "definitions/block_def.h"
#include "definitions/definition_file_manager.h"
#include "definitions/field_def.h"
#include "definitions/table_def.h"
#include "drawing/block.h"
#include "drawing/block_not_exist.h"
#include "drawing/timer.h"
#include "foundation/log.h"

#include <algorithm>
#include <set>

namespace {

template <class Definitions> std::set<std::string> idsOf(const Definitions &definitions)
{
    std::set<std::string> ids;
    for (const auto &def : definitions) ids.insert(def.GetId());
    return ids;
}

} // namespace

bool TrBlockBase::checkDefinition() const
{
    if (IsNull()) return false;
    const std::string name = GetBlockDefName();
    const auto disk = TrDefinitionFileManager::GetBlockDefinition(name);
    if (!disk) return false;
    const boost::shared_ptr<TrBlockDefV1> stored = GetDefinition();
    // Without a copy the block counts as current here and as changed in updateDefinition().
    if (stored->IsNull() || *stored == *disk) return false;
    QELFMT_INFO << "Block " << name << " is out of date.";
    return true;
}

void TrBlockBase::updateDefinition()
{
    const std::string name = GetBlockDefName();
    QELFMT_INFO << "Updating block " << name;
    Timer timer;
    const auto disk = TrDefinitionFileManager::GetBlockDefinition(name);
    QELFMT_INFO << "check to see if block still exists";
    if (!disk || disk->IsNull()) {
        QELFMT_INFO << "Block " << name << " no longer exists on disk";
        throw TrBlockNotExist();
    }
    QELFMT_INFO << "Checking block for update...";
    const boost::shared_ptr<TrBlockDefV1> stored = GetDefinition();
    const bool keepsDefinition = dynamic_cast<TrBlockV1 *>(this) != nullptr;
    if (keepsDefinition && (stored->IsNull() || !(*stored == *disk))) followDefinition(*disk);
    checkForNewFields();
    timer.end();
}

// Fields and tables compare their new definition with the old one, which therefore lives, unlinked,
// until all of them are done.
void TrBlockBase::followDefinition(const TrBlockDefV1 &disk)
{
    QELFMT_INFO << "Updating block definition";
    const boost::shared_ptr<TrBlockDefV1> fresh = disk.clone();
    const boost::shared_ptr<TrBlockDefV1> old = GetDefinition();
    if (old->IsNull())
        setDefinition(fresh);
    else
        exchange(LumUg::kChildLink, *old, *fresh);
    try {
        QELFMT_INFO << "Updating field definitions in block";
        checkForRemovedFields();
        pairFields(*fresh);
        QELFMT_INFO << "Updating table definitions in block";
        pairTables(*fresh);
    } catch (...) {
        dropOldDefinition(*old);
        throw;
    }
    dropOldDefinition(*old);
    updatePattern();
    locateBlock(nullptr);
}

// By position, not by id: what callers of the library have always got. Equal definitions only change
// the record that is linked.
void TrBlockBase::pairFields(const TrBlockDefV1 &def)
{
    const Fields fields = getFields();
    const auto definitions = def.GetFieldDefinitions();
    const std::size_t count = std::min(fields.size(), definitions.size());
    for (std::size_t i = 0; i < count; ++i) {
        fields[i]->UpdateDefinition(definitions[i]);
        if (fields[i]->GetDefinition().tag() != definitions[i].tag())
            fields[i]->SetDefinition(definitions[i]);
        fields[i]->fitBorders(); // also where the block itself stays where it is
    }
}

void TrBlockBase::pairTables(const TrBlockDefV1 &def)
{
    const Tables tables = getTables();
    const auto definitions = def.GetTableDefinitions();
    const std::size_t count = std::min(tables.size(), definitions.size());
    for (std::size_t i = 0; i < count; ++i) {
        tables[i]->UpdateDefinition(*definitions[i]);
        if (tables[i]->GetDefinition()->tag() != definitions[i]->tag())
            tables[i]->SetDefinition(*definitions[i]);
    }
}

// A field or table that found no partner in the new definition keeps the record that it has.
void TrBlockBase::dropOldDefinition(TrBlockDefV1 &old)
{
    if (old.IsNull()) return;
    const auto records = old.GetLinks(LumUg::kChildLink);
    const std::set<const UgTypedObject *> going(records.begin(), records.end());
    for (const auto &field : getFields())
        if (going.contains(field->GetDefinition().GetUdoObject())) field->keepDefinition();
    for (const auto &table : getTables())
        if (going.contains(table->GetDefinition()->GetUdoObject())) table->keepDefinition();
    old.DeleteUDO();
}

void TrBlockBase::checkForNewFields()
{
    const boost::shared_ptr<TrBlockDefV1> def = GetDefinition();
    if (def->IsNull()) return;
    std::set<std::string> present;
    for (const auto &field : getFields()) present.insert(field->GetFieldDefName());
    for (const auto &fieldDef : def->GetFieldDefinitions()) {
        const std::string id = fieldDef.GetId();
        if (!present.insert(id).second) continue;
        QELFMT_INFO << "Adding new field " << id;
        addField(fieldDef, true);
    }
}

void TrBlockBase::checkForRemovedFields()
{
    const std::set<std::string> ids = idsOf(GetDefinition()->GetFieldDefinitions());
    for (boost::shared_ptr<TrFieldBase> &field : getFields()) {
        const std::string name = field->GetFieldDefName();
        if (ids.contains(name)) continue;
        QELFMT_INFO << "Deleting removed field " << name;
        removeAndRetainField(field);
        field->DeleteUDO();
    }
}
