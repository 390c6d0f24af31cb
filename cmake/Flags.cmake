# All compile flags. Modules link kelvo_flags; those without Qt link kelvo_strict_flags.
add_library(kelvo_flags INTERFACE)
target_compile_options(kelvo_flags INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Wold-style-cast -Woverloaded-virtual
  -Wimplicit-fallthrough -Wformat=2
  # With the inlining of a release build, g++ 14 and newer warn about impossible null pointers in std::vector.
  $<$<NOT:$<CONFIG:Release>>:-Wnull-dereference>
  # Designated initialisers name only the members that differ from the defaults.
  -Wno-missing-field-initializers
  $<$<BOOL:${KELVO_WERROR}>:-Werror>)
if(KELVO_SANITIZE)
  target_compile_options(kelvo_flags INTERFACE -fsanitize=${KELVO_SANITIZE} -fno-sanitize-recover=all)
  target_link_options(kelvo_flags INTERFACE -fsanitize=${KELVO_SANITIZE})
endif()
target_link_libraries(kelvo_flags INTERFACE Threads::Threads)
# For files over 2 GiB on 32-bit processors.
target_compile_definitions(kelvo_flags INTERFACE _FILE_OFFSET_BITS=64)

# Hardening: memory errors end the program instead of being exploited. Every release build has it, except with sanitizers,
# which have their own checks. Each flag of the loop exists for some processors only.
include(CheckCXXCompilerFlag)
add_library(kelvo_hardening INTERFACE)
target_compile_options(kelvo_hardening INTERFACE -fPIC -fstack-protector-strong -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=3
  -D_GLIBCXX_ASSERTIONS)
target_link_options(kelvo_hardening INTERFACE -fPIE -pie -Wl,-z,relro -Wl,-z,now -Wl,-z,noexecstack)
foreach(flag -fstack-clash-protection -fcf-protection=full -mbranch-protection=standard)
  string(MAKE_C_IDENTIFIER KELVO_HAS${flag} known)
  check_cxx_compiler_flag(${flag} ${known})
  if(${known})
    target_compile_options(kelvo_hardening INTERFACE ${flag})
  endif()
endforeach()
if(NOT KELVO_SANITIZE)
  target_link_libraries(kelvo_flags INTERFACE $<$<CONFIG:Release>:kelvo_hardening>)
endif()

add_library(kelvo_strict_flags INTERFACE)
target_compile_options(kelvo_strict_flags INTERFACE -Wconversion -Wsign-conversion)
target_link_libraries(kelvo_strict_flags INTERFACE kelvo_flags)
