# Which files go where is visible in their names: *_win32.* includes <windows.h>, *_host.cpp is the
# host's stand-in for one of them, and everything else is the portable core.
file(GLOB_RECURSE veldrake_all_sources CONFIGURE_DEPENDS "${CMAKE_SOURCE_DIR}/Sources/*.cpp")

set(veldrake_core_sources ${veldrake_all_sources})
list(FILTER veldrake_core_sources EXCLUDE REGEX "_(win32|host)\\.cpp$")

# Built-in constants that the end-to-end tier changes: each exe compiles them itself, so that a second
# exe differs from the shipped one in these objects alone.
set(veldrake_per_exe_sources "${CMAKE_SOURCE_DIR}/Sources/Apps/SystemTray/tray_timings.cpp"
                             "${CMAKE_SOURCE_DIR}/Sources/Apps/SystemTray/updates/update_site.cpp")
list(REMOVE_ITEM veldrake_core_sources ${veldrake_per_exe_sources})

set(veldrake_host_sources ${veldrake_all_sources})
list(FILTER veldrake_host_sources INCLUDE REGEX "_host\\.cpp$")

# The entry point stays out of the library so that the Win32 tests can link everything else.
set(veldrake_win32_sources ${veldrake_all_sources})
list(FILTER veldrake_win32_sources INCLUDE REGEX "_win32\\.cpp$")
list(FILTER veldrake_win32_sources EXCLUDE REGEX "/system_tray_main_win32\\.cpp$")

file(GLOB_RECURSE veldrake_core_test_sources CONFIGURE_DEPENDS "${CMAKE_SOURCE_DIR}/Tests/host/*.cpp")
file(GLOB_RECURSE veldrake_win32_test_sources CONFIGURE_DEPENDS "${CMAKE_SOURCE_DIR}/Tests/win32/*.cpp")
file(GLOB_RECURSE veldrake_e2e_test_sources CONFIGURE_DEPENDS "${CMAKE_SOURCE_DIR}/Tests/e2e/*.cpp")
file(GLOB veldrake_double_sources CONFIGURE_DEPENDS "${CMAKE_SOURCE_DIR}/Tests/doubles/*.cpp")
# The host benchmarks only; Benchmarks/wine holds the whole-process ones, which windows_build.cmake builds.
file(GLOB veldrake_benchmark_sources CONFIGURE_DEPENDS "${CMAKE_SOURCE_DIR}/Benchmarks/*.cpp")
