# Flags of the project's targets. They are set on each target, never globally, so that a target
# shows how it is built.

find_package(Threads REQUIRED)
include(CheckLinkerFlag)
include(GNUInstallDirs)

# zaf2xml_configure(TARGET): language level, warnings, hardening and instrumentation.
function(zaf2xml_configure target)
  target_compile_features(${target} PUBLIC cxx_std_20)
  if(WIN32)
    target_compile_definitions(${target} PRIVATE _WIN32_WINNT=0x0A00 NOMINMAX WIN32_LEAN_AND_MEAN)
  endif()
  set_target_properties(${target} PROPERTIES CXX_EXTENSIONS OFF)
  if(MSVC)
    target_compile_options(${target} PRIVATE /W4 /permissive- /utf-8 $<$<BOOL:${ZAF2XML_WERROR}>:/WX>)
    target_compile_definitions(${target} PRIVATE _CRT_SECURE_NO_WARNINGS)
    return()
  endif()
  target_compile_options(${target} PRIVATE
    -Wall -Wextra -Wpedantic -Wconversion -Wsign-conversion -Wshadow -Wold-style-cast
    -Wcast-align -Wundef -Wnon-virtual-dtor -Woverloaded-virtual -fno-strict-aliasing
    $<$<BOOL:${ZAF2XML_WERROR}>:-Werror>)
  if(CMAKE_CXX_COMPILER_ID STREQUAL GNU AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    # It warns about every "literal" + std::string (GCC bug 105651).
    target_compile_options(${target} PRIVATE -Wno-restrict)
  endif()
  target_compile_options(${target} PRIVATE -fstack-protector-strong)
  # Shipped programs do not depend on the folder in which they are built.
  target_compile_options(${target} PRIVATE $<$<CONFIG:Release>:-ffile-prefix-map=${PROJECT_BINARY_DIR}/=
    -ffile-prefix-map=${PROJECT_SOURCE_DIR}/=>)
  target_compile_definitions(${target} PRIVATE $<$<CONFIG:Release>:_GLIBCXX_ASSERTIONS>)
  if(NOT ZAF2XML_SANITIZE)
    target_compile_definitions(${target} PRIVATE $<$<CONFIG:Release>:_FORTIFY_SOURCE=2>)
  else()
    target_compile_options(${target} PRIVATE
      -fsanitize=${ZAF2XML_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    if(CMAKE_CXX_COMPILER_ID STREQUAL GNU)  # False positives in instrumented code.
      target_compile_options(${target} PRIVATE -Wno-maybe-uninitialized)
    endif()
    target_link_options(${target} PUBLIC -fsanitize=${ZAF2XML_SANITIZE})
    target_compile_definitions(${target} PRIVATE ZAF2XML_SANITIZED=1)
  endif()
  if(ZAF2XML_COVERAGE)
    target_compile_options(${target} PRIVATE --coverage)
    target_link_options(${target} PUBLIC --coverage)
  endif()
endfunction()

# The shipped programs are optimised across their files, which saves 3 % of the instructions. Tests
# and tools link the same modules without that, which takes less time. MinGW's linker loses symbols
# with it.
if(NOT CMAKE_CXX_COMPILER_ID STREQUAL GNU OR MINGW OR ZAF2XML_SANITIZE OR ZAF2XML_COVERAGE)
  set(ZAF2XML_LTO OFF)
endif()

# The shipped programs allocate their memory with mimalloc, which replaces malloc and operator new.
# Tests and tools use the C library's heap. So do all programs that are built for sanitizers or for
# fault injection, which replace malloc themselves.
if(ZAF2XML_MIMALLOC AND NOT ZAF2XML_SANITIZE AND NOT ZAF2XML_FAULTS)
  find_package(mimalloc QUIET)
endif()

# The shipped programs contain the C++ library where it can be linked statically: the dynamic linker
# would take longer to bind its symbols than a typical file takes to convert.
if(NOT ZAF2XML_SANITIZE AND NOT MSVC AND NOT MINGW AND NOT APPLE)
  check_linker_flag(CXX "-static-libstdc++" ZAF2XML_STATIC_LIBSTDCXX)
endif()

# zaf2xml_library(NAME SOURCES... LINK LIBRARIES...): a static library of tests or tools, which may
# include every header.
function(zaf2xml_library name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LINK;PRIVATE_LINK" ${ARGN})
  add_library(${name} STATIC ${ARG_SOURCES})
  zaf2xml_configure(${name})
  target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR})
  target_link_libraries(${name} PUBLIC ${ARG_LINK} PRIVATE ${ARG_PRIVATE_LINK})
endfunction()

# zaf2xml_module(NAME SOURCES... [HEADERS...] LINK LIBRARIES...): a part of the product, built from
# the current folder. It can include the headers of this folder (or only HEADERS) and of the modules
# that it links, and no others: its include path is a folder of links to those headers only.
function(zaf2xml_module name)
  cmake_parse_arguments(ARG "" "" "SOURCES;HEADERS;LINK;PRIVATE_LINK" ${ARGN})
  if(NOT ARG_HEADERS)
    file(GLOB ARG_HEADERS CONFIGURE_DEPENDS RELATIVE ${CMAKE_CURRENT_SOURCE_DIR} *.h)
  endif()
  file(RELATIVE_PATH folder ${PROJECT_SOURCE_DIR} ${CMAKE_CURRENT_SOURCE_DIR})
  set(view ${PROJECT_BINARY_DIR}/include/${name})
  if(CMAKE_HOST_WIN32)  # Links require a privilege there.
    set(view ${PROJECT_SOURCE_DIR})
  else()
    file(REMOVE_RECURSE ${view})
    file(MAKE_DIRECTORY ${view}/${folder})
    foreach(header IN LISTS ARG_HEADERS)
      file(CREATE_LINK ${CMAKE_CURRENT_SOURCE_DIR}/${header} ${view}/${folder}/${header} SYMBOLIC)
    endforeach()
  endif()
  if(ARG_SOURCES)
    add_library(${name} STATIC ${ARG_SOURCES})
    zaf2xml_configure(${name})
    target_include_directories(${name} PUBLIC
      $<BUILD_INTERFACE:${view}> $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/zaf2xml>)
    target_link_libraries(${name} PUBLIC ${ARG_LINK} PRIVATE ${ARG_PRIVATE_LINK})
    if(NOT WIN32)
      # All modules end up in executables. By default CMake compiles them for shared libraries,
      # where an exported function can be replaced and so cannot be inlined, not even in its own
      # file.
      target_compile_options(${name} PRIVATE -fPIE -fno-plt)
    endif()
    if(ZAF2XML_LTO)
      target_compile_options(${name} PRIVATE $<$<CONFIG:Release>:-flto=auto -ffat-lto-objects>)
    endif()
  else()
    add_library(${name} INTERFACE)
    target_include_directories(${name} INTERFACE
      $<BUILD_INTERFACE:${view}> $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/zaf2xml>)
    target_link_libraries(${name} INTERFACE ${ARG_LINK})
  endif()
endfunction()

# zaf2xml_executable(NAME [SHIPPED] SOURCES... LINK LIBRARIES...): a program. Those that are not
# shipped (tests, tools) may include every header.
function(zaf2xml_executable name)
  cmake_parse_arguments(ARG "SHIPPED" "" "SOURCES;LINK" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  zaf2xml_configure(${name})
  if(NOT ARG_SHIPPED)
    target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR})
  endif()
  set_target_properties(${name} PROPERTIES POSITION_INDEPENDENT_CODE ON)
  target_link_libraries(${name} PRIVATE ${ARG_LINK})
  if(ARG_SHIPPED AND mimalloc_FOUND)
    if(WIN32)
      target_sources(${name} PRIVATE ${PROJECT_SOURCE_DIR}/cmake/WindowsHeap.cpp)
    endif()
    target_link_libraries(${name} PRIVATE $<IF:$<TARGET_EXISTS:mimalloc-static>,mimalloc-static,mimalloc>)
  endif()
  if(ARG_SHIPPED AND ZAF2XML_STATIC_LIBSTDCXX)
    target_link_options(${name} PRIVATE -static-libstdc++ -static-libgcc)
  endif()
  if(MSVC)
    target_sources(${name} PRIVATE ${PROJECT_SOURCE_DIR}/cmake/windows.manifest)
  elseif(MINGW)
    target_sources(${name} PRIVATE ${PROJECT_SOURCE_DIR}/cmake/windows.rc)
    # The shipped programs begin with wmain.
    target_link_options(${name} PRIVATE
      -fstack-protector-strong $<$<BOOL:${ARG_SHIPPED}>:-municode>)
  elseif(NOT APPLE)
    target_link_options(${name} PRIVATE -pie -Wl,-z,relro,-z,now)
  endif()
  if(ZAF2XML_LTO)
    target_link_options(${name} PRIVATE
      $<$<CONFIG:Release>:$<IF:$<BOOL:${ARG_SHIPPED}>,-flto=auto,-fno-lto>>)
  endif()
endfunction()
