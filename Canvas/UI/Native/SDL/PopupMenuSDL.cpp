// The popup menu over SDL: one borderless popup window for each open level of the menu,
// painted here with the toolkit's font, and the nested loop that runs while it is shown.
//
//   - painting one level
//   - the menu's windows and input
//   - PopupMenu::Show

#include "Canvas/UI/Canvas.h"
#include "Canvas/UI/DIBits.h"
#include "Canvas/UI/Font.h"
#include "Canvas/UI/Native/HostWindow.h"
#include "Canvas/UI/Native/PlatformSupportFactory.h"
#include "Canvas/UI/Native/PopupMenu.h"
#include "Canvas/UI/Native/PopupMenuTracker.h"
#include "Canvas/UI/Native/SDL/X11WakeUpGuard.h"
#include "Canvas/UI/TestAutomationInterface.h"

#include <SDL.h>
#include <boost/shared_array.hpp>

#include <algorithm>

namespace UI
{
namespace Native
{

namespace
{

// ============================================================================================
// painting one level
// ============================================================================================

unsigned int const MenuBackground = 0xFFF6F6F6;
unsigned int const MenuFrame = 0xFF8A8A8A;
unsigned int const MenuText = 0xFF000000;
unsigned int const MenuDisabledText = 0xFFA0A0A0;
unsigned int const MenuHighlight = 0xFF3A78D0;
unsigned int const MenuHighlightText = 0xFFFFFFFF;
unsigned int const MenuSeparator = 0xFFCFCFCF;

class LevelPainter
{
public:
    LevelPainter(Size const& size) : size(size), pixels(new unsigned int[size.width * size.height])
    {
    }

    void Paint(PopupMenuTracker::Level const& level, Font* font, int lineHeight)
    {
        fill(Rect(0, size.width - 1, 0, size.height - 1), MenuFrame);
        fill(Rect(1, size.width - 2, 1, size.height - 2), MenuBackground);
        auto const& entries = level.menu->GetEntries();
        DIBits bits(pixels, size.width, size.width, size.height, false);
        for (std::size_t i = 0; i < entries.size(); ++i)
        {
            PopupMenu::Entry const& entry = entries[i];
            Rect const row = level.rows[i];
            if (entry.kind == PopupMenu::Entry::Kind::Separator)
            {
                int const y = row.top + row.Height() / 2;
                fill(Rect(row.left + 4, row.right - 4, y, y), MenuSeparator);
                continue;
            }
            bool const highlighted = static_cast<int>(i) == level.highlighted;
            if (highlighted)
                fill(row, MenuHighlight);
            unsigned int const color = highlighted     ? MenuHighlightText
                                       : entry.enabled ? MenuText
                                                       : MenuDisabledText;
            int const middle = row.top + row.Height() / 2;
            if (entry.checked)
                checkMark(Point(row.left + 6, middle), color);
            if (entry.kind == PopupMenu::Entry::Kind::Submenu)
                arrow(Point(row.right - 10, middle), color);
            if (font && !entry.caption.IsEmpty())
            {
                Rect const clip(row.left + PopupMenuTracker::CheckColumn,
                                row.right - PopupMenuTracker::ArrowColumn / 2, row.top, row.bottom);
                font->RenderText(Point(clip.left, middle - lineHeight / 2), entry.caption, color,
                                 255, clip, bits, HAlignLeft, VAlignTop, Rect());
            }
        }
    }

    void Present(SDL_Window* window)
    {
        SDL_Surface* surface = SDL_GetWindowSurface(window);
        SDL_Surface* source = SDL_CreateRGBSurfaceWithFormatFrom(
            pixels.get(), size.width, size.height, 32, size.width * 4, SDL_PIXELFORMAT_ARGB8888);
        if (surface && source)
        {
            SDL_BlitSurface(source, nullptr, surface, nullptr);
            SDL_UpdateWindowSurface(window);
        }
        if (source)
            SDL_FreeSurface(source);
    }

private:
    void fill(Rect const& r, unsigned int color)
    {
        Rect const clipped = r & Rect(0, size.width - 1, 0, size.height - 1);
        for (int y = clipped.top; y <= clipped.bottom; ++y)
            std::fill(pixels.get() + y * size.width + clipped.left,
                      pixels.get() + y * size.width + clipped.right + 1, color);
    }

    /// A tick two pixels thick: a short stroke down-right, then a long one up-right.
    void checkMark(Point const& at, unsigned int color)
    {
        for (int i = 0; i < 4; ++i)
            fill(Rect(at.x + i, at.x + i, at.y - 1 + i, at.y + i), color);
        for (int i = 0; i < 6; ++i)
            fill(Rect(at.x + 4 + i, at.x + 4 + i, at.y + 1 - i, at.y + 2 - i), color);
    }

    /// A triangle pointing right.
    void arrow(Point const& at, unsigned int color)
    {
        for (int i = 0; i < 4; ++i)
            fill(Rect(at.x + i, at.x + i, at.y - 3 + i, at.y + 3 - i), color);
    }

    Size size;
    boost::shared_array<unsigned int> pixels;
};

// ============================================================================================
// the menu's windows and input
// ============================================================================================

class PopupMenuWindows
{
public:
    PopupMenuWindows(PopupMenuTracker& tracker, Font* font, int lineHeight)
        : tracker(tracker), font(font), lineHeight(lineHeight)
    {
        // The menu is modal over keys and the mouse: it takes them before the host's loop sees
        // them, whichever window they are addressed to (the desktop may give the keyboard to
        // the menu's windows, or leave it with the window that opened the menu).
        SDL_GetEventFilter(&previousFilter, &previousFilterData);
        SDL_SetEventFilter(&PopupMenuWindows::filter, this);
        // Just after another menu, the keyboard may still be on its way back to its owner.
        static Uint32 lastOwnerId = 0;
        if (SDL_Window* focused = SDL_GetKeyboardFocus())
            lastOwnerId = SDL_GetWindowID(focused);
        ownerId = lastOwnerId;
    }

    ~PopupMenuWindows()
    {
        SDL_SetEventFilter(previousFilter, previousFilterData);
        while (!windows.empty())
            closeLast();
        // The keyboard goes back to the window that had it before the menu.
        if (SDL_Window* owner = ownerId ? SDL_GetWindowFromID(ownerId) : nullptr)
            SDL_SetWindowInputFocus(owner);
    }

    PopupMenuWindows(PopupMenuWindows const&) = delete;
    PopupMenuWindows& operator=(PopupMenuWindows const&) = delete;

    /// Brings the windows in line with the tracker's open levels and repaints them; false when
    /// a window could not be made.
    bool Sync()
    {
        auto const& levels = tracker.GetLevels();
        bool closed = false;
        while (windows.size() > levels.size() ||
               (!windows.empty() && windows.back().menu != levels[windows.size() - 1].menu))
        {
            closeLast();
            closed = true;
        }
        // The desktop gives the keyboard to each menu window shown, and to nobody when the one
        // that had it goes: back to the innermost one left.
        if (closed && !windows.empty() && windows.size() == levels.size())
        {
            transferring = true;
            SDL_SetWindowInputFocus(windows.back().window);
        }
        while (windows.size() < levels.size())
            if (!open(levels[windows.size()]))
                return false;
        for (std::size_t i = 0; i < windows.size(); ++i)
            paint(i);
        return true;
    }

    /// True when the program's windows lost the keyboard to another program since the last
    /// call.
    bool TakeFocusLoss()
    {
        bool const lost = focusLost && !transferring && !SDL_GetKeyboardFocus();
        focusLost = false;
        return lost;
    }

private:
    struct LevelWindow
    {
        PopupMenu const* menu = nullptr;
        SDL_Window* window = nullptr;
        Uint32 id = 0;
        Size size;
    };

    bool open(PopupMenuTracker::Level const& level)
    {
        Rect const& r = level.screenRect;
        SDL_Window* window = SDL_CreateWindow("Popup Menu", r.left, r.top, r.Width(), r.Height(),
                                              SDL_WINDOW_POPUP_MENU | SDL_WINDOW_BORDERLESS |
                                                  SDL_WINDOW_ALWAYS_ON_TOP |
                                                  SDL_WINDOW_SKIP_TASKBAR | SDL_WINDOW_HIDDEN);
        if (!window)
            return false;
        windows.push_back({level.menu, window, SDL_GetWindowID(window), r.GetSize()});
        paint(windows.size() - 1);
        transferring = true;
        SDL_ShowWindow(window);
        TestAutomationInterface::SendWindow("Show", String("Popup Menu"), r.ToString());
        return true;
    }

    void closeLast()
    {
        SDL_DestroyWindow(windows.back().window);
        windows.pop_back();
        TestAutomationInterface::SendWindow("Destroy", String("Popup Menu"),
                                            String::Number(static_cast<int>(windows.size())));
    }

    void paint(std::size_t index)
    {
        LevelWindow const& w = windows[index];
        LevelPainter painter(w.size);
        painter.Paint(tracker.GetLevels()[index], font, lineHeight);
        painter.Present(w.window);
    }

    bool isOurs(Uint32 windowId) const
    {
        return std::any_of(windows.begin(), windows.end(),
                           [windowId](LevelWindow const& w) { return w.id == windowId; });
    }

    /// A point of a mouse event of any of the program's windows, on the screen.
    static Point screenPoint(Uint32 windowId, int x, int y)
    {
        int left = 0, top = 0;
        if (SDL_Window* window = SDL_GetWindowFromID(windowId))
            SDL_GetWindowPosition(window, &left, &top);
        return Point(left + x, top + y);
    }

    void key(SDL_Keysym const& keysym)
    {
        switch (keysym.sym)
        {
        case SDLK_UP:
            tracker.Up();
            break;
        case SDLK_DOWN:
            tracker.Down();
            break;
        case SDLK_LEFT:
            tracker.Left();
            break;
        case SDLK_RIGHT:
            tracker.Right();
            break;
        case SDLK_RETURN:
        case SDLK_KP_ENTER:
        case SDLK_SPACE:
            tracker.Return();
            break;
        case SDLK_ESCAPE:
            tracker.Escape();
            break;
        default:
            if (!(keysym.mod & (KMOD_CTRL | KMOD_ALT | KMOD_GUI)) &&
                ((keysym.sym >= SDLK_a && keysym.sym <= SDLK_z) ||
                 (keysym.sym >= SDLK_0 && keysym.sym <= SDLK_9)))
                tracker.Letter(static_cast<char>(keysym.sym));
            break;
        }
    }

    /// True when the event is the menu's alone and the host must not see it.
    bool handle(SDL_Event const& event)
    {
        if (tracker.IsDone())
            return false;
        switch (event.type)
        {
        case SDL_KEYDOWN:
            key(event.key.keysym);
            break;
        case SDL_KEYUP:
        case SDL_TEXTEDITING:
        case SDL_TEXTINPUT:
        case SDL_MOUSEWHEEL:
            return true;
        case SDL_MOUSEMOTION:
            tracker.Move(screenPoint(event.motion.windowID, event.motion.x, event.motion.y));
            break;
        case SDL_MOUSEBUTTONDOWN:
        {
            Point const point = screenPoint(event.button.windowID, event.button.x, event.button.y);
            // A press outside dismisses at once; inside, the release chooses.
            if (tracker.HitTest(point).first < 0)
                tracker.Dismiss();
            else
            {
                pressed = true;
                tracker.Move(point);
            }
            break;
        }
        case SDL_MOUSEBUTTONUP:
            // The release of the press that opened the menu chooses nothing.
            if (!pressed)
                return true;
            tracker.Click(screenPoint(event.button.windowID, event.button.x, event.button.y));
            break;
        case SDL_WINDOWEVENT:
        {
            // Focus moving between the program's windows, the menu's own included, is no loss;
            // a loss that the next look finds with no window of the program focused is.
            bool const ours = isOurs(event.window.windowID);
            if (event.window.event == SDL_WINDOWEVENT_FOCUS_GAINED)
                transferring = false;
            else if (event.window.event == SDL_WINDOWEVENT_FOCUS_LOST)
                focusLost = true;
            return ours;
        }
        case SDL_QUIT:
            tracker.Dismiss();
            return false;
        default:
            return false;
        }
        return true;
    }

    static int filter(void* self, SDL_Event* event)
    {
        PopupMenuWindows* menu = static_cast<PopupMenuWindows*>(self);
        // Events pushed from other threads (posted messages) only pass through.
        if (SDL_ThreadID() == menu->thread && menu->handle(*event))
        {
            // Taken by the menu: what the host's loop receives instead only ends its wait, so
            // that the nested loop brings the windows in line.
            SDL_zerop(event);
            event->type = SDL_USEREVENT;
            event->user.code = -1;
        }
        return menu->previousFilter ? menu->previousFilter(menu->previousFilterData, event) : 1;
    }

    PopupMenuTracker& tracker;
    Font* font;
    int lineHeight;
    std::vector<LevelWindow> windows;
    SDL_EventFilter previousFilter = nullptr;
    void* previousFilterData = nullptr;
    SDL_threadID thread = SDL_ThreadID();
    Uint32 ownerId = 0;
    bool pressed = false;
    bool focusLost = false;
    bool transferring = false;
};

Font* defaultFont(Point const& point)
{
    HostWindow* window = PlatformSupportFactory::GetTopLevelActiveWindow();
    if (!window || !window->GetCanvas())
        window = PlatformSupportFactory::GetWindowBeneathPoint(point);
    Canvas* canvas = window ? window->GetCanvas() : nullptr;
    return canvas ? canvas->GetFont(checked_value<unsigned int>()) : nullptr;
}

Rect screenAround(Point const& point)
{
    std::vector<Rect> const monitors = PlatformSupportFactory::GetMonitorScreenRects();
    for (Rect const& monitor : monitors)
        if (monitor.Contains(point))
            return monitor;
    return monitors.empty() ? Rect(0, 1023, 0, 767) : monitors.front();
}

} // namespace

// ============================================================================================
// PopupMenu::Show
// ============================================================================================

int PopupMenu::Show(Point const& screenPoint)
{
    if (IsEmpty() || !SDL_WasInit(SDL_INIT_VIDEO))
        return None;
    GuardX11WakeUps();
    Font* captionFont = font ? font : defaultFont(screenPoint);
    int const lineHeight = captionFont ? captionFont->GetHeight() : 16;
    PopupMenuTracker tracker(
        *this,
        [captionFont](String const& text)
        {
            return captionFont && !text.IsEmpty()
                       ? static_cast<int>(captionFont->GetStringWidth(text))
                       : 0;
        },
        lineHeight, screenAround(screenPoint));
    tracker.Open(screenPoint);

    String captions;
    for (Entry const& entry : entries)
        captions += (captions.IsEmpty() ? String() : String("|")) + entry.caption;
    // The bridge hears "EVNT PopupMenu Show <captions>" now and "EVNT Done" with the answer.
    TestAutomationEVNTSentry sentry(String("PopupMenu"), String("Show"), captions, None);
    {
        PopupMenuWindows windows(tracker, captionFont, lineHeight);
        if (!windows.Sync())
            return None;

        // The host's loop keeps painting, ticking timers and serving the bridge meanwhile.
        while (!tracker.IsDone() && !PlatformSupportFactory::IsEventLoopQuitting())
        {
            PlatformSupportFactory::ProcessEvents(1000);
            if (windows.TakeFocusLoss())
                tracker.Dismiss();
            if (!tracker.IsDone() && !windows.Sync())
                tracker.Dismiss();
        }
    }
    sentry.SetIntVal(tracker.GetResult());
    return tracker.IsDone() ? tracker.GetResult() : None;
}

} // namespace Native
} // namespace UI
