# cmake --install of this build into a fresh prefix of its own.
file(REMOVE_RECURSE ${WORK})
file(MAKE_DIRECTORY ${WORK}/home/.config)
execute_process(COMMAND ${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${PREFIX}
    OUTPUT_QUIET RESULT_VARIABLE failed)
if(failed)
    message(FATAL_ERROR "cmake --install failed")
endif()
