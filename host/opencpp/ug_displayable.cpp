#include "ug_displayable.hxx"

#include "opencpp/member.h"

#include "uf_layer.h"

namespace {

// Changes one value of how an object is drawn.
void setAppearance(const UgObject &wrapper, const char *what, int host::Appearance::*member,
                   int value)
{
    host::Object &object = host::objectOf(wrapper);
    if (object.appearance.*member == value) return;
    host::Session::get().changing(object, what);
    object.appearance.*member = value;
}

} // namespace

UgDisplayableObject::UgDisplayableObject(tag_t tag)
{
    if (tag != NULL_TAG) setTag(tag);
}

UgDisplayableObject::~UgDisplayableObject() = default;

void UgDisplayableObject::setColor(UgColor color)
{
    host::member("UgDisplayableObject::setColor",
                 [&] { setAppearance(*this, "colour", &host::Appearance::color, color); });
}

UgColor UgDisplayableObject::getColor() const
{
    return host::member("UgDisplayableObject::getColor", [&] {
        return static_cast<UgColor>(host::objectOf(*this).appearance.color);
    });
}

void UgDisplayableObject::setLayer(int layer)
{
    host::member("UgDisplayableObject::setLayer", [&] {
        host::require(layer >= UF_LAYER_MIN_LAYER && layer <= UF_LAYER_MAX_LAYER,
                      UF_err_layer_range);
        setAppearance(*this, "layer", &host::Appearance::layer, layer);
    });
}

int UgDisplayableObject::getLayer() const
{
    return host::member("UgDisplayableObject::getLayer",
                        [&] { return host::objectOf(*this).appearance.layer; });
}

void UgDisplayableObject::setLineFont(int font)
{
    host::member("UgDisplayableObject::setLineFont",
                 [&] { setAppearance(*this, "line font", &host::Appearance::lineFont, font); });
}

int UgDisplayableObject::getLineFont() const
{
    return host::member("UgDisplayableObject::getLineFont",
                        [&] { return host::objectOf(*this).appearance.lineFont; });
}

void UgDisplayableObject::setLineWidth(int width)
{
    host::member("UgDisplayableObject::setLineWidth",
                 [&] { setAppearance(*this, "line width", &host::Appearance::lineWidth, width); });
}

int UgDisplayableObject::getLineWidth() const
{
    return host::member("UgDisplayableObject::getLineWidth",
                        [&] { return host::objectOf(*this).appearance.lineWidth; });
}
