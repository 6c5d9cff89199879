# The release archive, as its user meets it. Where a tool is missing that scripts/setup installs
# with root rights, its case is left out.
find_program(KRHAUL_DOXYGEN doxygen)
find_program(KRHAUL_PKG_CONFIG pkg-config)
find_program(KRHAUL_CLANG clang)
set(archive ${CPACK_PACKAGE_DIRECTORY}/krhaul-${PROJECT_VERSION}.zip)

add_test(NAME Package.Make COMMAND cpack --config ${CMAKE_BINARY_DIR}/CPackConfig.cmake)
set_tests_properties(Package.Make PROPERTIES FIXTURES_SETUP archive FIXTURES_REQUIRED docs)
if(KRHAUL_DOXYGEN)
    add_test(NAME Package.Docs COMMAND ${CMAKE_SOURCE_DIR}/scripts/docs)
    set_tests_properties(Package.Docs PROPERTIES FIXTURES_SETUP docs)
endif()

# krhaul_package_test(NAME CASE)
function(krhaul_package_test name case)
    add_test(NAME Package.${name} COMMAND ${CMAKE_SOURCE_DIR}/tests/package/check ${case}
        ${archive} ${CMAKE_SOURCE_DIR} ${PROJECT_VERSION})
    set_tests_properties(Package.${name} PROPERTIES FIXTURES_REQUIRED archive TIMEOUT 120
        RESOURCE_LOCK screen)
endfunction()

krhaul_package_test(Readme readme)
krhaul_package_test(FindPackage find_package)
krhaul_package_test(Guide guide)
krhaul_package_test(Examples examples)
if(KRHAUL_CLANG)
    krhaul_package_test(Header header)
endif()
add_test(NAME Package.MakeCheck COMMAND ${CMAKE_COMMAND} --build ${CMAKE_BINARY_DIR}
    --target check_archive)
set_tests_properties(Package.MakeCheck PROPERTIES FIXTURES_SETUP check)
krhaul_package_test(Windows windows)
set_property(TEST Package.Windows APPEND PROPERTY FIXTURES_REQUIRED check)
if(KRHAUL_PKG_CONFIG)
    krhaul_package_test(PkgConfig pkg_config)
endif()
if(KRHAUL_LLVM_DLLTOOL)
    krhaul_package_test(VisualCpp msvc)
endif()
