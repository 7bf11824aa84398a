# SPDX-License-Identifier: GPL-3.0-or-later
#
# Functions that declare libraries, tests and QML modules, so that the CMakeLists.txt of a folder contains only lists.

# zelvra_library(NAME SOURCES ... [PUBLIC targets...] [PRIVATE targets...])
# Headers are included from the root of the tree: "ZelvraCore/records/CMTime.h".
function(zelvra_library name)
    cmake_parse_arguments(ARG "" "" "SOURCES;PUBLIC;PRIVATE" ${ARGN})
    add_library(${name} STATIC ${ARG_SOURCES})
    target_include_directories(${name} PUBLIC "${PROJECT_SOURCE_DIR}")
    target_link_libraries(${name}
        PUBLIC
            ${ARG_PUBLIC}
        PRIVATE
            ${ARG_PRIVATE}
            zelvra_options)
endfunction()

# zelvra_test(NAME SOURCES ... LIBRARIES ...): one program per folder of tests, run by CTest.
function(zelvra_test name)
    cmake_parse_arguments(ARG "" "" "SOURCES;LIBRARIES" ${ARGN})
    add_executable(${name} ${ARG_SOURCES})
    target_link_libraries(${name}
        PRIVATE
            ${ARG_LIBRARIES}
            GTest::gtest
            GTest::gmock
            GTest::gtest_main
            zelvra_options)
    add_test(NAME ${name} COMMAND ${name})
    set_tests_properties(${name} PROPERTIES
        ENVIRONMENT "LSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/tests/leaks-of-others.txt;TSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/tests/races-of-others.txt")
endfunction()

# zelvra_qml_module(NAME URI SOURCES ... QML ... [SINGLETONS ...] [RESOURCES ...] [PUBLIC targets...] [PRIVATE targets...])
# A static library of views: C++ types with QML_ELEMENT, and QML files. Programs link it with zelvra_link_views.
function(zelvra_qml_module name uri)
    cmake_parse_arguments(ARG "" "" "SOURCES;QML;SINGLETONS;RESOURCES;PUBLIC;PRIVATE" ${ARGN})
    add_library(${name} STATIC ${ARG_SOURCES})
    # Qt's tools include headers by their bare names. Our warnings apply to our own sources, not to generated ones.
    target_include_directories(${name} PUBLIC "${PROJECT_SOURCE_DIR}" PRIVATE "${CMAKE_CURRENT_SOURCE_DIR}")
    target_link_libraries(${name} PUBLIC ${ARG_PUBLIC} Qt6::Quick PRIVATE ${ARG_PRIVATE})
    set_source_files_properties(${ARG_SOURCES} PROPERTIES
        COMPILE_OPTIONS "$<TARGET_PROPERTY:zelvra_options,INTERFACE_COMPILE_OPTIONS>")
    set_source_files_properties(${ARG_SINGLETONS} PROPERTIES QT_QML_SINGLETON_TYPE TRUE)
    string(REPLACE "." "/" folder "${uri}")
    qt_add_qml_module(${name} URI ${uri} VERSION 1.0
        RESOURCE_PREFIX /qml
        OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/qml/${folder}"
        IMPORT_PATH "${PROJECT_BINARY_DIR}/qml"
        QML_FILES ${ARG_QML} ${ARG_SINGLETONS} RESOURCES ${ARG_RESOURCES})
endfunction()

# Links all QML modules into a program.
function(zelvra_link_views name)
    foreach(module IN ITEMS zelvra_bridge zelvra_controls zelvra_editor zelvra_views zelvra_shell)
        target_link_libraries(${name} PRIVATE ${module} ${module}plugin)
    endforeach()
endfunction()
