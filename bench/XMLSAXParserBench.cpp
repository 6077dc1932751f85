// The XML reader's cost over libxml2's bare text reader loop on the same layout-like document,
// and natural-order sorting against plain byte order.
#include "TvBase/Util/NaturalStrCmp.h"
#include "TvBase/Util/SimpleRandGenerator.h"
#include "TvBase/Util/XMLSAXParser.h"

#include <libxml/xmlreader.h>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <string>
#include <vector>

namespace
{

std::string const& layoutDocument()
{
    static std::string const document = []
    {
        std::string text = "<?xml version=\"1.0\"?>\n<Layout>\n";
        for (int i = 0; i < 2000; ++i)
            text += "  <Window name=\"Item " + std::to_string(i) +
                    "\" type=\"PushButton\" x=\"4\" y=\"" + std::to_string(i * 20) +
                    "\" width=\"80\" height=\"18\"><Text>Caption</Text></Window>\n";
        return text + "</Layout>\n";
    }();
    return document;
}

/// Touches what a layout reader touches: names, two attributes, text.
class LayoutHandler : public Util::XMLSAXParserHandler
{
public:
    void HandleStartElement(char const* name,
                            Util::XMLSAXParserAttributeList const& attributes) override
    {
        bytes += std::char_traits<char>::length(name);
        bytes += attributes["name"].Length() + attributes["width"].Length();
    }
    void HandleCharacters(char const* text) override
    {
        bytes += std::char_traits<char>::length(text);
    }
    std::size_t bytes = 0;
};

void XMLSAXParserLayout(benchmark::State& state)
{
    std::string const& document = layoutDocument();
    for (auto _ : state)
    {
        LayoutHandler handler;
        Util::XMLSAXParser parser(&handler);
        benchmark::DoNotOptimize(parser.Parse(document.c_str(), nullptr));
        benchmark::DoNotOptimize(handler.bytes);
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * document.size()));
}
BENCHMARK(XMLSAXParserLayout);

/// Reference: the bare reader loop with the same lookups, no handler objects or copies.
void BareTextReaderLayout(benchmark::State& state)
{
    std::string const& document = layoutDocument();
    for (auto _ : state)
    {
        std::size_t bytes = 0;
        xmlTextReaderPtr reader = xmlReaderForDoc(
            reinterpret_cast<xmlChar const*>(document.c_str()), nullptr, nullptr, 2048);
        xmlTextReaderSetParserProp(reader, XML_PARSER_SUBST_ENTITIES, 0);
        while (xmlTextReaderRead(reader) == 1)
        {
            int const type = xmlTextReaderNodeType(reader);
            if (type == 1)
            {
                bytes += xmlStrlen(xmlTextReaderConstName(reader));
                for (char const* attribute : {"name", "width"})
                {
                    xmlChar* value = xmlTextReaderGetAttribute(
                        reader, reinterpret_cast<xmlChar const*>(attribute));
                    bytes += xmlStrlen(value);
                    xmlFree(value);
                }
            }
            else if (type == 3)
                bytes += xmlStrlen(xmlTextReaderConstValue(reader));
        }
        xmlFreeTextReader(reader);
        benchmark::DoNotOptimize(bytes);
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * document.size()));
}
BENCHMARK(BareTextReaderLayout);

std::vector<String> fileNames()
{
    Util::SimpleRandGenerator random(checked_value<unsigned int>(3));
    std::vector<String> names;
    for (int i = 0; i < 5000; ++i)
        names.push_back(String("Preset %1 - Take %2.layout")
                            .Arg(random.GetNext() % 300)
                            .Arg(random.GetNext() % 40));
    return names;
}

void SortNatural(benchmark::State& state)
{
    std::vector<String> const names = fileNames();
    for (auto _ : state)
    {
        std::vector<String> sorted = names;
        std::sort(sorted.begin(), sorted.end(), Util::NaturalStrCmp());
        benchmark::DoNotOptimize(sorted.data());
    }
}
BENCHMARK(SortNatural);

/// Reference: the same sort in plain byte order.
void SortByteOrder(benchmark::State& state)
{
    std::vector<String> const names = fileNames();
    for (auto _ : state)
    {
        std::vector<String> sorted = names;
        std::sort(sorted.begin(), sorted.end());
        benchmark::DoNotOptimize(sorted.data());
    }
}
BENCHMARK(SortByteOrder);

} // namespace

BENCHMARK_MAIN();
