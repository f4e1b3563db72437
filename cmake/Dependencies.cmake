# Finds the real libraries the service builds on. A missing one stops configure with one line
# naming the Debian package that provides it.

function(korvi_require found package what)
  if(NOT ${found})
    message(FATAL_ERROR "missing ${what}: apt-get install ${package}")
  endif()
endfunction()

find_package(LibXml2 QUIET)
korvi_require(LibXml2_FOUND libxml2-dev "libxml2")
find_package(SQLite3 QUIET)
korvi_require(SQLite3_FOUND libsqlite3-dev "SQLite 3")
find_package(OpenSSL QUIET COMPONENTS Crypto)
korvi_require(OpenSSL_FOUND libssl-dev "OpenSSL libcrypto")

# Debian ships the Android host libraries without pkg-config files, under a multiarch android/ dir.
set(KORVI_ANDROID_LIB_DIRS
    /usr/lib/${CMAKE_LIBRARY_ARCHITECTURE}/android
    /usr/lib/android)
find_path(KORVI_ANDROID_INCLUDE_DIR NAMES utils/RefBase.h PATHS /usr/include/android NO_DEFAULT_PATH)
korvi_require(KORVI_ANDROID_INCLUDE_DIR android-libutils-dev "Android libutils headers")
find_path(KORVI_ANDROID_LOG_INCLUDE NAMES log/log.h PATHS /usr/include/android NO_DEFAULT_PATH)
korvi_require(KORVI_ANDROID_LOG_INCLUDE android-liblog-dev "Android liblog headers")
find_path(KORVI_ANDROID_BASE_INCLUDE NAMES android-base/properties.h PATHS /usr/include/android NO_DEFAULT_PATH)
korvi_require(KORVI_ANDROID_BASE_INCLUDE android-libbase-dev "Android libbase headers")

find_library(KORVI_LIBUTILS NAMES utils PATHS ${KORVI_ANDROID_LIB_DIRS} NO_DEFAULT_PATH)
korvi_require(KORVI_LIBUTILS android-libutils-dev "Android libutils")
find_library(KORVI_LIBLOG NAMES log PATHS ${KORVI_ANDROID_LIB_DIRS} NO_DEFAULT_PATH)
korvi_require(KORVI_LIBLOG android-liblog-dev "Android liblog")
find_library(KORVI_LIBBASE NAMES base PATHS ${KORVI_ANDROID_LIB_DIRS} NO_DEFAULT_PATH)
korvi_require(KORVI_LIBBASE android-libbase-dev "Android libbase")
find_library(KORVI_LIBCUTILS NAMES cutils PATHS ${KORVI_ANDROID_LIB_DIRS} NO_DEFAULT_PATH)
korvi_require(KORVI_LIBCUTILS android-libcutils-dev "Android libcutils")

get_filename_component(KORVI_ANDROID_LIB_DIR ${KORVI_LIBUTILS} DIRECTORY)
set(CMAKE_BUILD_RPATH ${KORVI_ANDROID_LIB_DIR})
set(CMAKE_INSTALL_RPATH ${KORVI_ANDROID_LIB_DIR})

find_package(Threads REQUIRED)

add_library(korvi_deps INTERFACE)
add_library(korvi::deps ALIAS korvi_deps)
target_link_libraries(korvi_deps INTERFACE
    LibXml2::LibXml2 SQLite::SQLite3 OpenSSL::Crypto
    ${KORVI_LIBUTILS} ${KORVI_LIBLOG} ${KORVI_LIBBASE} ${KORVI_LIBCUTILS}
    Threads::Threads)
target_link_directories(korvi_deps INTERFACE ${KORVI_ANDROID_LIB_DIR})
target_link_options(korvi_deps INTERFACE "-Wl,-rpath,${KORVI_ANDROID_LIB_DIR}")

if(KORVI_TESTS)
  find_package(GTest QUIET)
  korvi_require(GTest_FOUND "libgtest-dev libgmock-dev" "GoogleTest")
endif()
find_package(benchmark QUIET)
set(KORVI_HAVE_BENCHMARK ${benchmark_FOUND})
if(KORVI_BENCH AND NOT benchmark_FOUND)
  message(FATAL_ERROR "missing Google Benchmark: apt-get install libbenchmark-dev")
endif()
