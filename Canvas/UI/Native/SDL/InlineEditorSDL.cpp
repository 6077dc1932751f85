// The host's inline editor over SDL: a borderless window laid over a text field, with a
// single-line editor in it, run modally through the host layer's own loop.
//
//   - the editor window: place, paint, caret and selection
//   - input: keys, typed text, clipboard, mouse
//   - PlatformSupportFactory::ExecuteInlineEdit: the nested loop

#include "Canvas/UI/Canvas.h"
#include "Canvas/UI/DIBits.h"
#include "Canvas/UI/Font.h"
#include "Canvas/UI/Frame.h"
#include "Canvas/UI/Native/HostWindow.h"
#include "Canvas/UI/Native/LineEditor.h"
#include "Canvas/UI/Native/PlatformSupportFactory.h"
#include "Canvas/UI/Native/SDL/PlatformSupportFactorySDL.h"

#include <SDL.h>
#include <boost/shared_array.hpp>

#include <algorithm>
#include <climits>

namespace UI
{
namespace Native
{

namespace
{

// ============================================================================================
// the editor window
// ============================================================================================

unsigned int const EditorBackground = 0xFFFFFFFF;
unsigned int const EditorFrame = 0xFF5080C0;
unsigned int const EditorText = 0xFF000000;
unsigned int const EditorSelection = 0xFFB0C8F0;
int const Padding = 3;

class InlineEditorWindow
{
public:
    InlineEditorWindow(Font* font, String const& text, std::vector<char> const& filter,
                       int justification)
        : font(font), editor(text, filter), justification(justification)
    {
    }

    ~InlineEditorWindow()
    {
        if (intercepting)
            PlatformSupportFactorySDL::Get().SetModalEventHandler(
                PlatformSupportFactorySDL::ModalEventHandler());
        if (window)
            SDL_DestroyWindow(window);
    }

    InlineEditorWindow(InlineEditorWindow const&) = delete;
    InlineEditorWindow& operator=(InlineEditorWindow const&) = delete;

    /// Opens the window with its first line centred on `centre` (screen coordinates), at least
    /// `height` tall.
    bool Open(Point const& centre, int width, int height)
    {
        lineHeight = font ? font->GetHeight() : 16;
        size = Size(std::max(width, 16), std::max(height, lineHeight + 2 * Padding));
        window = SDL_CreateWindow("Inline Editor", centre.x - size.width / 2,
                                  centre.y - size.height / 2, size.width, size.height,
                                  SDL_WINDOW_BORDERLESS | SDL_WINDOW_SKIP_TASKBAR |
                                      SDL_WINDOW_ALWAYS_ON_TOP);
        if (!window)
            return false;
        windowId = SDL_GetWindowID(window);
        pixels.reset(new unsigned int[size.width * size.height]);
        // The editor is modal over the keyboard: it takes every key and typed text before the
        // host's windows see them, whichever window the desktop says has the focus.
        PlatformSupportFactorySDL::Get().SetModalEventHandler([this](SDL_Event const& event)
                                                              { return handle(event); });
        intercepting = true;
        SDL_ShowWindow(window);
        SDL_RaiseWindow(window);
        SDL_SetWindowInputFocus(window);
        SDL_StartTextInput();
        paint();
        return true;
    }

    bool IsDone() const { return done; }
    bool IsAccepted() const { return accepted; }
    String const& GetText() const { return editor.GetText(); }

private:
    int textWidth(String const& s) const
    {
        return font && !s.IsEmpty() ? static_cast<int>(font->GetStringWidth(s)) : 0;
    }

    /// The line's top: centred in the window, as the field centres its text.
    int textTop() const { return (size.height - lineHeight) / 2; }

    int textLeft() const
    {
        int const inner = size.width - 2 * Padding;
        int const width = textWidth(editor.GetText());
        // A text longer than the box keeps the caret in view instead of its justification.
        if (width > inner)
            return std::min(Padding, size.width - Padding -
                                         textWidth(editor.GetText().Left(editor.GetCaret())));
        if (justification == HAlignCenter)
            return Padding + (inner - width) / 2;
        if (justification == HAlignRight)
            return Padding + inner - width;
        return Padding;
    }

    void fill(Rect const& r, unsigned int color)
    {
        Rect const clipped = r & Rect(0, size.width - 1, 0, size.height - 1);
        for (int y = clipped.top; y <= clipped.bottom; ++y)
            std::fill(pixels.get() + y * size.width + clipped.left,
                      pixels.get() + y * size.width + clipped.right + 1, color);
    }

    void paint()
    {
        fill(Rect(0, size.width - 1, 0, size.height - 1), EditorFrame);
        fill(Rect(1, size.width - 2, 1, size.height - 2), EditorBackground);
        int const left = textLeft();
        String const& text = editor.GetText();
        int const caretX = left + textWidth(text.Left(editor.GetCaret()));
        if (editor.HasSelection())
        {
            int const anchorX = left + textWidth(text.Left(editor.GetAnchor()));
            fill(Rect(std::min(caretX, anchorX), std::max(caretX, anchorX) - 1, textTop(),
                      textTop() + lineHeight - 1),
                 EditorSelection);
        }
        DIBits bits(pixels, size.width, size.width, size.height, false);
        if (font && !text.IsEmpty())
            font->RenderText(Point(left, textTop()), text, EditorText, 255,
                             Rect(1, size.width - 2, 1, size.height - 2), bits, HAlignLeft,
                             VAlignTop, Rect());
        fill(Rect(caretX, caretX, textTop() - 1, textTop() + lineHeight), EditorText);

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

    // ========================================================================================
    // input
    // ========================================================================================

    void finish(bool accept)
    {
        // The nested loop sees this once the event at hand is dispatched.
        if (done)
            return;
        done = true;
        accepted = accept;
    }

    void key(SDL_Keysym const& keysym)
    {
        bool const shift = (keysym.mod & KMOD_SHIFT) != 0;
        bool const command = (keysym.mod & (KMOD_CTRL | KMOD_GUI)) != 0;
        switch (keysym.sym)
        {
        case SDLK_RETURN:
        case SDLK_KP_ENTER:
            finish(true);
            return;
        case SDLK_ESCAPE:
            finish(false);
            return;
        case SDLK_BACKSPACE:
            editor.Backspace();
            break;
        case SDLK_DELETE:
            editor.Delete();
            break;
        case SDLK_LEFT:
            editor.Left(shift);
            break;
        case SDLK_RIGHT:
            editor.Right(shift);
            break;
        case SDLK_HOME:
            editor.Home(shift);
            break;
        case SDLK_END:
            editor.End(shift);
            break;
        case SDLK_a:
            if (!command)
                return;
            editor.SelectAll();
            break;
        case SDLK_c:
        case SDLK_x:
            if (!command || !editor.HasSelection())
                return;
            SDL_SetClipboardText(editor.GetSelectedText().CStr());
            if (keysym.sym == SDLK_x)
                editor.Backspace();
            break;
        case SDLK_v:
            if (!command)
                return;
            if (char* pasted = SDL_GetClipboardText())
            {
                editor.Insert(String(pasted));
                SDL_free(pasted);
            }
            break;
        default:
            return;
        }
        paint();
    }

    /// True when the event is the editor's alone and the host must not see it.
    bool handle(SDL_Event const& event)
    {
        if (done)
            return false;
        switch (event.type)
        {
        case SDL_KEYDOWN:
            key(event.key.keysym);
            return true;
        case SDL_KEYUP:
        case SDL_TEXTEDITING:
            return true;
        case SDL_TEXTINPUT:
            // Shortcuts arrive as keys; their letters must not be typed as well.
            if (!(SDL_GetModState() & (KMOD_CTRL | KMOD_GUI)) && editor.Insert(event.text.text))
                paint();
            return true;
        case SDL_MOUSEBUTTONDOWN:
            if (event.button.windowID != windowId)
            {
                // A click elsewhere leaves the editor and still reaches its window.
                finish(false);
                return false;
            }
            editor.SetCaret(caretFromX(event.button.x), (SDL_GetModState() & KMOD_SHIFT) != 0);
            paint();
            return true;
        case SDL_WINDOWEVENT:
            if (event.window.windowID != windowId)
                return false;
            if (event.window.event == SDL_WINDOWEVENT_FOCUS_GAINED)
                hadFocus = true;
            else if (event.window.event == SDL_WINDOWEVENT_FOCUS_LOST && hadFocus)
                finish(false);
            else if (event.window.event == SDL_WINDOWEVENT_EXPOSED)
                paint();
            return true;
        case SDL_QUIT:
            finish(false);
            return false;
        default:
            return false;
        }
    }

    unsigned int caretFromX(int x) const
    {
        String const& text = editor.GetText();
        int const left = textLeft();
        int previous = 0;
        for (unsigned int i = 0; i < text.Length();)
        {
            unsigned int next = i + 1;
            while (next < text.Length() && (text[next].Byte() & 0xC0) == 0x80)
                ++next;
            int const width = textWidth(text.Left(next));
            if (x - left < (previous + width) / 2)
                return i;
            previous = width;
            i = next;
        }
        return text.Length();
    }

    Font* font;
    LineEditor editor;
    int justification;
    SDL_Window* window = nullptr;
    Uint32 windowId = 0;
    Size size;
    int lineHeight = 16;
    boost::shared_array<unsigned int> pixels;
    bool intercepting = false;
    bool hadFocus = false;
    bool done = false;
    bool accepted = false;
};

} // namespace

// ============================================================================================
// PlatformSupportFactory::ExecuteInlineEdit
// ============================================================================================

bool PlatformSupportFactory::ExecuteInlineEdit(Frame* frame, Point const& point, String& text,
                                               int width, std::vector<char> const& charFilter, bool,
                                               int justification, int height)
{
    if (!frame || !frame->GetHostWindow() || !SDL_WasInit(SDL_INIT_VIDEO))
        return false;
    Canvas* canvas = frame->GetCanvas();
    Font* font = canvas ? canvas->GetFont(checked_value<unsigned int>()) : nullptr;
    Point const origin = frame->GetHostWindow()->GetScreenPos();
    InlineEditorWindow editor(font, text, charFilter, justification);
    if (!editor.Open(Point(origin.x + point.x, origin.y + point.y), width, height))
        return false;
    // The host's loop keeps painting, ticking timers and delivering posted messages meanwhile;
    // the editor sees every event first through the modal handler.
    while (!editor.IsDone() && !IsEventLoopQuitting())
        ProcessEvents(1000);
    SDL_StopTextInput();
    if (frame->GetHostWindow())
        frame->GetHostWindow()->SetNativeFocus();
    if (!editor.IsAccepted())
        return false;
    text = editor.GetText();
    return true;
}

} // namespace Native
} // namespace UI
