# Stand-ins for the suite's sibling programs, built for the Windows test layouts.
foreach(double_source ${veldrake_double_sources})
    get_filename_component(double_name "${double_source}" NAME_WE)
    add_executable(${double_name} "${double_source}")
    target_include_directories(${double_name} PRIVATE "${CMAKE_SOURCE_DIR}/Tests" "${CMAKE_SOURCE_DIR}/Sources")
    target_link_libraries(${double_name} PRIVATE veldrake_core)
endforeach()
