// The canvas, in sections:
//   construction and destruction
//   key-value coding
//   frames
//   drawing stack
//   fonts
//   palette
//   tool tips
//   translation, commands, design

#include "Canvas/UI/Canvas.h"

#include "Canvas/UI/Borders.h"
#include "Canvas/UI/CanvasPlatform.h"
#include "Canvas/UI/CanvasUICodeToken.h"
#include "Canvas/UI/Design.h"
#include "Canvas/UI/DesignAid.h"
#include "Canvas/UI/FocusIndicator.h"
#include "Canvas/UI/Font.h"
#include "Canvas/UI/FontCache.h"
#include "Canvas/UI/FontInfo.h"
#include "Canvas/UI/Frame.h"
#include "Canvas/UI/Native/HostWindow.h"
#include "Canvas/UI/Native/PlatformSupportFactory.h"
#include "Canvas/UI/Orientation.h"
#include "Canvas/UI/Palette.h"
#include "Canvas/UI/PrimitiveFactory.h"
#include "Canvas/UI/StringWidthCache.h"
#include "Canvas/UI/TestAutomationInterface.h"
#include "Canvas/UI/Window.h"
#include "Canvas/UI/WindowFactory.h"
#include "Canvas/UI/WindowFactoryRegistration/BuiltInWindowTypes.h"
#include "TvBase/Command/CommandManager.h"
#include "TvBase/Language/Translator.h"
#include "TvBase/Util/ConfigFile.h"
#include "TvBase/Util/FolderPath.h"
#include "TvBase/Util/PropertySerializer.h"
#include "TvBase/Util/ResourceManager.h"

#include <algorithm>

namespace UI
{

namespace
{

char const* const SharedConfigDomain = "com.tavorin";

struct ExtraFontFace
{
    char const* face;
    char const* fallback;
    float size;
};

// Faces that cover what the main font can't draw: a wide Unicode face, Korean, Chinese.
ExtraFontFace const ExtraFontFaces[3] = {
    {"Arial Unicode MS", "Arial", 11.0f},
    {"New Gulim", "Arial", 11.0f},
    {"Microsoft JhengHei", "Arial", 11.0f},
};

unsigned long windowId(Window const* window)
{
    return reinterpret_cast<unsigned long>(window);
}

} // namespace

// ============================================================================================
// construction and destruction
// ============================================================================================

Canvas::FontCacheOptions Canvas::FontCacheOptions::CacheWithoutLoadingOrSaving()
{
    FontCacheOptions options;
    options.enabled = true;
    return options;
}

Canvas::FontCacheOptions Canvas::FontCacheOptions::CacheInPath(String const& folder)
{
    FontCacheOptions options;
    options.enabled = true;
    options.path = folder;
    options.hasPath = true;
    return options;
}

Canvas::Canvas(String const& name, unsigned int number1, unsigned int number2,
               String const& resourcePath, String const& layoutFolder,
               FontCacheOptions const& fontCache)
    : name(name), number1(number1), number2(number2), resourcePath(resourcePath),
      layoutFolder(layoutFolder)
{
    propertySerializer.reset(new Util::PropertySerializer());
    primitiveFactory.reset(new PrimitiveFactory(GetCanvasTheme()));
    commandManager.reset(new Command::CommandManager());
    overridePathKey = String("ResourceOverridePath.") + name;

    SetToolTipIntervals(DefaultToolTipShowDelay, DefaultToolTipReshowInterval);
    palette.reset(new Palette());
    palette->SetDefaultPalette();

    // With the system renderer forced, widths come from a renderer that no cache may outguess.
    bool forceSystemRenderer =
        Util::ConfigFile(SharedConfigDomain).GetBool("ForceSystemFontRenderer", false);
    fontCacheEnabled = fontCache.enabled && !forceSystemRenderer;
    if (fontCacheEnabled)
    {
        if (fontCache.hasPath)
            stringWidthCache.reset(new StringWidthCache(this, fontCache.path));
        else
            stringWidthCache.reset(new StringWidthCache(this));
    }

    extraLoaded.reset();

    configFile.reset(new Util::ConfigFile(SharedConfigDomain));

    // The design tool's chosen resource folder survives a restart through this key.
    String overridePath = configFile->GetString(overridePathKey, String(""));
    if (overridePath.IsEmpty())
        Util::ResourceManager::Get().SetOverridePath(checked_value<FolderPath>());
    else
        Util::ResourceManager::Get().SetOverridePath(FolderPath(overridePath));

    propertySerializer->RegisterStandardTypes();
    // The toolkit's own named enumerations, so that layouts can set them on any window.
    static char const* borderStyles[] = {"None",
                                         "Outline",
                                         "Shadow From Top",
                                         "Shadow From Top Left",
                                         "Rounded Rect",
                                         "Rounded Rect Shadow Bottom Right"};
    static char const* orientations[] = {"Horizontal", "Vertical"};
    propertySerializer->RegisterNamedEnumType<Borders::BorderStyle>(
        "Border Style", array_ref<char const*>(borderStyles, 6));
    propertySerializer->RegisterNamedEnumType<Orientation>("Orientation",
                                                           array_ref<char const*>(orientations, 2));
    // Any program on the toolkit can be driven, not only those that tell the bridge.
    TestAutomationInterface::SetCanvas(this);
}

WindowFactory* Canvas::GetWindowFactory()
{
    if (!windowFactory)
    {
        windowFactory.reset(new WindowFactory());
        RegisterBuiltInWindowTypes(*windowFactory);
    }
    return windowFactory.get();
}

Canvas::~Canvas()
{
    // The palette editor's windows go first, while everything they use is whole.
    paletteEditorHost.reset();
    // The panel's frame owns the panel; the host owns the frame. The pointer goes first, so
    // that the panel's dying windows aren't reported to it.
    designAid.reset();
    designAidHost.reset();
    TestAutomationInterface::ClearCanvas(this);
    hideToolTip();
    resetToolTipState();
    toolTip = nullptr;
    // The width cache saves itself and may still ask for the mapping function: drop it first.
    stringWidthCache.reset();
    // The platform may own the tool-tip frame, which leaves this canvas as it dies: let it go
    // while every member is still whole, and without a platform to call back.
    boost::shared_ptr<CanvasPlatform> leaving;
    leaving.swap(platform);
    leaving.reset();
}

void Canvas::SetPlatform(boost::shared_ptr<CanvasPlatform> const& p)
{
    hideToolTip();
    resetToolTipState();
    platform = p;
}

// ============================================================================================
// key-value coding
// ============================================================================================

boost::any Canvas::GetValueForKey(String const& key)
{
    auto it = values.find(key);
    return it == values.end() ? boost::any() : it->second;
}

void Canvas::SetValueForKey(String const& key, boost::any const& value)
{
    values[key] = value;
}

std::vector<String> Canvas::CopyKeys()
{
    std::vector<String> keys;
    keys.reserve(values.size());
    for (auto const& entry : values)
        keys.push_back(entry.first);
    return keys;
}

// ============================================================================================
// frames
// ============================================================================================

void Canvas::addFrame(Frame* frame)
{
    if (!frame || std::find(frames.begin(), frames.end(), frame) != frames.end())
        return;
    frames.push_back(frame);
    // A first start without any resource still has readable text.
    if (fonts.empty())
    {
        boost::shared_ptr<Font> arial(new Font(this, FontInfo("Arial", 11.0f)));
        for (unsigned int i = 0; i < 3; ++i)
            SetFont(i, arial);
    }
}

void Canvas::initializeFrame(Frame* frame)
{
    if (!frame || frame->GetFocusIndicator())
        return;
    if (FocusIndicator* indicator = primitiveFactory->CreateFocusIndicator(frame, nullptr))
        frame->SetFocusIndicator(indicator);
}

void Canvas::removeFrame(Frame* frame)
{
    if (designAid)
        designAid->OnFrameDestroy(frame);
    frames.erase(std::remove(frames.begin(), frames.end(), frame), frames.end());
    if (activeFrame == frame)
        activeFrame = nullptr;
    if (currentFrame == frame)
        currentFrame = nullptr;
}

Frame* Canvas::FindFrameForNativeWindow(void* nativeWindow) const
{
    if (!nativeWindow)
        return nullptr;
    for (Frame* frame : frames)
        if (frame->GetNativeWindowHandle() == nativeWindow)
            return frame;
    return nullptr;
}

void* Canvas::GetTopLevelActiveWindow() const
{
    if (platform)
    {
        void* active = platform->GetTopLevelActiveWindow();
        if (FindFrameForNativeWindow(active))
            return active;
    }
    return currentFrame ? currentFrame->GetNativeWindowHandle() : nullptr;
}

void* Canvas::GetWindowBeneathCursor(Point const& screenPoint) const
{
    return platform ? platform->GetWindowBeneathPoint(screenPoint) : nullptr;
}

void Canvas::TickFrameTimers()
{
    // By index: a timer may close a frame, which then leaves the list.
    for (std::size_t i = 0; i < frames.size(); ++i)
        frames[i]->tickTimers();
    updateToolTip();
}

// ============================================================================================
// drawing stack
// ============================================================================================

void Canvas::PushCurrentlyDrawingWindow(Window* window)
{
    currentlyDrawing.push_back(window);
}

void Canvas::PopCurrentlyDrawingWindow(Window* window)
{
    if (!currentlyDrawing.empty() && currentlyDrawing.back() == window)
        currentlyDrawing.pop_back();
}

Window* Canvas::GetCurrentlyDrawingWindow() const
{
    return currentlyDrawing.empty() ? nullptr : currentlyDrawing.back();
}

// ============================================================================================
// fonts
// ============================================================================================

Font* Canvas::GetFont(checked_value<unsigned int> const& index, bool allowFallback) const
{
    if (fonts.empty())
        return nullptr;
    if (index && *index < fonts.size())
        return fonts[*index].get();
    return allowFallback ? fonts[0].get() : nullptr;
}

void Canvas::SetFont(unsigned int index, boost::shared_ptr<Font> const& font)
{
    if (index >= fonts.size())
        fonts.resize(index + 1);
    fonts[index] = font;
}

Font* Canvas::GetExtraFont(checked_value<unsigned int> const& index)
{
    loadExtraCharacterFont(index);
    if (extraFonts.empty())
        return nullptr;
    if (index && *index < extraFonts.size())
        return extraFonts[*index].get();
    return extraFonts[0].get();
}

void Canvas::SetExtraFont(unsigned int index, boost::shared_ptr<Font> const& font)
{
    if (index >= extraFonts.size())
        extraFonts.resize(index + 1);
    extraFonts[index] = font;
}

void Canvas::loadExtraCharacterFont(checked_value<unsigned int> const& index)
{
    // The extra faces are large: each is opened only when some text first needs it.
    if (!index || *index >= 3 || extraLoaded[*index])
        return;
    extraLoaded[*index] = true;
    ExtraFontFace const& face = ExtraFontFaces[*index];
    FontInfo info(face.face, face.size);
    info.fallbackFaceName = face.fallback;
    info.forceAutoHint = true;
    SetExtraFont(*index, boost::shared_ptr<Font>(new Font(this, info)));
}

FontCache* Canvas::GetFontCache()
{
    if (!fontCache)
        fontCache.reset(new FontCache());
    return fontCache.get();
}

void Canvas::SetFontCacheEnabled(Window* window, bool enabled)
{
    if (!window)
        return;
    FontCache* cache = GetFontCache();
    auto it = std::find(fontCacheWindows.begin(), fontCacheWindows.end(), window);
    if (enabled && it == fontCacheWindows.end())
        fontCacheWindows.push_back(window);
    else if (!enabled && it != fontCacheWindows.end())
        fontCacheWindows.erase(it);
    cache->SetCacheEnabled(windowId(window), enabled);
}

bool Canvas::IsFontCacheEnabled(Window const* window, unsigned long& id) const
{
    for (Window const* w = window; w; w = w->GetParent())
    {
        if (std::find(fontCacheWindows.begin(), fontCacheWindows.end(), w) !=
            fontCacheWindows.end())
        {
            id = windowId(w);
            return true;
        }
    }
    return false;
}

void Canvas::SetFontStringMappingFunction(boost::function<String(String)> const& f)
{
    fontStringMapping = f;
}

bool Canvas::IsFontStringMappingFunctionRegistered() const
{
    return !fontStringMapping.empty();
}

String Canvas::ApplyFontStringMappingFunction(String text) const
{
    return fontStringMapping ? fontStringMapping(text) : text;
}

FontCache* Canvas::GetFontCacheForDrawing(unsigned long& id)
{
    Window* drawing = GetCurrentlyDrawingWindow();
    if (!fontCache || !drawing || !IsFontCacheEnabled(drawing, id))
        return nullptr;
    return fontCache.get();
}

// ============================================================================================
// palette
// ============================================================================================

void Canvas::SetPalette(Palette* p)
{
    palette.reset(p);
}

bool Canvas::IsPaletteLoaded() const
{
    return palette && palette->IsLoaded();
}

void Canvas::SetPaletteLoaded(bool loaded)
{
    if (palette)
        palette->SetLoaded(loaded);
}

void Canvas::SetPaletteColor(String const& key, unsigned int color)
{
    if (palette)
        palette->SetColor(key, color);
}

bool Canvas::HasPaletteColor(String const& key) const
{
    return palette && palette->HasColor(key);
}

checked_value<unsigned int> Canvas::GetPaletteColor(String const& key) const
{
    return palette ? palette->GetColor(key) : checked_value<unsigned int>();
}

void Canvas::GetPaletteColorKeys(std::vector<String>& keys) const
{
    keys.clear();
    if (palette)
        palette->GetColorKeys(keys);
}

void Canvas::SetPaletteAlpha(String const& key, unsigned char alpha)
{
    if (palette)
        palette->SetAlpha(key, alpha);
}

bool Canvas::HasPaletteAlpha(String const& key) const
{
    return palette && palette->HasAlpha(key);
}

checked_value<unsigned char> Canvas::GetPaletteAlpha(String const& key) const
{
    return palette ? palette->GetAlpha(key) : checked_value<unsigned char>();
}

void Canvas::GetPaletteAlphaKeys(std::vector<String>& keys) const
{
    keys.clear();
    if (palette)
        palette->GetAlphaKeys(keys);
}

void Canvas::SetPaletteBool(String const& key, checked_value<bool> const& value)
{
    if (palette)
        palette->SetBool(key, value);
}

bool Canvas::HasPaletteBool(String const& key) const
{
    return palette && palette->HasBool(key);
}

checked_value<bool> Canvas::GetPaletteBool(String const& key) const
{
    return palette ? palette->GetBool(key) : checked_value<bool>();
}

void Canvas::GetPaletteBoolKeys(std::vector<String>& keys) const
{
    keys.clear();
    if (palette)
        palette->GetBoolKeys(keys);
}

void Canvas::SetPaletteInt(String const& key, checked_value<int> const& value)
{
    if (palette)
        palette->SetInt(key, value);
}

bool Canvas::HasPaletteInt(String const& key) const
{
    return palette && palette->HasInt(key);
}

checked_value<int> Canvas::GetPaletteInt(String const& key) const
{
    return palette ? palette->GetInt(key) : checked_value<int>();
}

void Canvas::GetPaletteIntKeys(std::vector<String>& keys) const
{
    keys.clear();
    if (palette)
        palette->GetIntKeys(keys);
}

// ============================================================================================
// tool tips
// ============================================================================================

unsigned int Canvas::now() const
{
    return platform ? platform->GetTickCount() : 0;
}

Point Canvas::toFramePoint(Frame* frame, Point const& screenPoint)
{
    Point origin = frame->GetScreenPos();
    return Point(screenPoint.x - origin.x, screenPoint.y - origin.y);
}

void Canvas::SetToolTip(Window* tip, ToolTipTextSetter const& setText)
{
    hideToolTip();
    resetToolTipState();
    toolTip = tip;
    toolTipText = setText;
    if (!tip)
        return;
    if (Frame* frame = GetToolTipFrame())
        frame->SetTopLevelWindow(tip);
}

Frame* Canvas::GetToolTipFrame()
{
    return platform ? platform->GetToolTipFrame() : nullptr;
}

void Canvas::SetToolTipIntervals(unsigned int showDelay, unsigned int reshowInterval)
{
    toolTipShowDelay = showDelay;
    toolTipReshowInterval = reshowInterval;
}

void Canvas::resetToolTipState()
{
    currentTipWindow = nullptr;
    suppressedTipWindow = nullptr;
    mouseIdleSince = checked_value<unsigned int>();
    lastTipClosed = checked_value<unsigned int>();
    lastPositionCheck = checked_value<unsigned int>();
    veto[0] = veto[1] = false;
}

void Canvas::hideToolTip()
{
    if (toolTip)
        toolTip->Hide();
    if (platform && toolTip)
        platform->HideToolTipHost();
}

void Canvas::closeToolTip()
{
    // Both flags set: a tip being decided on right now is vetoed as well.
    veto[0] = veto[1] = true;
    hideToolTip();
    lastTipClosed = now();
    currentTipWindow = nullptr;
    mouseIdleSince = checked_value<unsigned int>();
}

void Canvas::ClearToolTip()
{
    if (veto[1])
    {
        veto[0] = true;
        return;
    }
    if (currentTipWindow)
        closeToolTip();
}

void Canvas::updateToolTip()
{
    if (!toolTip || !platform)
        return;
    unsigned int tick = now();
    unsigned int delay = toolTipShowDelay;
    if (lastTipClosed && tick - *lastTipClosed < toolTipReshowInterval)
        delay = 0;

    if (mouseIdleSince && tick - *mouseIdleSince >= delay)
    {
        mouseIdleSince = checked_value<unsigned int>();
        Point cursor = platform->GetCursorScreenPos();
        Frame* frame = FindFrameForNativeWindow(platform->GetWindowBeneathPoint(cursor));
        if (!frame)
            return;
        Window* found = nullptr;
        if (!frame->GetDesign() || !frame->GetDesign()->IsActive())
        {
            Point point = toFramePoint(frame, cursor);
            std::vector<Window*> const& tops = frame->GetTopLevelWindows();
            for (std::size_t i = tops.size(); i-- > 0;)
            {
                Window* top = tops[i];
                if (!top || top == frame->GetFocusIndicator() || !top->IsVisible())
                    continue;
                if (findToolTipWindowHelper(frame, top, point, found))
                    break;
            }
        }
        if (found && !found->IsToolTipBlocker())
            SetToolTipWindow(found);
    }

    if (!currentTipWindow)
        return;
    // The hover test runs once a second, not on every tick.
    if (lastPositionCheck && tick - *lastPositionCheck < ToolTipPositionCheckInterval)
        return;
    lastPositionCheck = tick;
    Frame* tipFrame = currentTipWindow->GetFrame();
    Point point = toFramePoint(tipFrame, platform->GetCursorScreenPos());
    if (currentTipWindow->GetClippedGlobalGeometry().Contains(point))
        return;
    closeToolTip();
    mouseIdleSince = tick;
    suppressedTipWindow = nullptr;
}

bool Canvas::findToolTipWindowHelper(Frame* frame, Window* window, Point const& point,
                                     Window*& found)
{
    if (!window->GetClippedGlobalGeometry().Contains(point))
        return false;
    std::vector<Window*> const& children = window->child_windows();
    for (std::size_t i = children.size(); i-- > 0;)
    {
        Window* child = children[i];
        if (child->IsVisible() && findToolTipWindowHelper(frame, child, point, found))
            return true;
    }
    if (window->IsToolTipBlocker())
    {
        found = window;
        return true;
    }
    if (window->HasToolTip() && window != suppressedTipWindow &&
        !isToolTipWindowObscured(window, point))
    {
        found = window;
        return true;
    }
    return false;
}

bool Canvas::isToolTipWindowObscured(Window* window, Point const& point) const
{
    for (Window* w = window; w; w = w->GetParent())
    {
        Window* parent = w->GetParent();
        std::vector<Window*> const& siblings =
            parent ? parent->child_windows() : w->GetFrame()->GetTopLevelWindows();
        auto it = std::find(siblings.begin(), siblings.end(), w);
        if (it == siblings.end())
            continue;
        for (++it; it != siblings.end(); ++it)
        {
            Window* above = *it;
            // The focus indicator marks a window; it never hides one.
            if (!above || above == w->GetFrame()->GetFocusIndicator())
                continue;
            if (above->IsVisible() && above->GetClippedGlobalGeometry().Contains(point))
                return true;
        }
    }
    return false;
}

void Canvas::SetToolTipWindow(Window* window)
{
    if (!toolTip || !window)
        return;
    veto[0] = false;
    veto[1] = true;
    window->signalToolTipAboutToAppear(window);
    bool vetoed = veto[0];
    veto[0] = veto[1] = false;
    if (vetoed)
        return;

    currentTipWindow = window;
    suppressedTipWindow = window;
    lastPositionCheck = now();
    String text = window->GetToolTipText();
    if (text.IsEmpty())
    {
        hideToolTip();
        currentTipWindow = nullptr;
        return;
    }
    if (toolTipText)
        toolTipText(text);
    toolTip->Show();
    if (!platform)
        return;
    Rect place(platform->GetCursorScreenPos(), toolTip->GetGeometry().GetSize());
    platform->ShowToolTipHost(platform->TrimToMonitorScreenRect(place));
}

void Canvas::HandleToolTipMouseMessage(Frame* frame, MouseMessage message, Point const& point,
                                       unsigned int, int)
{
    if (toolTip && frame == toolTip->GetFrame())
        return;
    bool move = message == MouseMove;
    if (suppressedTipWindow && (suppressedTipWindow->GetFrame() != frame ||
                                !suppressedTipWindow->GetClippedGlobalGeometry().Contains(point)))
        suppressedTipWindow = nullptr;
    if (currentTipWindow)
    {
        bool insideTip = currentTipWindow->GetFrame() == frame &&
                         currentTipWindow->GetClippedGlobalGeometry().Contains(point);
        if (!move || !insideTip)
            closeToolTip();
    }
    if (!move)
        lastTipClosed = checked_value<unsigned int>();
    bool samePoint =
        lastMousePoint && (*lastMousePoint).x == point.x && (*lastMousePoint).y == point.y;
    if (currentTipWindow || !move || !samePoint)
        mouseIdleSince = now();
    lastMousePoint = point;
}

void Canvas::OnWindowDestroy(Window* window)
{
    if (designAid)
        designAid->OnWindowDestroy(window);
    // A window can die in the middle of its own paint only by a bug, but the stack must never
    // keep a dead pointer.
    currentlyDrawing.erase(std::remove(currentlyDrawing.begin(), currentlyDrawing.end(), window),
                           currentlyDrawing.end());
    auto cached = std::find(fontCacheWindows.begin(), fontCacheWindows.end(), window);
    if (cached != fontCacheWindows.end())
    {
        fontCacheWindows.erase(cached);
        fontCache->SetCacheEnabled(windowId(window), false);
    }
    if (suppressedTipWindow == window)
        suppressedTipWindow = nullptr;
    if (currentTipWindow == window)
        closeToolTip();
    if (toolTip && toolTip == window)
    {
        Frame* tipFrame = toolTip->GetFrame();
        if (platform)
            platform->HideToolTipHost();
        resetToolTipState();
        toolTip = nullptr;
        toolTipText.clear();
        if (tipFrame && tipFrame->GetTopLevelWindow() == window)
            tipFrame->SetTopLevelWindow(nullptr);
    }
}

// ============================================================================================
// translation, commands, design
// ============================================================================================

Language::Translator* Canvas::GetTranslator()
{
    if (!translator)
        translator.reset(new Language::Translator());
    return translator.get();
}

void Canvas::SetTranslator(boost::shared_ptr<Language::Translator> const& t)
{
    translator = t;
}

String Canvas::tr(String const& text, String const& context)
{
    return GetTranslator()->Translate(text, context);
}

bool Canvas::ExecuteCommand(Command::CommandInvocation const& invocation)
{
    return commandManager->ExecuteCommand(invocation);
}

bool Canvas::ExecuteCommand(String const& id, Window* window)
{
    return commandManager->ExecuteCommand(id, window);
}

void Canvas::UpdateDesignEnableFromConfigFile()
{
    for (Frame* frame : frames)
        if (!frame->IsDesignDisable() && frame->GetDesign())
            frame->GetDesign()->UpdateFromConfigFile();
}

void Canvas::initializeDesignAid()
{
    if (designAidHost)
        return;
    // The panel's frame is made with the design flag down, so that it never starts a design of
    // its own.
    bool const enabled = designEnabled;
    designEnabled = false;
    designAidHost.reset(Native::PlatformSupportFactory::CreateHostWindow(
        this, String("Design Aid Host Window"), nullptr, configFile.get()));
    Frame* frame = designAidHost ? designAidHost->GetFrame() : nullptr;
    // The frame owns the panel, as it owns every top-level window.
    if (frame)
        designAid.reset(new DesignAid(frame, designAidHost.get()), [](DesignAid*) {});
    designEnabled = enabled;
}

} // namespace UI
