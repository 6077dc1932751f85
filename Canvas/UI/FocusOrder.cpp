#include "Canvas/UI/FocusOrder.h"

#include "Canvas/UI/Button.h"
#include "Canvas/UI/ComboBox.h"
#include "Canvas/UI/Edit.h"
#include "Canvas/UI/Hyperlink.h"
#include "Canvas/UI/ListBox.h"
#include "Canvas/UI/ParamControl.h"

namespace UI
{

namespace
{

bool takesTab(Window* w)
{
    return dynamic_cast<Button*>(w) || dynamic_cast<Hyperlink*>(w) || dynamic_cast<Edit*>(w) ||
           dynamic_cast<ListBox*>(w) || dynamic_cast<ComboBox*>(w) ||
           dynamic_cast<ParamControl*>(w);
}

void collect(Window* w, std::vector<Window*>& out)
{
    if (takesTab(w))
    {
        out.push_back(w);
        return;
    }
    for (Window* child : w->child_windows())
        collect(child, out);
}

} // namespace

std::vector<Window*> CollectFocusOrder(Window* root)
{
    std::vector<Window*> order;
    if (root)
        collect(root, order);
    return order;
}

} // namespace UI
