# Pelmora::idle_protocols: how Wayland compositors tell of idleness, as code made of the protocols'
# descriptions. Pelmora::idle_server_protocols is the other side, for tests.
enable_language(C)  # the code is C, and means something else as C++
pkg_check_modules(WAYLAND_CLIENT REQUIRED IMPORTED_TARGET wayland-client)
pkg_check_modules(WAYLAND_PROTOCOLS REQUIRED wayland-protocols>=1.27)
pkg_get_variable(wayland_scanner wayland-scanner wayland_scanner)
pkg_get_variable(wayland_protocols wayland-protocols pkgdatadir)
find_package(PlasmaWaylandProtocols REQUIRED)

# make_wayland_code(OUT KIND DESCRIPTION FILE): KIND is what the scanner calls it.
function(make_wayland_code out kind description file)
  add_custom_command(
    OUTPUT ${CMAKE_CURRENT_BINARY_DIR}/${file}
    COMMAND ${wayland_scanner} ${kind} ${description} ${CMAKE_CURRENT_BINARY_DIR}/${file}
    DEPENDS ${description} VERBATIM)
  set(${out} ${${out}} ${CMAKE_CURRENT_BINARY_DIR}/${file} PARENT_SCOPE)
endfunction()

foreach(description ${wayland_protocols}/staging/ext-idle-notify/ext-idle-notify-v1.xml
                    ${PLASMA_WAYLAND_PROTOCOLS_DIR}/idle.xml)
  get_filename_component(name ${description} NAME_WE)
  make_wayland_code(idle_client client-header ${description} ${name}-client-protocol.h)
  make_wayland_code(idle_client private-code ${description} ${name}-protocol.c)
  make_wayland_code(idle_server server-header ${description} ${name}-server-protocol.h)
endforeach()

add_library(pelmora_idle_protocols STATIC ${idle_client})
add_library(Pelmora::idle_protocols ALIAS pelmora_idle_protocols)
target_include_directories(pelmora_idle_protocols SYSTEM PUBLIC ${CMAKE_CURRENT_BINARY_DIR})
target_link_libraries(pelmora_idle_protocols PUBLIC PkgConfig::WAYLAND_CLIENT)

if(PELMORA_TESTS)
  pkg_check_modules(WAYLAND_SERVER REQUIRED IMPORTED_TARGET wayland-server)
  add_custom_target(pelmora_idle_server_headers DEPENDS ${idle_server})
  add_library(pelmora_idle_server_protocols INTERFACE)
  add_library(Pelmora::idle_server_protocols ALIAS pelmora_idle_server_protocols)
  add_dependencies(pelmora_idle_server_protocols pelmora_idle_server_headers)
  target_link_libraries(pelmora_idle_server_protocols INTERFACE PkgConfig::WAYLAND_SERVER)
endif()
