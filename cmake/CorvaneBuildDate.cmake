# The date that the program shows as its own, for example "Aug 12, 2026": CORVANE_BUILD_DATE when that is set, else the
# day of configuring, or of SOURCE_DATE_EPOCH for builds that are to be the same byte for byte. English whatever the
# locale. Sets corvane_build_date.

set(CORVANE_BUILD_DATE "" CACHE STRING "Build date to show, for example \"Aug 12, 2026\"; empty: the day of configuring")

if(CORVANE_BUILD_DATE)
  set(corvane_build_date "${CORVANE_BUILD_DATE}")
else()
  block(SCOPE_FOR VARIABLES PROPAGATE corvane_build_date)
    string(TIMESTAMP date "%Y;%m;%d" UTC)
    list(GET date 0 year)
    list(GET date 1 month)
    list(GET date 2 day)
    set(names none Jan Feb Mar Apr May Jun Jul Aug Sep Oct Nov Dec)
    list(GET names ${month} name)
    string(REGEX REPLACE "^0" "" day "${day}")
    set(corvane_build_date "${name} ${day}, ${year}")
  endblock()
endif()
