#pragma once
#include "high/Roof.h"
#include "side/Door.h"
