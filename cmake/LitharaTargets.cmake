# What every target of the project is built with.
#
# -ffp-contract=off: no machine may fuse a multiplication and an addition, so that the simulations
# give the same cells everywhere.
# QT_MESSAGELOGCONTEXT: log lines carry file, line and function in release builds too.
add_library(lithara_options INTERFACE)
target_compile_options(lithara_options INTERFACE
  -ffp-contract=off
  -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Wcast-qual)
target_compile_definitions(lithara_options INTERFACE QT_MESSAGELOGCONTEXT QT_NO_KEYWORDS)

if(LITHARA_WERROR)
  target_compile_options(lithara_options INTERFACE -Werror)
endif()

if(LITHARA_SANITIZE)
  target_compile_options(lithara_options INTERFACE
    -fsanitize=${LITHARA_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(lithara_options INTERFACE -fsanitize=${LITHARA_SANITIZE})
endif()

# One static library a layer. PUBLIC holds the layers below; a file never includes upward, which
# tools/check_layers.sh proves from the include lines.
function(lithara_layer name)
  cmake_parse_arguments(ARG "" "" "SOURCES;PUBLIC;PRIVATE" ${ARGN})
  add_library(${name} STATIC ${ARG_SOURCES})
  target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR}/src)
  target_link_libraries(${name} PUBLIC lithara_options ${ARG_PUBLIC} PRIVATE ${ARG_PRIVATE})
endfunction()
