#include "TvBase/Util/PropertySerializer.h"

#include "Canvas/UI/ColorConversion.h"
#include "Canvas/UI/Rect.h"

#include <climits>
#include <cstdio>

namespace Util
{

namespace
{

/// Diagnostics of the serializer: composed for a diagnostic build and dropped otherwise, since a
/// layout that names unknown properties loads without a word.
void debugReport(String const& text)
{
#ifdef TV_DEBUG_REPORTS
    std::fprintf(stderr, "%s\n", text.CStr());
#else
    (void)text;
#endif
}

/// Cuts `text` at "," into exactly `count` parts; false for any other number of parts.
bool splitExactly(String const& text, std::size_t count, std::vector<String>& parts)
{
    text.Split(',', parts);
    return parts.size() == count;
}

// ---- the standard text forms

String writeInt(int const& v)
{
    return String("%1").Arg(v);
}

checked_value<int> readInt(String const& text)
{
    return text.ToInt(10);
}

String writePoint(UI::Point const& p)
{
    return String("%1, %2").Arg(p.x).Arg(p.y);
}

checked_value<UI::Point> readPoint(String const& text)
{
    std::vector<String> parts;
    if (!splitExactly(text, 2, parts))
        return checked_value<UI::Point>();
    checked_value<int> x = parts[0].ToInt(10);
    checked_value<int> y = parts[1].ToInt(10);
    if (!x || !y)
        return checked_value<UI::Point>();
    return checked_value<UI::Point>(UI::Point(*x, *y));
}

String writeRect(UI::Rect const& r)
{
    // Sizes are worked out wide: a rectangle near the ends of the int range must not overflow.
    long long width = static_cast<long long>(r.right) + 1 - r.left;
    long long height = static_cast<long long>(r.bottom) + 1 - r.top;
    return String("%1, %2, %3, %4").Arg(r.left).Arg(r.top).Arg(width).Arg(height);
}

checked_value<UI::Rect> readRect(String const& text)
{
    std::vector<String> parts;
    if (!splitExactly(text, 4, parts))
        return checked_value<UI::Rect>();
    int values[4];
    for (std::size_t i = 0; i < 4; ++i)
    {
        checked_value<int> v = parts[i].ToInt(10);
        if (!v)
            return checked_value<UI::Rect>();
        values[i] = *v;
    }
    // The far edges must fit in an int; text that puts them outside is malformed.
    long long right = static_cast<long long>(values[0]) + values[2] - 1;
    long long bottom = static_cast<long long>(values[1]) + values[3] - 1;
    if (right < INT_MIN || right > INT_MAX || bottom < INT_MIN || bottom > INT_MAX)
        return checked_value<UI::Rect>();
    return checked_value<UI::Rect>(
        UI::Rect(values[0], static_cast<int>(right), values[1], static_cast<int>(bottom)));
}

String writeString(String const& s)
{
    return s;
}

checked_value<String> readString(String const& text)
{
    return checked_value<String>(text);
}

String writeFloat(float const& v)
{
    return String("%1").Arg(v);
}

checked_value<float> readFloat(String const& text)
{
    return text.ToFloat();
}

String writeBool(bool const& v)
{
    return String(v ? "true" : "false");
}

checked_value<bool> readBool(String const& text)
{
    String lower = text.ToLower();
    if (lower == "true")
        return checked_value<bool>(true);
    if (lower == "false")
        return checked_value<bool>(false);
    return checked_value<bool>();
}

String writeFloatRange(value_range<float> const& r)
{
    return String("%1, %2").Arg(r.minimum).Arg(r.maximum);
}

checked_value<value_range<float>> readFloatRange(String const& text)
{
    // A locale with a decimal comma writes four parts here, which then fail to read; layouts
    // are written where the decimal point is ".".
    std::vector<String> parts;
    if (!splitExactly(text, 2, parts))
        return checked_value<value_range<float>>();
    checked_value<float> lo = parts[0].ToFloat();
    checked_value<float> hi = parts[1].ToFloat();
    if (!lo || !hi)
        return checked_value<value_range<float>>();
    return checked_value<value_range<float>>(value_range<float>(*lo, *hi));
}

String writeColor(unsigned int const& color)
{
    return UI::ConvertColorToString(color, false);
}

checked_value<unsigned int> readColor(String const& text)
{
    return UI::ConvertStringToColor(text);
}

} // namespace

// ---- registration

bool PropertySerializer::registerAny(std::type_info const& type, String const& name,
                                     AnyWriter writer, AnyReader reader)
{
    if (writers.count(&type) || readers.count(name))
        return false;
    writers[&type] = std::make_pair(name, std::move(writer));
    readers[name] = std::move(reader);
    return true;
}

void PropertySerializer::RegisterStandardTypes()
{
    RegisterType<int>("Int", writeInt, readInt);
    RegisterType<UI::Point>("Point", writePoint, readPoint);
    RegisterType<UI::Rect>("Rect", writeRect, readRect);
    RegisterType<String>("String", writeString, readString);
    RegisterType<float>("Float", writeFloat, readFloat);
    RegisterType<bool>("Bool", writeBool, readBool);
    RegisterType<value_range<float>>("Float Range", writeFloatRange, readFloatRange);
    RegisterType<unsigned int>("Color", writeColor, readColor);
}

checked_value<String> PropertySerializer::GetTypeName(std::type_info const& type) const
{
    auto it = writers.find(&type);
    return it == writers.end() ? checked_value<String>() : checked_value<String>(it->second.first);
}

std::vector<String> const* PropertySerializer::GetEnumNames(String const& typeName) const
{
    auto it = enumNames.find(typeName);
    return it == enumNames.end() ? nullptr : &it->second;
}

// ---- loading and saving

bool PropertySerializer::Load(PropertyHolder& holder, String const& name, String const& type,
                              String const& text) const
{
    auto reader = readers.find(type);
    if (reader == readers.end())
    {
        debugReport(
            String("Could not find deserialization function for property \"%1\" of type \"%2\"")
                .Arg(name)
                .Arg(type));
        return false;
    }
    boost::any value = reader->second(text);
    if (value.empty())
    {
        debugReport(String("Deserializing property \"%1\" of type \"%2\" and value \"%3\" failed.")
                        .Arg(name)
                        .Arg(type)
                        .Arg(text));
        return false;
    }
    PropertyHolder::PropertyValue* property = holder.FindProperty(name);
    if (!property)
    {
        debugReport(String("Could not find proprety \"%1\" to serialize").Arg(name));
        return false;
    }
    if (!holder.setSerializedProperty(*property, std::move(value)))
        return false;
    property->serialize = true;
    return true;
}

bool PropertySerializer::Load(PropertyHolder& holder, String const& name, String const& text) const
{
    PropertyHolder::PropertyValue const* property = holder.FindProperty(name);
    if (!property)
        return false;
    checked_value<String> type = GetTypeName(property->serializedValue.type());
    return type && Load(holder, name, *type, text);
}

bool PropertySerializer::Save(
    std::pair<String const, PropertyHolder::PropertyValue> const& property, String& name,
    String& type, String& text) const
{
    auto writer = writers.find(&property.second.serializedValue.type());
    if (writer == writers.end())
        return false;
    checked_value<String> written = writer->second.second(property.second.serializedValue);
    if (!written)
        return false;
    name = property.first;
    type = writer->second.first;
    text = *written;
    return property.second.serialize;
}

bool PropertySerializer::SaveAll(PropertyHolder const& holder,
                                 std::vector<PropertySerialization>& out) const
{
    for (auto const& property : holder.GetProperties())
    {
        if (!property.second.serialize)
            continue;
        PropertySerialization record;
        if (Save(property, record.name, record.type, record.value))
            out.push_back(record);
    }
    return true;
}

} // namespace Util
