# Every flag of the project's own code, on one target.
add_library(pelmora_flags INTERFACE)
add_library(Pelmora::flags ALIAS pelmora_flags)
target_compile_options(pelmora_flags INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion)
target_compile_definitions(pelmora_flags INTERFACE QT_NO_KEYWORDS QT_DISABLE_DEPRECATED_BEFORE=0x060400)
if(PELMORA_WERROR)
  target_compile_options(pelmora_flags INTERFACE -Werror)
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

if(PELMORA_COVERAGE)
  add_compile_options(--coverage)
  add_link_options(--coverage)
endif()
