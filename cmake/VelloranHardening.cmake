# What makes a mistake in the program hard to abuse, for everything that is installed. tools/check-hardening looks at the result.
# The sanitizers find more, and have ideas of their own of what these options change.

option(VELLORAN_HARDENING "Build with the protections of compiler and linker" ON)

if(VELLORAN_HARDENING
   AND NOT VELLORAN_SANITIZERS
   AND NOT VELLORAN_FUZZ
   AND NOT VELLORAN_COVERAGE)
  include(CheckCXXCompilerFlag)
  # The last two are the same for different processors.
  foreach(flag -fstack-protector-strong -fstack-clash-protection -fcf-protection=full -mbranch-protection=standard)
    string(MAKE_C_IDENTIFIER "VELLORAN_HAS${flag}" has)
    check_cxx_compiler_flag("${flag}" ${has})
    if(${has})
      add_compile_options("${flag}")
    endif()
  endforeach()
  # Lengths are known to the compiler only where it optimises; elsewhere the library would complain.
  add_compile_options("$<$<CONFIG:Release,RelWithDebInfo,MinSizeRel>:SHELL:-U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=3>")
  add_link_options(LINKER:-z,relro,-z,now,-z,noexecstack)

  include(CheckPIESupported)
  check_pie_supported(LANGUAGES CXX)
endif()
