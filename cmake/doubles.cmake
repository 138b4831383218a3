# Stand-ins for the suite's sibling programs, built for the Windows test layouts. Each
# Tests/doubles/NAME_win32.cpp becomes NAME.exe in the test layout.
foreach(double_source ${veldrake_double_sources})
    get_filename_component(double_name "${double_source}" NAME_WE)
    string(REGEX REPLACE "_win32$" "" double_name "${double_name}")
    add_executable(${double_name} "${double_source}")
    target_include_directories(${double_name} PRIVATE "${CMAKE_SOURCE_DIR}/Tests" "${CMAKE_SOURCE_DIR}/Sources")
    target_link_libraries(${double_name} PRIVATE veldrake_core)
endforeach()

# One double stands in for every sibling program: copies of it lie beside the tray under the suite's
# names; tests put further copies where they need them.
set(copy_commands COMMAND "${CMAKE_COMMAND}" -E make_directory "${veldrake_short_timers_bin}")
foreach(sibling_name Veldrake.exe Veldrake.ContextMenuReplacement.Controller.exe Veldrake.HotkeyHandler.exe
                     Tessary.Common.BatchProcessor.exe)
    foreach(folder "${veldrake_bin}" "${veldrake_short_timers_bin}")
        list(APPEND copy_commands COMMAND "${CMAKE_COMMAND}" -E copy_if_different "$<TARGET_FILE:sibling_double>"
             "${folder}/${sibling_name}")
    endforeach()
endforeach()
add_custom_command(TARGET sibling_double POST_BUILD ${copy_commands} COMMENT "Sibling-program doubles beside the tray")
add_dependencies(veldrake_win32_tests sibling_double veldrake_content)
add_dependencies(veldrake_e2e_tests sibling_double)

# The launchers' road through the desktop of the running Explorer ends Wine's desktop a few seconds
# after it is used, with every window of every process on it. Its test runs alone, in a Wine prefix
# of its own, and stays out of the shared Win32 run as a disabled test.
set(desktop_road_state "${CMAKE_BINARY_DIR}/wine-desktop-road")
add_test(NAME wine_desktop_road_start COMMAND "${CMAKE_SOURCE_DIR}/scripts/wine_desktop" start "${desktop_road_state}")
add_test(NAME wine_desktop_road_stop COMMAND "${CMAKE_SOURCE_DIR}/scripts/wine_desktop" stop "${desktop_road_state}")
set_tests_properties(wine_desktop_road_start PROPERTIES FIXTURES_SETUP wine_desktop_road TIMEOUT 180 LABELS win32)
set_tests_properties(wine_desktop_road_stop PROPERTIES FIXTURES_CLEANUP wine_desktop_road TIMEOUT 60 LABELS win32)
add_test(NAME win32_desktop_road
         COMMAND "${CMAKE_SOURCE_DIR}/scripts/wine_test" "${desktop_road_state}" "$<TARGET_FILE:veldrake_win32_tests>"
                 --gtest_also_run_disabled_tests "--gtest_filter=*.DISABLED_desktop_road*")
set_tests_properties(win32_desktop_road PROPERTIES FIXTURES_REQUIRED wine_desktop_road LABELS win32 TIMEOUT 120 RUN_SERIAL ON)
