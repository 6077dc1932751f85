// Feeds arbitrary text to the readers of the standard property types and of a named
// enumeration, as a layout file would, and checks that whatever loads writes back to a text
// that loads to the same text again.
#include "Canvas/UI/ColorConversion.h"
#include "Canvas/UI/Rect.h"
#include "TvBase/Util/PropertySerializer.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace
{

enum Orientation
{
    Horizontal,
    Vertical
};

char const* orientationNames[] = {"Horizontal", "Vertical"};

Util::PropertySerializer& serializer()
{
    static Util::PropertySerializer* s = []
    {
        auto* created = new Util::PropertySerializer;
        created->RegisterStandardTypes();
        created->RegisterNamedEnumType<Orientation>("Orientation",
                                                    array_ref<char const*>(orientationNames, 2));
        return created;
    }();
    return *s;
}

void addProperties(Util::PropertyHolder& holder)
{
    holder.CreateProperty("Int", 0);
    holder.CreateProperty("Point", UI::Point());
    holder.CreateProperty("Rect", UI::Rect());
    holder.CreateProperty("String", String());
    holder.CreateProperty("Float", 0.0f);
    holder.CreateProperty("Bool", false);
    holder.CreateProperty("Float Range", value_range<float>());
    holder.CreateProperty("Color", 0u);
    holder.CreateProperty("Orientation", Horizontal);
}

char const* const typeNames[] = {"Int",  "Point",       "Rect",  "String",     "Float",
                                 "Bool", "Float Range", "Color", "Orientation"};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(uint8_t const* data, std::size_t size)
{
    if (size == 0)
        return 0;
    char const* type = typeNames[data[0] % (sizeof typeNames / sizeof typeNames[0])];
    String const text(reinterpret_cast<char const*>(data + 1), static_cast<unsigned int>(size - 1));

    UI::ConvertStringToColor(text);

    Util::PropertyHolder holder;
    addProperties(holder);
    if (!serializer().Load(holder, type, type, text))
        return 0;
    std::vector<Util::PropertySerializer::PropertySerialization> first;
    serializer().SaveAll(holder, first);
    if (first.size() != 1 || first[0].type != type)
        std::abort();

    Util::PropertyHolder again;
    addProperties(again);
    if (!serializer().Load(again, type, type, first[0].value))
        std::abort();
    std::vector<Util::PropertySerializer::PropertySerialization> second;
    serializer().SaveAll(again, second);
    if (second.size() != 1 || second[0].value != first[0].value)
        std::abort();
    return 0;
}
