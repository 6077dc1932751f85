// The two functions that the program looks up in the module.

#include "Canvas/TestAutomation/Module/JsonRpcServer.h"

#include <new>

#ifndef TV_TEST_AUTOMATION_MODULE_VERSION
#define TV_TEST_AUTOMATION_MODULE_VERSION 4
#endif

extern "C" __attribute__((visibility("default"))) unsigned int RPCServer_Version()
{
    return TV_TEST_AUTOMATION_MODULE_VERSION;
}

extern "C" __attribute__((visibility("default"))) TestAutomation::RPCServerInterface*
RPCServer_Create()
{
    return new (std::nothrow) TestAutomation::JsonRpcServer(TV_TEST_AUTOMATION_MODULE_VERSION);
}
