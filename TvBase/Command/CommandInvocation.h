#pragma once

#include "TvBase/Util/String.h"

namespace UI
{
class Window;
}

namespace Command
{

/// One request to run a command: its id and the window it came from (not owned, may be null).
class CommandInvocation
{
public:
    CommandInvocation() = default;
    CommandInvocation(String commandID, UI::Window* fromWindow) : id(commandID), window(fromWindow)
    {
    }

    String id;
    UI::Window* window = nullptr;
};

} // namespace Command
