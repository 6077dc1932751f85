#include "TvBase/Util/XMLSAXParserHandler.h"

#include <libxml/xmlmemory.h>
#include <libxml/xmlreader.h>

namespace Util
{

namespace
{

/// Takes over a string that libxml2 allocated: its text, or null for a null pointer.
String adopt(xmlChar* text)
{
    if (!text)
        return String();
    String const result(reinterpret_cast<char const*>(text));
    xmlFree(text);
    return result;
}

} // namespace

bool XMLSAXParserAttributeList::Contains(char const* name) const
{
    return !(*this)[name].IsNull();
}

String XMLSAXParserAttributeList::operator[](char const* name) const
{
    if (!reader || !name)
        return String();
    return adopt(xmlTextReaderGetAttribute(reader, reinterpret_cast<xmlChar const*>(name)));
}

String XMLSAXParserAttributeList::operator[](unsigned int index) const
{
    if (!reader || index >= Count())
        return String();
    return adopt(xmlTextReaderGetAttributeNo(reader, static_cast<int>(index)));
}

unsigned int XMLSAXParserAttributeList::Count() const
{
    if (!reader)
        return 0;
    int const count = xmlTextReaderAttributeCount(reader);
    return count > 0 ? static_cast<unsigned int>(count) : 0;
}

std::vector<std::pair<String, String>> XMLSAXParserAttributeList::GetAttributes() const
{
    std::vector<std::pair<String, String>> attributes;
    if (!reader)
        return attributes;
    for (int more = xmlTextReaderMoveToFirstAttribute(reader); more == 1;
         more = xmlTextReaderMoveToNextAttribute(reader))
    {
        attributes.emplace_back(
            String(reinterpret_cast<char const*>(xmlTextReaderConstName(reader))),
            String(reinterpret_cast<char const*>(xmlTextReaderConstValue(reader))));
    }
    // Back to the element, so that the parse goes on from where it was.
    xmlTextReaderMoveToElement(reader);
    return attributes;
}

void XMLSAXParserHandler::HandleStartElement(char const*, XMLSAXParserAttributeList const&) {}

void XMLSAXParserHandler::HandleEndElement(char const*) {}

void XMLSAXParserHandler::HandleCharacters(char const*) {}

} // namespace Util
