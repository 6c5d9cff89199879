# The CMake package of KRHAUL: find_package(krhaul) defines the target krhaul::krhaul, for MinGW
# and Visual C++, and
#
#   krhaul_deploy(TARGET)   after each build, copies KRHAUL.DLL, its language modules,
#                           KRUTILS.DLL and the viewer KRVIEWER.EXE beside the program of a
#                           target
get_filename_component(krhaul_ROOT_DIR "${CMAKE_CURRENT_LIST_DIR}/../../.." ABSOLUTE)

if(MSVC)
    set(krhaul_IMPORT_LIBRARY "${krhaul_ROOT_DIR}/lib/krhaul.lib")
else()
    set(krhaul_IMPORT_LIBRARY "${krhaul_ROOT_DIR}/lib/libkrhaul.a")
endif()
if(NOT EXISTS "${krhaul_IMPORT_LIBRARY}")
    set(krhaul_FOUND FALSE)
    set(krhaul_NOT_FOUND_MESSAGE "this installation has no ${krhaul_IMPORT_LIBRARY}")
    return()
endif()

if(NOT TARGET krhaul::krhaul)
    add_library(krhaul::krhaul SHARED IMPORTED)
    set_target_properties(krhaul::krhaul PROPERTIES
        IMPORTED_LOCATION "${krhaul_ROOT_DIR}/bin/KRHAUL.DLL"
        IMPORTED_IMPLIB "${krhaul_IMPORT_LIBRARY}"
        INTERFACE_INCLUDE_DIRECTORIES "${krhaul_ROOT_DIR}/include")
endif()

file(GLOB krhaul_RUNTIME_FILES "${krhaul_ROOT_DIR}/bin/*.DLL")
list(APPEND krhaul_RUNTIME_FILES "${krhaul_ROOT_DIR}/bin/KRVIEWER.EXE")

function(krhaul_deploy target)
    add_custom_command(TARGET ${target} POST_BUILD
        COMMAND ${CMAKE_COMMAND} -E copy_if_different ${krhaul_RUNTIME_FILES}
            $<TARGET_FILE_DIR:${target}>
        VERBATIM)
endfunction()
