#include "TvBase/Command/CommandManager.h"

namespace Command
{

CommandManager::command_struct::command_struct(String const& commandID,
                                               checked_value<String> const& name)
    : displayName(name), visible(name.IsPresent()), id(commandID), enabled(true)
{
    // Tied to the parameter's life, which is this record's.
    enabled.valueChanged.Connect(&enabled, [this](bool const& isEnabled)
                                 { sigEnabledDidChange(id, isEnabled); });
}

CommandManager::CommandSignal& CommandManager::registerCommand(String const& id,
                                                               checked_value<String> displayName)
{
    boost::shared_ptr<command_struct>& entry = commands[id];
    if (!entry)
        entry.reset(new command_struct(id, displayName));
    return entry->signal;
}

bool CommandManager::ExecuteCommand(String const& id, UI::Window* window) const
{
    return ExecuteCommand(CommandInvocation(id, window));
}

bool CommandManager::ExecuteCommand(CommandInvocation const& invocation) const
{
    command_struct const* const command = find(invocation.id);
    if (!command)
        return false;
    bool handled = false;
    command->signal(invocation, handled);
    return handled;
}

checked_value<String> CommandManager::GetDisplayName(String const& id) const
{
    command_struct const* const command = find(id);
    return command ? command->displayName : checked_value<String>();
}

std::vector<String> CommandManager::GetVisibleCommandIDs() const
{
    std::vector<String> ids;
    for (auto const& entry : commands)
        if (entry.second->visible)
            ids.push_back(entry.first);
    return ids;
}

std::vector<String> CommandManager::GetAllCommandIDs() const
{
    std::vector<String> ids;
    for (auto const& entry : commands)
        ids.push_back(entry.first);
    return ids;
}

bool CommandManager::IsEnabled(String const& id) const
{
    command_struct const* const command = find(id);
    return command && command->enabled.get();
}

void CommandManager::SetIsEnabled(String const& id, bool isEnabled)
{
    auto const found = commands.find(id);
    if (found != commands.end())
        found->second->enabled.set(isEnabled);
}

CommandManager::EnabledSignal* CommandManager::GetSigEnabledDidChange(String const& id)
{
    auto const found = commands.find(id);
    return found == commands.end() ? nullptr : &found->second->sigEnabledDidChange;
}

CommandManager::command_struct const* CommandManager::find(String const& id) const
{
    auto const found = commands.find(id);
    return found == commands.end() ? nullptr : found->second.get();
}

} // namespace Command
