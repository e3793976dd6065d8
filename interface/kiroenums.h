#pragma once
#include "schema/kiroenums.h"
