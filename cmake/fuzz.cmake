# libFuzzer targets (clang): each Fuzz/*_fuzz.cpp runs for a bounded time as a ctest test.
set(VELDRAKE_FUZZ_SECONDS 30 CACHE STRING "How long each fuzz target runs in the test command")
file(GLOB veldrake_fuzz_sources CONFIGURE_DEPENDS "${CMAKE_SOURCE_DIR}/Fuzz/*_fuzz.cpp")
foreach(fuzz_source ${veldrake_fuzz_sources})
    get_filename_component(fuzz_name "${fuzz_source}" NAME_WE)
    add_executable(${fuzz_name} "${fuzz_source}" ${veldrake_per_exe_sources})
    target_link_libraries(${fuzz_name} PRIVATE veldrake_core)
    target_link_options(${fuzz_name} PRIVATE -fsanitize=fuzzer)
    set(corpus "${CMAKE_BINARY_DIR}/corpus/${fuzz_name}")
    file(MAKE_DIRECTORY "${corpus}")
    # New inputs go to the build's corpus; the committed one (Fuzz/corpus, grown by scripts/bench --fuzz)
    # is read as seeds and never written by a test run.
    set(seeds "${CMAKE_SOURCE_DIR}/Fuzz/corpus/${fuzz_name}")
    file(MAKE_DIRECTORY "${seeds}")
    add_test(NAME ${fuzz_name} COMMAND ${fuzz_name} -max_total_time=${VELDRAKE_FUZZ_SECONDS} -rss_limit_mb=1024
             "${corpus}" "${seeds}")
    set_tests_properties(${fuzz_name} PROPERTIES LABELS fuzz TIMEOUT 600)
endforeach()
