#pragma once

#include "megset/platform/CPtrArray.h"
