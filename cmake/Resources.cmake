# orb_embed_resources(target script.rc [SYMBOL name] [DEPENDS file...] [INCLUDE folder...]): compiles a resource script
# into a target.
#
# For Windows the ordinary way. For Linux the same windres compiles it to a .res file, which becomes constant data of the
# target between the symbols NAME_begin and NAME_end, orb_resources if not said (read by platform/base/resources.cpp).
# Files that the script names and that should cause a rebuild go under DEPENDS. Both get UTF-8 as the script's code page.
if(WIN32)
  enable_language(RC)
  set(CMAKE_RC_FLAGS "${CMAKE_RC_FLAGS} -c 65001")
else()
  find_program(ORB_WINDRES x86_64-w64-mingw32-windres REQUIRED)
endif()

function(orb_embed_resources target script)
  cmake_parse_arguments(arg "" "SYMBOL" "DEPENDS;INCLUDE" ${ARGN})
  if(NOT arg_SYMBOL)
    set(arg_SYMBOL orb_resources)
  endif()
  get_filename_component(script ${script} ABSOLUTE)
  get_filename_component(folder ${script} DIRECTORY)
  get_filename_component(name ${script} NAME_WE)
  if(WIN32)
    target_sources(${target} PRIVATE ${script})
    set_source_files_properties(${script} PROPERTIES OBJECT_DEPENDS "${arg_DEPENDS}"
                                INCLUDE_DIRECTORIES "${folder};${arg_INCLUDE}")
    return()
  endif()
  set(compiled ${CMAKE_CURRENT_BINARY_DIR}/${target}_${name}.res)
  set(holder ${CMAKE_CURRENT_BINARY_DIR}/${target}_${name}_resources.cpp)
  set(includes -I ${folder})
  foreach(include ${arg_INCLUDE})
    list(APPEND includes -I ${include})
  endforeach()
  add_custom_command(OUTPUT ${compiled}
    COMMAND ${ORB_WINDRES} -O res -c 65001 ${includes} -i ${script} -o ${compiled}
    WORKING_DIRECTORY ${folder} DEPENDS ${script} ${arg_DEPENDS} COMMENT "Compiling resources ${name}.rc" VERBATIM)
  file(CONFIGURE OUTPUT ${holder} CONTENT [[
asm(R"(.section .rodata
.balign 16
.globl @arg_SYMBOL@_begin, @arg_SYMBOL@_end
@arg_SYMBOL@_begin: .incbin "@compiled@"
@arg_SYMBOL@_end: .byte 0
.previous)");
]] @ONLY)
  set_source_files_properties(${holder} PROPERTIES OBJECT_DEPENDS ${compiled})
  target_sources(${target} PRIVATE ${holder})
endfunction()
