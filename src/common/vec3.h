// A point or vector of space, passed by value.
#pragma once

#include <cmath>

namespace korvane {

struct Vec3 {
    double x, y, z;
};

constexpr Vec3 operator+(Vec3 a, Vec3 b)
{
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}

constexpr Vec3 operator-(Vec3 a, Vec3 b)
{
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}

constexpr Vec3 operator*(double factor, Vec3 a)
{
    return {factor * a.x, factor * a.y, factor * a.z};
}

constexpr Vec3 operator/(Vec3 a, double divisor)
{
    return {a.x / divisor, a.y / divisor, a.z / divisor};
}

constexpr double dot(Vec3 a, Vec3 b)
{
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

constexpr Vec3 cross(Vec3 a, Vec3 b)
{
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

inline double norm(Vec3 a)
{
    return std::sqrt(dot(a, a));
}

} // namespace korvane
