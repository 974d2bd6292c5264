# The bodies of the fuzz targets, compiled into the fuzzers and into the regression test.
set(kiranto_fuzz_body_sources
    ${CMAKE_CURRENT_LIST_DIR}/fuzzinput.cpp ${CMAKE_CURRENT_LIST_DIR}/fuzzinput.h
    ${CMAKE_CURRENT_LIST_DIR}/fuzztargets.h
    ${CMAKE_CURRENT_LIST_DIR}/ukisettings.cpp
    ${CMAKE_CURRENT_LIST_DIR}/ukpssettings.cpp
    ${CMAKE_CURRENT_LIST_DIR}/archivedata.cpp
    ${CMAKE_CURRENT_LIST_DIR}/ctcorrections.cpp
    ${CMAKE_CURRENT_LIST_DIR}/locators.cpp
    ${CMAKE_CURRENT_LIST_DIR}/customchannels.cpp
    ${CMAKE_CURRENT_LIST_DIR}/searchstatistics.cpp
    ${CMAKE_CURRENT_LIST_DIR}/cannedreply.cpp
    ${CMAKE_CURRENT_LIST_DIR}/programsettings.cpp
    ${CMAKE_CURRENT_LIST_DIR}/csvfiles.cpp
)
