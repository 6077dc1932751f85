// Feeds arbitrary bytes to the XML reader through every entry point a caller has: memory,
// text, and the attribute view and entity lookup inside the events.
#include "TvBase/Util/XMLSAXParser.h"

#include <cstddef>
#include <cstdint>
#include <string>

namespace
{
class Walker : public Util::XMLSAXParserHandler
{
public:
    explicit Walker(Util::XMLSAXParser& parser) : parser(parser) {}
    void HandleStartElement(char const* name,
                            Util::XMLSAXParserAttributeList const& attributes) override
    {
        total += std::string(name).size();
        unsigned int const count = attributes.Count();
        for (unsigned int i = 0; i <= count; ++i)
            total += attributes[i].Length();
        for (auto const& attribute : attributes.GetAttributes())
            total += attributes.Contains(attribute.first.CStr()) ? 1 : 0;
        total += parser.GetEntityValue(name).Length();
        total += parser.GetLineNumber().GetOr(0);
    }
    void HandleEndElement(char const* name) override { total += std::string(name).size(); }
    void HandleCharacters(char const* text) override { total += std::string(text).size(); }

    std::size_t total = 0;

private:
    Util::XMLSAXParser& parser;
};
} // namespace

extern "C" int LLVMFuzzerTestOneInput(uint8_t const* data, size_t size)
{
    Util::XMLSAXParser parser;
    Walker walker(parser);
    parser.SetHandler(&walker);
    parser.Parse(data, static_cast<unsigned int>(size), "fuzz.xml");
    // The same bytes as NUL-ended text: stops at the first NUL.
    std::string const text(reinterpret_cast<char const*>(data), size);
    parser.Parse(text.c_str(), nullptr);
    return 0;
}
