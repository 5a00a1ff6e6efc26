# tallowby_qml_module(<name> URI <uri> SOURCES <file>... QML_FILES <file>... [DEPENDENCIES <uri>...]
#                    [LINKS <target>...])
#
# A library as tallowby_library makes it that is also the QML module <uri>, whose C++ types build on those of the
# modules that it depends on. The module has no plugin: whoever links it calls its qml_register_types_<uri with underscores>() once, which also keeps the linker from dropping it.

function(tallowby_qml_module name)
  cmake_parse_arguments(ARG "" "URI" "SOURCES;QML_FILES;RESOURCES;DEPENDENCIES;LINKS" ${ARGN})
  set(target tallowby_${name})
  foreach(file IN LISTS ARG_QML_FILES)
    get_filename_component(type ${file} NAME)
    set_source_files_properties(${file} PROPERTIES QT_RESOURCE_ALIAS ${type})
  endforeach()
  # One tree of all modules, so that qmllint finds what a module imports.
  set(QT_QML_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/qml)
  string(REPLACE . / module_path ${ARG_URI})
  qt_add_library(${target} STATIC)
  add_library(Tallowby::${name} ALIAS ${target})
  qt_add_qml_module(${target}
    URI ${ARG_URI} VERSION 1.0 NO_PLUGIN RESOURCE_PREFIX /qt/qml
    OUTPUT_DIRECTORY ${QT_QML_OUTPUT_DIRECTORY}/${module_path}
    DEPENDENCIES ${ARG_DEPENDENCIES}
    SOURCES ${ARG_SOURCES} QML_FILES ${ARG_QML_FILES} RESOURCES ${ARG_RESOURCES})
  target_link_libraries(${target} PUBLIC ${ARG_LINKS})
  # Each file brings in the same few headers, and keeps its names in a namespace of its own.
  if(TARGET ${target}_qmlcache)
    set_target_properties(${target}_qmlcache PROPERTIES UNITY_BUILD ON UNITY_BUILD_BATCH_SIZE 16)
  endif()
  # The generated registration code names headers without their folder.
  foreach(file IN LISTS ARG_SOURCES)
    get_filename_component(folder ${file} DIRECTORY)
    target_include_directories(${target} PRIVATE ${CMAKE_CURRENT_SOURCE_DIR}/${folder})
  endforeach()
  tallowby_target_defaults(${target})
  # The generated registration code casts and shadows as it likes.
  target_compile_options(${target} PRIVATE -Wno-old-style-cast -Wno-shadow -Wno-cast-qual)
endfunction()
