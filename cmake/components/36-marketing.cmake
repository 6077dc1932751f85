# The marketing banner worker and the address of the maker's web page.
tv_library(tv_marketing
  SOURCES
    Updater/app/MarketingMessageThread.cpp
    Updater/app/MarketingURL.cpp
  DEPS tv_network tv_ui tv_threads)
target_compile_definitions(tv_marketing PRIVATE TV_WEB_HOST="${TV_WEB_HOST}")

tv_test(MarketingMessageThreadTest THREADS
  SOURCES
    tests/Updater/app/MarketingMessageThreadTest.cpp
    tests/Canvas/UI/support/PngTestSupport.cpp
    tests/support/HttpFixture.cpp
    tests/support/TempFolder.cpp
  DEPS tv_marketing)
target_compile_definitions(MarketingMessageThreadTest PRIVATE TV_WEB_HOST="${TV_WEB_HOST}")
