list(APPEND ROOM_TESTS
    parameterbinaryfile_test.cpp
    parameterutils_test.cpp
    recordloading_test.cpp
    recordtext_test.cpp
    symboltable_test.cpp
)

include(${CMAKE_CURRENT_LIST_DIR}/sources_setmanager.cmake)
list(APPEND ROOM_TESTS ${SETMANAGER_TESTS})
