# Warning flags for our own targets. ORV_WERROR turns them into errors, as CI
# builds do; consumers of the installed package never see these flags.
function(orv_set_warnings target)
  target_compile_options(${target} PRIVATE
    -Wall -Wextra -Wconversion -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual)
  if(ORV_WERROR)
    target_compile_options(${target} PRIVATE -Werror)
  endif()
endfunction()

# One of our shared libraries: orv_add_library(NAME BUILDING_MACRO
# PUBLIC_HEADERS header... SOURCES source...). It is built with the macro that marks
# its own exports, carries the SONAME of the major version, and installs its
# public headers below include/orv in their own directories, as they are
# included.
function(orv_add_library name buildingMacro)
  cmake_parse_arguments(PARSE_ARGV 2 arg "" "" "PUBLIC_HEADERS;SOURCES")
  add_library(${name} SHARED ${arg_SOURCES})
  add_library(ORV::${name} ALIAS ${name})
  target_include_directories(${name} PUBLIC
    $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>
    $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/orv>)
  target_sources(${name} PUBLIC FILE_SET HEADERS BASE_DIRS ${PROJECT_SOURCE_DIR}
                 FILES ${arg_PUBLIC_HEADERS})
  # Only what ORV_EXPORT marks leaves the library; calls inside it need no
  # look-up through the symbol table and may be inlined.
  set_target_properties(${name} PROPERTIES VERSION ${PROJECT_VERSION}
                        SOVERSION ${PROJECT_VERSION_MAJOR}
                        CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON)
  target_compile_options(${name} PRIVATE -fno-semantic-interposition)
  target_compile_definitions(${name} PRIVATE ${buildingMacro})
  orv_set_warnings(${name})
endfunction()
