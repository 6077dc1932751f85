#pragma once

// The gallery's content: one function per section, each placing its widgets in a column below
// the previous section. A new section is one more function and one more line in `Build`.

#include "Canvas/UI/Window.h"
#include "TvBase/Util/Signal.h"

namespace UI
{
class Edit;
class Frame;
} // namespace UI

namespace Gallery
{

/// The window everything sits on: a plain background with a section title above each part. It
/// fills the main window.
class Page : public UI::Window
{
public:
    Page(UI::Frame* frame, UI::Window* parent, String const& name);
    void Draw(UI::DrawContext* context) override;

    /// Adds a title text at (`x`, `y`) and returns the y below it.
    int AddSectionTitle(String const& title, int y, int x = 16);

    /// The user asked for the About box (its button in the buttons section).
    Signal<> signalAbout;
    /// The user asked for the "Controls" page (its button in the parameter controls section).
    Signal<> signalControls;
};

/// The page's width: two columns of sections.
int const PageWidth = 800;
/// Where the second column starts.
int const SecondColumn = 420;

/// Builds every section on `page`; returns the height used.
int Build(Page* page);

/// One line of report on the standard output for each edit that the user accepted, so that
/// scripts can follow what happened: "edited <name>: <text>".
void ReportEdits(UI::Edit* edit);

int AddLabels(Page* page, int y);
int AddWrappedText(Page* page, int y);
int AddEditFields(Page* page, int y);
int AddToolTip(Page* page, int y);
int AddButtons(Page* page, int y);
int AddScrollingList(Page* page, int x, int y);
int AddSplitter(Page* page, int x, int y);
int AddTabs(Page* page, int x, int y);
int AddImages(Page* page, int x, int y);
int AddParamControls(Page* page, int y);

} // namespace Gallery
