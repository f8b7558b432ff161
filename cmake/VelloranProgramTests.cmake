# velloran_program_tests(<label> [ALONE <class>...]): each test class in the test files of the current folder is one test, which
# drives the whole program on a private desktop. Those that measure time or effort have the machine to themselves. The others
# mostly wait.
function(velloran_program_tests label)
  cmake_parse_arguments(TESTS "" "" "ALONE" ${ARGN})
  file(GLOB files CONFIGURE_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/test_*.py")
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${files})
  foreach(file IN LISTS files)
    get_filename_component(module "${file}" NAME_WE)
    file(STRINGS "${file}" classes REGEX "^class [A-Za-z]+\\((Desktop|Compositor)Case\\):")
    if(NOT classes)
      message(FATAL_ERROR "${file} has no test class")
    endif()
    foreach(line IN LISTS classes)
      string(REGEX REPLACE "^class ([A-Za-z]+)\\(.*" "\\1" class "${line}")
      set(name "${label}.${class}")
      add_test(
        NAME "${name}"
        COMMAND /usr/bin/python3 -m harness.suite "${module}.${class}"
        WORKING_DIRECTORY "${CMAKE_CURRENT_SOURCE_DIR}")
      set_tests_properties("${name}" PROPERTIES LABELS ${label} TIMEOUT 180 SKIP_RETURN_CODE 77)
      if(class IN_LIST TESTS_ALONE)
        set_tests_properties("${name}" PROPERTIES RUN_SERIAL TRUE)
      endif()
      set_property(
        TEST "${name}"
        PROPERTY ENVIRONMENT
                 "PYTHONPATH=${CMAKE_SOURCE_DIR}/tests"
                 "PYTHONDONTWRITEBYTECODE=1"
                 "VELLORAN_PROGRAM=$<TARGET_FILE:velloran>"
                 "VELLORAN_OBSERVER=$<TARGET_FILE:velloran-observer>"
                 "VELLORAN_WITNESS=$<TARGET_FILE:velloran-wayland-witness>"
                 "VELLORAN_PICTURES=${CMAKE_BINARY_DIR}/tests/e2e/pictures")
    endforeach()
  endforeach()
endfunction()
