// Where the value of a field comes from before anybody types one.
#include "content/attributes.h"
#include "content/field.h"
#include "content/recompute_guard.h"
#include "definitions/field_def.h"
#include "drawing/drawing.h"
#include "foundation/application.h"
#include "foundation/log.h"
#include "foundation/registry.h"

#include "uf.h"
#include "ug_exception.hxx"
#include "ug_part.hxx"
#include "ug_session.hxx"

namespace {

using Def = TrFieldDefV1;
using QelFmt::indexed;
using Value = TrFieldBase::Value;

enum DefaultType {
    kText = 0,
    kPartAttribute = 1,
    kDrawingAttribute = 2,
    kSizeLabel = 3,
    kEnvironment = 4
};

// One line of a last empty string is a file's way to end a text.
Value textDefault(const Value &registryLines, const Value &defaultStrings)
{
    Value value = registryLines.empty() ? defaultStrings : registryLines;
    if (value.size() >= 2 && value.back().empty()) value.pop_back();
    return value;
}

// The first name that means something.
Value environmentDefault(const Value &names)
{
    for (const std::string &name : names) {
        if (name.empty()) continue;
        char *translation = nullptr; // the environment's: not ours to free
        UgException::throwOnFailure(UF_translate_variable(name.c_str(), &translation));
        if (translation) return {translation};
    }
    return {};
}

Value readLines(const UgAttributableObject &source, const std::string &title, bool multiline)
{
    Value value;
    if (!multiline) {
        if (const auto line = QelFmt::readAttribute(source, title)) value.push_back(*line);
        return value;
    }
    while (const auto line = QelFmt::readAttribute(source, indexed(title, value.size())))
        value.push_back(*line);
    return value;
}

// The attribute is named by the first default string; without one the settings count, and where
// they say nothing the definition's other name.
std::string attributeTitle(const LumUg::Record &def, const Value &registryLines)
{
    const Value names = def.get(Def::kDefaultString);
    if (!names.empty() && !names.front().empty()) return names.front();
    return registryLines.empty() ? def.get(Def::kPartAttrString) : std::string();
}

} // namespace

TrFieldBase::Value TrFieldBase::registryValue() const
{
    constexpr char kSection[] = "Format Defaults";
    const LumUg::Record def(GetDefinition());
    const std::string key = def.get(Def::kRegistryString);
    if (key.empty()) return {};
    const QelFmt::Registry &settings = *QelFmt::Application::getRegistry();
    Value value;
    if (def.get(Def::kMultiline) == 0) {
        if (settings.keyExists(kSection, key))
            value.push_back(settings.readStringEntry(kSection, key, ""));
        return value;
    }
    while (settings.keyExists(kSection, indexed(key, value.size())))
        value.push_back(settings.readStringEntry(kSection, indexed(key, value.size()), ""));
    return value;
}

// The work part, or what carries the attributes of the sheet that the field stands on.
UgAttributableObject *TrFieldBase::attributeSource(int defaultType, bool addMissing) const
{
    if (defaultType == kPartAttribute) return UgSession::getWorkPart();
    const unsigned sheet = TrDrawing::getDrawing(*this)->drawingTag();
    return addMissing ? GetBroadcastPoint(sheet) : findBroadcastPoint(sheet);
}

// An attribute that is missing leaves what the settings gave. On a sheet's carrier it is added, so
// that it can be filled in later.
TrFieldBase::Value TrFieldBase::attributeDefault(const Value &registryLines, bool addMissing) const
{
    const LumUg::Record def(GetDefinition());
    const std::string title = attributeTitle(def, registryLines);
    if (title.empty()) return registryLines;
    const int type = def.get(Def::kDefaultType);
    UgAttributableObject *source = attributeSource(type, addMissing);
    if (!source) return registryLines;

    QELFMT_INFO << "Checking existance for part attr " << title;
    const bool multiline = def.get(Def::kMultiline) != 0;
    const Value found = readLines(*source, title, multiline);
    if (!found.empty()) {
        QELFMT_INFO << "part attr " << title << " exists";
        return found;
    }
    if (type == kDrawingAttribute && addMissing)
        source->addStringAttribute(multiline ? indexed(title, 0) : title, "");
    return registryLines;
}

TrFieldBase::Value TrFieldBase::computeDefault(bool addMissing) const
{
    const TrFieldDefV1 definition = GetDefinition();
    if (definition.IsNull()) return {};
    const Value synced = valueOnOtherSheets();
    if (!synced.empty()) return synced;

    const LumUg::Record def(definition);
    const Value registryLines = registryValue();
    switch (def.get(Def::kDefaultType)) {
    case kText:
        return textDefault(registryLines, def.get(Def::kDefaultString));
    case kPartAttribute:
    case kDrawingAttribute:
        return attributeDefault(registryLines, addMissing);
    case kSizeLabel:
        return {TrDrawing::getDrawing(*this)->sizeLabel()};
    case kEnvironment:
        return registryLines.empty() ? environmentDefault(def.get(Def::kDefaultString))
                                     : registryLines;
    }
    return {};
}

TrFieldBase::Value TrFieldBase::defaultValue() const
{
    Value value = computeDefault(false);
    if (value.empty()) value.emplace_back();
    return value;
}

void TrFieldBase::SetToDefaultValue()
{
    const QelFmt::WritingField writing(tag());
    ModifyValue(computeDefault(true));
}
