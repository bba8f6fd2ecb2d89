// The slice of the newer interface that sizes the symbols inside notes.
#include "opencpp/nxopen_table.h"

#include "model/calls.h"
#include "model/session.h"
#include "openc/raw_enum.h"

#include "NXOpen/Annotations_SimpleDraftingAid.hxx"
#include "NXOpen/NXException.hxx"
#include "NXOpen/NXObjectManager.hxx"
#include "uf.h"
#include "ug_exception.hxx"

namespace NXOpen {

namespace {

template <class F> auto member(const char *name, F &&body) -> decltype(body())
{
    if (const int code = host::enterCall(name)) throw NXException::Create(code);
    try {
        return body();
    } catch (const host::Failure &failure) {
        throw NXException::Create(failure.code);
    }
}

host::Object &noteObject(tag_t tag)
{
    host::Object &object = host::Session::get().require(tag);
    host::require(object.as<host::Note>(), UF_err_wrong_class);
    return object;
}

} // namespace

NXException::NXException(int error_code)
    : m_code(error_code), m_message(UgException(error_code).askErrorText())
{}

NXException::~NXException() = default;

NXException NXException::Create(int error_code) { return NXException(error_code); }

TaggedObject::~TaggedObject() = default;

TaggedObject *NXObjectManager::Get(tag_t tag)
{
    return member("NXObjectManager::Get", [&] { return ObjectTable::get().find(tag); });
}

TaggedObject *ObjectTable::find(tag_t tag)
{
    host::Session &session = host::Session::get();
    if (!session.findPart(tag)) session.require(tag);
    TaggedObject *&object = m_objects[tag];
    if (!object) object = make(tag);
    return object;
}

TaggedObject *ObjectTable::make(tag_t tag)
{
    struct OtherObject : TaggedObject {
        explicit OtherObject(tag_t of) : TaggedObject(of) {}
    };
    const host::Object *object = host::Session::get().find(tag);
    if (object && object->as<host::Note>()) return new Annotations::SimpleDraftingAid(tag);
    return new OtherObject(tag);
}

ObjectTable &ObjectTable::get()
{
    static auto *table = new ObjectTable;
    return *table;
}

namespace Annotations {

SimpleDraftingAid::~SimpleDraftingAid() = default;

void SimpleDraftingAid::GetUserSymbolSize(UserSymbolPreferences::SizeType *size_type,
                                          double *length_or_scale, double *height_or_aspect_ratio)
{
    member("SimpleDraftingAid::GetUserSymbolSize", [&] {
        const host::Note &note = *noteObject(Tag()).as<host::Note>();
        host::require(size_type, UF_err_bad_parameter_number_1);
        host::require(length_or_scale, UF_err_bad_parameter_number_2);
        host::require(height_or_aspect_ratio, UF_err_bad_parameter_number_3);
        const bool scaled =
            note.userSymbolSizeType == UserSymbolPreferences::SizeTypeScaleAspectRatio;
        *size_type = scaled ? UserSymbolPreferences::SizeTypeScaleAspectRatio
                            : UserSymbolPreferences::SizeTypeLengthHeight;
        *length_or_scale = note.userSymbolLength;
        *height_or_aspect_ratio = note.userSymbolHeight;
    });
}

void SimpleDraftingAid::SetUserSymbolSize(UserSymbolPreferences::SizeType size_type,
                                          double length_or_scale, double height_or_aspect_ratio)
{
    member("SimpleDraftingAid::SetUserSymbolSize", [&] {
        host::Object &object = noteObject(Tag());
        const int type = host::rawValue(size_type);
        host::require(type == UserSymbolPreferences::SizeTypeLengthHeight ||
                          type == UserSymbolPreferences::SizeTypeScaleAspectRatio,
                      UF_err_bad_parameter_number_1);
        host::require(length_or_scale > 0.0, UF_err_bad_parameter_number_2);
        host::require(height_or_aspect_ratio > 0.0, UF_err_bad_parameter_number_3);
        host::Note edited = *object.as<host::Note>();
        edited.userSymbolSizeType = type;
        edited.userSymbolLength = length_or_scale;
        edited.userSymbolHeight = height_or_aspect_ratio;
        if (edited == *object.as<host::Note>()) return;
        host::Session::get().changing(object, "user symbol size");
        *object.as<host::Note>() = std::move(edited);
    });
}

std::string SimpleDraftingAid::GetEvaluatedText(const std::string &stored_line) const
{
    return member("SimpleDraftingAid::GetEvaluatedText", [&] {
        return host::Session::get().evaluated(*noteObject(Tag()).part, stored_line);
    });
}

} // namespace Annotations
} // namespace NXOpen
