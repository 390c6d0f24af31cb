# One place for compile flags. Rooms link kelvo_flags, those without Qt kelvo_strict_flags.
add_library(kelvo_flags INTERFACE)
target_compile_options(kelvo_flags INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Wold-style-cast -Woverloaded-virtual
  -Wimplicit-fallthrough -Wformat=2
  # Inlined as far as in a release, g++ since 14 sees null pointers in the standard library's vectors that cannot be.
  $<$<NOT:$<CONFIG:Release>>:-Wnull-dereference>
  # A designated initialiser that names only what differs from the defaults is the point of it.
  -Wno-missing-field-initializers
  $<$<BOOL:${KELVO_WERROR}>:-Werror>)
if(KELVO_SANITIZE)
  target_compile_options(kelvo_flags INTERFACE -fsanitize=${KELVO_SANITIZE} -fno-sanitize-recover=all)
  target_link_options(kelvo_flags INTERFACE -fsanitize=${KELVO_SANITIZE})
endif()
target_link_libraries(kelvo_flags INTERFACE Threads::Threads)
# Files over 2 GiB on processors of 32 bits, too.
target_compile_definitions(kelvo_flags INTERFACE _FILE_OFFSET_BITS=64)

# What makes a mistake end the program instead of serving a stranger. Every release build has it. Sanitizers bring their own
# and do not go with it. The flags of the loop are each for some processors only.
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
