#include "TvBase/Util/XMLSAXParser.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

namespace
{
/// Counts the elements of one parse.
class Counter : public Util::XMLSAXParserHandler
{
public:
    void HandleStartElement(char const*, Util::XMLSAXParserAttributeList const& a) override
    {
        ++elements;
        attributes += a.Count();
    }
    int elements = 0;
    unsigned int attributes = 0;
};
} // namespace

// One parser per thread, all at once: each keeps its own events and its own error report.
TEST(XMLSAXParserThreads, ParsersOnSeveralThreadsStayApart)
{
    std::string document = "<root>";
    for (int i = 0; i < 200; ++i)
        document += "<item id='" + std::to_string(i) + "' kind='k'>text</item>";
    document += "</root>";

    unsigned int const threadCount = 4;
    std::vector<std::string> failures(threadCount);
    std::vector<std::thread> threads;
    for (unsigned int t = 0; t < threadCount; ++t)
    {
        threads.emplace_back(
            [&, t]
            {
                std::string const broken =
                    "<t" + std::to_string(t) + "><x></t" + std::to_string(t) + ">";
                std::string const expected =
                    "Opening and ending tag mismatch: x line 1 and t" + std::to_string(t);
                for (int round = 0; round < 50; ++round)
                {
                    Counter counter;
                    Util::XMLSAXParser parser(&counter);
                    if (!parser.Parse(document.c_str(), nullptr) || counter.elements != 201 ||
                        counter.attributes != 400)
                        failures[t] = "good document misread";
                    if (parser.Parse(broken.c_str(), nullptr) ||
                        std::string(parser.GetErrorMessage().CStr()) != expected)
                        failures[t] = "error report mixed up: " +
                                      std::string(parser.GetErrorMessage().CStr());
                }
            });
    }
    for (std::thread& thread : threads)
        thread.join();
    for (unsigned int t = 0; t < threadCount; ++t)
        EXPECT_EQ("", failures[t]) << "thread " << t;
}
