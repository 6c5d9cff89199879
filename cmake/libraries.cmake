# The libraries of others that the examples are linked with, as static targets:
#
#   krhaul_curl    libcurl with FTP, FTPS and SFTP
#   krhaul_vterm   libvterm
#
# scripts/setup makes both, and scripts/build passes their folder. A target whose library isn't
# there is not defined.
set(KRHAUL_LIBRARIES "" CACHE PATH "The folder of libraries that scripts/setup has made")
set(KRHAUL_CURL "" CACHE PATH "An installed static libcurl for 32-bit Windows, in its place")

# krhaul_static_library(TARGET FOLDER HEADER FILE): with all other archives beside FILE, which
# are what it needs itself.
function(krhaul_static_library target folder header file)
    if(NOT EXISTS ${folder}/include/${header} OR NOT EXISTS ${folder}/lib/${file})
        message(STATUS "${file} was not found in \"${folder}\": no target ${target}")
        return()
    endif()
    file(GLOB archives ${folder}/lib/*.a)
    list(FILTER archives EXCLUDE REGEX "\\.dll\\.a$")
    list(REMOVE_ITEM archives ${folder}/lib/${file})
    add_library(${target} STATIC IMPORTED GLOBAL)
    set_target_properties(${target} PROPERTIES IMPORTED_LOCATION ${folder}/lib/${file}
        INTERFACE_INCLUDE_DIRECTORIES ${folder}/include)
    if(archives)
        target_link_libraries(${target} INTERFACE -Wl,--start-group ${archives} -Wl,--end-group)
    endif()
    target_link_libraries(${target} INTERFACE ${ARGN})
endfunction()

if(KRHAUL_CURL)
    set(curl_folder ${KRHAUL_CURL})
else()
    set(curl_folder ${KRHAUL_LIBRARIES}/curl)
endif()
krhaul_static_library(krhaul_curl ${curl_folder} curl/curl.h libcurl.a ws2_32 bcrypt crypt32
    advapi32)
if(TARGET krhaul_curl)
    target_compile_definitions(krhaul_curl INTERFACE CURL_STATICLIB)
endif()
krhaul_static_library(krhaul_vterm ${KRHAUL_LIBRARIES}/vterm vterm.h libvterm.a)

# Their licences ask to be shipped with the programs. A libcurl of the user's own has its own.
if(KRHAUL_CURL)
    set(licences FILES_MATCHING PATTERN libvterm.txt)
endif()
install(DIRECTORY ${KRHAUL_LIBRARIES}/licences DESTINATION . OPTIONAL ${licences})
