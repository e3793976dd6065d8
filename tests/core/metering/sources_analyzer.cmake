set(ANALYZER_TESTS
    aggregation_test.cpp
    analyzer_test.cpp
    analyzeralgorithm_test.cpp
    analyzermanager_test.cpp
    precisionflash_test.cpp
)
