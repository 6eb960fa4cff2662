# add_wayland_protocol(TARGET FILE [SERVER]) generates the C side of a protocol from its description
# and compiles it into TARGET, whose sources then include "NAME-client.h", where NAME is the file's
# name without its endings; with SERVER, there is a "NAME-server.h" for a compositor of tests too.
# What the distribution describes is found below WAYLAND_PROTOCOLS.
pkg_check_modules(WAYLAND_CLIENT REQUIRED IMPORTED_TARGET wayland-client)
pkg_get_variable(WAYLAND_SCANNER wayland-scanner wayland_scanner)
pkg_get_variable(WAYLAND_PROTOCOLS wayland-protocols pkgdatadir)
enable_language(C)

function(add_wayland_protocol target file)
  cmake_parse_arguments(arg "SERVER" "" "" ${ARGN})
  get_filename_component(file ${file} ABSOLUTE)
  get_filename_component(name ${file} NAME_WE)
  set(outputs)
  foreach(kind client-header=client.h server-header=server.h private-code=code.c)
    string(REPLACE "=" ";" pair ${kind})
    list(GET pair 0 what)
    list(GET pair 1 ending)
    if(what STREQUAL "server-header" AND NOT arg_SERVER)
      continue()
    endif()
    set(output ${CMAKE_CURRENT_BINARY_DIR}/protocols/${name}-${ending})
    add_custom_command(OUTPUT ${output} COMMAND ${WAYLAND_SCANNER} ${what} ${file} ${output}
                       DEPENDS ${file} VERBATIM)
    list(APPEND outputs ${output})
  endforeach()
  file(MAKE_DIRECTORY ${CMAKE_CURRENT_BINARY_DIR}/protocols)
  target_sources(${target} PRIVATE ${outputs})
  target_include_directories(${target} SYSTEM PUBLIC ${CMAKE_CURRENT_BINARY_DIR}/protocols)
  target_link_libraries(${target} PUBLIC PkgConfig::WAYLAND_CLIENT)
endfunction()
