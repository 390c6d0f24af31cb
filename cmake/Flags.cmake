# One place for compile flags. Rooms link kelvo_flags, those without Qt kelvo_strict_flags.
add_library(kelvo_flags INTERFACE)
target_compile_options(kelvo_flags INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Wold-style-cast -Woverloaded-virtual -Wnull-dereference
  -Wimplicit-fallthrough -Wformat=2
  # A designated initialiser that names only what differs from the defaults is the point of it.
  -Wno-missing-field-initializers
  $<$<BOOL:${KELVO_WERROR}>:-Werror>)
if(KELVO_SANITIZE)
  target_compile_options(kelvo_flags INTERFACE -fsanitize=${KELVO_SANITIZE} -fno-sanitize-recover=all)
  target_link_options(kelvo_flags INTERFACE -fsanitize=${KELVO_SANITIZE})
endif()
target_link_libraries(kelvo_flags INTERFACE Threads::Threads)

add_library(kelvo_strict_flags INTERFACE)
target_compile_options(kelvo_strict_flags INTERFACE -Wconversion -Wsign-conversion)
target_link_libraries(kelvo_strict_flags INTERFACE kelvo_flags)
