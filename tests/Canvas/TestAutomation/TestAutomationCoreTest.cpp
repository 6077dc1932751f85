#include "Canvas/TestAutomation/TestAutomationCore.h"
#include "Canvas/UI/ApplicationMainWindow.h"
#include "Canvas/UI/Canvas.h"
#include "Canvas/UI/DIBits.h"
#include "Canvas/UI/Frame.h"
#include "Canvas/UI/InputMessage.h"
#include "Canvas/UI/Media.h"
#include "Canvas/UI/MemoryDrawContext.h"
#include "Canvas/UI/TestAutomationInterface.h"
#include "Canvas/UI/ToolTip.h"
#include "Canvas/UI/Window.h"
#include "TvBase/Util/ConfigFile.h"
#include "TvBase/Util/FilePath.h"
#include "tests/Canvas/TestAutomation/RpcTestClient.h"
#include "tests/Canvas/UI/CanvasTestSupport.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdlib>
#include <memory>
#include <string>
#include <utility>
#include <vector>

using TestAutomation::RPCReplyInterface;
using TestAutomation::RPCRequestInterface;
using TestAutomation::TestAutomationCore;
using TestSupport::RpcTestClient;
using UI::TestAutomationInterface;

namespace
{

typedef std::vector<std::pair<std::string, std::string>> Messages;

/// Catches the core's messages to the user instead of opening message boxes.
struct MessageCatcher
{
    MessageCatcher()
    {
        TestAutomationCore::SetMessageFunction(
            [this](String const& title, String const& text)
            { messages.emplace_back(title.CStr(), text.CStr()); });
    }
    ~MessageCatcher()
    {
        TestAutomationCore::SetMessageFunction(TestAutomationCore::MessageFunction());
    }
    Messages messages;
};

bool has(std::string const& text, std::string const& part)
{
    return text.find(part) != std::string::npos;
}

void useModule(char const* path)
{
    setenv("TV_TEST_AUTOMATION_MODULE", path, 1);
}

/// A window that answers requests: "GetInfo" adds "value", "Click" counts, "EnsureVisible:..."
/// answers where the item stands, "Fail" reports an error.
class ProbeWindow : public UI::Window
{
public:
    ProbeWindow(UI::Frame* frame, UI::Window* parent, char const* name, int x)
        : Window(frame, parent, name)
    {
        SetGeometry(x, 5, 30, 10);
    }

    bool ProcessTARequest(String const& request, RPCRequestInterface* args,
                          RPCReplyInterface* reply) override
    {
        last = request.CStr();
        if (request == "GetInfo")
            reply->SetValue("value", "42");
        else if (request == "Click")
            reply->SetValue("clicks", String::Number(++clicks).CStr());
        else if (request == "Echo" && args && args->GetArgument("extra"))
            reply->SetValue("extra", args->GetArgument("extra"));
        else if (request.Left(14) == "EnsureVisible:")
        {
            if (request.Mid(14) == "missing")
                reply->SetError("The selection 'missing' was not found");
            reply->SetValue("x", "3");
            reply->SetValue("y", "4");
        }
        else
            return false;
        return true;
    }

    std::string last;
    int clicks = 0;
};

class PluginWindow : public UI::Window
{
public:
    PluginWindow(UI::Frame* frame) : Window(frame, nullptr, "Plugin") {}
    bool ProcessTARequest(String const& request, RPCRequestInterface*,
                          RPCReplyInterface* reply) override
    {
        if (request == "GetPluginInfo")
        {
            reply->SetValue("CodeModDate", "2026-11-22");
            reply->SetValue("CodeBranch", "main");
            return true;
        }
        return request == "Ping";
    }
};

struct NativeWindow
{
    int unused = 0;
};

/// A canvas, a frame and a window tree:
///   "Test Main Window" > "Panel" > "Row", "Row", "Row" (the last hidden), each > "Cell"
///   "Second"
/// with the bridge started on the real module.
struct Bridge : ::testing::Test
{
    void SetUp() override
    {
        useModule(TV_TEST_AUTOMATION_MODULE_PATH);
        frame.reset(new UI::Frame(&canvas, &native, nullptr, UI::Point(), "unused",
                                  UI::Rect(0, 199, 0, 99)));
        main = new UI::ApplicationMainWindow(frame.get(), nullptr, &config);
        main->SetGeometry(0, 0, 200, 100);
        panel = new UI::Window(frame.get(), main, "Panel");
        panel->SetGeometry(10, 20, 150, 50);
        for (int i = 0; i < 3; ++i)
        {
            UI::Window* row = new UI::Window(frame.get(), panel, "Row");
            row->SetGeometry(0, i * 15, 150, 15);
            rows.push_back(row);
            cells.push_back(new ProbeWindow(frame.get(), row, "Cell", 40 + i));
        }
        rows[2]->Hide();
        new UI::Window(frame.get(), nullptr, "Second");
        frame->SetTopLevelWindow(main);
        ASSERT_TRUE(TestAutomationInterface::Start("APP:Test"));
        TestAutomationInterface::SetCanvas(&canvas);
        client.reset(new RpcTestClient(TestAutomationInterface::GetCore()->GetPort()));
        ASSERT_TRUE(client->IsConnected());
    }

    void TearDown() override
    {
        client.reset();
        TestAutomationInterface::SetCanvas(nullptr);
        TestAutomationInterface::SetMainPluginWindow(nullptr);
        TestAutomationInterface::Stop();
        frame.reset();
    }

    std::string call(std::string const& method, std::string const& params = "{}")
    {
        return client->Call("{\"jsonrpc\":\"2.0\",\"id\":1,\"method\":\"" + method +
                                "\",\"params\":" + params + "}",
                            &TestAutomationInterface::RequestCheck);
    }

    std::string info(std::string const& widget)
    {
        return call("getWidgetInfo", "{\"widget\":\"" + widget + "\"}");
    }

    std::string app(std::string const& request)
    {
        return call("appAutomationRequest", "{\"req\":\"" + request + "\"}");
    }

    static std::string result(std::string const& body)
    {
        return "{\"id\":1,\"jsonrpc\":\"2.0\",\"result\":" + body + "}";
    }

    static std::string error(std::string const& text)
    {
        return "{\"error\":{\"code\":-32000,\"message\":\"" + text +
               "\"},\"id\":1,\"jsonrpc\":\"2.0\"}";
    }

    /// The next notice's params, skipping nothing; empty when none comes.
    std::string nextNotice()
    {
        std::string line;
        if (!client->ReadLine(&TestAutomationInterface::RequestCheck, line, 2000))
            return std::string();
        std::size_t const at = line.find("\"params\":");
        return at == std::string::npos ? line : line.substr(at + 9, line.size() - at - 10);
    }

    MessageCatcher catcher;
    Util::ConfigFile config{String("com.tavorin.testautomation")};
    UI::Canvas canvas{"Test"};
    NativeWindow native;
    std::unique_ptr<UI::Frame> frame;
    UI::ApplicationMainWindow* main = nullptr;
    UI::Window* panel = nullptr;
    std::vector<UI::Window*> rows;
    std::vector<ProbeWindow*> cells;
    std::unique_ptr<RpcTestClient> client;
};

} // namespace

TEST(TestAutomationStart, WithoutAModuleFileThereIsNoBridge)
{
    MessageCatcher catcher;
    TestSupport::TempFolder folder("tv-ta");
    useModule((folder.Path() + "/absent.so").c_str());
    EXPECT_FALSE(TestAutomationInterface::Start("APP:Test"));
    EXPECT_FALSE(TestAutomationInterface::IsRunning());
    // A file that is not a library loads as nothing, silently too.
    useModule(folder.Write("broken.so", "not a library").c_str());
    EXPECT_FALSE(TestAutomationInterface::Start("APP:Test"));
    EXPECT_TRUE(catcher.messages.empty());
    // Every notice and the tick do nothing.
    TestAutomationInterface::RequestCheck();
    TestAutomationInterface::SendStat("frames", 3);
    TestAutomationInterface::SendMouseEvent(UI::MouseLeftPress, UI::Point(1, 2), 0, true, nullptr);
    {
        UI::TestAutomationDLOGSentry sentry("Title", "OK");
    }
}

TEST(TestAutomationStart, ModulePathComesFromTheEnvironmentOrTheProgramsPrefix)
{
    unsetenv("TV_TEST_AUTOMATION_MODULE");
    String const installed =
        String(TV_BINARY_DIR "/tests/../lib/tavorin/TestAutomation/libTvTestAutomation.so");
    EXPECT_EQ(FilePath(installed), FilePath(TestAutomationCore::GetModulePath()));
    useModule("");
    EXPECT_EQ(FilePath(installed), FilePath(TestAutomationCore::GetModulePath()));
    useModule("/x/y.so");
    EXPECT_EQ(String("/x/y.so"), TestAutomationCore::GetModulePath());
}

TEST(TestAutomationStart, AnOldModuleIsRefusedWithOneMessage)
{
    MessageCatcher catcher;
    useModule(TV_TEST_AUTOMATION_MODULE_V3_PATH);
    EXPECT_FALSE(TestAutomationInterface::Start("APP:Test"));
    EXPECT_FALSE(TestAutomationInterface::IsRunning());
    ASSERT_EQ(1u, catcher.messages.size());
    EXPECT_EQ("TvTestAutomation Error", catcher.messages[0].first);
    EXPECT_EQ("Unsupported TvTestAutomation DLL version: 3.  Requires 4 or higher\n",
              catcher.messages[0].second);
}

TEST(TestAutomationStart, AllPortsTakenGivesOneMessageAndNoBridge)
{
    MessageCatcher catcher;
    useModule(TV_TEST_AUTOMATION_MODULE_PATH);
    // Hold every port of the range; one another program holds counts as taken all the same.
    std::vector<int> held;
    for (unsigned short port = TestAutomationCore::FirstPort; port <= TestAutomationCore::LastPort;
         ++port)
    {
        int const fd = ::socket(AF_INET, SOCK_STREAM, 0);
        // Earlier tests leave connections of these ports waiting to time out.
        int const yes = 1;
        ::setsockopt(fd, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
        sockaddr_in a{};
        a.sin_family = AF_INET;
        a.sin_port = htons(port);
        a.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        if (::bind(fd, reinterpret_cast<sockaddr*>(&a), sizeof a) == 0 && ::listen(fd, 1) == 0)
            held.push_back(fd);
        else
            ::close(fd);
    }
    EXPECT_FALSE(TestAutomationInterface::Start("APP:Test"));
    EXPECT_FALSE(TestAutomationInterface::IsRunning());
    ASSERT_EQ(1u, catcher.messages.size());
    EXPECT_EQ("TvTestAutomation Message", catcher.messages[0].first);
    EXPECT_EQ("Failed to start server!", catcher.messages[0].second);
    for (int fd : held)
        ::close(fd);
    // With a port free again the next start works.
    EXPECT_TRUE(TestAutomationInterface::Start("APP:Test"));
    EXPECT_GE(TestAutomationInterface::GetCore()->GetPort(), TestAutomationCore::FirstPort);
    TestAutomationInterface::Stop();
}

TEST_F(Bridge, WidgetPathsWalkNamesAndIndices)
{
    EXPECT_EQ(result("{\"classname\":\"ProbeWindow\",\"enabled\":\"true\",\"focus\":\"false\","
                     "\"height\":\"10\",\"hierarchy\":\"Test Main Window|Panel|Row[1]|Cell\","
                     "\"value\":\"42\",\"visible\":\"true\",\"width\":\"30\",\"x\":\"51\","
                     "\"y\":\"40\"}"),
              info("Test Main Window|Panel|Row[1]|Cell"));
    // Without an index the first of the equally named rows; "[0]" is the same one.
    EXPECT_TRUE(has(info("Test Main Window|Panel|Row|Cell"), "\"x\":\"50\""));
    EXPECT_TRUE(has(info("Test Main Window|Panel|Row[0]|Cell[0]"),
                    "\"hierarchy\":\"Test Main Window|Panel|Row[0]|Cell[0]\""));
    // A hidden ancestor makes the window invisible.
    EXPECT_TRUE(has(info("Test Main Window|Panel|Row[2]|Cell"), "\"visible\":\"false\""));
    // A plain window reports its class and nothing of a widget.
    EXPECT_EQ(result("{\"classname\":\"Window\",\"enabled\":\"true\",\"focus\":\"false\","
                     "\"height\":\"0\",\"hierarchy\":\"Second\",\"visible\":\"true\","
                     "\"width\":\"0\",\"x\":\"0\",\"y\":\"0\"}"),
              info("Second"));
    EXPECT_TRUE(has(info("Test Main Window"), "\"classname\":\"ApplicationMainWindow\""));
    // Tool tips tell their text.
    UI::ToolTip* tip = new UI::ToolTip(frame.get(), main, "Tip");
    tip->SetText("Spring sale");
    EXPECT_TRUE(has(info("Test Main Window|Tip"), "\"text\":\"Spring sale\""));
}

TEST_F(Bridge, UnknownPathsAndMissingArgumentsAnswerWithErrors)
{
    for (char const* path :
         {"Nowhere", "Test Main Window|Panel|Row[3]|Cell", "Test Main Window|Cell",
          "Test Main Window|Panel|Row[x]", "", "Test Main Window||Panel", "Panel"})
    {
        EXPECT_EQ(error("Widget not found"),
                  call("getWidgetInfo", std::string("{\"widget\":\"") + path + "\"}"))
            << path;
    }
    EXPECT_EQ(error("Missing argument \\\"widget\\\""), call("getWidgetInfo"));
    EXPECT_EQ(error("Missing argument \\\"request\\\""),
              call("windowAutomationRequest", "{\"widget\":\"Second\"}"));
    EXPECT_EQ(error("Missing argument \\\"req\\\""), call("appAutomationRequest"));
}

TEST_F(Bridge, HandlersCheckForTheCanvasAndAMainWindow)
{
    TestAutomationInterface::SetCanvas(nullptr);
    EXPECT_EQ(error("m_pCanvas is NULL"), info("Second"));
    EXPECT_EQ(error("m_pCanvas is NULL"), call("getMetaDataTags"));
    TestAutomationInterface::SetCanvas(&canvas);
    TestAutomationInterface::SetAppMainWindow(nullptr);
    EXPECT_EQ(error("m_pAppMainWin is NULL"), info("Second"));
    // A plug-in main window is enough for the window requests, not for the application's.
    PluginWindow* plugin = new PluginWindow(frame.get());
    TestAutomationInterface::SetMainPluginWindow(plugin);
    EXPECT_TRUE(has(info("Second"), "result"));
    EXPECT_EQ(error("No ApplicationMainWindow has been registered"), app("x"));
    EXPECT_EQ(error("No ApplicationMainWindow has been registered"),
              call("executeConsoleCommand", "{\"command\":\"x\"}"));
    TestAutomationInterface::SetMainPluginWindow(nullptr);
    TestAutomationInterface::SetAppMainWindow(main);
    EXPECT_EQ(error("No MainPluginWindow has been registered"),
              call("pluginAutomationRequest", "{\"req\":\"Ping\"}"));
}

TEST_F(Bridge, WindowRequestsReachTheWindow)
{
    std::string const cell = "\"widget\":\"Test Main Window|Panel|Row[1]|Cell\"";
    EXPECT_EQ(result("{\"clicks\":\"1\",\"hierarchy\":\"Test Main Window|Panel|Row[1]|Cell\"}"),
              call("windowAutomationRequest", "{" + cell + ",\"request\":\"Click\"}"));
    EXPECT_EQ(1, cells[1]->clicks);
    EXPECT_EQ(0, cells[0]->clicks);
    EXPECT_TRUE(
        has(call("windowAutomationRequest", "{" + cell + ",\"request\":\"Echo\",\"extra\":7}"),
            "\"extra\":\"7\""));
    EXPECT_TRUE(has(call("windowAutomationRequest", "{" + cell + ",\"request\":\"Dance\"}"),
                    "\"Handled\":\"false\""));

    call("dualListBoxEnsureVis", "{" + cell + ",\"item\":\"Beta\",\"leftSide\":\"true\"}");
    EXPECT_EQ("EnsureVisible:Beta:L", cells[1]->last);
    call("dualListBoxEnsureVis", "{" + cell + ",\"item\":\"Beta\",\"leftSide\":\"0\"}");
    EXPECT_EQ("EnsureVisible:Beta:R", cells[1]->last);

    EXPECT_TRUE(has(call("fileExplorerViewEnsureVis", "{" + cell + ",\"item\":\"a.txt\"}"),
                    "\"x\":\"3\",\"y\":\"4\""));
    EXPECT_EQ(error("The selection 'missing' was not found"),
              call("fileExplorerViewEnsureVis", "{" + cell + ",\"item\":\"missing\"}"));
    EXPECT_EQ(error("fileExplorerViewEnsureVis could not find the right control"),
              call("fileExplorerViewEnsureVis", "{\"widget\":\"Second\",\"item\":\"a\"}"));
}

TEST_F(Bridge, ApplicationRequestsReadAndWriteSettings)
{
    EXPECT_EQ(result("{\"Handled\":\"true\",\"value\":\"on\"}"),
              app("SetConfigFileProperty|Mode|on"));
    EXPECT_EQ(String("on"), config.GetString("Mode"));
    EXPECT_EQ(result("{\"Handled\":\"true\",\"value\":\"on\"}"), app("GetConfigFileProperty|Mode"));
    EXPECT_EQ(result("{\"Handled\":\"false\"}"), app("SomethingElse|1"));
    EXPECT_EQ(result("{}"), call("executeConsoleCommand", "{\"command\":\"quit\"}"));

    PluginWindow* plugin = new PluginWindow(frame.get());
    TestAutomationInterface::SetMainPluginWindow(plugin);
    EXPECT_EQ(result("{\"CodeBranch\":\"main\",\"CodeModDate\":\"2026-11-22\"}"),
              call("getPluginInfo"));
    EXPECT_EQ(result("{\"Handled\":\"true\"}"),
              call("pluginAutomationRequest", "{\"req\":\"Ping\"}"));
    // The plug-in window doesn't know the settings requests: the application's window answers.
    EXPECT_EQ(result("{\"Handled\":\"true\",\"value\":\"on\"}"), app("GetConfigFileProperty|Mode"));
    EXPECT_EQ(result("{}"), call("getMetaDataTags"));
}

TEST_F(Bridge, ApplicationRequestSavesAFramesBitmap)
{
    // A second frame whose bitmap holds grey with a red pixel at (2, 1).
    UI::MemoryDrawContext context{"Painted Context"};
    std::unique_ptr<UI::Frame> painted(
        new UI::Frame(&canvas, nullptr, &context, UI::Point(), "", UI::Rect(0, 3, 0, 2)));
    context.Begin(UI::Size(4, 3));
    context.DrawBox(UI::Rect(0, 3, 0, 2), UI::DrawContext::Filled, 0xFF808080u, 255);
    context.DrawBox(UI::Rect(2, 2, 1, 1), UI::DrawContext::Filled, 0xFFFF0000u, 255);
    UI::Window* top = new UI::Window(painted.get(), nullptr, "Painted");
    painted->SetTopLevelWindow(top);

    TestSupport::TempFolder folder("tv-ta-shot");
    std::string const request = "SaveScreenShot|" + folder.Path() + "/shot";
    EXPECT_EQ(result("{\"Handled\":\"true\",\"hierarchy\":\"Painted\",\"path\":\"" + folder.Path() +
                     "/shot.png\"}"),
              app(request + "|Painted"));
    std::string const file = TestSupport::ReadFile(folder.Path() + "/shot.png");
    boost::shared_ptr<UI::DIBits> back = UI::Media::GetPNGBits(
        unsigned(file.size()), reinterpret_cast<unsigned char const*>(file.data()), 0.0f);
    ASSERT_TRUE(back);
    ASSERT_EQ(UI::Size(4, 3), back->GetSize());
    EXPECT_EQ(0xFF808080u, back->GetPixels()[0]);
    EXPECT_EQ(0xFFFF0000u, back->GetPixels()[back->GetStride() + 2]);

    // The main window's own frame has no bitmap of its own here.
    EXPECT_EQ(error("The frame has no bitmap"), app(request));
    EXPECT_EQ(error("Widget not found"), app(request + "|Nowhere"));
    EXPECT_EQ(error("SaveScreenShot needs a file name"), app("SaveScreenShot"));
    EXPECT_EQ(error("Could not write /nonexistent-folder/shot.png"),
              app("SaveScreenShot|/nonexistent-folder/shot.png|Painted"));
    painted.reset();
}

TEST_F(Bridge, NoticesFollowWindowsInputAndSentries)
{
    std::string const handle =
        String("0x%1")
            .Arg(static_cast<unsigned long long>(reinterpret_cast<uintptr_t>(&native)), 16u)
            .CStr();
    // Host windows tell of their showing and end; the toolkit's windows, top-level ones
    // included, come and go without notices.
    UI::Window* dialog = new UI::Window(frame.get(), nullptr, "Dialog");
    dialog->Hide();
    dialog->Show();
    delete dialog;
    delete new UI::Window(frame.get(), panel, "Child");
    UI::TestAutomationInterface::SendHostWindow("Show", "Dialog", &native);
    EXPECT_EQ("{\"kind\":\"Show\",\"texts\":[\"Dialog\",\"" + handle + "\"]}", nextNotice());

    frame->HandleMouseMessage(UI::MouseLeftPress, UI::Point(12, 34), UI::FlagLeftButton, 0);
    EXPECT_EQ("{\"kind\":\"MouseEvent\",\"texts\":[\"LeftDown(12,34)\",\"1\",\"Test Main "
              "Window\"]}",
              nextNotice());
    frame->HandleKeyboardMessage(UI::KeyPress, 65, 'a', 0, false);
    EXPECT_EQ("{\"kind\":\"KeyboardEvent\",\"texts\":[\"KeyPress\",\"65\",\"a\",\"0\"]}",
              nextNotice());
    frame->HandleKeyboardMessage(UI::KeyCharacter, 65, 'a', 0, false);
    frame->HandleKeyboardMessage(UI::KeyRelease, 65, 'a', 0, false);
    EXPECT_EQ("{\"kind\":\"KeyboardEvent\",\"texts\":[\"KeyRelease\",\"65\",\"a\",\"0\"]}",
              nextNotice());
    // Made-up input is not the user's and is not announced.
    TestAutomationInterface::SendMouseEvent(UI::MouseMove, UI::Point(), 0, false, nullptr);
    TestAutomationInterface::SendMouseEvent(UI::MouseCursorUpdate, UI::Point(), 0, true, nullptr);

    {
        UI::TestAutomationDLOGSentry sentry("Quit?", "OK|Cancel");
        EXPECT_EQ("{\"kind\":\"DLOG\",\"texts\":[\"Quit?\",\"Buttons\",\"OK|Cancel\"]}",
                  nextNotice());
    }
    EXPECT_EQ("{\"kind\":\"DLOG Dismissed\",\"texts\":[\"Quit?\"]}", nextNotice());
    {
        UI::TestAutomationEVNTSentry sentry("Check", "Updates", "", 1);
        EXPECT_EQ("{\"kind\":\"EVNT\",\"texts\":[\"Check\",\"Updates\",\"\",\"1\"]}", nextNotice());
        sentry.SetEndMessage("EVNT Failed");
        sentry.SetIntVal(-2);
    }
    EXPECT_EQ("{\"kind\":\"EVNT Failed\",\"texts\":[\"Check\",\"Updates\",\"\",\"-2\"]}",
              nextNotice());
    TestAutomationInterface::SendStat("frames", 60);
    EXPECT_EQ("{\"kind\":\"Stat\",\"texts\":[\"frames\",\"60\"]}", nextNotice());
    EXPECT_EQ("", nextNotice());
}

TEST_F(Bridge, StoppingClosesTheDriversConnection)
{
    EXPECT_TRUE(has(call("getServerInfo"), "\"name\":\"APP:Test\""));
    TestAutomationInterface::Stop();
    EXPECT_TRUE(client->WaitForClose([] {}));
    EXPECT_FALSE(TestAutomationInterface::IsRunning());
    TestAutomationInterface::RequestCheck();
}
