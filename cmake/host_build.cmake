# Host: the portable core and its tests, natively.
target_sources(veldrake_core PRIVATE ${veldrake_host_sources})

if(VELDRAKE_FUZZ)
    include(fuzz)
    return()
endif()

find_package(GTest REQUIRED)
find_package(Threads REQUIRED)
include(GoogleTest)

add_executable(veldrake_host_tests ${veldrake_core_test_sources} ${veldrake_per_exe_sources})
target_include_directories(veldrake_host_tests PRIVATE "${CMAKE_SOURCE_DIR}/Tests")
target_link_libraries(veldrake_host_tests PRIVATE veldrake_core GTest::gtest_main Threads::Threads)

if(VELDRAKE_SANITIZE STREQUAL "thread")
    # ThreadSanitizer runs the tests that start threads; they carry "threads" in their names.
    add_test(NAME host_threads COMMAND veldrake_host_tests --gtest_filter=*threads*)
    set_tests_properties(host_threads PROPERTIES LABELS "host;threads")
else()
    gtest_discover_tests(veldrake_host_tests PROPERTIES LABELS host DISCOVERY_TIMEOUT 60)
endif()

if(veldrake_benchmark_sources)
    find_package(benchmark QUIET)
    if(benchmark_FOUND)
        add_executable(veldrake_benchmarks ${veldrake_benchmark_sources} ${veldrake_per_exe_sources})
        target_include_directories(veldrake_benchmarks PRIVATE "${CMAKE_SOURCE_DIR}/Tests")
        target_link_libraries(veldrake_benchmarks PRIVATE veldrake_core benchmark::benchmark_main)
    endif()
endif()
