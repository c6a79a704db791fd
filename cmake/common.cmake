# What every target of ours shares: warnings, sanitizers, Qt strictness, the compiler cache.
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
if(NOT CMAKE_BUILD_TYPE)
    set(CMAKE_BUILD_TYPE Release)
endif()

find_program(WMS_CCACHE ccache)
if(WMS_CCACHE)
    # Paths relative to the source tree, so that two checkouts share what the cache holds.
    set(CMAKE_CXX_COMPILER_LAUNCHER
        ${CMAKE_COMMAND} -E env CCACHE_BASEDIR=${CMAKE_SOURCE_DIR} CCACHE_NOHASHDIR=1 ${WMS_CCACHE})
endif()

add_library(wms_options INTERFACE)
target_compile_options(wms_options INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Wcast-align -Wunused -Wformat=2
    -Wduplicated-cond -Wlogical-op -Wextra-semi $<$<BOOL:${WMS_WARNINGS_AS_ERRORS}>:-Werror>)
if(WMS_SANITIZE)
    target_compile_options(wms_options INTERFACE -fsanitize=${WMS_SANITIZE} -fno-sanitize-recover=all)
    target_link_options(wms_options INTERFACE -fsanitize=${WMS_SANITIZE})
endif()

# The client: C++17 and Qt's strict string and connection rules.
add_library(wms_client_options INTERFACE)
target_link_libraries(wms_client_options INTERFACE wms_options)
target_compile_features(wms_client_options INTERFACE cxx_std_17)
target_compile_definitions(wms_client_options INTERFACE
    QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_CAST_FROM_BYTEARRAY QT_NO_URL_CAST_FROM_STRING
    QT_NO_NARROWING_CONVERSIONS_IN_CONNECT QT_STRICT_ITERATORS QT_DEPRECATED_WARNINGS)

# The service: C++20.
add_library(wmsd_options INTERFACE)
target_link_libraries(wmsd_options INTERFACE wms_options)
target_compile_features(wmsd_options INTERFACE cxx_std_20)
