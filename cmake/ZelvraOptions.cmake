# SPDX-License-Identifier: GPL-3.0-or-later
#
# Options of the build, and the compiler flags of all targets.

option(ZELVRA_TESTS "Build the tests" ON)
option(ZELVRA_BENCHMARKS "Build the benchmarks" OFF)
option(ZELVRA_FUZZERS "Build the fuzzers (clang only)" OFF)
option(ZELVRA_WARNINGS_AS_ERRORS "Treat warnings as errors" OFF)
set(ZELVRA_SANITIZERS "" CACHE STRING "Sanitizers to build with, for example address,undefined")

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
# Files beyond 2 GiB on every platform, and POSIX calls such as copy_file_range.
add_compile_definitions(_FILE_OFFSET_BITS=64 _GNU_SOURCE)

find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    # Keeps paths out of the cache keys, so that other clones and build folders share the results.
    set(CMAKE_CXX_COMPILER_LAUNCHER "${CMAKE_COMMAND}" -E env CCACHE_NOHASHDIR=1
                                    "CCACHE_BASEDIR=${PROJECT_SOURCE_DIR}" "${CCACHE_PROGRAM}")
endif()

add_library(zelvra_options INTERFACE)
target_compile_options(zelvra_options
    INTERFACE
        -Wall
        -Wextra
        -Wpedantic
        -Wshadow
        -Wnon-virtual-dtor
        -Woverloaded-virtual
        -Wcast-qual
        -Wimplicit-fallthrough)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    # When it optimises, g++ 12 wrongly reports these for strings and vectors of the standard library (its bug 105651).
    # clang-tidy reads these flags too and does not know all of them.
    target_compile_options(zelvra_options
        INTERFACE
            -Wno-unknown-warning-option
            -Wno-restrict
            -Wno-stringop-overflow
            -Wno-stringop-overread)
endif()
if(ZELVRA_WARNINGS_AS_ERRORS)
    target_compile_options(zelvra_options INTERFACE -Werror)
endif()
if(ZELVRA_SANITIZERS)
    add_compile_options(-fsanitize=${ZELVRA_SANITIZERS} -fno-omit-frame-pointer -fno-sanitize-recover=all)
    add_link_options(-fsanitize=${ZELVRA_SANITIZERS})
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
        # With sanitizers, g++ wrongly reports uninitialised values in the standard library.
        add_compile_options(-Wno-maybe-uninitialized)
    endif()
endif()
