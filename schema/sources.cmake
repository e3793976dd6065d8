# Constant tables of tuning records; headers only.
