# Signals, objects with their ownership lists, and named typed properties with their text forms.
tv_library(tv_signals
  SOURCES
    TvBase/Util/Object.cpp
    TvBase/Util/PropertyHolder.cpp
    TvBase/Util/PropertySerializer.cpp
    Canvas/UI/ColorConversion.cpp
  DEPS tv_core Boost::headers)
