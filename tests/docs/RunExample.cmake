# Runs the guide's example program as the guide runs it, from the source
# directory with relative names, and checks that:
#  - on the example documents it exits 0, prints one line per file with the
#    right counts, logs nothing, and prints exactly the page's first ```text
#    block;
#  - without arguments it exits 2 with its usage line;
#  - on a missing file it exits 1, and its standard error is the page's
#    second ```text block.
# Arguments: PROGRAM, SOURCE_DIR, PAGE.
cmake_minimum_required(VERSION 3.25)
include(${CMAKE_CURRENT_LIST_DIR}/GuideBlocks.cmake)

foreach(argument PROGRAM SOURCE_DIR PAGE)
  if(NOT ${argument})
    message(FATAL_ERROR "RunExample.cmake needs -D${argument}=...")
  endif()
endforeach()

function(run_program out err status)
  execute_process(COMMAND ${PROGRAM} ${ARGN}
    WORKING_DIRECTORY ${SOURCE_DIR}
    OUTPUT_VARIABLE output ERROR_VARIABLE error RESULT_VARIABLE result)
  set(${out} "${output}" PARENT_SCOPE)
  set(${err} "${error}" PARENT_SCOPE)
  set(${status} "${result}" PARENT_SCOPE)
endfunction()

function(expect_equal what expected actual)
  if(NOT actual STREQUAL expected)
    orv_first_difference("${expected}" "${actual}" line)
    message(FATAL_ERROR "${what} differs at line ${line}.\n"
                        "--- expected:\n${expected}--- got:\n${actual}---")
  endif()
endfunction()

# The example documents.
run_program(output error status examples/schema.xml examples/instances.xml)
if(NOT status EQUAL 0)
  message(FATAL_ERROR "On the examples it exited with ${status}:\n${output}${error}")
endif()
foreach(line "examples/schema.xml: 6 classes" "examples/instances.xml: 5 instances")
  string(FIND "${output}" "${line}\n" at)
  if(at EQUAL -1)
    message(FATAL_ERROR "Its output lacks the line '${line}':\n${output}")
  endif()
endforeach()
if(NOT error STREQUAL "")
  message(FATAL_ERROR "The example documents made it log:\n${error}")
endif()
orv_guide_block(${PAGE} text 0 shown count)
if(count LESS 2)
  message(FATAL_ERROR "${PAGE} should show the output and the failure in two ```text blocks; it has ${count}")
endif()
expect_equal("The output shown in ${PAGE}" "${shown}" "${output}")

# No arguments: the usage line.
run_program(output error status)
if(NOT status EQUAL 2)
  message(FATAL_ERROR "Without arguments it exited with ${status}, not 2")
endif()
if(NOT error MATCHES "^Usage: LoadDocuments ")
  message(FATAL_ERROR "Without arguments it printed no usage line:\n${error}")
endif()

# A file that does not exist.
if(EXISTS ${SOURCE_DIR}/missing.xml)
  message(FATAL_ERROR "${SOURCE_DIR}/missing.xml exists; the failure case needs it absent")
endif()
run_program(output error status missing.xml)
if(NOT status EQUAL 1)
  message(FATAL_ERROR "On a missing file it exited with ${status}, not 1")
endif()
orv_guide_block(${PAGE} text 1 shown count)
expect_equal("The failure shown in ${PAGE}" "${shown}" "${error}")
