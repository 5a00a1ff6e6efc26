# tallowby_library(<name> SOURCES <file>... [LINKS <target>...])
#
# One folder of src/ as a static library `tallowby_<name>` with the alias `Tallowby::<name>`.
# Headers are named from src/, so an include says which folder it reaches into.

function(tallowby_target_defaults target)
  tallowby_precompile_headers(${target})
  target_include_directories(${target} PUBLIC ${CMAKE_SOURCE_DIR}/src)
  target_compile_definitions(${target} PRIVATE QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_KEYWORDS
                                               QT_NO_FOREACH QT_USE_QSTRINGBUILDER)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Wold-style-cast
                                           -Woverloaded-virtual -Wcast-qual)
  if(TALLOWBY_WERROR)
    target_compile_options(${target} PRIVATE -Werror)
  endif()
  if(TALLOWBY_SANITIZE)
    target_compile_options(${target} PRIVATE -fsanitize=${TALLOWBY_SANITIZE} -fno-omit-frame-pointer)
    target_link_options(${target} PUBLIC -fsanitize=${TALLOWBY_SANITIZE})
  endif()
endfunction()

function(tallowby_library name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LINKS" ${ARGN})
  set(target tallowby_${name})
  add_library(${target} STATIC ${ARG_SOURCES})
  add_library(Tallowby::${name} ALIAS ${target})
  set_target_properties(${target} PROPERTIES AUTOMOC ON)
  target_link_libraries(${target} PUBLIC ${ARG_LINKS})
  tallowby_target_defaults(${target})
endfunction()
