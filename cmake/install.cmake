# What `cmake --install` puts into a folder, and the release archive made of it:
#
#   bin/       DLLs, language modules and programs
#   include/   the public header
#   lib/       import libraries, the CMake package and the pkg-config file
#   docs/      pages, pictures and, once scripts/docs has run, the reference in html/
#   source/    the examples and what a translator starts from, in the shape of the source tree
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

# The files of the product go by their kind: what runs, and what is linked.
function(krhaul_install_product)
    get_property(files GLOBAL PROPERTY KRHAUL_SHIPPED)
    set(programs ${files})
    list(FILTER programs EXCLUDE REGEX "\\.(h|a)$")
    install(PROGRAMS ${programs} DESTINATION bin)
    install(FILES ${CMAKE_SOURCE_DIR}/include/krhaul.h DESTINATION include)
    install(FILES ${CMAKE_BINARY_DIR}/lib/libkrhaul.a ${KRHAUL_MSVC_LIBRARY} DESTINATION lib)
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
    install(FILES ${CMAKE_BINARY_DIR}/README.md CONTRIBUTING.md LICENSE DESTINATION .)
    install(DIRECTORY docs DESTINATION . FILES_MATCHING PATTERN "*.md" PATTERN "*.png")
    install(DIRECTORY build/docs/html DESTINATION docs OPTIONAL)
endfunction()

function(krhaul_install_sources)
    install(DIRECTORY examples include DESTINATION source
        PATTERN "CMakeLists.txt" EXCLUDE PATTERN "standalone.cmake" EXCLUDE)
    install(FILES examples/standalone.cmake DESTINATION source RENAME CMakeLists.txt)
    # What the examples include from elsewhere.
    install(FILES shared/krutils.h DESTINATION source/shared)
    install(FILES toolbar/toolbar.h DESTINATION source/toolbar)
    install(FILES resources/ids.h resources/xferdanddicon.ico DESTINATION source/resources)
    install(DIRECTORY resources/ DESTINATION source/resources
        FILES_MATCHING PATTERN "xfr*/*.rc" PATTERN "art" EXCLUDE)
endfunction()

function(krhaul_install)
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
set(CPACK_VERBATIM_VARIABLES ON)
include(CPack)
