# One static library for each floor of the house, linked only downward, so that a
# wrong include or call does not build.

# floor(<target> [FOLDERS <folder>...] [SOURCES <file>...] [EXCLUDE <file>...])
function(floor target)
  cmake_parse_arguments(F "" "" "FOLDERS;SOURCES;EXCLUDE" ${ARGN})
  set(found)
  foreach(source IN LISTS F_SOURCES)
    if(EXISTS ${CMAKE_SOURCE_DIR}/${source})
      list(APPEND found ${source})
    endif()
  endforeach()
  foreach(folder IN LISTS F_FOLDERS)
    file(GLOB_RECURSE in_folder RELATIVE ${CMAKE_SOURCE_DIR} CONFIGURE_DEPENDS
         ${CMAKE_SOURCE_DIR}/${folder}/*.cpp ${CMAKE_SOURCE_DIR}/${folder}/*.h)
    list(APPEND found ${in_folder})
  endforeach()
  if(F_EXCLUDE)
    list(REMOVE_ITEM found ${F_EXCLUDE})
  endif()
  add_library(${target} STATIC ${found})
  set_target_properties(${target} PROPERTIES LINKER_LANGUAGE CXX)
  target_include_directories(${target} PUBLIC ${CMAKE_SOURCE_DIR})
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wshadow -Wconversion
                         -Wno-sign-conversion -fno-exceptions -fno-rtti)
endfunction()

# archive_object(<file> <variable>): an assembler file that holds the bytes as
# g_LinkedArchive, with their count in g_LinkedArchiveSize.
function(archive_object file variable)
  set(source ${CMAKE_BINARY_DIR}/archive_object.S)
  file(WRITE ${source}.new "    .section .data\n    .balign 16\n    .global g_LinkedArchive\n"
"g_LinkedArchive:\n    .incbin \"${file}\"\ng_LinkedArchiveEnd:\n    .balign 4\n"
"    .global g_LinkedArchiveSize\ng_LinkedArchiveSize:\n"
"    .long g_LinkedArchiveEnd - g_LinkedArchive\n"
"    .section .note.GNU-stack,\"\",@progbits\n")
  configure_file(${source}.new ${source} COPYONLY)
  set_source_files_properties(${source} PROPERTIES OBJECT_DEPENDS ${file})
  set(${variable} ${source} PARENT_SCOPE)
endfunction()
