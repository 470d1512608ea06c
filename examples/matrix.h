// The little of matrices that the examples need. Column by column, as GL takes them.
#pragma once
#include <array>
#include <cmath>

namespace examples
{
using Matrix = std::array<float, 16>;

inline Matrix Multiply(Matrix const& a, Matrix const& b)
{
    Matrix product{};
    for (std::size_t column = 0; column < 4; ++column)
        for (std::size_t row = 0; row < 4; ++row)
            for (std::size_t k = 0; k < 4; ++k)
                product[column * 4 + row] += a[k * 4 + row] * b[column * 4 + k];
    return product;
}

inline Matrix Translation(float x, float y, float z)
{
    return {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, x, y, z, 1};
}

inline Matrix Scaling(float x, float y, float z) { return {x, 0, 0, 0, 0, y, 0, 0, 0, 0, z, 0, 0, 0, 0, 1}; }

inline Matrix RotationX(float radians)
{
    float const c = std::cos(radians);
    float const s = std::sin(radians);
    return {1, 0, 0, 0, 0, c, s, 0, 0, -s, c, 0, 0, 0, 0, 1};
}

inline Matrix RotationY(float radians)
{
    float const c = std::cos(radians);
    float const s = std::sin(radians);
    return {c, 0, -s, 0, 0, 1, 0, 0, s, 0, c, 0, 0, 0, 0, 1};
}

inline Matrix Perspective(float fieldOfView, float aspect, float nearPlane, float farPlane)
{
    float const f = 1.0F / std::tan(fieldOfView / 2);
    float const depth = nearPlane - farPlane;
    return {f / aspect,
            0,
            0,
            0,
            0,
            f,
            0,
            0,
            0,
            0,
            (farPlane + nearPlane) / depth,
            -1,
            0,
            0,
            2 * farPlane * nearPlane / depth,
            0};
}
}  // namespace examples
