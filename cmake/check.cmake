# The target check_archive: package/krhaul-check-VERSION.zip, the test programs with what they
# need, to be run by check.cmd on a Windows machine. Programs that need a server beside them are
# left out.
set(name krhaul-check-${PROJECT_VERSION})
set(folder ${CMAKE_BINARY_DIR}/check/${name})
get_property(tests DIRECTORY tests PROPERTY BUILDSYSTEM_TARGETS)
list(FILTER tests INCLUDE REGEX "_test$")
set(programs)
set(program_names)
foreach(test ${tests})
    get_target_property(emulator ${test} CROSSCOMPILING_EMULATOR)
    if(NOT "${emulator}" MATCHES "/withserver")
        list(APPEND programs $<TARGET_FILE:${test}>)
        list(APPEND program_names $<TARGET_FILE_NAME:${test}>)
    endif()
endforeach()
get_property(shipped GLOBAL PROPERTY KRHAUL_SHIPPED)
list(FILTER shipped EXCLUDE REGEX "\\.(h|a)$")
get_property(shipped_targets GLOBAL PROPERTY KRHAUL_SHIPPED_TARGETS)

configure_file(tools/check/check.cmd ${CMAKE_BINARY_DIR}/check.cmd @ONLY NEWLINE_STYLE CRLF)
add_custom_target(check_archive
    COMMAND ${CMAKE_COMMAND} -E rm -rf ${folder}
    COMMAND ${CMAKE_COMMAND} -E make_directory ${folder} ${CPACK_PACKAGE_DIRECTORY}
    COMMAND ${CMAKE_COMMAND} -E copy ${programs} ${shipped} ${CMAKE_BINARY_DIR}/check.cmd
        ${CMAKE_SOURCE_DIR}/LICENSE ${folder}
    COMMAND ${CMAKE_COMMAND} -E chdir ${folder} ${CMAKE_STRIP} ${program_names}
    COMMAND ${CMAKE_COMMAND} -E chdir ${folder}/.. ${CMAKE_COMMAND} -E tar cf
        ${CPACK_PACKAGE_DIRECTORY}/${name}.zip --format=zip ${name}
    DEPENDS ${tests} ${shipped_targets} COMMAND_EXPAND_LISTS VERBATIM)
