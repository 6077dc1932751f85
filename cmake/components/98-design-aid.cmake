# The Design Aid panel: the tool window of live design, with the pixel zoom at its top.
tv_ui_sources(
  SOURCES
    Canvas/UI/DesignAid.cpp)
