# SPDX-License-Identifier: GPL-3.0-or-later
#
# All packages that the build needs. The targets that use one link it themselves.

find_package(PkgConfig REQUIRED)
find_package(Threads REQUIRED)

# The engine
set(ffmpeg_modules libavformat libavcodec libavutil libswscale libswresample)
set(encoder_modules x264 x265)
pkg_check_modules(FFMPEG REQUIRED IMPORTED_TARGET ${ffmpeg_modules})
pkg_check_modules(ENCODERS REQUIRED IMPORTED_TARGET ${encoder_modules})
pkg_check_modules(ZIMG REQUIRED IMPORTED_TARGET zimg)
pkg_check_modules(CAIRO REQUIRED IMPORTED_TARGET cairo)
# What programs that link the installed engine link too.
set(ZELVRACORE_MODULES ${ffmpeg_modules} ${encoder_modules} zimg cairo)

# The application
find_package(Qt6 6.4 REQUIRED COMPONENTS Core Gui Concurrent DBus LinguistTools Qml Quick QuickControls2 Svg)
# What newer versions of Qt do by default, once they know of it.
# The meta-object compiler of Qt 6.4 stumbles over the standard library's <concepts>; it needs nothing of it.
set(CMAKE_AUTOMOC_MOC_OPTIONS -D_GLIBCXX_CONCEPTS)
if(Qt6_VERSION VERSION_GREATER_EQUAL 6.5)
    qt_policy(SET QTP0001 NEW) # QML modules are below one prefix; ours name theirs
endif()
if(Qt6_VERSION VERSION_GREATER_EQUAL 6.8)
    qt_policy(SET QTP0004 NEW) # each folder of QML files has its own qmldir
endif()
find_package(QCoro6 REQUIRED COMPONENTS Core)
pkg_check_modules(MPV REQUIRED IMPORTED_TARGET mpv)
pkg_check_modules(GIO REQUIRED IMPORTED_TARGET gio-2.0)

# The command line, and the documents of annotations that both read and write
find_package(CLI11 REQUIRED)
find_package(nlohmann_json REQUIRED)

if(ZELVRA_TESTS OR ZELVRA_BENCHMARKS)
    find_package(Qt6 6.4 REQUIRED COMPONENTS Test)
endif()
if(ZELVRA_TESTS)
    find_package(GTest REQUIRED)
    pkg_check_modules(GSTREAMER_APP REQUIRED IMPORTED_TARGET gstreamer-app-1.0)
endif()
if(ZELVRA_BENCHMARKS)
    find_package(benchmark REQUIRED)
endif()
