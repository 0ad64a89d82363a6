# SPDX-License-Identifier: MIT
# cmake -DSOURCE_DIR=<root> -P house.cmake: fails where a file outside desktop/, app/main.cpp and
# tests/ includes Qt.
file(GLOB_RECURSE sources RELATIVE ${SOURCE_DIR} ${SOURCE_DIR}/*.h ${SOURCE_DIR}/*.cpp)
list(FILTER sources EXCLUDE REGEX "^(build|desktop|tests)/|^app/main\\.cpp$")
list(LENGTH sources count)
if(count LESS 10)
    message(FATAL_ERROR "only ${count} sources under ${SOURCE_DIR}")
endif()
foreach(source IN LISTS sources)
    file(STRINGS ${SOURCE_DIR}/${source} found REGEX "^[ \t]*#[ \t]*include[ \t]*[<\"](Q[A-Z]|Qt|q[a-z]+\\.h)")
    if(found)
        message(SEND_ERROR "${source}: ${found}")
    endif()
endforeach()
