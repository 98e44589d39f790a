# What every target shares: language level, warnings, sanitizers, and where programs land.

option(DESKFELLOW_DESKTOP "Build what needs a desktop: the platform floor, the app and its tests" ON)
option(DESKFELLOW_TESTS "Build the tests" ON)
option(DESKFELLOW_BENCH "Build the benchmarks" OFF)
option(DESKFELLOW_FUZZ "Build the fuzz targets (needs clang)" OFF)
option(DESKFELLOW_PRECOMPILE "Precompile the toolkit's headers" ON)
set(DESKFELLOW_SANITIZE "" CACHE STRING "Sanitizers for every target, as -fsanitize takes them")

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_AUTOGEN_ORIGIN_DEPENDS OFF)
if(NOT CMAKE_BUILD_TYPE)
    set(CMAKE_BUILD_TYPE Release)
endif()

# The build tree has the layout of an installation, so a program finds its data the same way in both.
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bin")
set(DESKFELLOW_PLUGIN_DIRECTORY "${CMAKE_BINARY_DIR}/lib/deskfellow")
file(MAKE_DIRECTORY "${CMAKE_BINARY_DIR}/share")
file(CREATE_LINK "${CMAKE_SOURCE_DIR}/data" "${CMAKE_BINARY_DIR}/share/deskfellow" SYMBOLIC)

find_program(DESKFELLOW_CCACHE ccache)
if(DESKFELLOW_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    set(CMAKE_CXX_COMPILER_LAUNCHER "${DESKFELLOW_CCACHE}")
endif()

add_library(deskfellow_flags INTERFACE)
target_include_directories(deskfellow_flags INTERFACE "${CMAKE_SOURCE_DIR}")
target_compile_options(deskfellow_flags INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wold-style-cast -Werror
    # g++ 12 sees overlaps in "text" + string that are none (GCC bug 105651); clang has no such check.
    $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>)
target_compile_definitions(deskfellow_flags INTERFACE DESKFELLOW_VERSION="${PROJECT_VERSION}")
if(DESKFELLOW_SANITIZE)
    target_compile_options(deskfellow_flags INTERFACE
        -fsanitize=${DESKFELLOW_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(deskfellow_flags INTERFACE -fsanitize=${DESKFELLOW_SANITIZE})
endif()

add_library(deskfellow_qt_flags INTERFACE)
target_link_libraries(deskfellow_qt_flags INTERFACE deskfellow_flags)
target_compile_definitions(deskfellow_qt_flags INTERFACE
    QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_KEYWORDS QT_NO_FOREACH)
