# Fails when a file includes what its side of the border must not know. ROOT is the src folder.
#   colour/ and main.cpp    their own headers, the headers directly in platform/, the standard library
#   platform/*.h            one another and the standard library
#   platform/host/          anything but colour/
set(wrong "")

function(check_includes files allowed libraries)
  foreach(file IN LISTS ${files})
    file(STRINGS "${file}" lines REGEX "^[ \t]*#[ \t]*include")
    foreach(line IN LISTS lines)
      if(line MATCHES "\"(.*)\"" AND NOT CMAKE_MATCH_1 MATCHES "${allowed}")
        string(APPEND wrong "  ${file}: ${line}\n")
      elseif(line MATCHES "<(.*)>" AND NOT CMAKE_MATCH_1 MATCHES "${libraries}")
        string(APPEND wrong "  ${file}: ${line}\n")
      endif()
    endforeach()
  endforeach()
  set(wrong "${wrong}" PARENT_SCOPE)
endfunction()

file(GLOB application "${ROOT}/colour/*.h" "${ROOT}/colour/*.cpp" "${ROOT}/main.cpp")
file(GLOB border "${ROOT}/platform/*.h")
file(GLOB_RECURSE host "${ROOT}/platform/host/*.h" "${ROOT}/platform/host/*.cpp")

check_includes(application "^(colour|platform)/[a-z_]+\\.h$" "^[a-z_]+$")
check_includes(border "^platform/[a-z_]+\\.h$" "^[a-z_]+$")
check_includes(host "^platform/[a-z0-9_/]+\\.h$" ".")

if(wrong)
  message(FATAL_ERROR "An include crosses the border between application and platform:\n${wrong}")
endif()
