# Windows: Veldrake.SystemTray.exe, the core tests again, the Win32 tests, the end-to-end harness and
# the sibling-program doubles. Everything is linked statically so that a bare Wine prefix runs it.
enable_language(RC)

set(veldrake_bin "${CMAKE_BINARY_DIR}/bin")
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${veldrake_bin}")
add_compile_definitions(UNICODE _UNICODE NOMINMAX _WIN32_WINNT=0x0A00 WINVER=0x0A00)
add_link_options(-static -municode)

# The core's few platform pieces (string conversion, thread ids) are Win32 here, so one library
# holds both.
target_sources(veldrake_core PRIVATE ${veldrake_win32_sources})
target_link_libraries(veldrake_core PUBLIC
    user32 gdi32 gdiplus shell32 shlwapi ole32 oleaut32 uuid advapi32 dwmapi comctl32 uxtheme wininet urlmon)

configure_file("${CMAKE_SOURCE_DIR}/Sources/Apps/SystemTray/resources/system_tray.rc.in"
               "${CMAKE_BINARY_DIR}/generated/system_tray.rc" @ONLY)
# The entry point and the resources, shared by the shipped exe and the short-timers one.
add_library(veldrake_tray_entry OBJECT
    "${CMAKE_SOURCE_DIR}/Sources/Apps/SystemTray/system_tray_main_win32.cpp"
    "${CMAKE_BINARY_DIR}/generated/system_tray.rc")
target_include_directories(veldrake_tray_entry PRIVATE "${CMAKE_SOURCE_DIR}/Sources/Apps/SystemTray/resources")
target_link_libraries(veldrake_tray_entry PRIVATE veldrake_core)

include(delay_load)

# VELDRAKE_SHORT_TIMERS=ON gives the tray itself the test timings; shipped builds leave it off.
option(VELDRAKE_SHORT_TIMERS "Build Veldrake.SystemTray.exe with the end-to-end tier's short timers" OFF)
add_executable(Veldrake.SystemTray WIN32 $<TARGET_OBJECTS:veldrake_tray_entry> ${veldrake_per_exe_sources})
# The stubs come right after the core, before its import libraries, so that they win.
target_link_libraries(Veldrake.SystemTray PRIVATE veldrake_core ${veldrake_delay_load_libraries})
if(VELDRAKE_SHORT_TIMERS)
    target_compile_definitions(Veldrake.SystemTray PRIVATE VELDRAKE_SHORT_TIMERS)
endif()
set_target_properties(Veldrake.SystemTray PROPERTIES OUTPUT_NAME "Veldrake.SystemTray")
# Symbols stay in the build tree's objects; the shipped exe carries none.
target_link_options(Veldrake.SystemTray PRIVATE $<$<CONFIG:Release>:-s>)
# Sections aligned to pages in the file too, so that the loader can map the code from the file and share
# it; with the default 512 bytes, Wine copies the whole image into private memory (about 3 MB here).
set(veldrake_page_aligned_image -Wl,--file-alignment,4096)
target_link_options(Veldrake.SystemTray PRIVATE ${veldrake_page_aligned_image})

# The same tray with short timers, for the end-to-end tier: only the per-exe sources are compiled again.
set(veldrake_short_timers_bin "${CMAKE_BINARY_DIR}/short-timers")
add_executable(veldrake_short_timers_tray WIN32 $<TARGET_OBJECTS:veldrake_tray_entry> ${veldrake_per_exe_sources})
target_link_libraries(veldrake_short_timers_tray PRIVATE veldrake_core ${veldrake_delay_load_libraries})
target_compile_definitions(veldrake_short_timers_tray PRIVATE VELDRAKE_SHORT_TIMERS)
target_link_options(veldrake_short_timers_tray PRIVATE ${veldrake_page_aligned_image})
set_target_properties(veldrake_short_timers_tray PROPERTIES OUTPUT_NAME "Veldrake.SystemTray"
                      RUNTIME_OUTPUT_DIRECTORY "${veldrake_short_timers_bin}")

# The suite's data files lie beside each exe, in the run layout and in the test layouts alike.
add_custom_target(veldrake_content ALL
    COMMAND "${CMAKE_COMMAND}" -E copy_directory "${CMAKE_SOURCE_DIR}/Content" "${veldrake_bin}/Content"
    COMMAND "${CMAKE_COMMAND}" -E copy_directory "${CMAKE_SOURCE_DIR}/Content" "${veldrake_short_timers_bin}/Content"
    COMMENT "Content beside the exes")

# GoogleTest, compiled from Debian's sources with mingw.
set(gtest_disable_pthreads ON CACHE BOOL "" FORCE)
set(BUILD_GMOCK OFF CACHE BOOL "" FORCE)
set(INSTALL_GTEST OFF CACHE BOOL "" FORCE)
add_subdirectory(/usr/src/googletest "${CMAKE_BINARY_DIR}/googletest" EXCLUDE_FROM_ALL SYSTEM)

function(veldrake_wine_test_exe name)
    add_executable(${name} ${ARGN} ${veldrake_per_exe_sources} "${CMAKE_SOURCE_DIR}/Tests/common/wine_process_win32.cpp")
    target_include_directories(${name} PRIVATE "${CMAKE_SOURCE_DIR}/Tests")
    target_link_libraries(${name} PRIVATE veldrake_core gtest ntdll)
endfunction()

veldrake_wine_test_exe(veldrake_core_tests ${veldrake_core_test_sources} "${CMAKE_SOURCE_DIR}/Tests/common/gtest_main_win32.cpp")
veldrake_wine_test_exe(veldrake_win32_tests ${veldrake_win32_test_sources})
# The log-sharing test writes through a second process: this same program.
veldrake_wine_test_exe(veldrake_e2e_tests ${veldrake_e2e_test_sources})
target_link_libraries(veldrake_e2e_tests PRIVATE comdlg32)
add_dependencies(veldrake_e2e_tests Veldrake.SystemTray veldrake_short_timers_tray veldrake_content)
# The update tests' web host runs on the Linux side, from beside the harness.
configure_file("${CMAKE_SOURCE_DIR}/Tests/e2e/update_server.py" "${veldrake_bin}/update_server.py" COPYONLY)

include(doubles)

# scripts/bench's programs, beside nothing else: the least tray it measures the real one against, and
# the client that starts, floods and closes either.
set(veldrake_bench_bin "${CMAKE_BINARY_DIR}/bench")
add_executable(veldrake_bench_baseline WIN32 "${CMAKE_SOURCE_DIR}/Benchmarks/wine/baseline_tray_win32.cpp"
               "${CMAKE_SOURCE_DIR}/Sources/Apps/SystemTray/tray_timings.cpp")
target_include_directories(veldrake_bench_baseline PRIVATE "${CMAKE_SOURCE_DIR}/Sources/Apps/SystemTray")
target_link_libraries(veldrake_bench_baseline PRIVATE user32 shell32)
add_executable(veldrake_bench_client "${CMAKE_SOURCE_DIR}/Benchmarks/wine/bench_client_win32.cpp")
target_include_directories(veldrake_bench_client PRIVATE "${CMAKE_SOURCE_DIR}/Sources/Common")
target_link_libraries(veldrake_bench_client PRIVATE user32 shell32)
# What one microphone icon render costs, against a bare icon.
add_executable(veldrake_bench_icon_render "${CMAKE_SOURCE_DIR}/Benchmarks/wine/icon_render_bench_win32.cpp"
               ${veldrake_per_exe_sources})
target_link_libraries(veldrake_bench_icon_render PRIVATE veldrake_core)
set_target_properties(veldrake_bench_baseline veldrake_bench_client veldrake_bench_icon_render
                      PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${veldrake_bench_bin}")

# Every Wine tier shares one throwaway prefix and X display per test run.
set(wine_state "${CMAKE_BINARY_DIR}/wine-run")
add_test(NAME wine_desktop_start COMMAND "${CMAKE_SOURCE_DIR}/scripts/wine_desktop" start "${wine_state}")
add_test(NAME wine_desktop_stop COMMAND "${CMAKE_SOURCE_DIR}/scripts/wine_desktop" stop "${wine_state}")
set_tests_properties(wine_desktop_start PROPERTIES FIXTURES_SETUP wine_desktop TIMEOUT 180 LABELS "wine-core;win32;e2e")
set_tests_properties(wine_desktop_stop PROPERTIES FIXTURES_CLEANUP wine_desktop TIMEOUT 60 LABELS "wine-core;win32;e2e")

function(veldrake_add_wine_test name label exe timeout)
    add_test(NAME ${name} COMMAND "${CMAKE_SOURCE_DIR}/scripts/wine_test" "${wine_state}" "$<TARGET_FILE:${exe}>" ${ARGN})
    set_tests_properties(${name} PROPERTIES FIXTURES_REQUIRED wine_desktop LABELS ${label} TIMEOUT ${timeout} RUN_SERIAL ON)
endfunction()

veldrake_add_wine_test(wine_core wine-core veldrake_core_tests 300)
veldrake_add_wine_test(win32 win32 veldrake_win32_tests 300)
veldrake_add_wine_test(e2e e2e veldrake_e2e_tests 900)
# The machine-wide registry is the same after the end-to-end run as before it.
add_test(NAME hklm_before_e2e COMMAND "${CMAKE_SOURCE_DIR}/scripts/hklm_snapshot" save "${wine_state}")
add_test(NAME hklm_after_e2e COMMAND "${CMAKE_SOURCE_DIR}/scripts/hklm_snapshot" compare "${wine_state}")
set_tests_properties(hklm_before_e2e PROPERTIES FIXTURES_SETUP hklm_unchanged FIXTURES_REQUIRED wine_desktop
                     DEPENDS "wine_core;win32" LABELS e2e TIMEOUT 60)
set_tests_properties(hklm_after_e2e PROPERTIES FIXTURES_CLEANUP hklm_unchanged FIXTURES_REQUIRED wine_desktop LABELS e2e TIMEOUT 60)
set_tests_properties(e2e PROPERTIES FIXTURES_REQUIRED "wine_desktop;hklm_unchanged")
include(e2e_desktop)
