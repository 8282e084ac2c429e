# SPDX-License-Identifier: LGPL-2.1-or-later
#
# subtitles_add_benchmark(NAME SOURCES file... [LIBRARIES target...])
#
# One program of Google Benchmark. With tests, each of its benchmarks is run for a moment as a test
# of label "benchmarks": that proves that it works, and measures nothing.
find_package(benchmark REQUIRED)

function(subtitles_add_benchmark name)
  cmake_parse_arguments(BENCH "" "" "SOURCES;LIBRARIES" ${ARGN})
  add_executable(${name} ${BENCH_SOURCES})
  target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR}/code/libs ${PROJECT_SOURCE_DIR})
  target_compile_definitions(${name} PRIVATE SUBTITLES_SAMPLES="${PROJECT_SOURCE_DIR}/samples")
  target_link_libraries(${name} PRIVATE
    subtitles-internal benchmark-main benchmark::benchmark ${BENCH_LIBRARIES} project-options)
  if(SUBTITLES_BUILD_TESTS)
    add_test(NAME ${name} COMMAND ${name} --benchmark_min_time=0.001)
    set_tests_properties(${name} PROPERTIES TIMEOUT 300 LABELS benchmarks)
  endif()
endfunction()
