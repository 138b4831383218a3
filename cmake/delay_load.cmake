# DLLs the tray needs only for later work (GDI+ for a badge, the menu or the microphone; the web for the
# update checks; common controls, BSTRs and variants, window themes and DWM for dialogs, the menu and the
# index sample) are imported through delay-load stubs, so that each loads at its first call and not
# with the process: fewer DLLs before the icon is in, and none at all in a run that never needs them.
# Common controls matter most: loaded with the process, their initialisation costs more under Wine than
# anything else before the icon. A dialog's standard controls still come from version 6: the manifest
# redirects their classes, and the system loads the library when the first one is created.
# The stubs are made at configure time from the toolchain's import library; a function missing from them
# would come from the normal import library, which is correct but loads the DLL at start again.
find_program(VELDRAKE_DLLTOOL NAMES x86_64-w64-mingw32-dlltool dlltool REQUIRED)
find_program(VELDRAKE_NM NAMES x86_64-w64-mingw32-nm nm REQUIRED)

function(veldrake_delay_load_library out_var dll)
    execute_process(COMMAND "${CMAKE_CXX_COMPILER}" -print-file-name=lib${dll}.a
                    OUTPUT_VARIABLE import_library OUTPUT_STRIP_TRAILING_WHITESPACE)
    execute_process(COMMAND "${VELDRAKE_NM}" -g "${import_library}" OUTPUT_VARIABLE symbols)
    string(REGEX MATCHALL " I __imp_[A-Za-z0-9_]+" imports "${symbols}")
    list(TRANSFORM imports REPLACE " I __imp_" "")
    list(REMOVE_DUPLICATES imports)
    list(JOIN imports "\n" exports)
    set(folder "${CMAKE_BINARY_DIR}/delay_load")
    file(MAKE_DIRECTORY "${folder}")
    # Written only when it changed, and the stubs made again only then, so that a new configure does
    # not relink the tray.
    file(WRITE "${folder}/${dll}.def.new" "LIBRARY ${dll}.dll\nEXPORTS\n${exports}\n")
    configure_file("${folder}/${dll}.def.new" "${folder}/${dll}.def" COPYONLY)
    if(NOT EXISTS "${folder}/lib${dll}_delay.a" OR "${folder}/${dll}.def" IS_NEWER_THAN "${folder}/lib${dll}_delay.a")
        execute_process(COMMAND "${VELDRAKE_DLLTOOL}" --input-def "${folder}/${dll}.def" --dllname ${dll}.dll
                                --output-delaylib "${folder}/lib${dll}_delay.a"
                        RESULT_VARIABLE failed)
        if(failed)
            message(FATAL_ERROR "dlltool could not make the delay-load stubs of ${dll}.dll")
        endif()
    endif()
    set(${out_var} "${folder}/lib${dll}_delay.a" PARENT_SCOPE)
endfunction()

set(veldrake_delay_load_libraries)
foreach(dll gdiplus wininet urlmon comctl32 oleaut32 dwmapi uxtheme)
    veldrake_delay_load_library(stubs ${dll})
    list(APPEND veldrake_delay_load_libraries "${stubs}")
endforeach()
# The helper that the stubs call at the first use.
list(APPEND veldrake_delay_load_libraries delayimp)
