# A room is one folder of src/. It sees include/, itself and the rooms it names, and nothing else:
# each room is reached through an include root of its own that holds just that one folder.
set(ORVMESH_ROOM_ROOTS ${PROJECT_BINARY_DIR}/rooms)

function(orvmesh_room name)
  cmake_parse_arguments(ROOM "" "" "USES;LINKS" ${ARGN})
  file(MAKE_DIRECTORY ${ORVMESH_ROOM_ROOTS}/${name})
  file(CREATE_LINK ${PROJECT_SOURCE_DIR}/src/${name} ${ORVMESH_ROOM_ROOTS}/${name}/${name} SYMBOLIC)
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/src/${name}/*.cpp)

  add_library(room_${name} OBJECT ${sources})
  target_include_directories(room_${name} PUBLIC ${ORVMESH_ROOM_ROOTS}/${name} ${PROJECT_SOURCE_DIR}/include)
  foreach(used IN LISTS ROOM_USES)
    target_include_directories(room_${name} PUBLIC ${ORVMESH_ROOM_ROOTS}/${used})
  endforeach()
  target_compile_definitions(room_${name} PRIVATE ORVMESH_BUILDING_LIBRARY)
  target_link_libraries(room_${name} PRIVATE orvmesh_options PUBLIC ${ROOM_LINKS})
endfunction()

# The platform behind the declarations: the embedded one, or a library of the site's own. That one's symbols are not
# shown by a shared library that takes them in.
function(orvmesh_use_platform target)
  if(ORVMESH_PLATFORM_LIBRARY)
    target_link_libraries(${target} PRIVATE ${ORVMESH_PLATFORM_LIBRARY})
    target_link_options(${target} PRIVATE -Wl,--exclude-libs,ALL)
  else()
    target_link_libraries(${target} PRIVATE room_embedded)
  endif()
endfunction()

# A program (command, test, benchmark, fuzz target) takes the objects of all rooms it names, so that it can
# reach what the shared library hides.
function(orvmesh_use_rooms target)
  foreach(room IN LISTS ARGN)
    if(room STREQUAL "embedded")
      orvmesh_use_platform(${target})
    else()
      target_link_libraries(${target} PRIVATE room_${room})
    endif()
  endforeach()
  target_link_libraries(${target} PRIVATE orvmesh_options)
endfunction()
