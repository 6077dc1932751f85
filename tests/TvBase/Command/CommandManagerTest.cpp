#include "TvBase/Command/CommandManager.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace
{
/// A slot owner, as a window that handles commands would be.
class Editor : public Trackable
{
public:
    void slotCopy(Command::CommandInvocation const& invocation, bool& handled)
    {
        calls.push_back(std::string(invocation.id.CStr()));
        lastWindow = invocation.window;
        handled = true;
    }
    void slotWatch(Command::CommandInvocation const&, bool&) { ++watched; }

    std::vector<std::string> calls;
    UI::Window* lastWindow = nullptr;
    int watched = 0;
};
} // namespace

TEST(CommandManagerExecute, SlotsSayWhetherTheyHandledTheCommand)
{
    Command::CommandManager commands;
    EXPECT_FALSE(commands.ExecuteCommand("Copy", nullptr));

    commands.registerCommand("Copy", String("Copy"));
    EXPECT_FALSE(commands.ExecuteCommand("Copy", nullptr));

    Editor editor;
    commands.registerCommand("Copy").Connect(&Editor::slotWatch, &editor);
    EXPECT_FALSE(commands.ExecuteCommand(Command::CommandInvocation("Copy", nullptr)));
    EXPECT_EQ(1, editor.watched);
    { // A slot says that it handled the command.
        Command::CommandManager commands;
        Editor editor;
        commands.registerCommand("Copy", String("Copy")).Connect(&Editor::slotCopy, &editor);
        // A second registration gives the same signal.
        commands.registerCommand("Copy", String("Other name")).Connect(&Editor::slotWatch, &editor);

        UI::Window* const window = reinterpret_cast<UI::Window*>(&editor);
        EXPECT_TRUE(commands.ExecuteCommand("Copy", window));
        EXPECT_EQ(std::vector<std::string>({"Copy"}), editor.calls);
        EXPECT_EQ(window, editor.lastWindow);
        EXPECT_EQ(1, editor.watched);
        EXPECT_EQ(checked_value<String>(String("Copy")), commands.GetDisplayName("Copy"));

        // Disabled commands still run: callers ask IsEnabled first.
        commands.SetIsEnabled("Copy", false);
        EXPECT_TRUE(commands.ExecuteCommand("Copy", nullptr));
    }
    { // Slots die with their target.
        Command::CommandManager commands;
        {
            Editor editor;
            commands.registerCommand("Paste").Connect(&Editor::slotCopy, &editor);
            EXPECT_TRUE(commands.ExecuteCommand("Paste", nullptr));
        }
        EXPECT_FALSE(commands.ExecuteCommand("Paste", nullptr));
    }
}

TEST(CommandManagerTable, ListsIdsAndEnabledStates)
{
    Command::CommandManager commands;
    commands.registerCommand("Zoom", String("Zoom In"));
    commands.registerCommand("Design.Save");
    commands.registerCommand("Align", String("Align Left"));
    commands.registerCommand("Design.Save", String("Save"));

    EXPECT_EQ(std::vector<String>({"Align", "Design.Save", "Zoom"}), commands.GetAllCommandIDs());
    EXPECT_EQ(std::vector<String>({"Align", "Zoom"}), commands.GetVisibleCommandIDs());
    EXPECT_FALSE(commands.GetDisplayName("Design.Save").IsPresent());
    EXPECT_FALSE(commands.GetDisplayName("Unknown").IsPresent());
    { // Starts on and announces changes.
        Command::CommandManager commands;
        commands.registerCommand("Undo", String("Undo"));
        EXPECT_TRUE(commands.IsEnabled("Undo"));
        EXPECT_FALSE(commands.IsEnabled("Unknown"));
        EXPECT_EQ(nullptr, commands.GetSigEnabledDidChange("Unknown"));

        std::vector<std::string> changes;
        commands.GetSigEnabledDidChange("Undo")->Connect(
            nullptr, [&](String const& id, bool enabled)
            { changes.push_back(std::string(id.CStr()) + (enabled ? " on" : " off")); });

        commands.SetIsEnabled("Undo", false);
        commands.SetIsEnabled("Undo", false);
        commands.SetIsEnabled("Undo", true);
        commands.SetIsEnabled("Unknown", false);
        EXPECT_EQ(std::vector<std::string>({"Undo off", "Undo on"}), changes);
        EXPECT_TRUE(commands.IsEnabled("Undo"));
        EXPECT_FALSE(commands.IsEnabled("Unknown"));
    }
}
