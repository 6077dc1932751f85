#include "Canvas/UI/WindowFactoryRegistration/BuiltInWindowTypes.h"

#include "Canvas/UI/Button.h"
#include "Canvas/UI/CheckBox.h"
#include "Canvas/UI/ComboBox.h"
#include "Canvas/UI/Edit.h"
#include "Canvas/UI/FocusIndicator.h"
#include "Canvas/UI/Hyperlink.h"
#include "Canvas/UI/Legend.h"
#include "Canvas/UI/ListBox.h"
#include "Canvas/UI/MultiText.h"
#include "Canvas/UI/OnOffButton.h"
#include "Canvas/UI/PixmapButton.h"
#include "Canvas/UI/PushButton.h"
#include "Canvas/UI/RadioButton.h"
#include "Canvas/UI/ScrollView.h"
#include "Canvas/UI/SimpleBannerBG.h"
#include "Canvas/UI/SimpleEdit.h"
#include "Canvas/UI/SimplePushButton.h"
#include "Canvas/UI/SimpleToolTip.h"
#include "Canvas/UI/Text.h"
#include "Canvas/UI/TreeList.h"
#include "Canvas/UI/Window.h"
#include "Canvas/UI/WindowFactory.h"
#include "Canvas/UI/WindowFactoryRegistration/ParamControlTypes.h"
#include "Canvas/UI/WindowStack.h"

namespace UI
{

void RegisterBuiltInWindowTypes(WindowFactory& factory)
{
    // One line per type: the name is what layout files and the window maker show. Every type
    // here is made by a constructor taking (frame, parent, name).
    factory.Register<Window>("Window");
    factory.Register<FocusIndicator>("FocusIndicator");
    factory.Register<Text>("Text");
    factory.Register<MultiText>("MultiText");
    factory.Register<Edit>("Edit");
    factory.Register<SimpleEdit>("SimpleEdit");
    factory.Register<SimpleToolTip>("SimpleToolTip");
    factory.Register<Button>("Button");
    factory.Register<PushButton>("PushButton");
    factory.Register<SimplePushButton>("SimplePushButton");
    factory.Register<PixmapButton>("PixmapButton");
    factory.Register<OnOffButton>("OnOffButton");
    factory.Register<CheckBox>("CheckBox");
    factory.Register<SimpleCheckBox>("SimpleCheckBox");
    factory.Register<RadioButton>("RadioButton");
    factory.Register<Hyperlink>("Hyperlink");
    factory.Register<SimpleBannerBG>("SimpleBannerBG");
    factory.Register<ScrollView>("ScrollView");
    factory.Register<WindowStack>("WindowStack");
    factory.Register<ListBox>("ListBox");
    factory.Register<ComboBox>("ComboBox");
    factory.Register<TreeList>("TreeList");
    factory.Register<Legend>("Legend");
    RegisterParamControlTypes(factory);
}

} // namespace UI
