# tarvio_benchmark(NAME LIBRARIES library...): one Google Benchmark program from NAME.cpp. The
# target "benchmarks" builds them all.
add_custom_target(benchmarks)

function(tarvio_benchmark name)
  cmake_parse_arguments(BENCH "" "" "LIBRARIES" ${ARGN})
  add_executable(${name} ${name}.cpp)
  target_link_libraries(${name} PRIVATE ${BENCH_LIBRARIES} benchmark::benchmark tarvio_warnings)
  add_dependencies(benchmarks ${name})
endfunction()
