# add_subsystem(NAME SOURCES files… [USES libraries…] [TESTS files…] [TEST_USES libraries…])
# makes the static library pelmora_NAME (alias Pelmora::NAME) and, when tests are built, the program
# NAME_tests, which CTest runs test by test under the label "unit".
function(add_subsystem name)
  cmake_parse_arguments(arg "" "" "SOURCES;USES;TESTS;TEST_USES" ${ARGN})
  add_library(pelmora_${name} STATIC ${arg_SOURCES})
  add_library(Pelmora::${name} ALIAS pelmora_${name})
  target_include_directories(pelmora_${name} PUBLIC ${PROJECT_SOURCE_DIR}/src)
  target_link_libraries(pelmora_${name} PUBLIC ${arg_USES} PRIVATE Pelmora::flags)
  if(PELMORA_TESTS AND arg_TESTS)
    add_executable(${name}_tests ${arg_TESTS} ${PROJECT_SOURCE_DIR}/tests/main.cpp)
    target_link_libraries(${name}_tests PRIVATE pelmora_${name} ${arg_TEST_USES} GTest::gtest
                                                GTest::gmock Pelmora::flags)
    gtest_discover_tests(${name}_tests DISCOVERY_MODE PRE_TEST DISCOVERY_TIMEOUT 60
                         PROPERTIES LABELS unit TIMEOUT 30)
  endif()
endfunction()

# add_fuzzer(NAME SOURCE libraries…) makes the program NAME, which feeds libFuzzer's inputs to it.
function(add_fuzzer name source)
  if(PELMORA_FUZZ)
    add_executable(${name} ${source})
    target_link_libraries(${name} PRIVATE ${ARGN} Pelmora::flags)
    target_link_options(${name} PRIVATE -fsanitize=fuzzer)
    set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/fuzz)
  endif()
endfunction()
