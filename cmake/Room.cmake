# room(NAME FLOOR n [LINKS target ...]): one folder is one library. Its headers are found only by the rooms that link
# it, so the links are the declaration of the floors. build/rooms.txt tells them to the include test.
set_property(GLOBAL PROPERTY CORVANE_ROOMS "")

add_library(corvane_flags INTERFACE)
if(MSVC)
  target_compile_options(corvane_flags INTERFACE /W3)
  target_compile_definitions(corvane_flags INTERFACE NOMINMAX _CRT_SECURE_NO_WARNINGS)
else()
  target_compile_options(corvane_flags INTERFACE -Wall -Wextra -Wno-unused-parameter
                                                 $<$<CXX_COMPILER_ID:GNU>:-Wshadow=local>)
  # What is shipped has the same bytes wherever it was built. Of two that fit the later one counts.
  target_compile_options(
    corvane_flags INTERFACE $<$<CONFIG:Release>:-ffile-prefix-map=${PROJECT_SOURCE_DIR}=.
                            -ffile-prefix-map=${CMAKE_BINARY_DIR}=./build>)
endif()
target_compile_definitions(corvane_flags INTERFACE QT_NO_CAST_TO_ASCII)
if(CORVANE_SANITIZE)
  target_compile_options(corvane_flags INTERFACE -fsanitize=address,undefined -fno-omit-frame-pointer -fno-sanitize=vptr)
  target_link_options(corvane_flags INTERFACE -fsanitize=address,undefined)
endif()

# The second form of Qt's resources holds the times of the files, which differ from clone to clone.
set(RCC_OPTIONS --format-version 1)

function(room name)
  cmake_parse_arguments(R "" "FLOOR" "LINKS" ${ARGN})
  set(links "")
  foreach(link IN LISTS R_LINKS)
    if(TARGET room_${link})
      list(APPEND links room_${link})
    else()
      list(APPEND links ${link})
    endif()
  endforeach()
  file(GLOB sources CONFIGURE_DEPENDS *.cpp *.h *.qrc)
  if(sources)
    add_library(room_${name} STATIC ${sources})
    set_target_properties(room_${name} PROPERTIES AUTORCC ON AUTORCC_OPTIONS "${RCC_OPTIONS}" LINKER_LANGUAGE CXX
                                                  OUTPUT_NAME ${name})
    # A header that joins the room changes no file that moc's step looks at, except this one.
    set(members ${CMAKE_CURRENT_BINARY_DIR}/members.cmake)
    file(CONFIGURE OUTPUT ${members} CONTENT "# ${sources}\n" @ONLY)
    include(${members})
    target_include_directories(room_${name} PUBLIC ${CMAKE_CURRENT_SOURCE_DIR})
    target_link_libraries(room_${name} PUBLIC corvane_flags ${links})
  else()
    add_library(room_${name} INTERFACE)
  endif()
  string(REPLACE ";" " " R_LINKS "${R_LINKS}")
  set_property(GLOBAL APPEND PROPERTY CORVANE_ROOMS "${name} ${R_FLOOR} ${R_LINKS}")
endfunction()

function(write_rooms)
  get_property(rooms GLOBAL PROPERTY CORVANE_ROOMS)
  list(JOIN rooms "\n" text)
  file(WRITE ${CMAKE_BINARY_DIR}/rooms.txt "${text}\n")
endfunction()
