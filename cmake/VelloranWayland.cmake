# velloran_wayland_protocols(<target> <client|server> <file>...): a library of what the scanner makes of protocol files. It is no
# code of ours, and C, so our warnings are none of its business.

pkg_check_modules(WAYLAND_CLIENT REQUIRED IMPORTED_TARGET wayland-client)
pkg_get_variable(WAYLAND_SCANNER wayland-scanner wayland_scanner)
if(NOT WAYLAND_SCANNER)
  message(FATAL_ERROR "wayland-scanner was not found.")
endif()

function(velloran_wayland_protocols target side)
  set(generated "${CMAKE_CURRENT_BINARY_DIR}/${target}")
  file(MAKE_DIRECTORY "${generated}")
  set(sources)
  foreach(file IN LISTS ARGN)
    get_filename_component(name "${file}" NAME_WE)
    set(header "${generated}/${name}-${side}-protocol.h")
    set(code "${generated}/${name}-protocol.c")
    add_custom_command(
      OUTPUT "${header}" "${code}"
      COMMAND "${WAYLAND_SCANNER}" ${side}-header "${file}" "${header}"
      COMMAND "${WAYLAND_SCANNER}" private-code "${file}" "${code}"
      DEPENDS "${file}"
      VERBATIM)
    list(APPEND sources "${header}" "${code}")
  endforeach()
  add_library(${target} STATIC ${sources})
  target_include_directories(${target} SYSTEM PUBLIC "${generated}")
  string(TOUPPER "${side}" upper_side)
  target_link_libraries(${target} PUBLIC PkgConfig::WAYLAND_${upper_side})
endfunction()
