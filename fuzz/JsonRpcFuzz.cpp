// Feeds arbitrary bytes to the request reader as one request line, and as a stream of lines
// through the JSON reader and writer: nothing may crash, and whatever the reader accepts must
// be written back as one line that reads again to the same text.

#include "Canvas/TestAutomation/Module/JsonValue.h"
#include "Canvas/TestAutomation/Module/RequestDispatcher.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

namespace
{

void answer(void*, TestAutomation::RPCRequestInterface* request,
            TestAutomation::RPCReplyInterface* reply)
{
    char const* widget = request->GetArgument("widget");
    if (!widget)
        reply->SetError("Widget not found");
    else
        reply->SetValue("hierarchy", widget);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(uint8_t const* data, size_t size)
{
    std::string const text(reinterpret_cast<char const*>(data), size);

    static TestAutomation::RequestDispatcher dispatcher("APP:Fuzz", 4);
    static bool registered = false;
    if (!registered)
    {
        dispatcher.Register("getWidgetInfo", &answer, nullptr);
        registered = true;
    }
    std::string const reply = dispatcher.Handle(text);
    if (reply.find('\n') != std::string::npos)
        std::abort();

    TestAutomation::Json::Value value;
    std::string error;
    if (TestAutomation::Json::Parse(text, value, error))
    {
        std::string const once = TestAutomation::Json::Write(value);
        TestAutomation::Json::Value again;
        if (once.find('\n') != std::string::npos ||
            !TestAutomation::Json::Parse(once, again, error) ||
            TestAutomation::Json::Write(again) != once)
            std::abort();
    }
    return 0;
}
