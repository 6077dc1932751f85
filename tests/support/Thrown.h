#pragma once

#include "TvBase/Util/String.h"

#include <gtest/gtest.h>

namespace TestSupport
{

/// Runs `action`, which must throw `E`, and returns what it threw. Without a throw the test
/// fails and `none` stands in, so that the checks on the result fail too rather than crash.
template <typename E, typename Action>
E ThrownBy(Action action, E const& none)
{
    try
    {
        action();
    }
    catch (E const& e)
    {
        return e;
    }
    ADD_FAILURE() << "nothing of the expected type thrown";
    return none;
}

/// The message of the `E` that `action` throws; one that no expected message matches when it
/// throws none.
template <typename E, typename Action>
String MessageOf(Action action)
{
    try
    {
        action();
    }
    catch (E const& e)
    {
        return e.GetMessage();
    }
    return String("nothing of the expected type thrown");
}

} // namespace TestSupport
