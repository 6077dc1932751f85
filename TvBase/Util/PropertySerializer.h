#pragma once

#include "TvBase/Util/PropertyHolder.h"
#include "TvBase/Util/String.h"
#include "TvBase/Util/checked_value.h"

#include <boost/any.hpp>
#include <boost/function.hpp>

#include <map>
#include <typeinfo>
#include <utility>
#include <vector>

namespace Util
{

/// Turns property values into the text forms that layout files hold, and back. Each value type
/// is registered once under one type name, with a writer and a reader. One serializer belongs to
/// the canvas. Nothing here throws: failures are false answers.
class PropertySerializer
{
public:
    /// One saved property.
    struct PropertySerialization
    {
        String name;
        String type;
        String value;
    };

    typedef boost::function<checked_value<String>(boost::any const&)> AnyWriter;
    typedef boost::function<boost::any(String const&)> AnyReader;

    PropertySerializer() = default;
    PropertySerializer(PropertySerializer const&) = delete;
    PropertySerializer& operator=(PropertySerializer const&) = delete;

    /// Registers `T` under `name`. False, with no change, when `T` or `name` is registered
    /// already. A reader answers not present for text it cannot read.
    template <typename T>
    bool RegisterType(String const& name, boost::function<String(T const&)> writer,
                      boost::function<checked_value<T>(String const&)> reader);

    /// Registers the enumeration `T` under `name`, written as the name at its integer value and
    /// read by exact, case-sensitive search of the names. False when `name` is already a named
    /// enumeration or the type cannot be registered. A value past the names writes no text.
    template <typename T>
    bool RegisterNamedEnumType(String const& name, array_ref<char const*> valueNames);

    /// The eight types that every layout may use, in this order: "Int", "Point", "Rect",
    /// "String", "Float", "Bool", "Float Range", "Color". The canvas calls it once at start.
    void RegisterStandardTypes();

    /// Reads `text` as a value of the registered type `type` and hands it to the property `name`
    /// as its layout value; on success the property is marked to be saved. False for an unknown
    /// type, unreadable text, an unknown property, or a type that differs from the property's.
    bool Load(PropertyHolder& holder, String const& name, String const& type,
              String const& text) const;
    /// As above, with the type that the property already has (as an editor that shows the text
    /// does). False when the property is unknown or its type is not registered.
    bool Load(PropertyHolder& holder, String const& name, String const& text) const;

    /// Writes the layout value of `property`: fills `name`, `type` and `text`, and answers the
    /// property's save mark. False, with the outputs untouched, when its type has no writer or
    /// the writer gives no text.
    bool Save(std::pair<String const, PropertyHolder::PropertyValue> const& property, String& name,
              String& type, String& text) const;
    /// Appends one record per property marked to be saved, in name order. Always true.
    bool SaveAll(PropertyHolder const& holder, std::vector<PropertySerialization>& out) const;

    /// The registered type name of values of `type`; not present when it is not registered.
    checked_value<String> GetTypeName(std::type_info const& type) const;
    /// The value names of the named enumeration `typeName`, or null when it is not one.
    std::vector<String> const* GetEnumNames(String const& typeName) const;
    /// All named enumerations, by type name.
    std::map<String, std::vector<String>> const& GetAllEnumNames() const { return enumNames; }

private:
    struct TypeInfoLess
    {
        bool operator()(std::type_info const* a, std::type_info const* b) const
        {
            return a->before(*b);
        }
    };

    bool registerAny(std::type_info const& type, String const& name, AnyWriter writer,
                     AnyReader reader);

    std::map<std::type_info const*, std::pair<String, AnyWriter>, TypeInfoLess> writers;
    std::map<String, AnyReader> readers;
    std::map<String, std::vector<String>> enumNames;
};

// ---- template members

template <typename T>
bool PropertySerializer::RegisterType(String const& name, boost::function<String(T const&)> writer,
                                      boost::function<checked_value<T>(String const&)> reader)
{
    AnyWriter anyWriter = [writer](boost::any const& value) -> checked_value<String>
    {
        T const* v = boost::any_cast<T>(&value);
        if (!v)
            return checked_value<String>();
        return checked_value<String>(writer(*v));
    };
    AnyReader anyReader = [reader](String const& text) -> boost::any
    {
        checked_value<T> v = reader(text);
        return v.IsPresent() ? boost::any(v.Get()) : boost::any();
    };
    return registerAny(typeid(T), name, anyWriter, anyReader);
}

template <typename T>
bool PropertySerializer::RegisterNamedEnumType(String const& name,
                                               array_ref<char const*> valueNames)
{
    if (enumNames.count(name))
        return false;
    std::vector<String> names(valueNames.begin(), valueNames.end());
    AnyWriter anyWriter = [names](boost::any const& value) -> checked_value<String>
    {
        T const* v = boost::any_cast<T>(&value);
        if (!v)
            return checked_value<String>();
        long long index = static_cast<long long>(*v);
        if (index < 0 || index >= static_cast<long long>(names.size()))
            return checked_value<String>();
        return checked_value<String>(names[static_cast<std::size_t>(index)]);
    };
    AnyReader anyReader = [names](String const& text) -> boost::any
    {
        for (std::size_t i = 0; i < names.size(); ++i)
        {
            if (names[i] == text)
                return boost::any(static_cast<T>(i));
        }
        return boost::any();
    };
    if (!registerAny(typeid(T), name, anyWriter, anyReader))
        return false;
    enumNames[name] = names;
    return true;
}

} // namespace Util
