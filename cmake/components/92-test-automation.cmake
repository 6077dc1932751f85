# The test automation bridge: the program's side (the front, the core that loads the module and
# registers the requests, the application main window) and the module libTvTestAutomation.so,
# a JSON-RPC server over loopback TCP that programs load only when it is installed or named by
# TV_TEST_AUTOMATION_MODULE.

# The front is called from the frame, the windows and the host tick; it reaches the core only
# through virtual calls.
tv_ui_sources(
  SOURCES
    Canvas/UI/TestAutomationInterface.cpp
    Canvas/TestAutomation/TestAutomationCore.cpp
    Canvas/UI/TestAutomationInterfaceStart.cpp
    Canvas/UI/ApplicationMainWindow.cpp
  DEPS tv_config tv_threads tv_core)

# The module's own code: JSON, request dispatch and the socket server. It links nothing of the
# toolkit, and is compiled position-independent for the shared module.
tv_library(tv_testautomation_rpc
  SOURCES
    Canvas/TestAutomation/Module/JsonValue.cpp
    Canvas/TestAutomation/Module/RequestDispatcher.cpp
    Canvas/TestAutomation/Module/JsonRpcServer.cpp)
set_target_properties(tv_testautomation_rpc PROPERTIES POSITION_INDEPENDENT_CODE ON)

add_library(TvTestAutomation MODULE Canvas/TestAutomation/Module/ModuleExports.cpp)
target_include_directories(TvTestAutomation PRIVATE ${PROJECT_SOURCE_DIR})
target_link_libraries(TvTestAutomation PRIVATE tv_testautomation_rpc)
set_target_properties(TvTestAutomation PROPERTIES
  OUTPUT_NAME TvTestAutomation
  LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/lib
  CXX_VISIBILITY_PRESET hidden)

# A module of a refused version, for the tests of the version check.
add_library(TvTestAutomationV3 MODULE Canvas/TestAutomation/Module/ModuleExports.cpp)
target_include_directories(TvTestAutomationV3 PRIVATE ${PROJECT_SOURCE_DIR})
target_link_libraries(TvTestAutomationV3 PRIVATE tv_testautomation_rpc)
target_compile_definitions(TvTestAutomationV3 PRIVATE TV_TEST_AUTOMATION_MODULE_VERSION=3)
set_target_properties(TvTestAutomationV3 PROPERTIES
  LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests/modules
  CXX_VISIBILITY_PRESET hidden)

# JSON, dispatch and the server over real loopback sockets; the core in process with the real
# module, real frames and windows.
tv_test(tv_testautomation_tests
  SOURCES
    tests/Canvas/TestAutomation/JsonValueTest.cpp
    tests/Canvas/TestAutomation/RequestDispatcherTest.cpp
    tests/Canvas/TestAutomation/JsonRpcServerTest.cpp
    tests/Canvas/TestAutomation/TestAutomationCoreTest.cpp
    tests/Canvas/TestAutomation/RpcTestClient.cpp
    tests/Canvas/UI/CanvasTestSupport.cpp
    tests/support/TempFolder.cpp
  DEPS tv_ui tv_testautomation_rpc
  RESOURCE_LOCK bridge_ports)
target_compile_definitions(tv_testautomation_tests PRIVATE
  TV_TEST_AUTOMATION_MODULE_PATH="$<TARGET_FILE:TvTestAutomation>"
  TV_TEST_AUTOMATION_MODULE_V3_PATH="$<TARGET_FILE:TvTestAutomationV3>")
add_dependencies(tv_testautomation_tests TvTestAutomation TvTestAutomationV3)

# The bridge end to end on the gallery example (a real SDL program with nested windows and a
# second host window), driven by tools/tvdriver.py under Xvfb; the script starts its own Xvfb
# when no display is set, and skips without one.
find_package(Python3 COMPONENTS Interpreter)
if(Python3_Interpreter_FOUND)
  add_test(NAME tv_testautomation_end_to_end
    COMMAND ${Python3_EXECUTABLE} ${PROJECT_SOURCE_DIR}/tests/Canvas/TestAutomation/end_to_end_test.py
      --program $<TARGET_FILE:tv-gallery>
      --module $<TARGET_FILE:TvTestAutomation>
      --module-v3 $<TARGET_FILE:TvTestAutomationV3>
      --driver ${PROJECT_SOURCE_DIR}/tools/tvdriver.py)
  set_tests_properties(tv_testautomation_end_to_end PROPERTIES
    LABELS gui TIMEOUT 300 RUN_SERIAL TRUE SKIP_RETURN_CODE 77)
  set_property(GLOBAL APPEND PROPERTY TV_ALL_TESTS tv-gallery TvTestAutomation TvTestAutomationV3)
endif()

tv_fuzz(JsonRpcFuzz
  SOURCES fuzz/JsonRpcFuzz.cpp
  DEPS tv_testautomation_rpc)
