add_room(kiro_core_base
    core/base/ckirobank.cpp
    core/base/ckirobankmanager.cpp
    core/base/ckirohistory.cpp
    core/base/ckirotrigger.cpp
    core/base/ckirotriggerclasses.cpp
    core/base/exposurearithmetic.cpp
)
