find_package(Qt6 6.4 REQUIRED COMPONENTS Core)
find_package(Boost 1.81 REQUIRED COMPONENTS json)
find_package(OpenSSL 3 REQUIRED)

if(NOT ORVANE_BUILD_FUZZERS)
    find_package(Qt6 6.4 REQUIRED COMPONENTS Gui Qml Quick DBus Network Widgets)
    find_package(QCoro6 0.8 REQUIRED COMPONENTS Core)
    find_package(PkgConfig REQUIRED)
    pkg_check_modules(Libsecret REQUIRED IMPORTED_TARGET libsecret-1)
    pkg_check_modules(Gio REQUIRED IMPORTED_TARGET gio-unix-2.0)
    pkg_check_modules(Canberra REQUIRED IMPORTED_TARGET libcanberra)
    pkg_check_modules(Pulse REQUIRED IMPORTED_TARGET libpulse)
    pkg_check_modules(
        Xcb REQUIRED IMPORTED_TARGET
        xcb xcb-xinput xcb-xfixes xcb-shape xcb-xkb)
endif()

find_program(CCACHE ccache)
if(CCACHE)
    # Without these it takes nothing that has a precompiled header.
    set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env
                                    CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime
                                    ${CCACHE})
    add_compile_options($<$<CXX_COMPILER_ID:GNU>:-fpch-preprocess>)
endif()
find_program(MOLD mold)
if(MOLD)
    add_link_options(-fuse-ld=mold)
endif()
