# require_package(PACKAGE OPTION DEBIAN_PACKAGE): finds a package, or stops and says what to install or to turn off.
function(require_package package option debian_package)
    find_package(${package} QUIET)
    if(NOT ${package}_FOUND)
        message(FATAL_ERROR "${option}=ON needs ${package}: "
            "install it (Debian: apt-get install ${debian_package}) or configure with -D${option}=OFF.")
    endif()
endfunction()
