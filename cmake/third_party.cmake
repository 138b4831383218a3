# {fmt} header-only and RapidJSON come from Debian's packages in both builds. The cross build reaches
# them through a folder of symlinks of its own, so that /usr/include never lands on mingw's include path.
add_library(veldrake_third_party INTERFACE)
target_compile_definitions(veldrake_third_party INTERFACE FMT_HEADER_ONLY RAPIDJSON_HAS_STDSTRING=1)

foreach(header_dir fmt rapidjson)
    if(NOT EXISTS "/usr/include/${header_dir}")
        message(FATAL_ERROR "/usr/include/${header_dir} is missing: run scripts/bootstrap")
    endif()
endforeach()

if(VELDRAKE_TARGET STREQUAL "windows")
    set(third_party_include "${CMAKE_BINARY_DIR}/third_party/include")
    file(MAKE_DIRECTORY "${third_party_include}")
    foreach(header_dir fmt rapidjson)
        file(CREATE_LINK "/usr/include/${header_dir}" "${third_party_include}/${header_dir}" SYMBOLIC)
    endforeach()
    target_include_directories(veldrake_third_party SYSTEM INTERFACE "${third_party_include}")
endif()
