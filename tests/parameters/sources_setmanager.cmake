set(SETMANAGER_TESTS modetree_test.cpp setmanager_test.cpp ondemand_test.cpp reload_test.cpp tablemodule_test.cpp valueaccess_test.cpp)
