#pragma once

#include "Canvas/UI/FontContext.h"
#include "Canvas/UI/InputMessage.h"
#include "Canvas/UI/Rect.h"
#include "TvBase/Controller/KeyValueCoding.h"
#include "TvBase/Util/String.h"
#include "TvBase/Util/checked_value.h"

#include <boost/any.hpp>
#include <boost/function.hpp>
#include <boost/shared_ptr.hpp>

#include <bitset>
#include <map>
#include <memory>
#include <vector>

namespace Command
{
class CommandInvocation;
class CommandManager;
} // namespace Command
namespace Language
{
class Translator;
}
namespace Util
{
class ConfigFile;
class PropertySerializer;
} // namespace Util

namespace UI
{

class CanvasPlatform;
class CanvasUICodeToken;
class DesignAid;
class Font;
class FontCache;
class Frame;
class Palette;
class PrimitiveFactory;
class WindowFactory;
class StringWidthCache;
class Window;
namespace Native
{
class HostWindow;
}

/// The per-process UI context: everything that windows share lives here. The fonts and extra
/// character fonts, the palette, the theme's widget factory, the property serializer, the
/// command manager, the translator, a key-value store, the tool-tip machinery and the list of
/// frames. Lists its frames but does not own them; each frame joins in its constructor and
/// leaves in its destructor. Made once, before any frame, and deleted after the last one, on
/// the UI thread. No operation reports an error: missing fonts or palette entries give null or
/// unset results. Not copyable.
class Canvas : public Controller::KeyValueCoding, public FontContext
{
public:
    /// Whether text widths are cached, and where "stringCache.dat" lives.
    struct FontCacheOptions
    {
        FontCacheOptions() : enabled(false), hasPath(false) {}

        bool enabled;
        String path;
        bool hasPath;

        /// No width cache.
        static FontCacheOptions NoCache() { return FontCacheOptions(); }
        /// A width cache in memory only.
        static FontCacheOptions CacheWithoutLoadingOrSaving();
        /// A width cache kept in `folder` ("" means the user's application data folder).
        static FontCacheOptions CacheInPath(String const& folder);
    };

    /// Tool-tip show delay and re-show interval, in milliseconds.
    enum : unsigned int
    {
        DefaultToolTipShowDelay = 750,
        DefaultToolTipReshowInterval = 1000,
        ToolTipPositionCheckInterval = 1000
    };

    /// Builds the shared parts in order: serializer, theme factory, command manager and the
    /// override path key "ResourceOverridePath.<name>"; tool-tip intervals and palette; the width
    /// cache when `fontCache` asks for one and the preference "ForceSystemFontRenderer" of
    /// "com.tavorin" is false; the config of "com.tavorin"; the resource override folder from
    /// that config at the override path key (an empty text means none); the standard property
    /// types. The two numbers are kept as given and read by nothing.
    explicit Canvas(String const& name, unsigned int number1 = 0, unsigned int number2 = 0,
                    String const& resourcePath = String(), String const& layoutFolder = String(),
                    FontCacheOptions const& fontCache = FontCacheOptions());
    /// Hides a showing tip, then frees the members in reverse order.
    ~Canvas() override;

    Canvas(Canvas const&) = delete;
    Canvas& operator=(Canvas const&) = delete;

    String const& GetName() const { return name; }
    unsigned int GetNumber1() const { return number1; }
    unsigned int GetNumber2() const { return number2; }
    String const& GetResourcePath() const { return resourcePath; }
    String const& GetLayoutFolder() const { return layoutFolder; }
    /// "ResourceOverridePath." + name: the config key of the design tool's resource folder.
    String const& GetOverridePathKey() const { return overridePathKey; }
    /// The shared config of "com.tavorin".
    Util::ConfigFile* GetConfigFile() const { return configFile.get(); }
    Util::PropertySerializer* GetPropertySerializer() const { return propertySerializer.get(); }
    PrimitiveFactory* GetPrimitiveFactory() const { return primitiveFactory.get(); }
    /// The factory that makes windows by type name for layouts and the design tools, made on
    /// first use with the built-in window types registered; it dies with the canvas.
    WindowFactory* GetWindowFactory();
    Command::CommandManager* GetCommandManager() const { return commandManager.get(); }

    /// The platform door for tips and native windows; null until the host layer sets one.
    void SetPlatform(boost::shared_ptr<CanvasPlatform> const& platform);
    CanvasPlatform* GetPlatform() const { return platform.get(); }

    // ---- key-value coding
    /// The value stored under `key`, or an empty any.
    boost::any GetValueForKey(String const& key) override;
    void SetValueForKey(String const& key, boost::any const& value);
    /// The stored keys in `String` order.
    std::vector<String> CopyKeys() override;

    // ---- frames
    std::vector<Frame*> const& GetFrames() const { return frames; }
    /// Called by the frame's constructor. The first frame of a canvas without fonts makes
    /// "Arial" at 11 points fonts 0, 1 and 2.
    void addFrame(Frame* frame);
    /// Called by the frame's constructor once it is complete: installs the theme's focus
    /// indicator, hidden.
    void initializeFrame(Frame* frame);
    /// Called by the frame's destructor: forgets every reference to it.
    void removeFrame(Frame* frame);
    Frame* GetActiveFrame() const { return activeFrame; }
    void SetActiveFrame(Frame* frame) { activeFrame = frame; }
    /// The frame that receives keyboard messages no window of another frame took.
    Frame* GetCurrentFrame() const { return currentFrame; }
    void SetCurrentFrame(Frame* frame) { currentFrame = frame; }
    /// When true, a frame whose native window lacks the keyboard focus only remembers the window
    /// to focus, and may give its native window the focus on a click.
    bool IsNativeFocusTracking() const { return nativeFocusTracking; }
    void SetNativeFocusTracking(bool on) { nativeFocusTracking = on; }
    /// The frame whose host holds `nativeWindow`; null for none or a null handle.
    Frame* FindFrameForNativeWindow(void* nativeWindow) const;
    /// The active native window when it belongs to a frame of this canvas; otherwise the native
    /// window of the current frame, or null.
    void* GetTopLevelActiveWindow() const;
    /// The native window under `screenPoint`, or null without a platform.
    void* GetWindowBeneathCursor(Point const& screenPoint) const;

    /// The master update: ticks every frame's timers in list order, then the tool tip.
    void TickFrameTimers();

    // ---- drawing
    void PushCurrentlyDrawingWindow(Window* window);
    /// Pops only when `window` is on top.
    void PopCurrentlyDrawingWindow(Window* window);
    /// The innermost window being drawn, or null outside a paint.
    Window* GetCurrentlyDrawingWindow() const;

    // ---- fonts
    /// Font `index`. With no fonts, null. An unset index or one past the end gives font 0 with
    /// `allowFallback`, and null without it. The canvas keeps ownership.
    Font* GetFont(checked_value<unsigned int> const& index, bool allowFallback = true) const;
    /// Stores `font` at `index`, growing the table with empty slots.
    void SetFont(unsigned int index, boost::shared_ptr<Font> const& font);
    std::size_t GetFontCount() const { return fonts.size(); }
    /// Loads extra font `index` on first use, then gives its slot, or slot 0 for an index out of
    /// range; null when there are no slots.
    Font* GetExtraFont(checked_value<unsigned int> const& index) override;
    void SetExtraFont(unsigned int index, boost::shared_ptr<Font> const& font);
    /// Whether extra font `index` (below 3) was asked for already.
    bool IsExtraFontLoaded(unsigned int index) const { return index < 3 && extraLoaded[index]; }
    /// The rendered-string cache, made on first use.
    FontCache* GetFontCache();
    /// Lists or unlists `window` (ignoring repeats) as one whose subtree caches rendered text.
    void SetFontCacheEnabled(Window* window, bool enabled);
    /// True when `window` or one of its ancestors is listed; `id` is then that listed window.
    bool IsFontCacheEnabled(Window const* window, unsigned long& id) const;
    /// The construction option, forced off when "ForceSystemFontRenderer" is true.
    bool IsFontCacheOptionEnabled() const { return fontCacheEnabled; }
    StringWidthCache* GetStringWidthCache() override { return stringWidthCache.get(); }
    void SetFontStringMappingFunction(boost::function<String(String)> const& f);
    bool IsFontStringMappingFunctionRegistered() const override;
    /// `text` through the mapping function, or unchanged.
    String ApplyFontStringMappingFunction(String text) const override;
    FontCache* GetFontCacheForDrawing(unsigned long& windowId) override;

    // ---- palette
    /// Takes ownership; null leaves the canvas without a palette.
    void SetPalette(Palette* palette);
    Palette* GetPalette() const { return palette.get(); }
    bool IsPaletteLoaded() const;
    void SetPaletteLoaded(bool loaded);
    void SetPaletteColor(String const& key, unsigned int color);
    bool HasPaletteColor(String const& key) const;
    checked_value<unsigned int> GetPaletteColor(String const& key) const;
    void GetPaletteColorKeys(std::vector<String>& keys) const;
    void SetPaletteAlpha(String const& key, unsigned char alpha);
    bool HasPaletteAlpha(String const& key) const;
    checked_value<unsigned char> GetPaletteAlpha(String const& key) const;
    void GetPaletteAlphaKeys(std::vector<String>& keys) const;
    void SetPaletteBool(String const& key, checked_value<bool> const& value);
    bool HasPaletteBool(String const& key) const;
    checked_value<bool> GetPaletteBool(String const& key) const;
    void GetPaletteBoolKeys(std::vector<String>& keys) const;
    void SetPaletteInt(String const& key, checked_value<int> const& value);
    bool HasPaletteInt(String const& key) const;
    checked_value<int> GetPaletteInt(String const& key) const;
    void GetPaletteIntKeys(std::vector<String>& keys) const;
    /// Opens the palette editor in its host window "PaletteEditor Host Window" tied to `frame`,
    /// or brings it to the front when it is open already: one editor per canvas.
    void ShowPaletteEditor(Frame* frame);
    /// The palette editor's host window while there is one; null otherwise.
    Native::HostWindow* GetPaletteEditorHostWindow() const { return paletteEditorHost.get(); }

    // ---- tool tips
    /// Turns the tip window's text into what it shows (and sizes it).
    typedef boost::function<void(String const&)> ToolTipTextSetter;
    /// Resets the tool-tip state and makes `tip` (a window of `GetToolTipFrame`) the tip and
    /// that frame's top-level window. Null removes the tip.
    void SetToolTip(Window* tip, ToolTipTextSetter const& setText);
    Window* GetToolTip() const { return toolTip; }
    /// The tool-tip host's frame, made on first use; null without a platform.
    Frame* GetToolTipFrame();
    /// Sees every mouse message of every frame (point in frame coordinates) before the design
    /// engine and the windows do: closes a showing tip on anything but a move inside its window
    /// and restarts the idle time.
    void HandleToolTipMouseMessage(Frame* frame, MouseMessage message, Point const& point,
                                   unsigned int flags, int delta);
    /// Closes a showing tip; called from a slot of `signalToolTipAboutToAppear`, it vetoes the
    /// tip about to appear.
    void ClearToolTip();
    /// Show delay and re-show interval.
    std::pair<unsigned int, unsigned int> GetToolTipIntervals() const
    {
        return std::make_pair(toolTipShowDelay, toolTipReshowInterval);
    }
    void SetToolTipIntervals(unsigned int showDelay, unsigned int reshowInterval);
    /// Shows `window`'s tip at the cursor unless a slot of its about-to-appear signal vetoes it.
    void SetToolTipWindow(Window* window);
    /// The window whose tip is showing, or null.
    Window* GetToolTipWindow() const { return currentTipWindow; }
    /// The window whose tip was closed and stays closed until the mouse leaves it.
    Window* GetSuppressedToolTipWindow() const { return suppressedTipWindow; }
    checked_value<Point> const& GetLastMousePoint() const { return lastMousePoint; }
    /// Told by a frame whenever a window dies or leaves it.
    void OnWindowDestroy(Window* window);

    // ---- translation, commands, code token, design
    /// Made on first use.
    Language::Translator* GetTranslator();
    void SetTranslator(boost::shared_ptr<Language::Translator> const& translator);
    /// `text` in the current language through the translator.
    String tr(String const& text, String const& context = String());
    CanvasUICodeToken* GetUICodeToken() const { return codeToken.get(); }
    void SetUICodeToken(boost::shared_ptr<CanvasUICodeToken> const& token) { codeToken = token; }
    bool ExecuteCommand(Command::CommandInvocation const& invocation);
    bool ExecuteCommand(String const& id, Window* window);
    /// Has every frame whose design isn't disabled read its design keys again.
    void UpdateDesignEnableFromConfigFile();
    /// The canvas-wide design flag: on from the start, cleared only while design tool windows
    /// are made, so that their frames never start a design of their own.
    bool IsDesignEnabled() const { return designEnabled; }
    void SetDesignEnabled(bool enabled) { designEnabled = enabled; }
    /// The Design Aid panel shared by all frames; null until live design first needs it.
    DesignAid* GetDesignAid() const { return designAid.get(); }
    /// Makes the Design Aid panel once, when the program has one.
    void initializeDesignAid();

private:
    void loadExtraCharacterFont(checked_value<unsigned int> const& index);
    void updateToolTip();
    bool findToolTipWindowHelper(Frame* frame, Window* window, Point const& point, Window*& found);
    bool isToolTipWindowObscured(Window* window, Point const& point) const;
    /// Hides a showing tip and notes when.
    void closeToolTip();
    void hideToolTip();
    void resetToolTipState();
    unsigned int now() const;
    /// `screenPoint` in the coordinates of `frame`.
    static Point toFramePoint(Frame* frame, Point const& screenPoint);

    String name;
    unsigned int number1;
    unsigned int number2;
    String resourcePath;
    String layoutFolder;
    bool designEnabled = true;
    std::unique_ptr<Util::PropertySerializer> propertySerializer;
    std::unique_ptr<PrimitiveFactory> primitiveFactory;
    std::unique_ptr<WindowFactory> windowFactory;
    std::unique_ptr<Command::CommandManager> commandManager;
    std::map<String, boost::any> values;
    std::vector<Frame*> frames;
    Frame* activeFrame = nullptr;
    Frame* currentFrame = nullptr;
    std::vector<Window*> currentlyDrawing;
    std::vector<boost::shared_ptr<Font>> fonts;
    std::vector<boost::shared_ptr<Font>> extraFonts;
    std::bitset<3> extraLoaded;
    std::unique_ptr<FontCache> fontCache;
    std::vector<Window*> fontCacheWindows;
    bool nativeFocusTracking = true;
    bool fontCacheEnabled = false;
    String overridePathKey;
    Window* toolTip = nullptr;
    ToolTipTextSetter toolTipText;
    Window* currentTipWindow = nullptr;
    Window* suppressedTipWindow = nullptr;
    unsigned int toolTipShowDelay = DefaultToolTipShowDelay;
    unsigned int toolTipReshowInterval = DefaultToolTipReshowInterval;
    checked_value<unsigned int> mouseIdleSince;
    checked_value<unsigned int> lastTipClosed;
    checked_value<unsigned int> lastPositionCheck;
    checked_value<Point> lastMousePoint;
    bool veto[2] = {false, false};
    std::unique_ptr<Palette> palette;
    /// The palette editor's host window, owned; made by `ShowPaletteEditor`.
    boost::shared_ptr<Native::HostWindow> paletteEditorHost;
    boost::shared_ptr<Language::Translator> translator;
    boost::shared_ptr<CanvasUICodeToken> codeToken;
    boost::shared_ptr<StringWidthCache> stringWidthCache;
    boost::function<String(String)> fontStringMapping;
    boost::shared_ptr<Util::ConfigFile> configFile;
    boost::shared_ptr<CanvasPlatform> platform;
    boost::shared_ptr<Native::HostWindow> designAidHost;
    boost::shared_ptr<DesignAid> designAid;
};

} // namespace UI
