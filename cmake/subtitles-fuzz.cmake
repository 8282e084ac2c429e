# SPDX-License-Identifier: LGPL-2.1-or-later
#
# subtitles_add_fuzz_target(NAME SOURCES file... [LIBRARIES target...])
#
# One way in, with `LLVMFuzzerTestOneInput`. It is always built: with SUBTITLES_FUZZ as a program of
# libFuzzer, which is run by hand, and otherwise with replay-main.cpp as a test over the inputs in
# fuzz/corpus/NAME.
function(subtitles_add_fuzz_target name)
  cmake_parse_arguments(FUZZ "" "" "SOURCES;LIBRARIES" ${ARGN})
  add_executable(${name} ${FUZZ_SOURCES})
  target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR}/code/libs ${PROJECT_SOURCE_DIR})
  target_link_libraries(${name} PRIVATE subtitles-internal test-support ${FUZZ_LIBRARIES} project-options)
  add_dependencies(fuzz-targets ${name})
  if(SUBTITLES_FUZZ)
    target_sources(${name} PRIVATE ${PROJECT_SOURCE_DIR}/fuzz/fuzz-initialize.cpp)
    target_link_options(${name} PRIVATE -fsanitize=fuzzer)
  else()
    target_link_libraries(${name} PRIVATE fuzz-replay)
    add_test(NAME ${name} COMMAND ${name} ${PROJECT_SOURCE_DIR}/fuzz/corpus/${name})
    set_tests_properties(${name} PROPERTIES TIMEOUT 300 LABELS fuzz)
  endif()
endfunction()
