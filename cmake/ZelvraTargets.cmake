# How this tree declares its libraries and tests, so that each folder's list is only a list.

find_package(PkgConfig REQUIRED)
find_package(Threads REQUIRED)

# zelvra_library(NAME SOURCES ... [PUBLIC targets...] [PRIVATE targets...])
# Headers are included from the root of the tree: "ZelvraCore/records/CMTime.h".
function(zelvra_library name)
    cmake_parse_arguments(ARG "" "" "SOURCES;PUBLIC;PRIVATE" ${ARGN})
    add_library(${name} STATIC ${ARG_SOURCES})
    target_include_directories(${name} PUBLIC "${PROJECT_SOURCE_DIR}")
    target_link_libraries(${name} PUBLIC ${ARG_PUBLIC} PRIVATE ${ARG_PRIVATE} zelvra_options)
endfunction()

# zelvra_test(NAME SOURCES ... LIBRARIES ...): one program per folder of tests, run by CTest.
function(zelvra_test name)
    cmake_parse_arguments(ARG "" "" "SOURCES;LIBRARIES" ${ARGN})
    find_package(GTest REQUIRED)
    add_executable(${name} ${ARG_SOURCES})
    target_link_libraries(${name} PRIVATE ${ARG_LIBRARIES} GTest::gtest GTest::gmock GTest::gtest_main
                                          zelvra_options)
    add_test(NAME ${name} COMMAND ${name})
    set_tests_properties(${name} PROPERTIES
        ENVIRONMENT "LSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/tests/leaks-of-others.txt")
endfunction()
