# corvane_room(NAME LIBRARIES...): the static library of one folder of src/, built from every .cpp below it.
# A folder without a source file becomes an interface library.
function(corvane_room name)
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/${name}/*.cpp")
  if(sources)
    add_library(corvane_${name} STATIC ${sources})
    target_include_directories(corvane_${name} PUBLIC "${PROJECT_SOURCE_DIR}/src" "${PROJECT_BINARY_DIR}/generated")
    target_link_libraries(corvane_${name} PUBLIC ${ARGN})
  else()
    add_library(corvane_${name} INTERFACE)
    target_include_directories(corvane_${name} INTERFACE "${PROJECT_SOURCE_DIR}/src" "${PROJECT_BINARY_DIR}/generated")
    target_link_libraries(corvane_${name} INTERFACE ${ARGN})
  endif()
endfunction()
