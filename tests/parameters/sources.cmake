list(APPEND ROOM_TESTS
    parameterbinaryfile_test.cpp
    parameterutils_test.cpp
    recordloading_test.cpp
    symboltable_test.cpp
)
