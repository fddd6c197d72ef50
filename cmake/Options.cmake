# Compiler and linker options of the project's own targets.
include_guard()

# Warnings are errors, and __FILE__ is the path from the repository root, so that no path of the
# building machine reaches a binary or an assertion report.
function(ravik_options target)
  target_compile_options(${target} PRIVATE
    -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror
    -fvisibility=hidden
    -fmacro-prefix-map=${PROJECT_SOURCE_DIR}/=)
  if(RAVIK_SANITIZE)
    target_compile_options(${target} PRIVATE
      -fsanitize=${RAVIK_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(${target} PUBLIC -fsanitize=${RAVIK_SANITIZE})
  endif()
endfunction()
