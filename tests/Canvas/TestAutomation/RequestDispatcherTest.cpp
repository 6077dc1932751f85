#include "Canvas/TestAutomation/Module/RequestDispatcher.h"

#include <gtest/gtest.h>

#include <string>

#include <unistd.h>

using TestAutomation::RequestDispatcher;
using TestAutomation::RPCReplyInterface;
using TestAutomation::RPCRequestInterface;

namespace
{

/// Echoes its arguments as reply keys; "fail" reports an error, "throw" throws.
void echo(void* context, RPCRequestInterface* request, RPCReplyInterface* reply)
{
    ++*static_cast<int*>(context);
    for (char const* key : {"a", "b", "c", "d"})
    {
        if (char const* value = request->GetArgument(key))
            reply->SetValue(key, value);
    }
    if (request->GetArgument("fail"))
    {
        reply->SetError(request->GetArgument("fail"));
        reply->SetError("second error is ignored");
    }
    if (request->GetArgument("throw"))
        throw 42;
}

/// A dispatcher with "echo" registered, counting its calls.
struct RequestDispatch : ::testing::Test
{
    RequestDispatch() { d.Register("echo", &echo, &calls); }
    int calls = 0;
    RequestDispatcher d{"APP:Test", 4};
};

} // namespace

TEST_F(RequestDispatch, CallsTheHandlerWithTextArguments)
{
    EXPECT_EQ("{\"id\":7,\"jsonrpc\":\"2.0\",\"result\":{\"a\":\"x\",\"b\":\"12.5\",\"c\":"
              "\"true\",\"d\":\"[1]\"}}",
              d.Handle("{\"jsonrpc\":\"2.0\",\"id\":7,\"method\":\"echo\",\"params\":{\"a\":"
                       "\"x\",\"b\":12.5,\"c\":true,\"d\":[1],\"e\":null}}"));
    EXPECT_EQ("{\"id\":\"s\",\"jsonrpc\":\"2.0\",\"result\":{}}",
              d.Handle("{\"jsonrpc\":\"2.0\",\"id\":\"s\",\"method\":\"echo\"}"));
    EXPECT_EQ(2, calls);
    EXPECT_EQ("{\"id\":1,\"jsonrpc\":\"2.0\",\"result\":{\"name\":\"APP:Test\",\"pid\":\"" +
                  std::to_string(getpid()) + "\",\"version\":\"4\"}}",
              d.Handle("{\"jsonrpc\":\"2.0\",\"id\":1,\"method\":\"getServerInfo\"}"));
}

TEST_F(RequestDispatch, ReportsHandlerErrorsWithTheirText)
{
    EXPECT_EQ("{\"error\":{\"code\":-32000,\"message\":\"Widget not found\"},\"id\":3,"
              "\"jsonrpc\":\"2.0\"}",
              d.Handle("{\"jsonrpc\":\"2.0\",\"id\":3,\"method\":\"echo\",\"params\":{\"a\":\"x\","
                       "\"fail\":\"Widget not found\"}}"));
    EXPECT_EQ(
        "{\"error\":{\"code\":-32000,\"message\":\"Request failed\"},\"id\":4,"
        "\"jsonrpc\":\"2.0\"}",
        d.Handle("{\"jsonrpc\":\"2.0\",\"id\":4,\"method\":\"echo\",\"params\":{\"throw\":1}}"));
}

TEST_F(RequestDispatch, AnswersBadRequestsWithProtocolErrors)
{
    auto code = [&](std::string const& line)
    {
        std::string const reply = d.Handle(line);
        std::size_t const at = reply.find("\"code\":");
        return at == std::string::npos ? 0 : std::stoi(reply.substr(at + 7));
    };
    // The fourth has no version.
    for (auto const& c :
         {std::make_pair(-32700, "{\"jsonrpc\":"),
          {-32700, "\xFF"},
          {-32600, "[1,2]"},
          {-32600, "\"echo\""},
          {-32600, "{\"id\":1,\"method\":\"echo\"}"},
          {-32600, "{\"jsonrpc\":\"1.0\",\"id\":1,\"method\":\"echo\"}"},
          {-32600, "{\"jsonrpc\":\"2.0\",\"id\":1,\"method\":5}"},
          {-32600, "{\"jsonrpc\":\"2.0\",\"id\":{},\"method\":\"echo\"}"},
          {-32601, "{\"jsonrpc\":\"2.0\",\"id\":1,\"method\":\"nothing\"}"},
          {-32602, "{\"jsonrpc\":\"2.0\",\"id\":1,\"method\":\"echo\",\"params\":[1]}"}})
        EXPECT_EQ(c.first, code(c.second)) << c.second;
    EXPECT_EQ(0, calls);
    EXPECT_NE(std::string::npos,
              d.Handle("{\"jsonrpc\":\"2.0\",\"id\":9,\"method\":\"nothing\"}").find("\"id\":9"));
}

TEST_F(RequestDispatch, CarriesOutNotificationsWithoutReplying)
{
    EXPECT_EQ("", d.Handle("{\"jsonrpc\":\"2.0\",\"method\":\"echo\",\"params\":{\"a\":\"1\"}}"));
    EXPECT_EQ("", d.Handle("{\"jsonrpc\":\"2.0\",\"method\":\"unknown\"}"));
    EXPECT_EQ(1, calls);
    // Null is an id like any other and gets a reply.
    EXPECT_EQ("{\"id\":null,\"jsonrpc\":\"2.0\",\"result\":{}}",
              d.Handle("{\"jsonrpc\":\"2.0\",\"id\":null,\"method\":\"echo\"}"));
}

TEST_F(RequestDispatch, RegistrationReplacesAndRemoves)
{
    int second = 0;
    d.Register("echo", &echo, &second);
    d.Handle("{\"jsonrpc\":\"2.0\",\"id\":1,\"method\":\"echo\"}");
    EXPECT_EQ(0, calls);
    EXPECT_EQ(1, second);
    d.Register("echo", nullptr, nullptr);
    EXPECT_FALSE(d.IsRegistered("echo"));
}

TEST(RequestDispatchNotice, NoticeLinesCarryKindAndTexts)
{
    char const* texts[] = {"Updater Main Window", "0x1f", nullptr};
    EXPECT_EQ("{\"jsonrpc\":\"2.0\",\"method\":\"notice\",\"params\":{\"kind\":\"Show\",\"texts\":["
              "\"Updater Main Window\",\"0x1f\",\"\"]}}",
              RequestDispatcher::NoticeLine("Show", texts, 3));
    EXPECT_EQ("{\"jsonrpc\":\"2.0\",\"method\":\"notice\",\"params\":{\"kind\":\"\",\"texts\":[]}}",
              RequestDispatcher::NoticeLine(nullptr, nullptr, 0));
}
