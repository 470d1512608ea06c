// A trace block that collects a record's bytes in memory instead of writing them out.
#pragma once
#include "core/trace_block.h"
#include <cstdint>
#include <vector>

// What has been appended since the last block was made.
std::vector<uint8_t> const& Collected();
