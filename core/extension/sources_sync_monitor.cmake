set(EXTENSION_SYNC_SOURCES
    core/extension/ckirocamsync.cpp
    core/extension/ckirocamsyncfollow.cpp
    core/extension/ckirocamsyncmixing.cpp
)
