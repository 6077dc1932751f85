#include "TvBase/Util/XMLSAXParser.h"

#include <libxml/entities.h>
#include <libxml/parser.h>
#include <libxml/xmlerror.h>
#include <libxml/xmlreader.h>

#include <climits>
#include <mutex>
#include <sys/stat.h>

namespace Util
{

namespace
{

enum NodeType
{
    ElementNode = 1,
    TextNode = 3,
    EndElementNode = 15
};

void initLibrary()
{
    static std::once_flag once;
    std::call_once(once, [] { xmlInitParser(); });
}

/// Sends libxml2's reports on this thread to a parser while a reader is being made (a reader
/// reports errors to its own handler only once it exists), and restores the previous
/// destination afterwards.
class ThreadErrorRedirect
{
public:
    ThreadErrorRedirect(void* context, xmlStructuredErrorFunc function)
        : previousContext(xmlStructuredErrorContext), previousFunction(xmlStructuredError)
    {
        xmlSetStructuredErrorFunc(context, function);
    }
    ~ThreadErrorRedirect() { xmlSetStructuredErrorFunc(previousContext, previousFunction); }
    ThreadErrorRedirect(ThreadErrorRedirect const&) = delete;
    ThreadErrorRedirect& operator=(ThreadErrorRedirect const&) = delete;

private:
    void* previousContext;
    xmlStructuredErrorFunc previousFunction;
};

} // namespace

XMLSAXParser::XMLSAXParser(XMLSAXParserHandler* handler, int options)
    : handler(handler), options(options)
{
    initLibrary();
}

XMLSAXParser::~XMLSAXParser() = default;

bool XMLSAXParser::Parse(FilePath const& path)
{
    errorMessage = String();
    errorLine = errorColumn = checked_value<unsigned int>();
    // Only a regular file is read: a FIFO or a device would block the reader or never end.
    struct stat info;
    if (::stat(path.ToString().CStr(), &info) == 0 && !S_ISREG(info.st_mode))
    {
        errorMessage = "Not a regular file";
        return false;
    }
    xmlTextReaderPtr newReader;
    {
        ThreadErrorRedirect redirect(this, recordError);
        newReader = xmlReaderForFile(path.ToString().CStr(), nullptr, options);
    }
    return parseWith(newReader);
}

bool XMLSAXParser::Parse(String const& text, String const& url)
{
    if (text.IsNull())
        return Parse(static_cast<char const*>(nullptr), url.IsNull() ? nullptr : url.CStr());
    return Parse(text.CStr(), url.IsNull() ? nullptr : url.CStr());
}

bool XMLSAXParser::Parse(char const* text, char const* url)
{
    errorMessage = String();
    errorLine = errorColumn = checked_value<unsigned int>();
    if (!text)
        return false;
    xmlTextReaderPtr newReader;
    {
        ThreadErrorRedirect redirect(this, recordError);
        newReader = xmlReaderForDoc(reinterpret_cast<xmlChar const*>(text), url, nullptr, options);
    }
    return parseWith(newReader);
}

bool XMLSAXParser::Parse(unsigned char const* data, unsigned int size, char const* url)
{
    errorMessage = String();
    errorLine = errorColumn = checked_value<unsigned int>();
    if (!data || size > INT_MAX)
        return false;
    xmlTextReaderPtr newReader;
    {
        ThreadErrorRedirect redirect(this, recordError);
        newReader = xmlReaderForMemory(reinterpret_cast<char const*>(data), static_cast<int>(size),
                                       url, nullptr, options);
    }
    return parseWith(newReader);
}

bool XMLSAXParser::parseWith(xmlTextReaderPtr newReader)
{
    if (!newReader)
        return false;

    // Frees the reader (and a document the reader handed over) however the parse ends, a
    // throwing handler included.
    struct ReaderGuard
    {
        XMLSAXParser& parser;
        ~ReaderGuard()
        {
            xmlFreeTextReader(parser.reader);
            parser.reader = nullptr;
            if (parser.takenDocument)
                xmlFreeDoc(static_cast<xmlDocPtr>(parser.takenDocument));
            parser.takenDocument = nullptr;
        }
    };
    reader = newReader;
    ReaderGuard guard{*this};

    xmlTextReaderSetStructuredErrorHandler(reader, recordError, this);
    XMLSAXParserHandler fallback;
    XMLSAXParserHandler& events = handler ? *handler : fallback;
    xmlTextReaderSetParserProp(reader, XML_PARSER_SUBST_ENTITIES, 0);

    for (;;)
    {
        int const result = xmlTextReaderRead(reader);
        if (result == 0)
            return true;
        if (result != 1)
            return false;
        switch (xmlTextReaderNodeType(reader))
        {
        case ElementNode:
        {
            bool const isEmpty = xmlTextReaderIsEmptyElement(reader) == 1;
            String const name(reinterpret_cast<char const*>(xmlTextReaderConstName(reader)));
            events.HandleStartElement(name.CStr(), XMLSAXParserAttributeList(reader));
            if (isEmpty)
                events.HandleEndElement(name.CStr());
            break;
        }
        case EndElementNode:
            events.HandleEndElement(reinterpret_cast<char const*>(xmlTextReaderConstName(reader)));
            break;
        case TextNode:
            events.HandleCharacters(reinterpret_cast<char const*>(xmlTextReaderConstValue(reader)));
            break;
        default:
            break;
        }
    }
}

String XMLSAXParser::GetEntityValue(char const* name)
{
    if (!reader || !name)
        return String();
    if (!takenDocument)
        takenDocument = xmlTextReaderCurrentDoc(reader);
    xmlEntityPtr const entity = xmlGetDocEntity(static_cast<xmlDocPtr>(takenDocument),
                                                reinterpret_cast<xmlChar const*>(name));
    if (!entity || !entity->content)
        return String();
    return String(reinterpret_cast<char const*>(entity->content));
}

checked_value<unsigned int> XMLSAXParser::GetLineNumber() const
{
    if (reader)
    {
        int const line = xmlTextReaderGetParserLineNumber(reader);
        return line > 0 ? checked_value<unsigned int>(line) : checked_value<unsigned int>();
    }
    return errorLine;
}

checked_value<unsigned int> XMLSAXParser::GetColumnNumber() const
{
    if (reader)
    {
        int const column = xmlTextReaderGetParserColumnNumber(reader);
        return column > 0 ? checked_value<unsigned int>(column) : checked_value<unsigned int>();
    }
    return errorColumn;
}

void XMLSAXParser::recordError(void* self, xmlErrorPtr error)
{
    XMLSAXParser& parser = *static_cast<XMLSAXParser*>(self);
    // Warnings don't make a document unreadable; only the first real error is kept.
    if (!error || error->level < XML_ERR_ERROR || !parser.errorMessage.IsNull())
        return;
    String text(error->message ? error->message : "unknown error");
    while (!text.IsEmpty() && (text[text.Length() - 1] == '\n' || text[text.Length() - 1] == ' '))
        text.Truncate(text.Length() - 1);
    parser.errorMessage = text;
    if (error->line > 0)
        parser.errorLine = static_cast<unsigned int>(error->line);
    if (error->int2 > 0)
        parser.errorColumn = static_cast<unsigned int>(error->int2);
}

} // namespace Util
