# String, the shared value types, exceptions.
tv_library(tv_core
  SOURCES
    TvBase/Util/String.cpp
    TvBase/Util/Exception.cpp
    Canvas/UI/Rect.cpp
  DEPS Boost::headers Threads::Threads)

tv_test(tv_core_tests
  SOURCES
    tests/TvBase/Util/StringTest.cpp
    tests/TvBase/Util/ExceptionTest.cpp
    tests/Canvas/UI/RectTest.cpp
  DEPS tv_core)

tv_test(tv_string_thread_tests THREADS
  SOURCES tests/TvBase/Util/StringThreadTest.cpp
  DEPS tv_core)

tv_fuzz(StringParsersFuzz
  SOURCES fuzz/StringParsersFuzz.cpp
  DEPS tv_core)
