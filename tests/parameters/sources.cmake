list(APPEND ROOM_TESTS
    definitions_test.cpp
    eviction_test.cpp
    lostfile_test.cpp
    modepaths_test.cpp
    modetree_test.cpp
    ondemand_test.cpp
    parameterbinaryfile_test.cpp
    parameterutils_test.cpp
    recordloading_test.cpp
    recordtext_test.cpp
    references_test.cpp
    reload_test.cpp
    setmanager_test.cpp
    symboltable_test.cpp
    tablemodule_test.cpp
    valueaccess_test.cpp
)
