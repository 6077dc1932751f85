# Characters a face lacks, drawn with the face fontconfig offers for them.
tv_ui_sources(SOURCES Canvas/UI/FontFallback.cpp)

tv_test(FontFallbackTest
  SOURCES
    tests/Canvas/UI/FontFallbackTest.cpp
    tests/Canvas/UI/support/FontTestSupport.cpp
    tests/support/TempFolder.cpp
  DEPS tv_ui)

# The same without any face for the characters: fontconfig sees the Liberation faces alone.
set(TV_LATIN_ONLY_FONTS ${CMAKE_BINARY_DIR}/fontconfig-latin-only.conf)
file(WRITE ${TV_LATIN_ONLY_FONTS}
  "<?xml version=\"1.0\"?>\n<!DOCTYPE fontconfig SYSTEM \"fonts.dtd\">\n<fontconfig>\n"
  "  <dir>/usr/share/fonts/truetype/liberation2</dir>\n"
  "  <cachedir>${CMAKE_BINARY_DIR}/fontconfig-latin-only-cache</cachedir>\n</fontconfig>\n")
add_test(NAME FontFallbackTest.WithoutFallbackFaces
         COMMAND FontFallbackTest --gtest_filter=FontFallback.WithoutAFaceThatHasThem*)
set_tests_properties(FontFallbackTest.WithoutFallbackFaces PROPERTIES
  LABELS unit TIMEOUT 120
  ENVIRONMENT "FONTCONFIG_FILE=${TV_LATIN_ONLY_FONTS};TV_NO_FALLBACK_FACES=1")
