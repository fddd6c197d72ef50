# Compiler and linker options of the project's own targets.
include_guard()
include(CheckPIESupported)
check_pie_supported(LANGUAGES CXX)

# What makes a fault in memory hard to use: canaries on stacks, checked string and container calls,
# landing pads for indirect branches, and tables that are read-only once the program is linked.
# Only optimised code has checked string calls; sanitizers bring stricter checks of their own.
function(ravik_harden target)
  target_compile_options(${target} PRIVATE -fstack-protector-strong -fstack-clash-protection)
  target_compile_definitions(${target} PRIVATE _GLIBCXX_ASSERTIONS)
  if(CMAKE_SYSTEM_PROCESSOR MATCHES "x86_64|AMD64")
    target_compile_options(${target} PRIVATE -fcf-protection=full)
  endif()
  # A system's compiler may define a lower level itself.
  target_compile_options(${target} PRIVATE
    $<$<CONFIG:Release,RelWithDebInfo,MinSizeRel>:-U_FORTIFY_SOURCE;-D_FORTIFY_SOURCE=3>)
  if(NOT APPLE)
    target_link_options(${target} PRIVATE LINKER:-z,relro,-z,now,-z,noexecstack)
  endif()
endfunction()

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
  else()
    ravik_harden(${target})
  endif()
  if(NOT APPLE)
    # DT_RPATH, which LD_LIBRARY_PATH does not override: a host that sets that for itself must not
    # give a process of ours another library of the name libCoreFoundation.so.
    target_link_options(${target} PRIVATE LINKER:--disable-new-dtags)
  endif()
endfunction()

# Gives the target the C++ runtime as code of its own, which spares the worker's start two libraries
# and the binding of their symbols, and leaves out what of it nothing refers to. No C++ object may
# cross its boundary. Sanitizers bring a runtime for the whole process.
function(ravik_own_runtime target)
  if(NOT APPLE AND NOT RAVIK_SANITIZE)
    target_link_options(${target} PRIVATE -static-libstdc++ -static-libgcc LINKER:--gc-sections)
  endif()
endfunction()
