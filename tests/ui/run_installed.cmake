# Installs the build into a fresh prefix and checks that everything a desktop needs is there
# under the one application id, and that the installed program finds its resources.
set(prefix ${WORK_DIR}/installed)
file(REMOVE_RECURSE ${prefix})
execute_process(COMMAND ${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${prefix}
                RESULT_VARIABLE status OUTPUT_QUIET)
if(NOT status EQUAL 0)
  message(FATAL_ERROR "cmake --install failed with ${status}")
endif()
foreach(file
    bin/quarrydex
    share/quarrydex/specimens.json
    share/applications/example.fernwick.Quarrydex.desktop
    share/metainfo/example.fernwick.Quarrydex.metainfo.xml
    share/icons/hicolor/scalable/apps/example.fernwick.Quarrydex.svg)
  if(NOT EXISTS ${prefix}/${file})
    message(FATAL_ERROR "not installed: ${file}")
  endif()
endforeach()
# The self-test loads the library (and the samples, when this build has them) from
# <prefix>/share/quarrydex; a failed load fails it.
execute_process(COMMAND ${CMAKE_COMMAND} -E env --unset=QUARRYDEX_RESOURCES ${prefix}/bin/quarrydex --selftest
                RESULT_VARIABLE status OUTPUT_VARIABLE report)
if(NOT status EQUAL 0)
  message(FATAL_ERROR "the installed program's self-test failed (${status}):\n${report}")
endif()
file(REMOVE_RECURSE ${prefix})
