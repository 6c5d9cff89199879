# How this project's targets are made.

option(KRHAUL_CHECKED "Trap on undefined behaviour" OFF)

# What all our code is compiled with.
add_library(krhaul_flags INTERFACE)
target_compile_options(krhaul_flags INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wcast-qual -Wformat=2 -Wundef -Werror
    $<$<COMPILE_LANGUAGE:CXX>:-Wconversion -Wold-style-cast>)
target_compile_definitions(krhaul_flags INTERFACE STRICT NOMINMAX WIN32_LEAN_AND_MEAN
    WINVER=0x0400 _WIN32_WINNT=0x0400 __USE_MINGW_ANSI_STDIO=0)
# Includes name a header by its room.
target_include_directories(krhaul_flags INTERFACE ${CMAKE_SOURCE_DIR})
# No time stamps: the same sources give the same files.
target_link_options(krhaul_flags INTERFACE -static -Wl,--no-insert-timestamp)
if(KRHAUL_CHECKED)
    target_compile_options(krhaul_flags INTERFACE -gdwarf-4 -fsanitize=undefined
        -fsanitize-undefined-trap-on-error)
endif()

# The product: plain code, no exceptions and no classes.
add_library(krhaul_product_flags INTERFACE)
target_link_libraries(krhaul_product_flags INTERFACE krhaul_flags)
target_compile_options(krhaul_product_flags INTERFACE
    $<$<COMPILE_LANGUAGE:CXX>:-fno-exceptions>
    $<$<COMPILE_LANGUAGE:CXX>:-fno-rtti>
    $<$<COMPILE_LANGUAGE:CXX>:-fno-threadsafe-statics>
    $<$<COMPILE_LANGUAGE:CXX>:-fno-asynchronous-unwind-tables>)

# krhaul_import_library(TARGET DEF OUTPUT): an import library from a module definition file
# whose names are decorated; the library's users see decorated names, the DLL plain ones.
function(krhaul_import_library target def output)
    get_filename_component(folder ${output} DIRECTORY)
    get_filename_component(name ${output} NAME)
    file(MAKE_DIRECTORY ${folder})
    # The tool names symbols by the path that it is given: no folder of this machine gets in.
    add_custom_command(OUTPUT ${output}
        COMMAND ${CMAKE_DLLTOOL} --kill-at --input-def ${def} --output-lib ${name}
            --temp-prefix ${target}
        WORKING_DIRECTORY ${folder}
        DEPENDS ${def} VERBATIM)
    add_custom_target(${target}_file DEPENDS ${output})
    add_library(${target} STATIC IMPORTED GLOBAL)
    set_target_properties(${target} PROPERTIES IMPORTED_LOCATION ${output})
    add_dependencies(${target} ${target}_file)
endfunction()

# krhaul_dll(TARGET NAME DEF): a library NAME.DLL whose exports are those of DEF.
function(krhaul_dll target name def)
    set_target_properties(${target} PROPERTIES OUTPUT_NAME ${name} PREFIX "" SUFFIX ".DLL"
        LINK_DEPENDS ${def})
    set_property(TARGET ${target} PROPERTY IMPORT_PREFIX "")
    target_link_options(${target} PRIVATE -Wl,--kill-at -Wl,--gc-sections $<$<NOT:$<BOOL:${KRHAUL_CHECKED}>>:-s>)
    target_sources(${target} PRIVATE ${def})
endfunction()

# krhaul_track_pictures(TARGET): the resource scripts of a target are compiled again when a
# picture that they name has changed.
function(krhaul_track_pictures target)
    get_target_property(folder ${target} SOURCE_DIR)
    get_target_property(sources ${target} SOURCES)
    list(FILTER sources INCLUDE REGEX "\\.rc$")
    foreach(source ${sources})
        get_filename_component(script ${source} ABSOLUTE BASE_DIR ${folder})
        get_filename_component(script_folder ${script} DIRECTORY)
        set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${script})
        file(STRINGS ${script} lines REGEX "\"[^\"]+\\.(ico|cur|bmp)\"")
        set(pictures)
        foreach(line ${lines})
            string(REGEX MATCH "\"([^\"]+)\"" name ${line})
            get_filename_component(picture ${CMAKE_MATCH_1} ABSOLUTE BASE_DIR ${script_folder})
            list(APPEND pictures ${picture})
        endforeach()
        set_property(SOURCE ${script} TARGET_DIRECTORY ${target} APPEND PROPERTY
            OBJECT_DEPENDS ${pictures})
    endforeach()
endfunction()

# krhaul_ship(FILE...): these files belong to the finished product.
function(krhaul_ship)
    set_property(GLOBAL APPEND PROPERTY KRHAUL_SHIPPED ${ARGN})
endfunction()

function(krhaul_collect_dist)
    get_property(files GLOBAL PROPERTY KRHAUL_SHIPPED)
    get_property(targets GLOBAL PROPERTY KRHAUL_SHIPPED_TARGETS)
    add_custom_target(dist ALL
        COMMAND ${CMAKE_COMMAND} -E make_directory ${KRHAUL_DIST}
        COMMAND ${CMAKE_COMMAND} -E copy_if_different ${files} ${KRHAUL_DIST}
        COMMAND_EXPAND_LISTS VERBATIM)
    add_dependencies(dist ${targets})
endfunction()

# krhaul_ship_target(TARGET): the file that a target makes belongs to the finished product.
function(krhaul_ship_target target)
    krhaul_ship($<TARGET_FILE:${target}>)
    set_property(GLOBAL APPEND PROPERTY KRHAUL_SHIPPED_TARGETS ${target})
endfunction()
