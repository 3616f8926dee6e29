# Fails when a file includes what its folder must not know. ROOT is the src folder, MAP the page that shows this table.
# The standard library and the folder's own headers may always be included; "platform" stands for the border headers
# directly in src/platform/, "libraries" for anything in angle brackets. A host/ folder stands below every row that
# names it, so no circle is possible.
cmake_minimum_required(VERSION 3.25)

set(table
  "colour: platform"
  "platform:"
  "host/base: frame_codes.h libraries"
  "host/record: base bitmap.h libraries"
  "host/screen: base bitmap.h frame_codes.h splines.h libraries"
  "host/files: base screen bitmap.h libraries"
  "host/keep: base screen files libraries"
  "host/options: base files libraries"
  "host/panel: base screen libraries"
  "host/window: base screen panel libraries"
  "host/browser: base screen panel libraries"
  "host/touch: base screen files panel libraries"
  "host/desk: base record screen panel touch callbacks.h libraries"
  "host/dialogs: base record screen files panel touch callbacks.h libraries"
  "host/keyboard: base record screen files panel touch callbacks.h libraries"
  "host/explorer: base screen files keep panel touch libraries"
  "host/session: base record screen panel touch desk libraries"
  "host: base options record screen files keep panel window browser touch desk libraries"
  "host/api: base options record screen files keep panel touch desk dialogs keyboard explorer session host platform libraries")

file(READ "${MAP}" map)
set(wrong "")
set(known "")

foreach(row IN LISTS table)
  string(FIND "${map}" "    ${row}\n" shown)
  if(shown EQUAL -1)
    string(APPEND wrong "  ${MAP} does not show the row \"${row}\"\n")
  endif()

  string(REGEX MATCH "^([a-z/]+):(.*)$" matched "${row}")
  set(folder "${CMAKE_MATCH_1}")
  separate_arguments(others UNIX_COMMAND "${CMAKE_MATCH_2}")
  set(libraries "^[a-z_]+$")
  if(folder STREQUAL "colour" OR folder STREQUAL "platform")
    set(path "${folder}")
  else()
    set(path "platform/${folder}")
  endif()
  set(allowed "^${path}/[a-z0-9_]+\\.h$")
  foreach(other IN LISTS others)
    if(other STREQUAL "libraries")
      set(libraries ".")
    elseif(other STREQUAL "platform")
      string(APPEND allowed "|^platform/[a-z_]+\\.h$")
    elseif(other MATCHES "\\.h$")
      string(APPEND allowed "|^platform/${other}$")
    elseif(other STREQUAL "host")
      string(APPEND allowed "|^platform/host/[a-z0-9_]+\\.h$")
    elseif("host/${other}" IN_LIST known)
      string(APPEND allowed "|^platform/host/${other}/[a-z0-9_]+\\.h$")
    else()
      string(APPEND wrong "  \"${row}\": ${other} does not stand below it\n")
    endif()
  endforeach()
  list(APPEND known "${folder}")

  file(GLOB files "${ROOT}/${path}/*.h" "${ROOT}/${path}/*.cpp")
  if(folder STREQUAL "colour")
    list(APPEND files "${ROOT}/main.cpp")
  endif()
  list(APPEND checked ${files})
  foreach(file IN LISTS files)
    file(STRINGS "${file}" lines REGEX "^[ \t]*#[ \t]*include")
    foreach(line IN LISTS lines)
      if((line MATCHES "\"(.*)\"" AND NOT CMAKE_MATCH_1 MATCHES "${allowed}") OR
         (line MATCHES "<(.*)>" AND NOT CMAKE_MATCH_1 MATCHES "${libraries}"))
        string(APPEND wrong "  ${file}: ${line}\n")
      endif()
    endforeach()
  endforeach()
endforeach()

file(GLOB_RECURSE all "${ROOT}/*.h" "${ROOT}/*.cpp")
list(REMOVE_ITEM all ${checked})
foreach(file IN LISTS all)
  string(APPEND wrong "  ${file}: its folder is not in the table\n")
endforeach()

if(wrong)
  message(FATAL_ERROR "Includes run one way, as the table in cmake/check_border.cmake says:\n${wrong}")
endif()
