#include "Canvas/UI/ButtonGroup.h"

#include "Canvas/UI/Button.h"
#include "Canvas/UI/CheckBox.h"
#include "Canvas/UI/OnOffButton.h"
#include "Canvas/UI/PushButton.h"
#include "Canvas/UI/RadioButton.h"

#include <boost/function.hpp>

namespace UI
{

ButtonGroup::ButtonGroup(bool exclusive, String const& name) : Object(name), exclusive(exclusive) {}

ButtonGroup::~ButtonGroup()
{
    Clear();
}

unsigned int ButtonGroup::Insert(Button* button, checked_value<unsigned int> const& id)
{
    unsigned int const useId = id ? *id : (buttons.empty() ? 0u : buttons.rbegin()->first + 1);
    if (buttons.count(useId))
        TV_THROW(DuplicateID, String("ID %1 is not unique").Arg(useId));
    buttons[useId] = button;
    Entry& entry = entries[button];
    if (RadioButton* radio = dynamic_cast<RadioButton*>(button))
    {
        entry.connections.push_back(
            radio->signalToggled.Connect(this, boost::function<void(bool)>(
                                                   [this, useId](bool on)
                                                   {
                                                       if (on)
                                                           onRadioButtonToggled(useId, false);
                                                   })));
        entry.connections.push_back(radio->signalUserToggled.Connect(
            this, boost::function<void()>([this, useId] { onRadioButtonToggled(useId, true); })));
    }
    else if (dynamic_cast<OnOffButton*>(button))
    {
        button->SetMode(Button::Momentary);
        entry.connections.push_back(button->signalClicked.Connect(
            this, boost::function<void()>([this, useId] { onButtonClicked(useId, true); })));
        entry.connections.push_back(button->signalRightClicked.Connect(
            this, boost::function<void()>([this, useId] { onButtonClicked(useId, true); })));
    }
    else
    {
        button->SetMode(Button::Latching);
        entry.connections.push_back(button->signalClicked.Connect(
            this, boost::function<void()>([this, useId] { onButtonClicked(useId, true); })));
    }
    onButtonAdded(button, useId);
    return useId;
}

void ButtonGroup::forget(Button* button)
{
    auto found = entries.find(button);
    if (found == entries.end())
        return;
    for (Connection const& c : found->second.connections)
        c.Disconnect();
    entries.erase(found);
    for (auto it = buttons.begin(); it != buttons.end(); ++it)
        if (it->second == button)
        {
            buttons.erase(it);
            break;
        }
}

void ButtonGroup::Remove(Button* button)
{
    if (!entries.count(button))
        return;
    forget(button);
    onButtonRemoved(button);
}

void ButtonGroup::Clear()
{
    while (!buttons.empty())
        Remove(buttons.begin()->second);
}

bool ButtonGroup::isOn(Button* button)
{
    if (RadioButton* radio = dynamic_cast<RadioButton*>(button))
        return radio->IsChecked();
    if (CheckBox* box = dynamic_cast<CheckBox*>(button))
        return box->IsChecked();
    if (OnOffButton* onOff = dynamic_cast<OnOffButton*>(button))
        return onOff->IsOn();
    return button->IsPressed();
}

void ButtonGroup::setOn(Button* button, bool on)
{
    if (RadioButton* radio = dynamic_cast<RadioButton*>(button))
        radio->SetChecked(on);
    else if (CheckBox* box = dynamic_cast<CheckBox*>(button))
        box->SetChecked(on);
    else if (OnOffButton* onOff = dynamic_cast<OnOffButton*>(button))
        onOff->SetOn(on);
    else
        button->SetPressed(on);
}

void ButtonGroup::onButtonClicked(unsigned int id, bool byUser)
{
    auto found = buttons.find(id);
    if (found == buttons.end())
        return;
    if (exclusive)
    {
        for (auto const& other : buttons)
            if (other.first != id)
                setOn(other.second, false);
        // A radio button already checked itself; the others are turned on here.
        if (!dynamic_cast<RadioButton*>(found->second))
            setOn(found->second, true);
    }
    if (byUser)
        signalClicked(id);
}

void ButtonGroup::onRadioButtonToggled(unsigned int id, bool byUser)
{
    auto found = buttons.find(id);
    if (found == buttons.end() || !isOn(found->second))
        return;
    onButtonClicked(id, byUser);
}

void ButtonGroup::SetSelected(unsigned int id)
{
    auto found = buttons.find(id);
    if (found == buttons.end())
        return;
    if (!exclusive)
    {
        setOn(found->second, true);
        return;
    }
    onButtonClicked(id, false);
    setOn(found->second, true);
}

void ButtonGroup::SetSelected(Button* button)
{
    checked_value<unsigned int> id = GetID(button);
    if (id)
        SetSelected(*id);
}

checked_value<unsigned int> ButtonGroup::GetSelectedID() const
{
    for (auto const& entry : buttons)
        if (isOn(entry.second))
            return entry.first;
    return checked_value<unsigned int>();
}

Button* ButtonGroup::GetSelectedButton() const
{
    checked_value<unsigned int> id = GetSelectedID();
    return id ? GetButton(*id) : nullptr;
}

Button* ButtonGroup::GetButton(unsigned int id) const
{
    auto found = buttons.find(id);
    return found == buttons.end() ? nullptr : found->second;
}

checked_value<unsigned int> ButtonGroup::GetID(Button* button) const
{
    for (auto const& entry : buttons)
        if (entry.second == button)
            return entry.first;
    return checked_value<unsigned int>();
}

void ButtonGroup::SetButtonsVisible(bool visible)
{
    for (auto const& entry : buttons)
        visible ? entry.second->Show() : entry.second->Hide();
}

void ButtonGroup::SetButtonAlphas(unsigned char alpha)
{
    for (auto const& entry : buttons)
        entry.second->SetAlpha(alpha);
}

void ButtonGroup::SetButtonsEnabled(bool enabled)
{
    for (auto const& entry : buttons)
        entry.second->SetEnabled(enabled);
}

void ButtonGroup::SetButtonTooltips(std::vector<String> const& tips)
{
    std::size_t index = 0;
    for (auto const& entry : buttons)
    {
        if (index >= tips.size())
            break;
        entry.second->SetToolTipText(tips[index++]);
    }
}

void ButtonGroup::AppendButtons(std::vector<Window*>& windows) const
{
    for (auto const& entry : buttons)
        windows.push_back(entry.second);
}

} // namespace UI
