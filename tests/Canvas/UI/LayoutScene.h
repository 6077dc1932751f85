#pragma once

// A canvas with the layout folder "UI/Layout", one frame over a memory draw context, a temp
// folder to serve as the resource override folder, and windows that record what layouts do.

#include "Canvas/UI/Canvas.h"
#include "Canvas/UI/Frame.h"
#include "Canvas/UI/MemoryDrawContext.h"
#include "Canvas/UI/Window.h"
#include "Canvas/UI/WindowFactory.h"
#include "TvBase/Util/ResourceManager.h"
#include "tests/support/TempFolder.h"

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace UI
{
namespace Test
{

/// Records metrics, layout-loaded calls and, through its "Children" property, how many
/// children existed when a layout set the property.
class LayoutProbe : public Window
{
public:
    LayoutProbe(Frame* frame, Window* parent, String const& name) : Window(frame, parent, name)
    {
        CreateProperty<int>("Children", -1);
        CreateProperty<String>("Label", String(""));
        GetPropertyChangedSignal("Children")->Connect(&LayoutProbe::childrenChanged, this);
    }

    void OnLayoutLoaded() override { ++layoutLoaded; }
    void onSetDynamicLayoutMetric(unsigned int index, int value) override
    {
        metrics.push_back(std::make_pair(index, value));
    }

    void childrenChanged() { childrenWhenSet = static_cast<int>(child_windows().size()); }

    int layoutLoaded = 0;
    int childrenWhenSet = -1;
    std::vector<std::pair<unsigned int, int>> metrics;
};

/// A probe of another class, never registered.
class UnregisteredProbe : public LayoutProbe
{
public:
    using LayoutProbe::LayoutProbe;
};

struct LayoutScene
{
    TestSupport::TempFolder override{"tv-layout"};
    Canvas canvas{"LayoutTest", 0, 0, String(), String("UI/Layout")};
    MemoryDrawContext context{"Layout Test Context"};
    std::unique_ptr<Frame> frame;

    LayoutScene()
    {
        frame.reset(new Frame(&canvas, nullptr, &context, Point(), "", Rect(0, 399, 0, 299)));
        std::filesystem::create_directories(override.Path() + "/UI/Layout");
        GetWindowFactory(&canvas)->Register<LayoutProbe>("LayoutProbe");
        Util::ResourceManager::Get().SetOverridePath(checked_value<FolderPath>());
    }

    ~LayoutScene()
    {
        frame.reset();
        Util::ResourceManager::Get().SetOverridePath(checked_value<FolderPath>());
    }

    FolderPath OverrideFolder() const { return FolderPath(override.Path().c_str()); }
    void UseOverrideFolder() { Util::ResourceManager::Get().SetOverridePath(OverrideFolder()); }

    /// Writes "UI/Layout/<name>.layout" into the override folder; returns its path.
    std::string WriteLayout(std::string const& name, std::string const& xml) const
    {
        return override.Write("UI/Layout/" + name + ".layout", xml);
    }

    std::string ReadLayout(std::string const& name) const
    {
        return TestSupport::ReadFile(override.Path() + "/UI/Layout/" + name + ".layout");
    }

    LayoutProbe* Probe(Window* parent, char const* name, int x = 0, int y = 0, int w = 10,
                       int h = 10)
    {
        LayoutProbe* probe = new LayoutProbe(frame.get(), parent, name);
        probe->SetGeometry(x, y, w, h);
        return probe;
    }
};

/// `body` inside a root element of the layout document type, with root attributes `attrs`.
inline std::string LayoutXml(std::string const& attrs, std::string const& body)
{
    return "<?xml version=\"1.0\" standalone=\"yes\"?>\n<TvCanvasLayout-1" +
           (attrs.empty() ? std::string() : " " + attrs) + ">" + body + "</TvCanvasLayout-1>";
}

} // namespace Test
} // namespace UI
