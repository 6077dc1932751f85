#pragma once

#include "Canvas/UI/Window.h"
#include "TvBase/Util/checked_value.h"

#include <boost/shared_ptr.hpp>

#include <functional>

namespace UI
{

class DIBits;
class Font;
class ListBox;

/// What one row of a list box holds, apart from any window.
struct ListBoxRow
{
    /// Makes a row's control (a scrub text, a check box) as a child of the row's window.
    typedef std::function<Window*(Frame*, Window*)> ControlMaker;

    String text;
    boost::shared_ptr<DIBits> icon;
    String toolTip;
    Font* font = nullptr;
    int leftMargin = 0;
    /// Room kept free right of the text (for the row's control).
    int edgeMargin = 0;
    bool selected = false;
    bool highlight = false;
    checked_value<unsigned int> swatchColor;
    checked_value<int> intValue;
    unsigned char baseAlpha = 255;
    ControlMaker control;
    int controlWidth = 0;
};

/// The window of one row of a `UI::ListBox`, named "ListBoxItem %1" with the row's index. A
/// list keeps windows only for the rows on the screen, made as rows come into view and deleted
/// as they leave, so that a list of any length costs the rows in view.
class ListBoxItem : public Window
{
public:
    ListBoxItem(Frame* frame, Window* parent, ListBox* list, unsigned int row);

    /// Takes the row's present text, marks and control.
    void Refresh();
    unsigned int GetRow() const { return row; }
    /// The row's control, made when the row came into view; null without one.
    Window* GetControl() const { return control; }
    /// The text the row shows: its text and the value or swatch readout behind it.
    static String DescribeRow(ListBoxRow const& row);

    void Draw(DrawContext* context) override;
    String GetWindowType() const override { return String("ListBoxItem"); }
    bool ProcessTARequest(String const& request, TestAutomation::RPCRequestInterface* args,
                          TestAutomation::RPCReplyInterface* reply) override;

private:
    ListBox* list;
    unsigned int row = 0;
    Window* control = nullptr;
    bool hasControl = false;
};

} // namespace UI
