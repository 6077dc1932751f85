#include "Canvas/TestAutomation/TestAutomationCore.h"
#include "Canvas/UI/TestAutomationInterface.h"

namespace UI
{

// Starting is the one operation of the front that makes a core, so it lives with the core in
// the test automation library: only programs that start the bridge link the loader.
bool TestAutomationInterface::Start(String const& name)
{
    if (core)
        return true;
    boost::shared_ptr<TestAutomation::TestAutomationCore> made(
        new TestAutomation::TestAutomationCore());
    if (!made->Start(name))
        return false;
    core = made;
    return true;
}

} // namespace UI
