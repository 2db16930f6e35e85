include(${CMAKE_CURRENT_LIST_DIR}/korvane-targets.cmake)
