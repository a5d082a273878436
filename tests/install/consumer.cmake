# A data source project outside this build, built against the installed prefix (VARIANT:
# find_package or pkg_config), run: it must load the installed module and receive event 1.
set(out ${WORK}/consumer-${VARIANT})
file(REMOVE_RECURSE ${out})
file(MAKE_DIRECTORY ${out})
set(src ${PREFIX}/share/doc/vmxui/examples/consumer)

include(${CMAKE_CURRENT_LIST_DIR}/run.cmake)

if(VARIANT STREQUAL "find_package")
    run(${CMAKE_COMMAND} -S ${src} -B ${out} -DCMAKE_PREFIX_PATH=${PREFIX} -DCMAKE_CXX_COMPILER=${CXX}
        "-DCMAKE_CXX_FLAGS=${CXXFLAGS}")
    run(${CMAKE_COMMAND} --build ${out})
    file(READ ${out}/module-path module)
else()
    # Only the installed prefix, not this machine's own pkg-config files.
    set(ENV{PKG_CONFIG_PATH} "")
    file(GLOB pcDirs ${PREFIX}/lib*/pkgconfig ${PREFIX}/lib/*/pkgconfig)
    string(REPLACE ";" ":" pcPath "${pcDirs}")
    set(ENV{PKG_CONFIG_LIBDIR} "${pcPath}")
    run(pkg-config --variable=module vmxui)
    string(STRIP "${output}" module)
    run(pkg-config --variable=libdir vmxui)
    string(STRIP "${output}" libdir)
    run(make -C ${src} OUT=${out} CXX=${CXX} "CXXFLAGS=-O1 -Wall -Wextra ${CXXFLAGS}"
        "LDFLAGS=-Wl,-rpath,${libdir}")
endif()

if(NOT module MATCHES "^${PREFIX}/lib/vmxui/VmxUI.bundle/Contents/MacOS/VmxUI.so$")
    message(FATAL_ERROR "the package names the module ${module}, not the installed one")
endif()
run(${EMULATOR} ${out}/consumer ${module} ${src}/ConsumerDS.bundle ${out}/consumer.log)
message(STATUS "${output}")
if(NOT output MATCHES "event 1: capability 0x1118, item type 5, value 300")
    message(FATAL_ERROR "no event 1 for the resolution:\n${output}")
endif()
file(READ ${out}/consumer.log log)
if(NOT log MATCHES "consumer: loading .*consumer: done")
    message(FATAL_ERROR "the toolkit's log did not write the consumer's lines:\n${log}")
endif()
