#include "TvBase/Util/XMLSAXParser.h"
#include "TvBase/Util/XMLReaderException.h"

#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <sys/stat.h>

namespace
{

/// Writes every event as text: "<a x=1> text[hi] </a>".
class EventLog : public Util::XMLSAXParserHandler
{
public:
    void HandleStartElement(char const* name,
                            Util::XMLSAXParserAttributeList const& attributes) override
    {
        log += std::string("<") + name;
        for (auto const& attribute : attributes.GetAttributes())
            log += std::string(" ") + attribute.first.CStr() + "=" + attribute.second.CStr();
        log += "> ";
    }
    void HandleEndElement(char const* name) override { log += std::string("</") + name + "> "; }
    void HandleCharacters(char const* text) override { log += std::string("text[") + text + "] "; }

    std::string log;
};

} // namespace

TEST(XMLSAXParser, ReportsEventsInDocumentOrderOrTheFirstError)
{
    struct Case
    {
        char const* document;
        std::string expected;
    } const cases[] = {
        {"<a/>", "<a> </a> "},
        {"<?xml version=\"1.0\"?>\n<layout name=\"Main\"><w x='1' y=\"2\">hi</w><e/>tail</layout>",
         "<layout name=Main> <w x=1 y=2> text[hi] </w> <e> </e> text[tail] </layout> "},
        // Comments, CDATA, instructions and blank runs are skipped.
        {"<a><!-- note --><![CDATA[raw]]><?pi data?>\n  <b/>\n</a>", "<a> <b> </b> </a> "},
        // Namespace declarations count as attributes.
        {"<svg xmlns=\"http://www.w3.org/2000/svg\" xmlns:x=\"urn:x\"><x:path d=\"M0 0\"/></svg>",
         "<svg xmlns=http://www.w3.org/2000/svg xmlns:x=urn:x> <x:path d=M0 0> </x:path> </svg> "},
        {"<a x='1' x='2'/>", "error: Attribute x redefined"},
        {"<a>&who;</a>", "error: Entity 'who' not defined"},
    };
    for (Case const& c : cases)
    {
        EventLog events;
        Util::XMLSAXParser parser(&events);
        bool const ok = parser.Parse(c.document, nullptr);
        EXPECT_EQ(c.expected,
                  ok ? events.log : "error: " + std::string(parser.GetErrorMessage().CStr()))
            << c.document;
        EXPECT_EQ(ok, parser.GetErrorMessage().IsNull()) << c.document;
    }
    // A file name for the memory text is only a name.
    EXPECT_TRUE(Util::XMLSAXParser().Parse(String("<a/>"), String("memory.layout")));
}

TEST(XMLSAXParserEvents, EntitiesAreNotSubstitutedButCanBeLookedUp)
{
    struct EntityHandler : EventLog
    {
        Util::XMLSAXParser* parser = nullptr;
        String who;
        String missing;
        String lessThan;
        void HandleStartElement(char const* name,
                                Util::XMLSAXParserAttributeList const& attributes) override
        {
            EventLog::HandleStartElement(name, attributes);
            who = parser->GetEntityValue("who");
            missing = parser->GetEntityValue("nobody");
            lessThan = parser->GetEntityValue("lt");
        }
    } events;
    Util::XMLSAXParser parser(&events);
    events.parser = &parser;
    EXPECT_TRUE(
        parser.Parse("<!DOCTYPE a [<!ENTITY who \"world\">]><a>hello &who;, x&amp;y</a>", nullptr));
    // The reference itself is not reported; the predefined ones are always expanded.
    EXPECT_EQ("<a> text[hello ] text[, x&y] </a> ", events.log);
    EXPECT_EQ(String("world"), events.who);
    EXPECT_TRUE(events.missing.IsNull());
    EXPECT_EQ(String("<"), events.lessThan);
    // Outside a parse there is no document to ask.
    EXPECT_TRUE(parser.GetEntityValue("who").IsNull());
}

TEST(XMLSAXParserEvents, WithoutAHandlerTheDocumentIsStillChecked)
{
    Util::XMLSAXParser parser;
    EXPECT_TRUE(parser.Parse("<a><b/></a>", nullptr));
    EXPECT_FALSE(parser.Parse("<a><b></a>", nullptr));
}

TEST(XMLSAXParserAttributes, GivesValuesByNameAndByPosition)
{
    struct AttributeProbe : Util::XMLSAXParserHandler
    {
        std::string seen;
        void HandleStartElement(char const* name,
                                Util::XMLSAXParserAttributeList const& attributes) override
        {
            if (std::string(name) != "w")
                return;
            seen += std::to_string(attributes.Count()) + ";";
            seen += attributes.Contains("Name") ? "has Name;" : "no Name;";
            seen += attributes.Contains("name") ? "has name;" : "no name;";
            seen += std::string(attributes["Name"].CStr()) + ";";
            seen += attributes["missing"].IsNull() ? "missing null;" : "missing?;";
            seen += attributes[static_cast<char const*>(nullptr)].IsNull() ? "null name;" : "?;";
            seen += std::string(attributes[1u].CStr()) + ";";
            seen += attributes[3u].IsNull() ? "past end null;" : "past end?;";
            seen +=
                attributes["Empty"].IsEmpty() && !attributes["Empty"].IsNull() ? "empty;" : "?;";
            // Walking the whole list leaves the reader on the element.
            attributes.GetAttributes();
            seen += std::to_string(attributes.Count()) + ";";
        }
        void HandleEndElement(char const* name) override { seen += std::string("/") + name; }
    } probe;
    Util::XMLSAXParser parser(&probe);
    EXPECT_TRUE(
        parser.Parse("<r><w Name=\"Knob &amp; Label\" Value='0.5' Empty=''/></r>", nullptr));
    EXPECT_EQ("3;has Name;no name;Knob & Label;missing null;null name;0.5;past end null;empty;3;"
              "/w/r",
              probe.seen);
}

TEST(XMLSAXParserSources, ReadsRealFilesAndRefusesMissingOnes)
{
    TestSupport::TempFolder folder("tv-xml");
    std::string const path =
        folder.Write("window.layout", "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                                      "<Window name=\"Caf\xC3\xA9\">\n  <Child/>\n</Window>\n");
    EventLog events;
    Util::XMLSAXParser parser(&events);
    EXPECT_TRUE(parser.Parse(FilePath(path.c_str())));
    EXPECT_EQ("<Window name=Caf\xC3\xA9> <Child> </Child> </Window> ", events.log);

    events.log.clear();
    EXPECT_FALSE(parser.Parse(FilePath((folder.Path() + "/missing.layout").c_str())));
    EXPECT_EQ("", events.log);

    std::string const broken = folder.Write("broken.layout", "<Window>\n  <Child>\n</Window>\n");
    EXPECT_FALSE(parser.Parse(FilePath(broken.c_str())));
    EXPECT_EQ(String("Opening and ending tag mismatch: Child line 2 and Window"),
              parser.GetErrorMessage());
    EXPECT_EQ(checked_value<unsigned int>(3), parser.GetLineNumber());
}

TEST(XMLSAXParserSources, RefusesFifosAndDevicesWithoutWaiting)
{
    TestSupport::TempFolder folder("tv-xml");
    std::string const fifo = folder.Path() + "/waiting.svg";
    ASSERT_EQ(0, mkfifo(fifo.c_str(), 0600));
    Util::XMLSAXParser parser;
    for (std::string const& path : {fifo, std::string("/dev/zero")})
    {
        EXPECT_FALSE(parser.Parse(FilePath(path.c_str()))) << path;
        EXPECT_EQ(String("Not a regular file"), parser.GetErrorMessage()) << path;
    }
}

TEST(XMLSAXParserSources, ReadsMemoryThatNeedNotEndInNul)
{
    // Only the first 11 bytes belong to the document.
    unsigned char const bytes[] = {'<', 'a', '>', 'b', 'y', 't', 'e', '<', '/', 'a', '>', 'X', 'X'};
    EventLog events;
    Util::XMLSAXParser parser(&events);
    EXPECT_TRUE(parser.Parse(bytes, 11, "bytes"));
    EXPECT_EQ("<a> text[byte] </a> ", events.log);
    EXPECT_FALSE(parser.Parse(bytes, 13, "bytes"));
    EXPECT_FALSE(parser.Parse(static_cast<unsigned char const*>(nullptr), 4, nullptr));
    // Null texts are refused.
    EXPECT_FALSE(parser.Parse(static_cast<char const*>(nullptr), nullptr));
    EXPECT_FALSE(parser.Parse(String(), String()));
    EXPECT_FALSE(parser.Parse("", nullptr));
    EXPECT_FALSE(parser.Parse("not xml", nullptr));
    EXPECT_EQ(String("Document is empty"), parser.GetErrorMessage());
}

TEST(XMLSAXParserErrors, MalformedXmlGivesFalseAndKeepsTheFirstError)
{
    EventLog events;
    Util::XMLSAXParser parser(&events);
    EXPECT_FALSE(parser.Parse("<a><b>text</a>", nullptr));
    // The reader checks ahead of its events: nothing past the error is ever reported.
    EXPECT_EQ(std::string::npos, events.log.find("</a>"));
    EXPECT_EQ(String("Opening and ending tag mismatch: b line 1 and a"), parser.GetErrorMessage());
    EXPECT_EQ(checked_value<unsigned int>(1), parser.GetLineNumber());
    EXPECT_EQ(checked_value<unsigned int>(15), parser.GetColumnNumber());

    Util::Exception::XMLReader const error(parser.GetErrorMessage(), &parser);
    EXPECT_EQ(String("xml parse error: Opening and ending tag mismatch: b line 1 and a at %2:%3"),
              error.GetMessage());

    // A good parse forgets the old error.
    EXPECT_TRUE(parser.Parse("<a/>", nullptr));
    EXPECT_TRUE(parser.GetErrorMessage().IsNull());
    EXPECT_FALSE(parser.GetLineNumber().IsPresent());
}

TEST(XMLSAXParserErrors, AHandlerCanStopTheParseWhileTheParserKnowsThePosition)
{
    struct Strict : Util::XMLSAXParserHandler
    {
        Util::XMLSAXParser* parser = nullptr;
        void HandleStartElement(char const* name, Util::XMLSAXParserAttributeList const&) override
        {
            if (std::string(name) == "bad")
            {
                line = parser->GetLineNumber().GetOr(0);
                TV_THROW(Util::Exception::XMLReader, String("unknown element %1").Arg(name),
                         parser);
            }
        }
        unsigned int line = 0;
    } strict;
    Util::XMLSAXParser parser(&strict);
    strict.parser = &parser;
    try
    {
        parser.Parse("<a>\n  <ok/>\n  <bad/>\n</a>", nullptr);
        FAIL() << "the handler's exception should pass out";
    }
    catch (Util::Exception::XMLReader const& error)
    {
        // The position markers stay in the text; the parser itself knows where it stopped,
        // which is at the element or past it (it reads ahead of the events), never before.
        EXPECT_EQ(String("xml parse error: unknown element bad at %2:%3"), error.GetMessage());
        EXPECT_GE(strict.line, 3u);
        EXPECT_STREQ("XMLReader", error.GetTypeName());
        EXPECT_TRUE(error.GetFile().EndsWith("XMLSAXParserTest.cpp"));
    }
    // The reader is gone, and the parser works again.
    EXPECT_FALSE(parser.GetLineNumber().IsPresent());
    EXPECT_TRUE(parser.Parse("<a><ok/></a>", nullptr));
}

TEST(XMLReaderException, WithoutAPositionTheMarkersStay)
{
    Util::Exception::XMLReader const noParser("boom", nullptr);
    EXPECT_EQ(String("xml parse error: boom at %2:%3"), noParser.GetMessage());

    Util::XMLSAXParser idle;
    Util::Exception::XMLReader const idleParser("boom", &idle);
    EXPECT_EQ(String("xml parse error: boom at %2:%3"), idleParser.GetMessage());
    EXPECT_EQ(
        String("Base:\n\txml parse error: boom at %2:%3\n\t (-1): Thrown, GetLastError(): 0\n"),
        idleParser.ToString());
}
