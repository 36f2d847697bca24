# All of one folder: sources into `sources`, QML files into `qml`. A file that comes or goes is seen
# by the next build.
macro(orvane_glob_sources)
    file(GLOB sources CONFIGURE_DEPENDS RELATIVE ${CMAKE_CURRENT_SOURCE_DIR} *.cpp *.h)
    file(GLOB qml CONFIGURE_DEPENDS RELATIVE ${CMAKE_CURRENT_SOURCE_DIR} *.qml)
endmacro()

# The current folder of VelmoUI as a library and, where it has QML, as a QML module: Modules/Notes is
# VelmoUINotes and Velmo.Modules.Notes. orvane_add_feature(LIBRARIES ... [RESOURCES ...])
function(orvane_add_feature)
    cmake_parse_arguments(PARSE_ARGV 0 arg "" "" "LIBRARIES;RESOURCES")
    orvane_glob_sources()
    cmake_path(GET CMAKE_CURRENT_SOURCE_DIR FILENAME name)
    file(RELATIVE_PATH folder ${PROJECT_SOURCE_DIR}/VelmoUI ${CMAKE_CURRENT_SOURCE_DIR})
    string(REPLACE "/" "." uri Velmo/${folder})
    set(target VelmoUI${name})
    qt_add_library(${target} STATIC)
    if(qml)
        set_property(GLOBAL APPEND PROPERTY ORVANE_QML_MODULES ${uri})
        # qmllint looks for the bases of our types in the modules named here.
        set(dependencies QtQuick)
        foreach(library IN LISTS arg_LIBRARIES)
            get_target_property(library_uri ${library} QT_QML_MODULE_URI)
            if(library_uri)
                list(APPEND dependencies ${library_uri})
            endif()
        endforeach()
        set(CMAKE_AUTOMOC OFF) # for the targets beside ours
        qt_add_qml_module(
            ${target}
            URI ${uri}
            VERSION 1.0
            RESOURCE_PREFIX /qt/qml
            OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/qml/Velmo/${folder}
            IMPORT_PATH ${PROJECT_BINARY_DIR}/qml
            DEPENDENCIES ${dependencies}
            NO_PLUGIN
            SOURCES ${sources}
            RESOURCES ${arg_RESOURCES}
            QML_FILES ${qml})
        # The generated registration includes our headers by their bare names.
        target_include_directories(${target} PRIVATE ${CMAKE_CURRENT_SOURCE_DIR})
        # Compiled QML is a small file for each of ours that includes much of Qt.
        get_target_property(compiled_qml ${target} SOURCES)
        list(FILTER compiled_qml INCLUDE REGEX "/qmlcache/.*_qml\\.cpp$")
        set_source_files_properties(${compiled_qml} PROPERTIES UNITY_GROUP qml)
        set_target_properties(${target} PROPERTIES UNITY_BUILD ON UNITY_BUILD_MODE GROUP)
    else()
        target_sources(${target} PRIVATE ${sources})
    endif()
    target_link_libraries(${target} PUBLIC ${arg_LIBRARIES})
    orvane_warn_on_own_sources(${target})
    # As the warnings have it: a precompiled header is of one mind.
    target_compile_options(${target} PRIVATE -Wpedantic)
    if(TARGET VelmoUIDesign AND NOT name STREQUAL Design)
        target_precompile_headers(${target} REUSE_FROM VelmoUIDesign)
    else()
        target_precompile_headers(${target} PRIVATE ${ORVANE_QUICK_HEADERS})
    endif()
    target_link_libraries(VelmoUI INTERFACE ${target})
endfunction()
