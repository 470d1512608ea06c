// Decoded calls as JSON. Long arrays and texts are cut, with their size given.
#pragma once
#include "trace/decode.h"
#include <nlohmann/json.hpp>

// The members "args", "result" (for a function that has one) and "error" (for a call that failed).
void AddCall(nlohmann::ordered_json& object, nebtrace::DecodedCall const& call);
