# A folder of views: QML files and the C++ that decides what they say, as a static library that the popover's plugin
# and the tests link.
#
#     selvane_add_views(selvane-timer-views Selvane.Timer
#         SOURCES TimerFaceModel.cpp TimerFaceModel.h
#         QML_FILES TimerFace.qml
#         LIBRARIES selvane-controls
#         USES Selvane.Controls)
#
# LIBRARIES are linked, and the views compiled anew when those of one of them change; USES are the modules whose types the C++ classes name in their properties.
# Nothing asks a static library for its QML types by itself: the build writes a function that makes them known, named
# after the module, here qml_register_types_Selvane_Timer().
function(selvane_add_views target uri)
    cmake_parse_arguments(PARSE_ARGV 2 arg "" "" "SOURCES;QML_FILES;LIBRARIES;USES")
    string(REPLACE "." "/" path "${uri}")

    add_library(${target} STATIC)
    set_target_properties(${target} PROPERTIES AUTOMOC ON)
    # By the import path the compiler finds the types of the other folders. A binding that names one that it doesn't
    # know is left to the interpreter.
    qt_add_qml_module(${target}
        URI ${uri}
        VERSION 1.0
        NO_PLUGIN
        RESOURCE_PREFIX /qt-project.org/imports
        OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/qml/${path}"
        IMPORT_PATH "${PROJECT_BINARY_DIR}/qml"
        DEPENDENCIES QtQuick ${arg_USES}
        SOURCES ${arg_SOURCES}
        QML_FILES ${arg_QML_FILES})
    target_include_directories(${target} PRIVATE "${CMAKE_CURRENT_SOURCE_DIR}")
    target_link_libraries(${target}
        PUBLIC ${arg_LIBRARIES} Qt6::Qml Qt6::Quick
        PRIVATE selvane-options)
    if(NOT target STREQUAL selvane-controls)
        target_precompile_headers(${target} REUSE_FROM selvane-controls)
    endif()

    # Qt generates a source from each view. In one piece they take the compiler a third of the time; and they aren't
    # ours to keep free of warnings, or to check for undefined behaviour.
    get_target_property(view_sources ${target} SOURCES)
    list(FILTER view_sources INCLUDE REGEX "/qmlcache/")
    list(TRANSFORM view_sources REPLACE ".*/(\\.rcc/qmlcache/.+)" "#include \"\\1\"" OUTPUT_VARIABLE includes)
    list(JOIN includes "\n" includes)
    set(views "${CMAKE_CURRENT_BINARY_DIR}/${target}_views.cpp")
    file(CONFIGURE OUTPUT "${views}" CONTENT "${includes}\n" @ONLY)
    target_sources(${target} PRIVATE "${views}")
    set_source_files_properties(${view_sources} PROPERTIES HEADER_FILE_ONLY ON)
    set_source_files_properties("${views}" PROPERTIES SKIP_AUTOMOC ON COMPILE_OPTIONS -w)
    if(SELVANE_SANITIZERS MATCHES "undefined")
        set_property(SOURCE "${views}" APPEND PROPERTY COMPILE_OPTIONS -fno-sanitize=undefined)
    endif()

    # What was compiled by the types of other folders is compiled anew when these change.
    set(known "")
    foreach(library IN LISTS arg_LIBRARIES)
        get_target_property(others ${library} SELVANE_VIEW_TYPES)
        if(others)
            list(APPEND known ${others})
        endif()
    endforeach()
    if(known)
        list(REMOVE_DUPLICATES known)
        foreach(source IN LISTS view_sources)
            add_custom_command(OUTPUT "${source}" APPEND DEPENDS ${known})
        endforeach()
    endif()
    set(types ${target}.qmltypes qmldir ${arg_QML_FILES})
    list(TRANSFORM types PREPEND "${PROJECT_BINARY_DIR}/qml/${path}/")
    set_target_properties(${target} PROPERTIES SELVANE_VIEW_TYPES "${known};${types}")
endfunction()
