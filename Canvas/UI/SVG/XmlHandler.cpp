#include "Canvas/UI/SVG/XmlHandler.h"

#include <cstring>

namespace agg
{
namespace svg
{

void svg_xml_handler::HandleStartElement(char const* name,
                                         Util::XMLSAXParserAttributeList const& attributes)
{
    attribute_list list;
    for (auto const& attr : attributes.GetAttributes())
        list.emplace_back(attr.first.CStr(), attr.second.CStr());
    target.start_element(name, list);
}

void svg_xml_handler::HandleEndElement(char const* name)
{
    target.end_element(name);
}

void svg_xml_handler::HandleCharacters(char const* text)
{
    if (text)
        target.characters(text, std::strlen(text));
}

} // namespace svg
} // namespace agg
