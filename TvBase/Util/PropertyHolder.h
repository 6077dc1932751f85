#pragma once

#include "TvBase/Util/Signal.h"
#include "TvBase/Util/String.h"
#include "TvBase/Util/checked_value.h"

#include <boost/any.hpp>
#include <boost/make_shared.hpp>
#include <boost/shared_ptr.hpp>

#include <map>
#include <typeinfo>

namespace Util
{

template <typename T>
class Property;

namespace detail
{
/// The type a property stores for a value of type `T`: text always lives as `String`, so a
/// string literal never creates or sets a `char const*` property by accident.
template <typename T>
struct StoredPropertyType
{
    typedef T type;
};
template <>
struct StoredPropertyType<char const*>
{
    typedef String type;
};
template <>
struct StoredPropertyType<char*>
{
    typedef String type;
};
} // namespace detail

/// A set of named, typed properties, as every window carries them. Each property keeps two
/// values of one type: the value in force and the value that a layout file holds. A value set by
/// code wins over the layout from then on, while the layout value is still recorded for saving.
/// Not copyable: `Property` handles point into the set.
class PropertyHolder
{
public:
    /// One property.
    struct PropertyValue
    {
        /// What the text of a `String` property means to editors ("KeyPath", "CommandID");
        /// absent for plain text.
        checked_value<String> semanticType;
        /// The value in force.
        boost::any value;
        /// The value that the layout file holds; always of the same type as `value`.
        boost::any serializedValue;
        /// While true, a newly loaded layout value also becomes the value in force.
        bool followsSerialized = true;
        /// Set when a value comes from a layout (or the design tools mark the property); only
        /// such properties are saved.
        bool serialize = false;
        /// Emitted whenever `value` changes. Shared so that copies of the record keep one signal;
        /// made on first use (see `Changed`), as most properties are never watched.
        mutable boost::shared_ptr<Signal<>> changed;
        /// The mangled type name of what the property must resolve to, when it has to.
        checked_value<String> requiredValueType;
        /// The holder's own operation called on every change, before the slots of `changed`.
        void (PropertyHolder::*watcher)() = nullptr;

        /// The change signal, made now when nothing asked for it before.
        Signal<>& Changed() const
        {
            if (!changed)
                changed = boost::make_shared<Signal<>>();
            return *changed;
        }
    };
    typedef std::map<String, PropertyValue> PropertyMap;

    PropertyHolder() = default;
    PropertyHolder(PropertyHolder const&) = delete;
    PropertyHolder& operator=(PropertyHolder const&) = delete;

    /// Adds a property whose value in force and layout value are both `defaultValue`. A taken
    /// name changes nothing and gives a null handle.
    template <typename T>
    Property<typename detail::StoredPropertyType<T>::type> CreateProperty(String const& name,
                                                                          T defaultValue);
    /// Adds a `String` property with its semantic type set; otherwise as above.
    template <typename T = String>
    Property<String> CreateProperty(String const& name, String const& semanticType,
                                    String defaultValue);

    /// Sets the value in force. False when the name is unknown. Otherwise code takes the property
    /// over from the layout (even when the type then turns out wrong); when the stored value has
    /// type `T` it is replaced, `changed` is emitted and the answer is true; another type gives
    /// false.
    template <typename T>
    bool SetProperty(String const& name, T value);
    /// The value in force when the name is known and the type is `T`; otherwise not present.
    template <typename T>
    checked_value<T> GetProperty(String const& name) const;
    /// The layout value when the name is known and the type is `T`; otherwise not present.
    template <typename T>
    checked_value<T> GetSerializedProperty(String const& name) const;
    /// Records a layout value, as a loaded layout does. False when the name is unknown,
    /// otherwise the answer of `setSerializedProperty`.
    template <typename T>
    bool SetSerializedValue(String const& name, T value);
    /// Stores `value` as the layout value of `property`: false when its type differs from the
    /// stored one. While the property follows the layout, the value in force takes it too and
    /// `changed` is emitted.
    bool setSerializedProperty(PropertyValue& property, boost::any value);
    /// Records the compiler's (mangled) type name of `T` as what the property must resolve to.
    /// False when the name is unknown.
    template <typename T>
    bool SetPropertyRequiredValueType(String const& name);

    /// Marks the property to be saved with the layout, or unmarks it, as the design tools do.
    /// False when the name is unknown.
    bool SetPropertySerialize(String const& name, bool serialize);
    /// Has the holder's own `method` called whenever the value in force of property `name`
    /// changes, before the slots of its change signal. What a signal connection does, for the
    /// holder's own properties, without a connection's hundreds of bytes in every window. False
    /// when the name is unknown; a later call replaces the method.
    template <typename T>
    bool WatchProperty(String const& name, void (T::*method)())
    {
        PropertyValue* p = FindProperty(name);
        if (!p)
            return false;
        p->watcher = static_cast<void (PropertyHolder::*)()>(method);
        return true;
    }

    /// The change signal of a property, or null when the name is unknown.
    Signal<>* GetPropertyChangedSignal(String const& name) const;
    /// The record of a property, or null when the name is unknown. Valid while this holder lives.
    PropertyValue const* FindProperty(String const& name) const;
    PropertyValue* FindProperty(String const& name);
    bool HasProperty(String const& name) const { return properties.count(name) != 0; }
    /// All properties, in name order.
    PropertyMap const& GetProperties() const { return properties; }

private:
    template <typename T>
    friend class Property;

    /// Code's write to the value in force, shared by `SetProperty` and `Property::Set`.
    bool setValue(PropertyValue& property, boost::any value);
    /// Tells the watcher and the slots of `changed` that the value in force changed.
    void notifyChanged(PropertyValue& property);
    PropertyValue* addProperty(String const& name, boost::any defaultValue);

    PropertyMap properties;
};

/// A typed handle on one property of a holder, as `CreateProperty` returns it. Null when the
/// property could not be created. Does not own; valid while the holder lives.
template <typename T>
class Property
{
public:
    Property() = default;
    Property(PropertyHolder* holder, PropertyHolder::PropertyValue* property)
        : holder(holder), property(property)
    {
    }

    bool IsNull() const { return property == nullptr; }
    explicit operator bool() const { return property != nullptr; }

    /// The value in force; not present on a null handle.
    checked_value<T> Get() const
    {
        T const* v = property ? boost::any_cast<T>(&property->value) : nullptr;
        return v ? checked_value<T>(*v) : checked_value<T>();
    }
    /// The layout value; not present on a null handle.
    checked_value<T> GetSerialized() const
    {
        T const* v = property ? boost::any_cast<T>(&property->serializedValue) : nullptr;
        return v ? checked_value<T>(*v) : checked_value<T>();
    }
    /// As `PropertyHolder::SetProperty`; false on a null handle.
    bool Set(T value) const { return property && holder->setValue(*property, boost::any(value)); }
    /// As `PropertyHolder::SetSerializedValue`; false on a null handle.
    bool SetSerialized(T value) const
    {
        return property && holder->setSerializedProperty(*property, boost::any(value));
    }
    /// The signal emitted when the value in force changes. Must not be called on a null handle.
    Signal<>& GetChangedSignal() const { return property->Changed(); }
    PropertyHolder::PropertyValue* GetPropertyValue() const { return property; }
    PropertyHolder* GetHolder() const { return holder; }

private:
    PropertyHolder* holder = nullptr;
    PropertyHolder::PropertyValue* property = nullptr;
};

// ---- template members of PropertyHolder

template <typename T>
Property<typename detail::StoredPropertyType<T>::type>
PropertyHolder::CreateProperty(String const& name, T defaultValue)
{
    typedef typename detail::StoredPropertyType<T>::type Stored;
    PropertyValue* p = addProperty(name, boost::any(Stored(defaultValue)));
    return p ? Property<Stored>(this, p) : Property<Stored>();
}

template <typename T>
Property<String> PropertyHolder::CreateProperty(String const& name, String const& semanticType,
                                                String defaultValue)
{
    static_assert(std::is_same<T, String>::value, "only String properties have a semantic type");
    PropertyValue* p = addProperty(name, boost::any(defaultValue));
    if (!p)
        return Property<String>();
    p->semanticType = semanticType;
    return Property<String>(this, p);
}

template <typename T>
bool PropertyHolder::SetProperty(String const& name, T value)
{
    typedef typename detail::StoredPropertyType<T>::type Stored;
    PropertyValue* p = FindProperty(name);
    return p && setValue(*p, boost::any(Stored(value)));
}

template <typename T>
checked_value<T> PropertyHolder::GetProperty(String const& name) const
{
    PropertyValue const* p = FindProperty(name);
    T const* v = p ? boost::any_cast<T>(&p->value) : nullptr;
    return v ? checked_value<T>(*v) : checked_value<T>();
}

template <typename T>
checked_value<T> PropertyHolder::GetSerializedProperty(String const& name) const
{
    PropertyValue const* p = FindProperty(name);
    T const* v = p ? boost::any_cast<T>(&p->serializedValue) : nullptr;
    return v ? checked_value<T>(*v) : checked_value<T>();
}

template <typename T>
bool PropertyHolder::SetSerializedValue(String const& name, T value)
{
    typedef typename detail::StoredPropertyType<T>::type Stored;
    PropertyValue* p = FindProperty(name);
    return p && setSerializedProperty(*p, boost::any(Stored(value)));
}

template <typename T>
bool PropertyHolder::SetPropertyRequiredValueType(String const& name)
{
    PropertyValue* p = FindProperty(name);
    if (!p)
        return false;
    p->requiredValueType = String(typeid(T).name());
    return true;
}

} // namespace Util
