#pragma once

#include "TvBase/Command/CommandInvocation.h"
#include "TvBase/Controller/BoolParamMemory.h"
#include "TvBase/Util/Signal.h"
#include "TvBase/Util/String.h"
#include "TvBase/Util/checked_value.h"

#include <boost/shared_ptr.hpp>

#include <map>
#include <vector>

namespace Command
{

/// The table of a program's commands ("Copy", "Design.Save", ...): each has an id, an optional
/// display name, a visible flag (set when it has a display name), an enabled state (on at
/// first) and a signal that runs it. A slot that handles the command sets the `bool` it is
/// given to true. User-interface thread only. Not copyable.
class CommandManager
{
public:
    /// Runs a command: the invocation, and a flag that starts false and that a slot sets to
    /// say that it handled the command.
    typedef Signal<CommandInvocation const&, bool&> CommandSignal;
    /// The command's id and its new enabled state.
    typedef Signal<String const&, bool> EnabledSignal;

    CommandManager() = default;
    CommandManager(CommandManager const&) = delete;
    CommandManager& operator=(CommandManager const&) = delete;

    /// The command's signal, making the command if the id is new. A repeated id gives the
    /// existing signal and leaves the display name as it was. The reference lives as long as
    /// this manager.
    CommandSignal& registerCommand(String const& id,
                                   checked_value<String> displayName = checked_value<String>());

    /// False for an unknown id; otherwise emits the command's signal and returns the flag its
    /// slots left (false when none handled it). Runs whether or not the command is enabled.
    bool ExecuteCommand(String const& id, UI::Window* window) const;
    bool ExecuteCommand(CommandInvocation const& invocation) const;

    /// Not present for an unknown id or a command registered without a name.
    checked_value<String> GetDisplayName(String const& id) const;
    /// Ids in `String` order, of visible commands only.
    std::vector<String> GetVisibleCommandIDs() const;
    /// Ids in `String` order.
    std::vector<String> GetAllCommandIDs() const;

    /// False for an unknown id.
    bool IsEnabled(String const& id) const;
    /// Changes the enabled state; a change emits the command's enabled signal. An unknown id
    /// is ignored.
    void SetIsEnabled(String const& id, bool enabled);
    /// Emitted when the command's enabled state changes; null for an unknown id. Lives as long
    /// as this manager.
    EnabledSignal* GetSigEnabledDidChange(String const& id);

private:
    struct command_struct
    {
        explicit command_struct(String const& commandID, checked_value<String> const& name);

        checked_value<String> displayName;
        bool visible;
        String id;
        Controller::BoolParamMemory enabled;
        EnabledSignal sigEnabledDidChange;
        CommandSignal signal;
    };

    command_struct const* find(String const& id) const;

    std::map<String, boost::shared_ptr<command_struct>> commands;
};

} // namespace Command
