# Run by the GuideExample test with PROGRAM, COUNTER, SOURCE_DIR and PAGE.
# The page's two ```cpp blocks must be examples/LoadDocuments.cpp and
# examples/CountInstances.cpp, byte for byte; the second prints the page's
# third ```text block on the example enumeration. Run
# from the source directory with relative names, as the page runs it, the
# program must print the page's first ```text block on the example documents
# and log nothing; and on a missing file exit 1 with the page's second ```text block on standard error.
cmake_minimum_required(VERSION 3.25)

# The text of the index-th (from 0) block that opens with ```info, without
# its fences; empty when there is none. Blocks hold no backquote.
function(guide_block info index out)
  file(READ "${PAGE}" text)
  set(block "")
  foreach(i RANGE ${index})
    set(block "")
    if(text MATCHES "\n```${info}\n([^`]*\n)```(.*)")
      set(block "${CMAKE_MATCH_1}")
      set(text "${CMAKE_MATCH_2}")
    endif()
  endforeach()
  set(${out} "${block}" PARENT_SCOPE)
endfunction()

function(expect what expected actual)
  if(NOT "${actual}" STREQUAL "${expected}")
    message(FATAL_ERROR "${what}:\n--- expected:\n${expected}\n--- got:\n${actual}\n---")
  endif()
endfunction()

function(run)
  execute_process(COMMAND ${ARGN} WORKING_DIRECTORY ${SOURCE_DIR}
                  OUTPUT_VARIABLE out ERROR_VARIABLE err RESULT_VARIABLE status)
  set(out "${out}" PARENT_SCOPE)
  set(err "${err}" PARENT_SCOPE)
  set(status "${status}" PARENT_SCOPE)
endfunction()

file(READ ${SOURCE_DIR}/examples/LoadDocuments.cpp source)
guide_block(cpp 0 shown)
expect("The program in ${PAGE}; copy examples/LoadDocuments.cpp into it" "${source}" "${shown}")

run(${PROGRAM} examples/schema.xml examples/instances.xml)
guide_block(text 0 shown)
expect("The output on the examples, as ${PAGE} shows it" "${shown}" "${out}")
expect("The log on the examples" "" "${err}")
expect("The status on the examples" 0 "${status}")


run(${PROGRAM} missing.xml)
guide_block(text 1 shown)
expect("The failure on a missing file, as ${PAGE} shows it" "${shown}" "${err}")
expect("The status on a missing file" 1 "${status}")

file(READ ${SOURCE_DIR}/examples/CountInstances.cpp source)
guide_block(cpp 1 shown)
expect("The second program in ${PAGE}; copy examples/CountInstances.cpp into it" "${source}"
       "${shown}")
run(${COUNTER} examples/enumeration.xml)
guide_block(text 2 shown)
expect("The count of the example enumeration, as ${PAGE} shows it" "${shown}" "${out}")
expect("The log of the count" "" "${err}")
expect("The status of the count" 0 "${status}")
