# Run with cmake -P from the PackageConsumer test (tests/package/CMakeLists.txt
# passes every ORV_* variable). Each step stops the test with its command and
# full output when it fails.
#
#  1. install the build tree into ORV_WORK_DIR/prefix;
#  2. compile one file including every installed header, with only the
#     include directory that pkg-config gives: no installed header may need
#     one that is not installed; pkg-config's orvwrite brings the other
#     libraries;
#  3. build the consumer project with find_package(ORV) against the prefix;
#  4. build the same program with the compiler and pkg-config alone;
#  5. run both programs, and the installed cimxml tool when it is built (also
#     with --json), on the examples; build a program that writes CIM-XML both
#     ways and run it;
#  6. move the installed tree and run the tool there without FILE.
cmake_minimum_required(VERSION 3.25)

if(NOT ORV_PKG_CONFIG)
  message(FATAL_ERROR "pkg-config was not found when the build was configured; "
                      "install pkgconf and configure again")
endif()

set(prefix ${ORV_WORK_DIR}/prefix)
set(cmakeBuild ${ORV_WORK_DIR}/cmake-consumer)
set(pkgBuild ${ORV_WORK_DIR}/pkg-config-consumer)
# Every run starts empty, so that nothing left by an earlier run can stand
# in for a file the install no longer provides.
file(REMOVE_RECURSE ${ORV_WORK_DIR})
file(MAKE_DIRECTORY ${pkgBuild})

# Our build uses ccache; the consumers are built as a user would, without.
unset(ENV{CMAKE_CXX_COMPILER_LAUNCHER})
unset(ENV{CMAKE_PREFIX_PATH})
unset(ENV{DESTDIR})
set(ENV{PKG_CONFIG_PATH} ${prefix}/${ORV_INSTALL_LIBDIR}/pkgconfig)
separate_arguments(cxxFlags UNIX_COMMAND "${ORV_CXX_FLAGS}")

# Runs one step; on failure stops with its command, status and output. With
# OUTPUT <variable>, the step's standard output is left in that variable.
function(orv_step name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "OUTPUT" "COMMAND")
  execute_process(COMMAND ${arg_COMMAND}
                  RESULT_VARIABLE status OUTPUT_VARIABLE out ERROR_VARIABLE err)
  if(NOT status STREQUAL "0")
    list(JOIN arg_COMMAND " " shown)
    message(FATAL_ERROR "Step '${name}' failed (${status}):\n ${shown}\n"
                        "--- standard output ---\n${out}\n--- standard error ---\n${err}")
  endif()
  if(arg_OUTPUT)
    set(${arg_OUTPUT} "${out}" PARENT_SCOPE)
  endif()
endfunction()

# 1. The install, as a user would run it on our build tree.
set(configArgs)
if(ORV_CONFIG)
  set(configArgs --config ${ORV_CONFIG})
endif()
orv_step(install COMMAND ${CMAKE_COMMAND} --install ${ORV_BUILD_DIR} --prefix ${prefix}
                         ${configArgs})

# 2. Every installed header, in one translation unit, found through the
# include directory that pkg-config gives.
orv_step("pkg-config" OUTPUT pcFlags COMMAND ${ORV_PKG_CONFIG} --cflags --libs orvcimxml)
orv_step("pkg-config libdir" OUTPUT pcLibDir
         COMMAND ${ORV_PKG_CONFIG} --variable=libdir orvcimxml)
# The writers' library brings the loader and the core with it.
orv_step("pkg-config orvwrite" OUTPUT writeFlags COMMAND ${ORV_PKG_CONFIG} --libs orvwrite)
if(NOT writeFlags MATCHES "-lorvwrite" OR NOT writeFlags MATCHES "-lorvcimxml"
   OR NOT writeFlags MATCHES "-lorvcore")
  message(FATAL_ERROR "pkg-config gave for orvwrite: ${writeFlags}")
endif()
string(STRIP "${pcFlags}" pcFlags)
string(STRIP "${pcLibDir}" pcLibDir)
separate_arguments(pcFlags UNIX_COMMAND "${pcFlags}")
set(pcIncludes ${pcFlags})
list(FILTER pcIncludes INCLUDE REGEX "^-I")
if(NOT pcIncludes)
  message(FATAL_ERROR "pkg-config gave no include directory for orvcimxml: ${pcFlags}")
endif()

file(GLOB_RECURSE headers RELATIVE ${prefix}/include/orv ${prefix}/include/orv/*.h)
# The object model's classes and the parse states are the libraries' own.
set(internalHeaders ${headers})
list(FILTER internalHeaders INCLUDE REGEX "^(core|cimxml/states)/")
if(internalHeaders)
  message(FATAL_ERROR "Internal headers were installed: ${internalHeaders}")
endif()
set(allHeaders "")
foreach(header ${headers})
  string(APPEND allHeaders "#include \"${header}\"\n")
endforeach()
file(WRITE ${pkgBuild}/AllHeaders.cpp "${allHeaders}")
orv_step("compile every installed header"
         COMMAND ${ORV_CXX_COMPILER} ${cxxFlags} -std=c++17 -fsyntax-only
                 ${pcIncludes} ${pkgBuild}/AllHeaders.cpp)

# A program of the writers' library: the schema it loads, as CIM-XML.
set(writerSource ${pkgBuild}/WriteSchema.cpp)
file(WRITE ${writerSource} [=[
#include "populate/NamespacePopulator.h"
#include "write/CIMXMLWriter.h"

#include <iostream>

int main(int, char **argv) {
  using namespace NVRNORV20;
  boost::shared_ptr<ICIMNamespace> ns = CreateCIMNamespace("root/cimv2");
  TNamespacePopulator::PopulateFromXMLFile(ns, argv[1]);
  TCIMXMLWriter::WriteDocument(std::cout, *ns);
  return 0;
}
]=])

# 3. The CMake consumer, built by the same generator and compiler as we are.
set(makeProgramArgs)
if(ORV_MAKE_PROGRAM)
  set(makeProgramArgs -DCMAKE_MAKE_PROGRAM=${ORV_MAKE_PROGRAM})
endif()
orv_step("configure the find_package consumer"
         COMMAND ${CMAKE_COMMAND} -S ${ORV_CONSUMER_DIR} -B ${cmakeBuild} -G ${ORV_GENERATOR}
                 ${makeProgramArgs}
                 -DCMAKE_BUILD_TYPE=${ORV_CONFIG}
                 -DCMAKE_CXX_COMPILER=${ORV_CXX_COMPILER}
                 -DCMAKE_CXX_FLAGS=${ORV_CXX_FLAGS}
                 -DCMAKE_PREFIX_PATH=${prefix}
                 -DCMAKE_FIND_USE_PACKAGE_REGISTRY=OFF
                 -DORV_CONSUMER_SOURCE=${ORV_CONSUMER_SOURCE}
                 -DORV_WRITER_SOURCE=${writerSource})
# The package must come from the scratch prefix, not from anything installed
# on the machine.
file(STRINGS ${cmakeBuild}/CMakeCache.txt orvDir REGEX "^ORV_DIR:")
if(NOT orvDir STREQUAL "ORV_DIR:PATH=${prefix}/${ORV_INSTALL_LIBDIR}/cmake/ORV")
  message(FATAL_ERROR "The consumer found the package elsewhere: ${orvDir}")
endif()
orv_step("build the find_package consumer"
         COMMAND ${CMAKE_COMMAND} --build ${cmakeBuild} -j2 ${configArgs})

# 4. The same program through pkg-config. The libraries are not on the
# loader's path, so the program records where they are.
orv_step("build the pkg-config consumer"
         COMMAND ${ORV_CXX_COMPILER} ${cxxFlags} -std=c++17 ${ORV_CONSUMER_SOURCE}
                 -o ${pkgBuild}/LoadDocuments ${pcFlags} -Wl,-rpath,${pcLibDir})
orv_step("pkg-config orvwrite" OUTPUT pcWriteFlags
         COMMAND ${ORV_PKG_CONFIG} --cflags --libs orvwrite)
string(STRIP "${pcWriteFlags}" pcWriteFlags)
separate_arguments(pcWriteFlags UNIX_COMMAND "${pcWriteFlags}")
orv_step("build the pkg-config writer"
         COMMAND ${ORV_CXX_COMPILER} ${cxxFlags} -std=c++17 ${writerSource}
                 -o ${pkgBuild}/WriteSchema ${pcWriteFlags} -Wl,-rpath,${pcLibDir})

# 5. Both programs load the schema, then the instances, and say the same.
set(schema ${ORV_EXAMPLES_DIR}/schema.xml)
set(instances ${ORV_EXAMPLES_DIR}/instances.xml)
set(expected "${schema}: 6 classes\n${instances}: 5 instances\n")
string(LENGTH "${expected}" expectedLength)
file(GLOB_RECURSE cmakeProgram ${cmakeBuild}/LoadDocuments)
if(NOT cmakeProgram)
  message(FATAL_ERROR "The find_package consumer built no LoadDocuments in ${cmakeBuild}")
endif()
list(GET cmakeProgram 0 cmakeProgram)
orv_step("run the find_package consumer" OUTPUT cmakeOutput
         COMMAND ${cmakeProgram} ${schema} ${instances})
orv_step("run the pkg-config consumer" OUTPUT pkgOutput
         COMMAND ${pkgBuild}/LoadDocuments ${schema} ${instances})
string(SUBSTRING "${cmakeOutput}" 0 ${expectedLength} head)
if(NOT head STREQUAL expected)
  message(FATAL_ERROR "The find_package consumer printed:\n${cmakeOutput}\n"
                      "expected it to begin with:\n${expected}")
endif()
if(NOT pkgOutput STREQUAL cmakeOutput)
  message(FATAL_ERROR "The two builds disagree:\n--- find_package ---\n${cmakeOutput}\n"
                      "--- pkg-config ---\n${pkgOutput}")
endif()

# Both builds of the writer give the schema's document.
file(GLOB_RECURSE cmakeWriter ${cmakeBuild}/WriteSchema)
if(NOT cmakeWriter)
  message(FATAL_ERROR "The find_package consumer built no WriteSchema in ${cmakeBuild}")
endif()
list(GET cmakeWriter 0 cmakeWriter)
orv_step("run the find_package writer" OUTPUT cmakeWritten COMMAND ${cmakeWriter} ${schema})
orv_step("run the pkg-config writer" OUTPUT pkgWritten COMMAND ${pkgBuild}/WriteSchema ${schema})
if(NOT cmakeWritten MATCHES "^<\\?xml version=\"1.0\" encoding=\"utf-8\"\\?>\n<CIM .*<CLASS NAME=\"ORV_Disk\""
   OR NOT pkgWritten STREQUAL cmakeWritten)
  message(FATAL_ERROR "The writers printed:\n--- find_package ---\n${cmakeWritten}\n"
                      "--- pkg-config ---\n${pkgWritten}")
endif()

# The installed tool finds the libraries through its run path, relative to
# itself, and loads an installed example.
if(ORV_CHECK_TOOL)
  set(installedSchema ${prefix}/share/orv/examples/schema.xml)
  orv_step("run the installed cimxml" OUTPUT out
           COMMAND ${prefix}/bin/cimxml --classic --quiet ${installedSchema})
  if(NOT out STREQUAL "${installedSchema}: 6 classes, 0 instances\n")
    message(FATAL_ERROR "The installed cimxml printed:\n${out}")
  endif()
  # It writes JSON through the installed writers' library.
  orv_step("run the installed cimxml --json" OUTPUT out
           COMMAND ${prefix}/bin/cimxml --json --quiet ${installedSchema})
  string(FIND "${out}" "{\"files\":[{\"file\":\"${installedSchema}\",\"items\":[" at)
  if(NOT at EQUAL 0)
    message(FATAL_ERROR "The installed cimxml --json printed:\n${out}")
  endif()

  # 6. Without FILE it loads the example installed with it, and still does
  # once the whole tree has been moved: it looks relative to itself, never
  # in the source tree.
  file(REAL_PATH ${ORV_WORK_DIR} workDir)
  set(moved ${workDir}/moved-prefix)
  file(RENAME ${prefix} ${moved})
  set(movedExamples ${moved}/share/orv/examples)
  orv_step("run the moved cimxml without FILE" OUTPUT out COMMAND ${moved}/bin/cimxml --classic --quiet)
  if(NOT out STREQUAL "${movedExamples}/schema.xml: 6 classes, 0 instances\n")
    message(FATAL_ERROR "The moved cimxml, given no FILE, printed:\n${out}")
  endif()
endif()

message(STATUS "Installed into ${prefix}; the programs built against it loaded the examples")
