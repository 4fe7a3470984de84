# Fails unless the guide page holds exactly one ```cpp block and that block
# is the example program's source, byte for byte.
# Arguments: PAGE, EXAMPLE.
cmake_minimum_required(VERSION 3.25)
include(${CMAKE_CURRENT_LIST_DIR}/GuideBlocks.cmake)

foreach(argument PAGE EXAMPLE)
  if(NOT ${argument})
    message(FATAL_ERROR "CheckExampleInGuide.cmake needs -D${argument}=...")
  endif()
endforeach()

orv_guide_block(${PAGE} cpp 0 shown count)
if(NOT count EQUAL 1)
  message(FATAL_ERROR "${PAGE} should hold one ```cpp block, the example program; it holds ${count}")
endif()
file(READ ${EXAMPLE} source)
if(NOT shown STREQUAL source)
  orv_first_difference("${source}" "${shown}" line)
  message(FATAL_ERROR "The program in ${PAGE} is not ${EXAMPLE}: they differ at line ${line} "
                      "of the program. Copy the file into the page.")
endif()
