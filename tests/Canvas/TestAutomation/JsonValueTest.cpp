#include "Canvas/TestAutomation/Module/JsonValue.h"

#include <gtest/gtest.h>

#include <string>

using TestAutomation::Json::Parse;
using TestAutomation::Json::Value;
using TestAutomation::Json::Write;

namespace
{

std::string roundTrip(std::string const& text)
{
    Value v;
    std::string error;
    if (!Parse(text, v, error))
        return "error: " + error;
    return Write(v);
}

bool rejects(std::string const& text)
{
    Value v;
    std::string error;
    bool const ok = Parse(text, v, error);
    return !ok && !error.empty();
}

} // namespace

TEST(JsonRead, ReadsEveryKindOfValueAndEscape)
{
    Value v;
    std::string error;
    ASSERT_TRUE(
        Parse(" {\"a\": [1, -2.5e3, true, false, null], \"b\": {\"c\": \"d\"}} \n", v, error));
    ASSERT_EQ(Value::Object, v.GetType());
    Value const* a = v.Find("a");
    ASSERT_TRUE(a);
    ASSERT_EQ(5u, a->GetItems().size());
    EXPECT_EQ("1", a->GetItems()[0].GetText());
    EXPECT_EQ("-2.5e3", a->GetItems()[1].GetText());
    EXPECT_TRUE(a->GetItems()[2].GetBool());
    EXPECT_FALSE(a->GetItems()[3].GetBool());
    EXPECT_TRUE(a->GetItems()[4].IsNull());
    EXPECT_EQ("d", v.Find("b")->Find("c")->GetText());
    EXPECT_EQ(nullptr, v.Find("missing"));
    EXPECT_EQ(nullptr, a->Find("a")); // not an object

    // Escapes and surrogate pairs are decoded.
    ASSERT_TRUE(Parse("\"q\\\" b\\\\ s\\/ \\b\\f\\n\\r\\t \\u00e9 \\ud83d\\ude00\"", v, error));
    EXPECT_EQ("q\" b\\ s/ \b\f\n\r\t \xC3\xA9 \xF0\x9F\x98\x80", v.GetText());
}

TEST(JsonRead, RefusesMalformedText)
{
    for (char const* text : {"", "{", "{\"a\" 1}", "{\"a\":1,}", "[1 2]", "01", "1.", "-", "1e",
                             "tru", "nul", "\"abc", "1 2", "{} x"})
        EXPECT_TRUE(rejects(text)) << text;
    // Raw control character, unknown escape, short escape, lone high and low surrogates, a high
    // surrogate with a non-surrogate; overlong, encoded surrogate, past U+10FFFF, truncated.
    for (char const* text :
         {"\"a\nb\"", "\"\\x\"", "\"\\u12\"", "\"\\ud83d\"", "\"\\ude00\"", "\"\\ud83d\\u0041\"",
          "\"\xC0\xAF\"", "\"\xED\xA0\x80\"", "\"\xF4\x90\x80\x80\"", "\"\xE2\x82\""})
        EXPECT_TRUE(rejects(text)) << text;
}

TEST(JsonRead, LimitsNesting)
{
    std::string deep(TestAutomation::Json::MaxDepth, '[');
    deep += std::string(TestAutomation::Json::MaxDepth, ']');
    EXPECT_EQ(deep, roundTrip(deep));
    std::string tooDeep(TestAutomation::Json::MaxDepth + 1, '[');
    tooDeep += std::string(TestAutomation::Json::MaxDepth + 1, ']');
    EXPECT_EQ("error: nesting too deep", roundTrip(tooDeep));
    // Far deeper than any stack would take by recursion, and refused just the same.
    EXPECT_TRUE(rejects(std::string(1000000, '[')));
}

TEST(JsonWrite, WritesOneCompactLine)
{
    EXPECT_EQ("{\"a\":[1,true,null],\"b\":\"x\"}",
              roundTrip("{ \"b\" : \"x\", \"a\" : [1, true, null] }"));
    EXPECT_EQ("{\"k\":2}", roundTrip("{\"k\":1,\"k\":2}")); // the last repeated key wins
    EXPECT_EQ("[]", roundTrip("[ ]"));
    EXPECT_EQ("{}", roundTrip("{ }"));
    // Control characters never leave as raw bytes, so a value can't break the line framing.
    EXPECT_EQ("\"a\\u000ab\\u000dc\\u0000d\\\"\\\\\"",
              Write(Value::MakeString(std::string("a\nb\rc\0d\"\\", 9))));
}

TEST(JsonWrite, RepairsInvalidUtf8AndRoundTripsValidText)
{
    EXPECT_EQ("\"a\xEF\xBF\xBD"
              "b\xEF\xBF\xBD\"",
              Write(Value::MakeString("a\xFF"
                                      "b\xC3")));
    std::string const text = "\"caf\xC3\xA9 \xE2\x82\xAC \xF0\x9F\x98\x80 / </\"";
    EXPECT_EQ(text, roundTrip(text));
}
