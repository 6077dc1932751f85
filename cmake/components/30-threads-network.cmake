# Worker threads, locks, modules and clocks; the HTTP client over libcurl.
tv_library(tv_threads
  SOURCES
    TvBase/Util/Thread.cpp
    TvBase/Util/CriticalSection.cpp
    TvBase/Util/ProcessInfo.cpp
    TvBase/Util/Module.cpp
  DEPS tv_core Threads::Threads ${CMAKE_DL_LIBS})

# Only the files under HTTP_curl/ see the curl headers.
tv_library(tv_network
  SOURCES
    TvBase/Network/Http.cpp
    TvBase/Network/HttpHelper.cpp
    TvBase/Network/DeploymentURL.cpp
    TvBase/Network/HTTP_curl/CurlHttpStream.cpp
  DEPS tv_threads)
target_link_libraries(tv_network PRIVATE PkgConfig::CURL)

tv_test(ThreadTest THREADS
  SOURCES tests/TvBase/Util/ThreadTest.cpp tests/support/TempFolder.cpp
  DEPS tv_threads)

tv_test(HttpTest THREADS
  SOURCES tests/TvBase/Network/HttpTest.cpp tests/support/HttpFixture.cpp
          tests/support/TempFolder.cpp
  DEPS tv_network)

tv_test(DeploymentURLTest
  SOURCES tests/TvBase/Network/DeploymentURLTest.cpp
  LABELS network
  DEPS tv_network)

tv_bench(HttpStallCpuBench
  SOURCES bench/HttpStallCpuBench.cpp tests/support/HttpFixture.cpp
  DEPS tv_network)
if(TARGET HttpStallCpuBench)
  target_compile_definitions(HttpStallCpuBench PRIVATE TV_SOURCE_DIR="${PROJECT_SOURCE_DIR}")
endif()
