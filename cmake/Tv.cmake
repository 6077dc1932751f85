# Helpers that every component fragment uses, so that a fragment only lists its files.
#
#   tv_library(name SOURCES ... [DEPS ...])       static library, includes from the repository root
#   tv_ui_sources(SOURCES ... [DEPS ...] [PRIVATE_DEPS ...])
#                                                 adds a part of the widget toolkit to tv_ui
#   tv_executable(name SOURCES ... [DEPS ...])    program in <build>/bin
#   tv_test(name SOURCES ... [DEPS ...] [THREADS] [LABELS ...])
#                                                 GoogleTest program registered with CTest;
#                                                 THREADS also runs it in the ThreadSanitizer build
#   tv_bench(name SOURCES ... [DEPS ...])         Google Benchmark program (plain builds only)
#   tv_fuzz(name SOURCES ... [DEPS ...])          libFuzzer target (TV_FUZZ builds only)

function(tv_library name)
  cmake_parse_arguments(A "" "" "SOURCES;DEPS" ${ARGN})
  add_library(${name} STATIC ${A_SOURCES})
  target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR})
  target_link_libraries(${name} PUBLIC ${A_DEPS})
endfunction()

# The widget toolkit is one library, tv_ui: windows draw through the canvas, the canvas makes the
# theme's widgets, frames load layouts, the host ticks the test bridge, so its parts call each
# other in every direction. Each fragment adds its own part's files and outside dependencies.
add_library(tv_ui STATIC)
target_include_directories(tv_ui PUBLIC ${PROJECT_SOURCE_DIR})

function(tv_ui_sources)
  cmake_parse_arguments(A "" "" "SOURCES;DEPS;PRIVATE_DEPS" ${ARGN})
  target_sources(tv_ui PRIVATE ${A_SOURCES})
  target_link_libraries(tv_ui PUBLIC ${A_DEPS} PRIVATE ${A_PRIVATE_DEPS})
endfunction()

function(tv_executable name)
  cmake_parse_arguments(A "" "" "SOURCES;DEPS" ${ARGN})
  add_executable(${name} ${A_SOURCES})
  target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR})
  target_link_libraries(${name} PRIVATE ${A_DEPS})
endfunction()

function(tv_test name)
  cmake_parse_arguments(A "THREADS" "RESOURCE_LOCK" "SOURCES;DEPS;LABELS" ${ARGN})
  add_executable(${name} ${A_SOURCES})
  set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests)
  target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR})
  target_link_libraries(${name} PRIVATE ${A_DEPS} GTest::gtest GTest::gtest_main Threads::Threads)
  target_compile_definitions(${name} PRIVATE TV_SOURCE_DIR="${PROJECT_SOURCE_DIR}"
                                             TV_BINARY_DIR="${CMAKE_BINARY_DIR}")
  # One label per test: a list would be split into separate properties on its way into the
  # generated test script. Threaded tests are labelled "threads" so the ThreadSanitizer build
  # can pick them.
  if(A_THREADS)
    set(labels threads)
  elseif(A_LABELS)
    list(GET A_LABELS 0 labels)
  else()
    set(labels unit)
  endif()
  # Tests that hold a shared resource (the bridge's five ports) name it, so that ctest never
  # runs two of them at once.
  set(lock)
  if(A_RESOURCE_LOCK)
    set(lock RESOURCE_LOCK ${A_RESOURCE_LOCK})
  endif()
  gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST DISCOVERY_TIMEOUT 60
                       PROPERTIES LABELS "${labels}" TIMEOUT 300 ${lock})
  set_property(GLOBAL APPEND PROPERTY TV_ALL_TESTS ${name})
  if(A_THREADS)
    set_property(GLOBAL APPEND PROPERTY TV_THREAD_TESTS ${name})
  endif()
endfunction()

function(tv_bench name)
  cmake_parse_arguments(A "" "" "SOURCES;DEPS" ${ARGN})
  if(NOT TV_BENCH OR TV_SANITIZE)
    return()
  endif()
  add_executable(${name} ${A_SOURCES})
  set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bench)
  target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR})
  target_link_libraries(${name} PRIVATE ${A_DEPS} benchmark::benchmark)
  set_property(GLOBAL APPEND PROPERTY TV_ALL_BENCHES ${name})
endfunction()

function(tv_fuzz name)
  cmake_parse_arguments(A "" "" "SOURCES;DEPS" ${ARGN})
  if(NOT TV_FUZZ)
    return()
  endif()
  add_executable(${name} ${A_SOURCES})
  set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/fuzz)
  target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR})
  target_compile_options(${name} PRIVATE -fsanitize=fuzzer)
  target_link_libraries(${name} PRIVATE ${A_DEPS} -fsanitize=fuzzer)
  set_property(GLOBAL APPEND PROPERTY TV_ALL_FUZZERS ${name})
endfunction()

# Aggregate targets: all_tests, thread_tests, all_benches, all_fuzzers.
function(tv_finish)
  foreach(kind ALL_TESTS THREAD_TESTS ALL_BENCHES ALL_FUZZERS)
    get_property(targets GLOBAL PROPERTY TV_${kind})
    string(TOLOWER ${kind} lower)
    add_custom_target(${lower})
    if(targets)
      add_dependencies(${lower} ${targets})
    endif()
  endforeach()
endfunction()
