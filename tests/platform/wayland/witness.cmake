# Another client, which sees clicks and types. The tests and the benchmarks share it.
pkg_get_variable(WAYLAND_PROTOCOLS wayland-protocols pkgdatadir)
velloran_wayland_protocols(wayland_witness_protocols client "${WAYLAND_PROTOCOLS}/stable/xdg-shell/xdg-shell.xml"
                           "${WAYLAND_PROTOCOLS}/staging/xdg-activation/xdg-activation-v1.xml"
                           "${CMAKE_CURRENT_LIST_DIR}/virtual-keyboard-unstable-v1.xml")
add_executable(velloran-wayland-witness "${CMAKE_CURRENT_LIST_DIR}/witnessMain.cpp")
target_link_libraries(velloran-wayland-witness PRIVATE wayland_witness_protocols velloran_wayland_client PkgConfig::XKBCOMMON
                                                       velloran_options)
