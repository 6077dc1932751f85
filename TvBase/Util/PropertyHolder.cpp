#include "TvBase/Util/PropertyHolder.h"

#include <boost/make_shared.hpp>

namespace Util
{

PropertyHolder::PropertyValue* PropertyHolder::addProperty(String const& name,
                                                           boost::any defaultValue)
{
    // One search for both the check and the place to insert.
    auto const at = properties.lower_bound(name);
    if (at != properties.end() && !(name < at->first))
        return nullptr;
    PropertyValue record;
    record.value = defaultValue;
    record.serializedValue = std::move(defaultValue);
    return &properties.emplace_hint(at, name, std::move(record))->second;
}

bool PropertyHolder::setValue(PropertyValue& property, boost::any value)
{
    // Code has taken the property over, whether or not the write itself succeeds.
    property.followsSerialized = false;
    if (property.value.type() != value.type())
        return false;
    property.value = std::move(value);
    notifyChanged(property);
    return true;
}

void PropertyHolder::notifyChanged(PropertyValue& property)
{
    // The signal is held for the call: a slot may not take the record's away mid-emission.
    // A signal not made yet has no slots to call.
    boost::shared_ptr<Signal<>> const changed = property.changed;
    if (property.watcher)
        (this->*property.watcher)();
    if (changed)
        (*changed)();
}

bool PropertyHolder::setSerializedProperty(PropertyValue& property, boost::any value)
{
    if (value.type() != property.serializedValue.type())
        return false;
    property.serializedValue = value;
    if (!property.followsSerialized)
        return true; // code has taken over: the layout only records
    if (value.type() == property.value.type())
    {
        property.value = std::move(value);
        notifyChanged(property);
    }
    return true;
}

bool PropertyHolder::SetPropertySerialize(String const& name, bool serialize)
{
    PropertyValue* p = FindProperty(name);
    if (!p)
        return false;
    p->serialize = serialize;
    return true;
}

Signal<>* PropertyHolder::GetPropertyChangedSignal(String const& name) const
{
    PropertyValue const* p = FindProperty(name);
    return p ? &p->Changed() : nullptr;
}

PropertyHolder::PropertyValue const* PropertyHolder::FindProperty(String const& name) const
{
    auto it = properties.find(name);
    return it == properties.end() ? nullptr : &it->second;
}

PropertyHolder::PropertyValue* PropertyHolder::FindProperty(String const& name)
{
    auto it = properties.find(name);
    return it == properties.end() ? nullptr : &it->second;
}

} // namespace Util
