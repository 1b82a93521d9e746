# ccache speeds up repeated builds; the build is the same without it.
find_program(CORVETAPE_CCACHE ccache)
if(CORVETAPE_CCACHE)
    set(CMAKE_CXX_COMPILER_LAUNCHER
        ${CMAKE_COMMAND} -E env CCACHE_BASEDIR=${CMAKE_SOURCE_DIR} CCACHE_NOHASHDIR=true ${CORVETAPE_CCACHE})
endif()
