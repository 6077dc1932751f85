# Images: PNG skins with their cache and gamma, nine-patch stretching, the PNG codec of
# screenshots, SVG icons over Anti-Grain Geometry, and screenshots of a frame.
tv_library(tv_images
  SOURCES
    Canvas/UI/detail/PngReader.cpp
    Canvas/UI/Media.cpp
    Canvas/UI/StretchableBits.cpp
    Canvas/UI/PNG.cpp
    Canvas/UI/SVG/Exception.cpp
    Canvas/UI/SVG/Colors.cpp
    Canvas/UI/SVG/PathTokenizer.cpp
    Canvas/UI/SVG/PathRenderer.cpp
    Canvas/UI/SVG/Parser.cpp
    Canvas/UI/SVG/XmlHandler.cpp
    Canvas/UI/SVG/SVG.cpp
    Canvas/UI/AGGInlineRenderer.cpp
    Canvas/UI/Native/ScreenShotHost.cpp
    Canvas/UI/ScreenShot.cpp
  DEPS tv_window tv_pixels tv_files tv_config tv_utilities
       PkgConfig::PNG PkgConfig::ZLIB PkgConfig::AGG)
