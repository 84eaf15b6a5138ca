# Reads the build date anew for some moments and compares.

set(cases
  "0=Jan 1, 1970"
  "1786492799=Aug 11, 2026"
  "1786492800=Aug 12, 2026"
  "1709164800=Feb 29, 2024"
  "1798675200=Dec 31, 2026")
set(ENV{LC_ALL} "de_DE.UTF-8")
foreach(case IN LISTS cases)
  string(REGEX MATCH "^([0-9]+)=(.*)$" matched "${case}")
  set(expected "${CMAKE_MATCH_2}")
  set(ENV{SOURCE_DATE_EPOCH} "${CMAKE_MATCH_1}")
  include("${CMAKE_CURRENT_LIST_DIR}/../../cmake/CorvaneBuildDate.cmake")
  if(NOT corvane_build_date STREQUAL expected)
    message(FATAL_ERROR "\"${corvane_build_date}\" instead of \"${expected}\"")
  endif()
endforeach()

set(CORVANE_BUILD_DATE "May 5, 2025")
include("${CMAKE_CURRENT_LIST_DIR}/../../cmake/CorvaneBuildDate.cmake")
if(NOT corvane_build_date STREQUAL "May 5, 2025")
  message(FATAL_ERROR "The chosen date was not taken: \"${corvane_build_date}\"")
endif()
