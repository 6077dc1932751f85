// The buttons section: one of each kind, each reporting on the standard output when used, so
// that scripts can follow what happened: "clicked <name>", "toggled <name>: on|off" and
// "chose <value>". The "About…" button also opens the About box.

#include "Canvas/UI/Canvas.h"
#include "Canvas/UI/CheckBox.h"
#include "Canvas/UI/Frame.h"
#include "Canvas/UI/Hyperlink.h"
#include "Canvas/UI/OnOffButton.h"
#include "Canvas/UI/RadioButton.h"
#include "Canvas/UI/SimplePushButton.h"
#include "TvBase/Controller/BoolParamMemory.h"
#include "TvBase/Controller/EnumParamMemory.h"
#include "examples/gallery/Gallery.h"

#include <boost/function.hpp>

#include <cstdio>

namespace Gallery
{

namespace
{

int const Left = 16;

void Report(char const* what, String const& name)
{
    std::printf("%s %s\n", what, name.CStr());
    std::fflush(stdout);
}

/// The choice the radio buttons share; it lives as long as the program.
Controller::EnumParamMemory& SizeChoice()
{
    static Controller::EnumParamMemory choice(1,
                                              {String("Small"), String("Medium"), String("Large")});
    return choice;
}

/// What the On/off button switches; it lives as long as the program.
Controller::BoolParamMemory& Switch()
{
    static Controller::BoolParamMemory on(false);
    return on;
}

} // namespace

int AddButtons(Page* page, int y)
{
    y = page->AddSectionTitle("Buttons", y);
    UI::Frame* frame = page->GetFrame();

    UI::SimplePushButton* push = new UI::SimplePushButton(frame, page, "Push Button", "Push me");
    push->SetGeometry(Left, y, 100, 22);
    push->signalClicked.Connect(
        nullptr, boost::function<void()>([push] { Report("clicked", push->GetName()); }));

    // Bound to a parameter, as an on/off button must be to react to clicks, and drawn with the
    // gallery's button artwork, darker while on.
    // Made with its "Controller Key Path" property, so that the designer can bind it anew.
    UI::OnOffButton* onOff = new UI::OnOffButton(frame, page, "On Off Button");
    onOff->SetController(&Switch());
    onOff->SetStretchableOnOffPixmaps("UI/png/GalleryButton", 3, 3, 3, 3);
    onOff->SetCaption("On / off", 0xFF203020u, 0xFFFFFFFFu, 0xFFA0A0A0u, 0xFFA0A0A0u);
    onOff->SetGeometry(Left + 116, y, 100, 22);
    onOff->signalUserToggled.Connect(nullptr, boost::function<void()>(
                                                  [onOff]
                                                  {
                                                      std::printf("toggled %s: %s\n",
                                                                  onOff->GetName().CStr(),
                                                                  onOff->IsOn() ? "on" : "off");
                                                      std::fflush(stdout);
                                                  }));

    // The About box is one click away for the user too, not only for a test driver.
    UI::SimplePushButton* about =
        new UI::SimplePushButton(frame, page, "About Button", "About\u2026");
    about->SetGeometry(Left + 232, y, 100, 22);
    about->signalClicked.Connect(nullptr, boost::function<void()>(
                                              [about, page]
                                              {
                                                  Report("clicked", about->GetName());
                                                  page->signalAbout();
                                              }));
    y += 30;

    // A switch that the property editor offers to the check box and the on-off button, whose
    // "Controller Key Path" properties can bind them to it.
    static Controller::BoolParamMemory sharedSwitch(false);
    frame->GetCanvas()->SetValueForKey(String("Shared Switch"),
                                       static_cast<Controller::BoolParam*>(&sharedSwitch));
    UI::SimpleCheckBox* check = new UI::SimpleCheckBox(frame, page, "Check Box");
    check->SetLabel("Check box");
    check->SetGeometry(Left, y, 160, 16);
    check->signalUserToggled.Connect(
        nullptr, boost::function<void()>(
                     [check]
                     {
                         std::printf("toggled %s: %s\n", check->GetName().CStr(),
                                     check->IsChecked() ? "on" : "off");
                         std::fflush(stdout);
                     }));
    y += 24;

    Controller::EnumParamMemory* choice = &SizeChoice();
    for (unsigned int value = 0; value < choice->GetNumValues(); ++value)
    {
        String const caption = choice->GetCaptionForValue(value);
        String name("Radio ");
        name += caption;
        UI::RadioButton* radio = new UI::RadioButton(frame, page, name, choice, value);
        radio->SetLabel(caption);
        radio->SetGeometry(Left + static_cast<int>(value) * 90, y, 84, 14);
        radio->signalUserToggled.Connect(
            nullptr, boost::function<void()>(
                         [choice]
                         {
                             std::printf("chose %s\n",
                                         choice->GetCaptionForValue(choice->get()).CStr());
                             std::fflush(stdout);
                         }));
    }
    y += 24;

    UI::Hyperlink* link =
        new UI::Hyperlink(frame, page, "Hyperlink", "A hyperlink", "https://www.example.com/");
    link->SetWebOnly(true);
    link->SetGeometry(Left, y, link->GetWidth(), link->GetHeight());
    link->signalClicked.Connect(
        nullptr, boost::function<void()>([link] { Report("clicked", link->GetName()); }));
    return y + link->GetHeight() + 12;
}

} // namespace Gallery
