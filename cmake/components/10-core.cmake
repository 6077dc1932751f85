# String, the shared value types, exceptions.
tv_library(tv_core
  SOURCES
    TvBase/Util/String.cpp
    TvBase/Util/Exception.cpp
    Canvas/UI/Rect.cpp
  DEPS Boost::headers Threads::Threads)
