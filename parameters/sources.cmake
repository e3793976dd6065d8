add_room(kiro_parameters
)
