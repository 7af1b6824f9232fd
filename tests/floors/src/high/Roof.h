#pragma once
#include "low/Stair.h"
