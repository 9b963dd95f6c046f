# Warnings are errors in our own code; generated code is spared.
function(lens_warnings target)
  target_compile_definitions(${target} PRIVATE
    QT_NO_KEYWORDS QT_NO_CAST_TO_ASCII QT_STRICT_ITERATORS)
  if(LENS_FUZZ)
    # Another compiler, with other warnings; it is there to fuzz.
    return()
  endif()
  target_compile_options(${target} PRIVATE
    -Wall -Wextra -Wpedantic -Wshadow=local -Wnon-virtual-dtor -Woverloaded-virtual -Wcast-qual
    -Wimplicit-fallthrough -Werror)
  if(LENS_SANITIZE)
    # The sanitizers' own code makes the compiler see uninitialised parts of optional values.
    target_compile_options(${target} PRIVATE -Wno-maybe-uninitialized)
  endif()
endfunction()
