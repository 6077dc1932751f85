// A list box row edited in place on a real display: the inline editor opens over the row,
// refuses the list's illegal characters, and Return puts the text into the row.

#include "Canvas/UI/Canvas.h"
#include "Canvas/UI/Frame.h"
#include "Canvas/UI/ListBox.h"
#include "Canvas/UI/Native/HostCanvasPlatform.h"
#include "Canvas/UI/Native/HostWindow.h"
#include "Canvas/UI/Native/PlatformSupportFactory.h"
#include "tests/Canvas/UI/Native/SDL/GuiTestSupport.h"

#include <gtest/gtest.h>

#include <memory>

using UI::Point;
using UI::Rect;
using UI::Native::PlatformSupportFactory;

TEST(ListBoxGui, EditItemRefusesIllegalCharacters)
{
    REQUIRE_DISPLAY_AND_XDOTOOL();
    UI::Canvas canvas("List Edit Test");
    canvas.SetPlatform(
        boost::shared_ptr<UI::CanvasPlatform>(new UI::Native::HostCanvasPlatform(&canvas)));
    std::unique_ptr<UI::Native::HostWindow> host(
        PlatformSupportFactory::CreateHostWindow(&canvas, "List Test", nullptr, nullptr));
    UI::Native::HostWindowStyle style;
    style.noFrame = true;
    ASSERT_TRUE(host->Create(nullptr, nullptr, "List Test",
                             Rect(Point(100, 100), UI::Size(300, 220)), false, false, style));
    UI::Frame* frame = host->GetFrame();
    UI::ListBox* list = new UI::ListBox(frame, nullptr, "List");
    frame->SetTopLevelWindow(list);
    list->SetGeometry(0, 0, 300, 220);
    for (char const* text : {"alpha", "beta", "gamma"})
        list->InsertItem(text);
    list->SetIllegalCharacters({'/', ':'});
    unsigned int edited = 99;
    list->signalItemEdited.Connect(
        nullptr, boost::function<void(unsigned int)>([&](unsigned int i) { edited = i; }));
    frame->SetDrawingEnabled(true);
    host->StartMasterUpdateTimer(20);
    host->Show(true);
    ASSERT_TRUE(UI::Test::PumpUntil([frame] { return frame->GetInvalidRegions().empty(); }));

    UI::Test::Run("(timeout 15 xdotool search --sync --onlyvisible --name '^Inline Editor$' "
                  "windowfocus --sync && xdotool type --delay 30 'a/b:c' && xdotool key Return) "
                  ">/dev/null 2>&1 &");
    EXPECT_TRUE(list->EditItem(1u));
    EXPECT_EQ(String("abc"), list->GetItemText(1));
    EXPECT_EQ(1u, edited);
    // Nothing to edit without a row.
    EXPECT_FALSE(list->EditItem());
    EXPECT_FALSE(list->EditItem(7u));
}
