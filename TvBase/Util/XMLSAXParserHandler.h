#pragma once

#include "TvBase/Util/String.h"

#include <utility>
#include <vector>

struct _xmlTextReader;

namespace Util
{

/// The attributes of the element that the reader stands on, valid only inside
/// `HandleStartElement`. Namespace declarations ("xmlns", "xmlns:x") count as attributes.
class XMLSAXParserAttributeList
{
public:
    explicit XMLSAXParserAttributeList(_xmlTextReader* reader) : reader(reader) {}

    bool Contains(char const* name) const;
    /// The value of the attribute `name`, or null when the element has none by that name.
    String operator[](char const* name) const;
    /// The value of the attribute at `index` in document order, or null past the end.
    String operator[](unsigned int index) const;
    unsigned int Count() const;
    /// Every name and value pair, in document order.
    std::vector<std::pair<String, String>> GetAttributes() const;

private:
    _xmlTextReader* reader;
};

/// Receives the events of one parse. The base operations do nothing. A handler may throw (for
/// instance `Util::Exception::XMLReader`): the parse stops and the exception passes out of
/// `XMLSAXParser::Parse`.
class XMLSAXParserHandler
{
public:
    virtual ~XMLSAXParserHandler() = default;

    /// An opening tag, or an empty element (`HandleEndElement` follows at once for those).
    virtual void HandleStartElement(char const* name, XMLSAXParserAttributeList const& attributes);
    virtual void HandleEndElement(char const* name);
    /// One text node; entity references in the text are not expanded and are not reported.
    virtual void HandleCharacters(char const* text);
};

} // namespace Util
