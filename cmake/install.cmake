# What `cmake --install` puts into a folder, and the release archive made of it:
#
#   bin/       DLLs, language modules and programs
#   include/   the public header
#   lib/       import libraries, the definition file and the symbols of KRHAUL.DLL, the CMake
#              package and the pkg-config file
#   docs/      pages, pictures and, once scripts/docs has run, the reference in html/
#   source/    the program of the guide, the examples and what a translator starts from, in the
#              shape of the source tree
#
# Everything finds its neighbours by relative paths, so the folder can be moved.

# The import library for Visual C++. Without the tool, which is in Debian's package llvm, the
# installation lacks it.
find_program(KRHAUL_LLVM_DLLTOOL llvm-dlltool)
if(KRHAUL_LLVM_DLLTOOL)
    set(KRHAUL_MSVC_LIBRARY ${CMAKE_BINARY_DIR}/lib/krhaul.lib)
    add_custom_command(OUTPUT ${KRHAUL_MSVC_LIBRARY}
        COMMAND ${KRHAUL_LLVM_DLLTOOL} -m i386 --kill-at --input-def
            ${CMAKE_SOURCE_DIR}/library/krhaul.def --output-lib ${KRHAUL_MSVC_LIBRARY}
        DEPENDS ${CMAKE_SOURCE_DIR}/library/krhaul.def VERBATIM)
    add_custom_target(krhaul_msvc_library ALL DEPENDS ${KRHAUL_MSVC_LIBRARY})
else()
    message(STATUS "llvm-dlltool was not found: no import library for Visual C++")
endif()

# The header states the version too, for the preprocessor.
function(krhaul_check_version)
    foreach(part MAJOR MINOR)
        file(STRINGS include/krhaul.h line REGEX "KRHAUL_VERSION_${part} [0-9]")
        string(REGEX REPLACE ".*_${part} ([0-9]+).*" "\\1" number "${line}")
        if(NOT number EQUAL PROJECT_VERSION_${part})
            message(FATAL_ERROR "krhaul.h has another version than ${PROJECT_VERSION}")
        endif()
    endforeach()
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS include/krhaul.h)
endfunction()

# The addresses of all functions, for whoever has to read a crash report.
function(krhaul_add_symbols)
    set(map ${CMAKE_BINARY_DIR}/krhaul.link.map)
    set(symbols ${CMAKE_BINARY_DIR}/lib/KRHAUL.MAP)
    target_link_options(krhaul PRIVATE -Wl,-Map,${map})
    add_custom_command(OUTPUT ${symbols}
        COMMAND ${CMAKE_COMMAND} -DMAP=${map} -DSYMBOLS=${symbols}
            -P ${CMAKE_SOURCE_DIR}/cmake/symbols.cmake
        DEPENDS krhaul ${CMAKE_SOURCE_DIR}/cmake/symbols.cmake VERBATIM)
    add_custom_target(krhaul_symbols ALL DEPENDS ${symbols})
    install(FILES ${symbols} DESTINATION lib)
endfunction()

# The blocks of C code of a page, joined.
function(krhaul_code_of page output)
    file(READ ${page} rest)
    set(code "")
    string(FIND "${rest}" "```c\n" start)
    while(NOT start EQUAL -1)
        math(EXPR start "${start} + 5")
        string(SUBSTRING "${rest}" ${start} -1 rest)
        string(FIND "${rest}" "```\n" end)
        string(SUBSTRING "${rest}" 0 ${end} block)
        string(APPEND code "${block}\n")
        math(EXPR end "${end} + 4")
        string(SUBSTRING "${rest}" ${end} -1 rest)
        string(FIND "${rest}" "```c\n" start)
    endwhile()
    file(WRITE ${output} "${code}")
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${page})
endfunction()

# The files of the product go by their kind: what runs, and what is linked.
function(krhaul_install_product)
    get_property(files GLOBAL PROPERTY KRHAUL_SHIPPED)
    set(programs ${files})
    list(FILTER programs EXCLUDE REGEX "\\.(h|a)$")
    install(PROGRAMS ${programs} DESTINATION bin)
    install(FILES ${CMAKE_SOURCE_DIR}/include/krhaul.h DESTINATION include)
    install(FILES ${CMAKE_BINARY_DIR}/lib/libkrhaul.a ${KRHAUL_MSVC_LIBRARY} library/krhaul.def
        DESTINATION lib)
endfunction()

function(krhaul_install_package_files)
    include(CMakePackageConfigHelpers)
    write_basic_package_version_file(${CMAKE_BINARY_DIR}/krhaul-config-version.cmake
        COMPATIBILITY SameMajorVersion)
    install(FILES ${CMAKE_SOURCE_DIR}/cmake/krhaul-config.cmake
        ${CMAKE_BINARY_DIR}/krhaul-config-version.cmake DESTINATION lib/cmake/krhaul)
    configure_file(${CMAKE_SOURCE_DIR}/cmake/krhaul.pc.in ${CMAKE_BINARY_DIR}/krhaul.pc @ONLY)
    install(FILES ${CMAKE_BINARY_DIR}/krhaul.pc DESTINATION lib/pkgconfig)
endfunction()

function(krhaul_install_documents)
    # In the archive the commands of the README work as they stand.
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS README.md)
    file(READ README.md readme)
    string(REPLACE krhaul-VERSION krhaul-${PROJECT_VERSION} readme "${readme}")
    file(WRITE ${CMAKE_BINARY_DIR}/README.md "${readme}")
    install(FILES ${CMAKE_BINARY_DIR}/README.md CONTRIBUTING.md CHANGELOG.md LICENSE
        DESTINATION .)
    install(DIRECTORY docs DESTINATION . FILES_MATCHING PATTERN "*.md" PATTERN "*.png")
    install(DIRECTORY build/docs/html DESTINATION docs OPTIONAL)
endfunction()

function(krhaul_install_sources)
    install(DIRECTORY examples include DESTINATION source
        PATTERN "CMakeLists.txt" EXCLUDE PATTERN "standalone.cmake" EXCLUDE
        PATTERN "guide" EXCLUDE)
    install(FILES examples/standalone.cmake DESTINATION source RENAME CMakeLists.txt)
    krhaul_code_of(docs/caller.md ${CMAKE_BINARY_DIR}/guide.c)
    install(FILES examples/guide/CMakeLists.txt ${CMAKE_BINARY_DIR}/guide.c
        DESTINATION source/guide)
    # What the examples include from elsewhere.
    install(FILES shared/krutils.h DESTINATION source/shared)
    install(FILES toolbar/toolbar.h DESTINATION source/toolbar)
    install(FILES resources/ids.h resources/xferdanddicon.ico DESTINATION source/resources)
    install(DIRECTORY resources/ DESTINATION source/resources
        FILES_MATCHING PATTERN "xfr*/*.rc" PATTERN "art" EXCLUDE)
endfunction()

function(krhaul_install)
    krhaul_check_version()
    krhaul_add_symbols()
    krhaul_install_product()
    krhaul_install_package_files()
    krhaul_install_documents()
    krhaul_install_sources()
endfunction()

set(CMAKE_SKIP_INSTALL_ALL_DEPENDENCY ON)
set(CPACK_GENERATOR ZIP)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_FILE_NAME krhaul-${PROJECT_VERSION})
set(CPACK_PACKAGE_DIRECTORY ${CMAKE_BINARY_DIR}/package)
set(CPACK_PACKAGE_CHECKSUM SHA256)
set(CPACK_VERBATIM_VARIABLES ON)
include(CPack)
