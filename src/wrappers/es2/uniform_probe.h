// How many values a uniform query writes. The API has no cheap way to ask, so that it is found by experiment.
#pragma once
#include "api/types.h"
#include <cstdint>

namespace Es2
{
// By glGetUniformfv with floats, or by glGetUniformiv with integers. Two host calls; 1 to 16.
uint32_t ProbeFloats(GLuint program, GLint location);
uint32_t ProbeInts(GLuint program, GLint location);
}  // namespace Es2
