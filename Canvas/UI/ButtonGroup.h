#pragma once

#include "TvBase/Util/Exception.h"
#include "TvBase/Util/Object.h"
#include "TvBase/Util/Signal.h"
#include "TvBase/Util/checked_value.h"

#include <map>
#include <vector>

namespace UI
{

class Button;
class Window;

/// A set of buttons with ids, optionally exclusive (one on at a time). Radio buttons join
/// through their toggled signals, on/off buttons become momentary, and any other button becomes
/// latching. Does not own its buttons: remove a button before deleting it, or let the group die
/// first.
class ButtonGroup : public Object
{
public:
    /// Thrown by `Insert` for an id already in use; the group stays as it was.
    class DuplicateID : public Exception::Base
    {
    public:
        DuplicateID(String const& message, String const& file, int line)
            : Exception::Base(message, file, line)
        {
        }
        char const* GetTypeName() const override { return "ButtonGroup"; }
    };

    explicit ButtonGroup(bool exclusive, String const& name = String("ButtonGroup"));
    ~ButtonGroup() override;

    /// A user's click on the button with this id.
    Signal<unsigned int> signalClicked;

    /// Adds `button` under `id`, or, without one, under the highest id plus 1 (0 for the first).
    /// Returns the id used. Throws `DuplicateID` ("ID %1 is not unique") when the id is taken.
    unsigned int Insert(Button* button, checked_value<unsigned int> const& id = {});
    /// Forgets `button` and disconnects from it; unknown buttons are ignored.
    void Remove(Button* button);
    void Clear();

    /// Turns the button on (and, when exclusive, every other off) without the group's signal.
    void SetSelected(unsigned int id);
    void SetSelected(Button* button);
    /// The first button that is on, by id order.
    checked_value<unsigned int> GetSelectedID() const;
    Button* GetSelectedButton() const;
    Button* GetButton(unsigned int id) const;
    checked_value<unsigned int> GetID(Button* button) const;
    std::map<unsigned int, Button*> const& GetButtons() const { return buttons; }
    bool IsExclusive() const { return exclusive; }

    void SetButtonsVisible(bool visible);
    void SetButtonAlphas(unsigned char alpha);
    void SetButtonsEnabled(bool enabled);
    /// Tool tips by id order; extra texts are ignored.
    void SetButtonTooltips(std::vector<String> const& tips);
    /// Appends the buttons in id order, for a focus order.
    void AppendButtons(std::vector<Window*>& windows) const;

    /// Whether `button` shows as on: checked, on, or pressed, by its type.
    static bool isOn(Button* button);

protected:
    virtual void onButtonAdded(Button*, unsigned int) {}
    virtual void onButtonRemoved(Button*) {}
    void onButtonClicked(unsigned int id, bool byUser);
    void onRadioButtonToggled(unsigned int id, bool byUser);

private:
    struct Entry
    {
        std::vector<Connection> connections;
    };
    void setOn(Button* button, bool on);
    void forget(Button* button);

    bool exclusive;
    std::map<unsigned int, Button*> buttons;
    std::map<Button*, Entry> entries;
};

} // namespace UI
