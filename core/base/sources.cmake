add_room(kiro_core_base
    core/base/exposurearithmetic.cpp
)
