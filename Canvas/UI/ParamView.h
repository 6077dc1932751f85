#pragma once

#include "Canvas/UI/Frame.h"
#include "Canvas/UI/Window.h"
#include "TvBase/Controller/BoolParam.h"
#include "TvBase/Controller/EnumParam.h"
#include "TvBase/Controller/FloatParam.h"

#include <boost/any.hpp>

#include <memory>

namespace UI
{

namespace detail
{
template <typename T>
struct ParamFor;
template <>
struct ParamFor<bool>
{
    typedef Controller::BoolParam type;
};
template <>
struct ParamFor<float>
{
    typedef Controller::FloatParam type;
};
template <>
struct ParamFor<unsigned int>
{
    typedef Controller::EnumParam type;
};
} // namespace detail

/// The binding of a control to one parameter, mixed into a window. The view follows the
/// parameter's `valueChanged` through `onControllerValueChanged`; it does not own the parameter
/// unless `SetOwnedController` handed it over. A key path is resolved through the frame's
/// key-value coding; a path that no parameter answers leaves the view unbound.
template <typename T>
class ParamView
{
public:
    typedef typename detail::ParamFor<T>::type ParamType;

    /// With `createProperty` the window gets the "Controller Key Path" property, whose change
    /// binds the view.
    ParamView(Window* window, bool createProperty) : window(window)
    {
        if (createProperty)
            createControllerProperty(String(""));
    }
    ParamView(Window* window, ParamType* param) : window(window) { SetController(param); }
    ParamView(Window* window, String const& keyPath) : window(window)
    {
        SetControllerFromID(keyPath);
    }
    virtual ~ParamView() { disconnect(); }

    ParamView(ParamView const&) = delete;
    ParamView& operator=(ParamView const&) = delete;

    /// Binds to `param` (null unbinds), then `onRebindController`.
    void SetController(ParamType* param)
    {
        disconnect();
        if (param != owned.get())
            owned.reset();
        controller = param;
        if (controller)
            connection = controller->valueChanged.Connect(nullptr, [this](T const& value)
                                                          { onControllerValueChanged(value); });
        onRebindController();
    }
    /// Binds to a parameter the view owns from now on.
    void SetOwnedController(std::unique_ptr<ParamType> param)
    {
        ParamType* raw = param.get();
        owned = std::move(param);
        SetController(raw);
    }
    /// Resolves the dotted `keyPath` through the frame; unbinds when nothing answers.
    void SetControllerFromID(String const& keyPath)
    {
        ParamType* param = nullptr;
        if (window->GetFrame() && !keyPath.IsNull() && !keyPath.IsEmpty())
        {
            boost::any value = window->GetFrame()->GetValueForKeyPath(keyPath);
            if (ParamType** p = boost::any_cast<ParamType*>(&value))
                param = *p;
        }
        SetController(param);
    }
    ParamType* GetController() const { return controller; }
    bool IsControllerOwned() const { return controller && controller == owned.get(); }
    void SetControllerPropertyPrefix(String const& prefix) { propertyPrefix = prefix; }
    /// Opens and closes a user gesture on the parameter.
    void grabController()
    {
        if (controller && !controller->IsGrabbed())
        {
            controller->SetGrabbed(true);
            controller->grab();
        }
    }
    void releaseController()
    {
        if (controller && controller->IsGrabbed())
        {
            controller->release();
            controller->SetGrabbed(false);
        }
    }

protected:
    virtual void initDerivedParamView() {}
    virtual void onRebindController() {}
    virtual void onControllerValueChanged(T) {}

    void createControllerProperty(String const& prefix)
    {
        propertyPrefix = prefix;
        String const name = prefix + "Controller Key Path";
        window->CreateProperty<String>(name, String("KeyPath"), String(""));
        window->GetPropertyChangedSignal(name)->Connect(
            nullptr,
            [this, name]()
            {
                checked_value<String> path = window->template GetProperty<String>(name);
                SetControllerFromID(path ? *path : String(""));
            });
    }

    ParamType* controller = nullptr;
    Window* window;
    String propertyPrefix;

private:
    void disconnect()
    {
        connection.Disconnect();
        connection = Connection();
    }

    std::unique_ptr<ParamType> owned;
    Connection connection;
};

} // namespace UI
