# Every flag of the project's own code, on one target.
add_library(pelmora_flags INTERFACE)
add_library(Pelmora::flags ALIAS pelmora_flags)
target_compile_options(pelmora_flags INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion)
target_compile_definitions(pelmora_flags INTERFACE QT_NO_KEYWORDS QT_DISABLE_DEPRECATED_BEFORE=0x060400)
if(PELMORA_WERROR)
  target_compile_options(pelmora_flags INTERFACE -Werror)
endif()

# What distributions harden programs with. Where sanitizers or fuzzers are at work they do the same
# and more. Whoever builds may set levels of their own (CMAKE_CXX_FLAGS), or switch it all off.
option(PELMORA_HARDENING "Harden the programs as distributions do" ON)
if(PELMORA_HARDENING AND NOT PELMORA_SANITIZE AND NOT PELMORA_FUZZ)
  include(CheckCXXCompilerFlag)
  add_link_options($<$<STREQUAL:$<TARGET_PROPERTY:TYPE>,EXECUTABLE>:-pie>
                   LINKER:-z,relro LINKER:-z,now LINKER:-z,noexecstack)
  # Code is checked while it runs where it is optimised: what is built for work on it stays quick to
  # build, and is not installed.
  foreach(flag -fPIE -fstack-protector-strong -fstack-clash-protection
               -fcf-protection=full -mbranch-protection=standard)  # the latter: of x86, and of ARM
    string(MAKE_C_IDENTIFIER "PELMORA_HAS${flag}" has)
    check_cxx_compiler_flag(${flag} ${has})
    if(${has})
      add_compile_options($<$<NOT:$<CONFIG:Debug>>:${flag}>)
    endif()
  endforeach()
  if(NOT CMAKE_CXX_FLAGS MATCHES "_FORTIFY_SOURCE")
    # A compiler may define another level by itself. Without optimising there is none.
    add_compile_options("$<$<CONFIG:Release,RelWithDebInfo,MinSizeRel>:-U_FORTIFY_SOURCE>"
                        "$<$<CONFIG:Release,RelWithDebInfo,MinSizeRel>:-D_FORTIFY_SOURCE=3>")
  endif()
endif()

# Builds again what was built before in no time, where it is installed.
find_program(CCACHE ccache)
if(CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CCACHE})
endif()

# Sanitizers must cover everything that is linked together, so they are set for the whole build.
if(PELMORA_SANITIZE)
  add_compile_options(-fsanitize=${PELMORA_SANITIZE} -fno-omit-frame-pointer
                      -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${PELMORA_SANITIZE})
endif()

# What fuzzers link tells them which of its branches an input has reached.
if(PELMORA_FUZZ)
  add_compile_options(-fsanitize=fuzzer-no-link)
  add_link_options(-fsanitize=fuzzer-no-link)
endif()

# Threads count at the same time.
if(PELMORA_COVERAGE)
  add_compile_options(--coverage -fprofile-update=atomic)
  add_link_options(--coverage)
endif()
