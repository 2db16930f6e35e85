// What the library's judgements are measured against: the same formulas on flat arrays, in the least code.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "flat_mesh.h"

namespace korvane::benchmarks {

/// Extremes, sum and running variance.
struct Statistics {
    double min = HUGE_VAL, max = -HUGE_VAL, sum = 0, variance = 0;
    double n = 0;

    void add(double x)
    {
        min = std::min(x, min);
        max = std::max(x, max);
        n += 1;
        if (n == 1) {
            sum = x;
            return;
        }
        const double next = sum + x;
        const double a = sum / n - next / n;
        const double b = x - next / n;
        variance = (variance + a * a) * (n - 1) / n + b * b / n;
        sum = next;
    }
};

struct Judgement {
    Statistics ratios;
    Statistics angles; // of triangles
};

/// The aspect ratios of all elements, and the angles of triangles.
Judgement judge_elements(const FlatMesh &mesh);

/// The lengths of the distinct edges of triangles or tetrahedra, found by the hash that suits the order of
/// the vertices.
Statistics judge_edges(const FlatMesh &mesh, Order order);

/// Free and non-manifold edges of a surface by such a hash, its components by union-find; gives the sum of
/// all three.
int32_t count_topology(const FlatMesh &mesh, Order order);

} // namespace korvane::benchmarks
