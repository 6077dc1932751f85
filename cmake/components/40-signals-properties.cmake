# Signals, objects with their ownership lists, and named typed properties with their text forms.
tv_library(tv_signals
  SOURCES
    TvBase/Util/Object.cpp
    TvBase/Util/PropertyHolder.cpp
    TvBase/Util/PropertySerializer.cpp
    Canvas/UI/ColorConversion.cpp
  DEPS tv_core Boost::headers)

tv_test(tv_signals_tests
  SOURCES
    tests/TvBase/Util/SignalTest.cpp
    tests/TvBase/Util/ObjectTest.cpp
    tests/TvBase/Util/PropertyHolderTest.cpp
    tests/TvBase/Util/PropertySerializerTest.cpp
    tests/Canvas/UI/ColorConversionTest.cpp
  DEPS tv_signals)

tv_fuzz(PropertyTextFuzz
  SOURCES fuzz/PropertyTextFuzz.cpp
  DEPS tv_signals)

tv_bench(tv_signals_bench
  SOURCES bench/SignalBench.cpp
  DEPS tv_signals)
