# Warning flags for our own targets. ORV_WERROR turns them into errors, as CI
# builds do; consumers of the installed package never see these flags.
function(orv_set_warnings target)
  target_compile_options(${target} PRIVATE
    -Wall -Wextra -Wconversion -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual)
  if(ORV_WERROR)
    target_compile_options(${target} PRIVATE -Werror)
  endif()
endfunction()
