# Layers are static libraries. Each one is also linked once on its own, whole and with no undefined symbol allowed, against
# exactly the layers it declares: a dependency that is not declared does not link.

add_library(velloran_options INTERFACE)
target_compile_options(
  velloran_options
  INTERFACE -Wall
            -Wextra
            -Wpedantic
            -Wshadow
            -Wconversion
            -Wsign-conversion
            -Wnon-virtual-dtor
            -Woverloaded-virtual
            -Wcast-align
            -Wformat=2
            -Wnull-dereference
            -Wextra-semi
            -Werror)
# GCC 12 reports null dereferences inside inlined library code and coroutine frames at -O2, and takes the text inside an empty
# std::optional for one that is read; clang has no such flag behaviour.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  target_compile_options(velloran_options INTERFACE -Wno-null-dereference -Wno-maybe-uninitialized)
endif()
if(VELLORAN_SANITIZERS)
  target_compile_options(velloran_options INTERFACE -fsanitize=${VELLORAN_SANITIZERS} -fno-omit-frame-pointer
                                                    -fno-sanitize-recover=all)
  target_link_options(velloran_options INTERFACE -fsanitize=${VELLORAN_SANITIZERS})
endif()
if(VELLORAN_FUZZ)
  # Everything reports the edges it takes; only the targets link the fuzzer's own main function.
  target_compile_options(velloran_options INTERFACE -fsanitize=fuzzer-no-link)
endif()
if(VELLORAN_COVERAGE)
  target_compile_options(velloran_options INTERFACE --coverage -fno-inline)
  target_link_options(velloran_options INTERFACE --coverage)
endif()

# velloran_layer(<name> SOURCES <file>... DEPENDS <target>...)
function(velloran_layer name)
  cmake_parse_arguments(LAYER "" "" "SOURCES;DEPENDS" ${ARGN})
  add_library(velloran_${name} STATIC ${LAYER_SOURCES})
  target_include_directories(velloran_${name} PUBLIC "${CMAKE_SOURCE_DIR}/src")
  target_link_libraries(velloran_${name} PUBLIC ${LAYER_DEPENDS} PRIVATE velloran_options)
  if(NOT VELLORAN_SANITIZERS AND NOT VELLORAN_FUZZ AND NOT VELLORAN_COVERAGE)
    file(WRITE "${CMAKE_BINARY_DIR}/empty.cpp.in" "\n")
    configure_file("${CMAKE_BINARY_DIR}/empty.cpp.in" "${CMAKE_BINARY_DIR}/empty.cpp" COPYONLY)
    add_library(layer_check_${name} MODULE "${CMAKE_BINARY_DIR}/empty.cpp")
    target_link_libraries(
      layer_check_${name} PRIVATE -Wl,--no-undefined -Wl,--whole-archive $<TARGET_FILE:velloran_${name}>
                                  -Wl,--no-whole-archive ${LAYER_DEPENDS})
    add_dependencies(layer_check_${name} velloran_${name})
  endif()
endfunction()
