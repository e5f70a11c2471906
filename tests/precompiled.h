#pragma once
// What nearly every test takes in, compiled once. A test still names the headers that it uses.

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>
#include <memory>
#include <random>
#include <string>
#include <vector>
