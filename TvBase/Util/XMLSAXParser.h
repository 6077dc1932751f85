#pragma once

#include "TvBase/Util/FilePath.h"
#include "TvBase/Util/String.h"
#include "TvBase/Util/XMLSAXParserHandler.h"

struct _xmlError;

namespace Util
{

/// Event-driven reading of an XML document over libxml2's text reader: start and end of each
/// element with its attributes, and text. Entities are not substituted. Each parse makes its own
/// reader and frees it before `Parse` returns, also when the handler throws.
///
/// Malformed XML makes `Parse` return false; libxml2's report of the first error is kept
/// (`GetErrorMessage`, `GetLineNumber`, `GetColumnNumber`) instead of being printed.
/// An object may be used on any thread, by one thread at a time. Not copyable.
class XMLSAXParser
{
public:
    /// `handler` is not owned and may be null (events are then dropped). `options` are libxml2
    /// parser options (`XML_PARSE_...`); the default forbids network access.
    explicit XMLSAXParser(XMLSAXParserHandler* handler = nullptr, int options = 2048);
    ~XMLSAXParser();
    XMLSAXParser(XMLSAXParser const&) = delete;
    XMLSAXParser& operator=(XMLSAXParser const&) = delete;

    void SetHandler(XMLSAXParserHandler* newHandler) { handler = newHandler; }
    XMLSAXParserHandler* GetHandler() const { return handler; }
    void SetOptions(int newOptions) { options = newOptions; }
    int GetOptions() const { return options; }

    /// Parses the file at `path`; false when it can't be opened or isn't well-formed XML.
    bool Parse(FilePath const& path);
    /// Parses the text; `url` names the document in error reports and may be null.
    bool Parse(String const& text, String const& url);
    /// As above; false for a null `text`.
    bool Parse(char const* text, char const* url);
    /// Parses `size` bytes, which need not end in NUL; false for null `data`.
    bool Parse(unsigned char const* data, unsigned int size, char const* url);

    /// The text of the entity `name` declared in the document being parsed (the predefined
    /// ones included), or null. Meaningful only inside a handler call.
    String GetEntityValue(char const* name);

    /// Where the parser stands: inside a handler call, the line and column libxml2's parser has
    /// reached (it reads ahead of the events, so this is at the current node or past it);
    /// after a failed parse, where its first error was found; otherwise not present.
    checked_value<unsigned int> GetLineNumber() const;
    checked_value<unsigned int> GetColumnNumber() const;
    /// libxml2's text of the first error of the last parse, without its final line break; null
    /// when the last parse had none. An error that libxml2 recovers from (an undeclared
    /// namespace prefix) is kept too, though `Parse` then succeeds.
    String GetErrorMessage() const { return errorMessage; }

private:
    bool parseWith(_xmlTextReader* newReader);
    static void recordError(void* self, _xmlError* error);

    XMLSAXParserHandler* handler;
    _xmlTextReader* reader = nullptr;
    int options;
    /// The document, once `GetEntityValue` has asked the reader for it: the reader then leaves
    /// freeing it to us.
    void* takenDocument = nullptr;
    String errorMessage;
    checked_value<unsigned int> errorLine;
    checked_value<unsigned int> errorColumn;
};

} // namespace Util
