# The sample caller, the sample viewer and the stand-in for KRUTILS, built with MinGW against an
# unpacked release archive:
#
#   cmake -S source -B build -DCMAKE_SYSTEM_NAME=Windows
#       -DCMAKE_CXX_COMPILER=i686-w64-mingw32-g++ -DCMAKE_RC_COMPILER=i686-w64-mingw32-windres
#   cmake --build build
#
# With -DKRHAUL_CURL=FOLDER, a static libcurl for 32-bit Windows with its headers, the sample caller
# has servers besides its built-in host. With -DKRHAUL_VTERM=FOLDER, a static libvterm with its
# headers, the terminal is built too. The finished programs lie in the build folder, with all they
# need to run.
cmake_minimum_required(VERSION 3.16)
project(krhaul_examples LANGUAGES CXX RC)

set(CMAKE_CXX_STANDARD 17)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR})
set(CMAKE_EXE_LINKER_FLAGS "-static")
include_directories(${CMAKE_CURRENT_SOURCE_DIR})
add_compile_definitions(STRICT NOMINMAX WIN32_LEAN_AND_MEAN WINVER=0x0400 _WIN32_WINNT=0x0400)
find_package(krhaul REQUIRED PATHS ${CMAKE_CURRENT_SOURCE_DIR}/.. NO_DEFAULT_PATH
    NO_CMAKE_FIND_ROOT_PATH)

# krhaul_example(NAME): a program of all sources in the folder of that name.
function(krhaul_example name)
    string(TOUPPER ${name} output)
    file(GLOB sources CONFIGURE_DEPENDS examples/${name}/*.cpp examples/${name}/*.rc)
    if(NOT KRHAUL_CURL)
        list(FILTER sources EXCLUDE REGEX "/curl[^/]*\\.cpp$")
    endif()
    add_executable(${name} WIN32 ${sources})
    set_target_properties(${name} PROPERTIES OUTPUT_NAME ${output} SUFFIX ".EXE")
    target_link_libraries(${name} PRIVATE krhaul::krhaul)
    krhaul_deploy(${name})
endfunction()

krhaul_example(krdemo)
file(GLOB common CONFIGURE_DEPENDS examples/common/*.cpp)
target_sources(krdemo PRIVATE ${common})
if(KRHAUL_CURL)
    file(GLOB archives ${KRHAUL_CURL}/lib/*.a)
    list(FILTER archives EXCLUDE REGEX "\\.dll\\.a$")
    target_include_directories(krdemo PRIVATE ${KRHAUL_CURL}/include)
    target_compile_definitions(krdemo PRIVATE KRDEMO_CURL CURL_STATICLIB)
    target_link_libraries(krdemo PRIVATE -Wl,--start-group ${archives} -Wl,--end-group ws2_32
        bcrypt crypt32 advapi32)
endif()
krhaul_example(krviewer)
if(KRHAUL_VTERM)
    krhaul_example(krterm)
    target_sources(krterm PRIVATE ${common})
    target_include_directories(krterm PRIVATE ${KRHAUL_VTERM}/include)
    target_link_libraries(krterm PRIVATE ${KRHAUL_VTERM}/lib/libvterm.a comdlg32 wsock32)
endif()

# In a folder of its own: beside the programs lies the one from the archive.
add_library(krutils SHARED examples/krutils/krutils.cpp examples/krutils/krutils.def)
set_target_properties(krutils PROPERTIES OUTPUT_NAME KRUTILS PREFIX "" SUFFIX ".DLL"
    RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/krutils)
target_link_options(krutils PRIVATE -static -Wl,--kill-at)
