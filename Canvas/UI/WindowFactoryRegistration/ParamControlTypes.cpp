#include "Canvas/UI/WindowFactoryRegistration/ParamControlTypes.h"

#include "Canvas/UI/Knob.h"
#include "Canvas/UI/RGBASliderGroup.h"
#include "Canvas/UI/ScrubText.h"
#include "Canvas/UI/Slider.h"
#include "Canvas/UI/SliderGroup.h"
#include "Canvas/UI/WindowFactory.h"

namespace UI
{

void RegisterParamControlTypes(WindowFactory& factory)
{
    factory.Register<Knob>("Knob");
    factory.Register<Slider>("Slider");
    factory.Register<SliderGroup>("SliderGroup");
    factory.Register<SimpleSliderGroup>("SimpleSliderGroup");
    factory.Register<ScrubText>("ScrubText");
    factory.Register<RGBASlider>("RGBASlider");
    factory.Register<RGBASliderGroup>("RGBASliderGroup");
}

} // namespace UI
