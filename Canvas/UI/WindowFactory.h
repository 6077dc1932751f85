#pragma once

#include "TvBase/Util/String.h"
#include "TvBase/Util/checked_value.h"

#include <boost/function.hpp>

#include <map>
#include <typeinfo>
#include <vector>

namespace UI
{

class Canvas;
class Frame;
class Window;

/// Makes windows by type name, so that a layout file's "NewChild" elements and the design tools
/// can create windows that no code asked for. One factory belongs to each canvas. Every type is
/// registered once, under one name, together with its class, so that a window can be asked for
/// the name it is saved under. Not copyable; single-threaded like the windows it makes.
class WindowFactory
{
public:
    /// Makes a window of one type: frame, parent (null for a top-level window), name.
    typedef boost::function<Window*(Frame*, Window*, String const&)> CreateFunction;

    WindowFactory() = default;
    WindowFactory(WindowFactory const&) = delete;
    WindowFactory& operator=(WindowFactory const&) = delete;

    /// Registers `T` under `name`, made by `new T(frame, parent, name)`. False, with no change,
    /// when the name or the class is registered already.
    template <typename T>
    bool Register(String const& name)
    {
        return registerFactory(
            name,
            [](Frame* frame, Window* parent, String const& windowName) -> Window*
            { return new T(frame, parent, windowName); },
            &typeid(T));
    }

    /// Fills both tables. False, with no change, when `name` or `type` is registered already, or
    /// when `name` is empty, `function` empty or `type` null.
    bool registerFactory(String const& name, CreateFunction const& function,
                         std::type_info const* type);

    bool IsRegistered(String const& type) const { return creators.count(type) != 0; }

    /// A new window of the registered `type`, marked layout-created and laid out by layout files
    /// (mode 0); it belongs to its parent, or to the frame for a null parent. Null for an unknown
    /// type, a null frame, or a constructor that throws.
    Window* Create(String const& type, Frame* frame, Window* parent, String const& name) const;

    /// The name under which the dynamic class of `window` is registered; unset when it is not,
    /// or for a null window. A subclass of a registered class is not its base's type.
    checked_value<String> GetTypeName(Window const* window) const;

    /// Every registered name, in `String` order.
    std::vector<String> type_names() const;

private:
    struct TypeLess
    {
        bool operator()(std::type_info const* a, std::type_info const* b) const
        {
            return a->before(*b);
        }
    };

    std::map<String, CreateFunction> creators;
    std::map<std::type_info const*, String, TypeLess> names;
};

/// `canvas->GetWindowFactory()`; null for a null canvas.
WindowFactory* GetWindowFactory(Canvas* canvas);

} // namespace UI
