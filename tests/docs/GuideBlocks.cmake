# Reading fenced code blocks out of a guide page.
#
# orv_guide_block(<page> <info> <index> <out> <count>) sets <out> to the text
# of the <index>-th block (from 0) that opens with a line of exactly three
# backticks and <info>, up to and including the line feed before its closing
# fence, and <count> to the number of such blocks. <out> is empty when there
# is no such block. Text is handled as strings, never as lists, so
# semicolons and brackets in code come through unchanged.
function(orv_guide_block page info index out count)
  if(NOT EXISTS "${page}")
    message(FATAL_ERROR "Guide page ${page} does not exist")
  endif()
  file(READ "${page}" text)
  # A fence at the very start of the page is found like any other.
  set(text "\n${text}")
  set(opening "\n```${info}\n")
  string(LENGTH "${opening}" openingLength)
  set(found 0)
  set(block "")
  while(TRUE)
    string(FIND "${text}" "${opening}" start)
    if(start EQUAL -1)
      break()
    endif()
    math(EXPR bodyStart "${start} + ${openingLength}")
    string(SUBSTRING "${text}" ${bodyStart} -1 rest)
    # The body may be empty: the closing fence then starts the rest.
    string(FIND "\n${rest}" "\n```" close)
    if(close EQUAL -1)
      message(FATAL_ERROR "${page}: a ```${info} block is not closed")
    endif()
    if(found EQUAL index)
      string(SUBSTRING "${rest}" 0 ${close} block)
    endif()
    math(EXPR found "${found} + 1")
    string(SUBSTRING "${rest}" ${close} -1 text)
  endwhile()
  set(${out} "${block}" PARENT_SCOPE)
  set(${count} ${found} PARENT_SCOPE)
endfunction()

# orv_first_difference(<a> <b> <out>): the 1-based number of the first line
# at which two texts differ, for a message that points at it.
function(orv_first_difference a b out)
  set(line 1)
  string(LENGTH "${a}" lengthA)
  string(LENGTH "${b}" lengthB)
  set(position 0)
  while(position LESS lengthA AND position LESS lengthB)
    string(SUBSTRING "${a}" ${position} 1 charA)
    string(SUBSTRING "${b}" ${position} 1 charB)
    if(NOT charA STREQUAL charB)
      break()
    endif()
    if(charA STREQUAL "\n")
      math(EXPR line "${line} + 1")
    endif()
    math(EXPR position "${position} + 1")
  endwhile()
  set(${out} ${line} PARENT_SCOPE)
endfunction()
