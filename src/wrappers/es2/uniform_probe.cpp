#include "wrappers/es2/uniform_probe.h"
#include "host/hosts.h"
#include <algorithm>

namespace
{

constexpr uint32_t kLargest = 16;  // a mat4

// Entries that still hold their sentinel in both arrays are not the host's. On purpose: the first is not
// looked at, so that the count is never 0.
template <typename T, typename Query>
uint32_t Probe(Query query)
{
    T zeros[kLargest];
    T ones[kLargest];
    std::fill_n(zeros, kLargest, T(0));
    std::fill_n(ones, kLargest, T(1));
    query(zeros);
    query(ones);
    for (uint32_t i = 1; i < kLargest; ++i)
        if (zeros[i] == T(0) && ones[i] == T(1))
            return i;
    return kLargest;
}

}  // namespace

uint32_t Es2::ProbeFloats(GLuint program, GLint location)
{
    return Probe<GLfloat>([&](GLfloat* values) { Es2Host()->glGetUniformfv(program, location, values); });
}

uint32_t Es2::ProbeInts(GLuint program, GLint location)
{
    return Probe<GLint>([&](GLint* values) { Es2Host()->glGetUniformiv(program, location, values); });
}
