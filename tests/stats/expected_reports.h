// Meshes and the reports on them, computed by a separate script.
#pragma once

#include <cmath>
#include <string>
#include <vector>

#include "mesh_data.h"

namespace korvane::testing {

using Texts = std::vector<std::string>;

inline MeshData one_triangle()
{
    MeshData data;
    data.points = {{0, 0, 0}, {1, 0, 0}, {0.5, std::sqrt(3.0) / 2, 0}};
    data.triangles = {{1, 2, 3}};
    return data;
}

inline const std::vector<std::array<double, 3>> cube{
    {0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}, {0, 0, 1}, {1, 0, 1}, {1, 1, 1}, {0, 1, 1}};

/// A cube with a pyramid on it and some more.
inline MeshData all_kinds()
{
    MeshData data;
    data.points = cube;
    data.points.push_back({0.5, 0.5, 2});
    data.points.push_back({2, 0, 0});
    data.edges = {{1, 2}, {2, 3}};
    data.triangles = {{2, 10, 3}, {6, 7, 9}, {7, 8, 9}};
    data.quadrangles = {{1, 4, 3, 2}, {1, 2, 6, 5}, {2, 10, 7, 6}};
    data.tetrahedra = {{1, 2, 4, 5}, {5, 6, 8, 9}, {2, 10, 3, 6}};
    data.hexahedra = {{1, 2, 3, 4, 5, 6, 7, 8}};
    data.pyramids = {{5, 6, 7, 8, 9}};
    return data;
}

inline const Texts report_of_one_triangle{
    "Mesh statistics : \n",
    "  number of vertices : 3 \n",
    "  number of triangles : 1 \n",
    "  triangle aspect ratio:\n"
    "     min         : 1.000e+00\n"
    "     max         : 1.000e+00\n"
    "     average     : 1.000e+00\n"
    "     variance    : 0.000e+00\n"
    "     sample size : 1\n"
    "     min achieved for 1 : 1 2 3\n"
    "     max achieved for 1 : 1 2 3\n",
    "  triangle angles:\n"
    "     min         : 6.000e+01\n"
    "     max         : 6.000e+01\n"
    "     average     : 6.000e+01\n"
    "     variance    : 5.667e+02\n"
    "     sample size : 3\n"
    "     min achieved for 1 : 1 2 3\n"
    "     max achieved for 1 : 1 2 3\n",
    "  Surface elements edges length:\n"
    "     min         : 1.000e+00\n"
    "     max         : 1.000e+00\n"
    "     average     : 1.000e+00\n"
    "     variance    : 1.574e-01\n"
    "     sample size : 3\n"
    "     min achieved for 2 : 2 3\n"
    "     max achieved for 1 : 1 2\n",
};

inline const Texts report_of_all_kinds{
    "Mesh statistics : \n",
    "VALID.(null).triangle.ratio = 5.000000e-01\n",
    "VALID.(null).quadrangle.ratio = 5.000000e-01\n",
    "  number of vertices : 10 \n",
    "  number of edges : 2 \n",
    "  number of triangles : 3 \n",
    "  number of quadrilaterals : 3 \n",
    "  number of tetrahedra : 3 \n",
    "  number of hexahedra : 1 \n",
    "  number of pyramids : 1 \n",
    "  triangle aspect ratio:\n"
    "     min         : 1.091e+00\n"
    "     max         : 1.394e+00\n"
    "     average     : 1.192e+00\n"
    "     variance    : 1.984e-01\n"
    "     sample size : 3\n"
    "     min achieved for 2 : 6 7 9\n"
    "     max achieved for 1 : 2 10 3\n",
    "  triangle angles:\n"
    "     min         : 4.500e+01\n"
    "     max         : 9.000e+01\n"
    "     average     : 6.000e+01\n"
    "     variance    : 7.290e+02\n"
    "     sample size : 9\n"
    "     min achieved for 1 : 2 10 3\n"
    "     max achieved for 1 : 2 10 3\n",
    "  quadrangle aspect ratio:\n"
    "     min         : 1.000e+00\n"
    "     max         : 1.052e+00\n"
    "     average     : 1.017e+00\n"
    "     variance    : 1.657e-01\n"
    "     sample size : 3\n"
    "     min achieved for 1 : 1 4 3 2\n"
    "     max achieved for 3 : 2 10 7 6\n",
    "  quadrangle angles:\n"
    "     min         : 5.474e+01\n"
    "     max         : 9.000e+01\n"
    "     average     : 8.412e+01\n"
    "     variance    : 1.113e+03\n"
    "     sample size : 12\n"
    "     min achieved for 3 : 2 10 7 6\n"
    "     max achieved for 1 : 1 4 3 2\n",
    "  quadrangle planarity:\n"
    "     min         : 5.000e-01\n"
    "     max         : 1.000e+00\n"
    "     average     : 8.333e-01\n"
    "     variance    : 1.389e-01\n"
    "     sample size : 3\n"
    "     min achieved for 3 : 2 10 7 6\n"
    "     max achieved for 1 : 1 4 3 2\n",
    "  tetrahedron aspect ratio:\n"
    "     min         : 1.342e+00\n"
    "     max         : 1.366e+00\n"
    "     average     : 1.358e+00\n"
    "     variance    : 2.885e-01\n"
    "     sample size : 3\n"
    "     min achieved for 2 : 5 6 8 9\n"
    "     max achieved for 1 : 1 2 4 5\n",
    "  hexahedron aspect ratio:\n"
    "     min         : 6.000e+00\n"
    "     max         : 6.000e+00\n"
    "     average     : 6.000e+00\n"
    "     variance    : 0.000e+00\n"
    "     sample size : 1\n"
    "     min achieved for 1 : 1 2 3 4 5 6 7 8\n"
    "     max achieved for 1 : 1 2 3 4 5 6 7 8\n",
    "  Surface elements edges length:\n"
    "     min         : 1.000e+00\n"
    "     max         : 1.732e+00\n"
    "     average     : 1.121e+00\n"
    "     variance    : 1.906e-01\n"
    "     sample size : 15\n"
    "     min achieved for 1 : 2 10\n"
    "     max achieved for 15 : 10 7\n",
    "  Volume elements edges length:\n"
    "     min         : 1.000e+00\n"
    "     max         : 1.414e+00\n"
    "     average     : 1.199e+00\n"
    "     variance    : 1.884e-01\n"
    "     sample size : 18\n"
    "     min achieved for 1 : 1 4\n"
    "     max achieved for 2 : 4 2\n",
};

inline const Texts keyed_report_of_all_kinds{
    "VALID.a name.triangle.ratio = 5.000000e-01\n",
    "VALID.a name.quadrangle.ratio = 5.000000e-01\n",
    "VALID.a name.vertex.count = 10\n",
    "VALID.a name.edge.count = 2\n",
    "VALID.a name.triangle.count = 3\n",
    "VALID.a name.quadrangle.count = 3\n",
    "VALID.a name.tetrahedra.count = 3\n",
    "VALID.a name.hexahedra.count = 1\n",
    "VALID.a name.pyramid.count = 1\n",
    "VALID.a name.triangle.aspect_ratio.min = 1.090824e+00\n",
    "VALID.a name.triangle.aspect_ratio.max = 1.393847e+00\n",
    "VALID.a name.triangle.aspect_ratio.avg = 1.191832e+00\n",
    "VALID.a name.triangle.aspect_ratio.var = 1.983515e-01\n",
    "VALID.a name.triangle.aspect_ratio.count = 3\n",
    "VALID.a name.triangle.aspect_ratio.count = 3\n",
    "VALID.a name.triangle.aspect_ratio.min_achieved = 2\n",
    "VALID.a name.triangle.aspect_ratio.max_achieved = 1\n",
    "VALID.a name.triangle.angles.min = 4.500000e+01\n",
    "VALID.a name.triangle.angles.max = 8.999999e+01\n",
    "VALID.a name.triangle.angles.avg = 5.999999e+01\n",
    "VALID.a name.triangle.angles.var = 7.289848e+02\n",
    "VALID.a name.triangle.angles.count = 9\n",
    "VALID.a name.triangle.angles.count = 9\n",
    "VALID.a name.triangle.angles.min_achieved = 1\n",
    "VALID.a name.triangle.angles.max_achieved = 1\n",
    "VALID.a name.quadrangle.aspect_ratio.min = 1.000000e+00\n",
    "VALID.a name.quadrangle.aspect_ratio.max = 1.051712e+00\n",
    "VALID.a name.quadrangle.aspect_ratio.avg = 1.017237e+00\n",
    "VALID.a name.quadrangle.aspect_ratio.var = 1.656627e-01\n",
    "VALID.a name.quadrangle.aspect_ratio.count = 3\n",
    "VALID.a name.quadrangle.aspect_ratio.count = 3\n",
    "VALID.a name.quadrangle.aspect_ratio.min_achieved = 1\n",
    "VALID.a name.quadrangle.aspect_ratio.max_achieved = 3\n",
    "VALID.a name.quadrangle.angles.min = 5.473560e+01\n",
    "VALID.a name.quadrangle.angles.max = 8.999999e+01\n",
    "VALID.a name.quadrangle.angles.avg = 8.412259e+01\n",
    "VALID.a name.quadrangle.angles.var = 1.112530e+03\n",
    "VALID.a name.quadrangle.angles.count = 12\n",
    "VALID.a name.quadrangle.angles.count = 12\n",
    "VALID.a name.quadrangle.angles.min_achieved = 3\n",
    "VALID.a name.quadrangle.angles.max_achieved = 1\n",
    "VALID.a name.quadrangle.planarity.min = 5.000000e-01\n",
    "VALID.a name.quadrangle.planarity.max = 1.000000e+00\n",
    "VALID.a name.quadrangle.planarity.avg = 8.333333e-01\n",
    "VALID.a name.quadrangle.planarity.var = 1.388889e-01\n",
    "VALID.a name.quadrangle.planarity.count = 3\n",
    "VALID.a name.quadrangle.planarity.count = 3\n",
    "VALID.a name.quadrangle.planarity.min_achieved = 3\n",
    "VALID.a name.quadrangle.planarity.max_achieved = 1\n",
    "VALID.a name.tetrahedron.aspect_ratio.min = 1.342421e+00\n",
    "VALID.a name.tetrahedron.aspect_ratio.max = 1.366025e+00\n",
    "VALID.a name.tetrahedron.aspect_ratio.avg = 1.358157e+00\n",
    "VALID.a name.tetrahedron.aspect_ratio.var = 2.884656e-01\n",
    "VALID.a name.tetrahedron.aspect_ratio.count = 3\n",
    "VALID.a name.tetrahedron.aspect_ratio.count = 3\n",
    "VALID.a name.tetrahedron.aspect_ratio.min_achieved = 2\n",
    "VALID.a name.tetrahedron.aspect_ratio.max_achieved = 1\n",
    "VALID.a name.hexahedron.aspect_ratio.min = 6.000000e+00\n",
    "VALID.a name.hexahedron.aspect_ratio.max = 6.000000e+00\n",
    "VALID.a name.hexahedron.aspect_ratio.avg = 6.000000e+00\n",
    "VALID.a name.hexahedron.aspect_ratio.var = 0.000000e+00\n",
    "VALID.a name.hexahedron.aspect_ratio.count = 1\n",
    "VALID.a name.hexahedron.aspect_ratio.count = 1\n",
    "VALID.a name.hexahedron.aspect_ratio.min_achieved = 1\n",
    "VALID.a name.hexahedron.aspect_ratio.max_achieved = 1\n",
    "VALID.a name.surface_edges.length.min = 1.000000e+00\n",
    "VALID.a name.surface_edges.length.max = 1.732051e+00\n",
    "VALID.a name.surface_edges.length.avg = 1.121367e+00\n",
    "VALID.a name.surface_edges.length.var = 1.905696e-01\n",
    "VALID.a name.surface_edges.length.count = 15\n",
    "VALID.a name.surface_edges.length.count = 15\n",
    "VALID.a name.surface_edges.length.min_achieved = 1\n",
    "VALID.a name.surface_edges.length.max_achieved = 15\n",
    "VALID.a name.volume_edges.length.min = 1.000000e+00\n",
    "VALID.a name.volume_edges.length.max = 1.414214e+00\n",
    "VALID.a name.volume_edges.length.avg = 1.198541e+00\n",
    "VALID.a name.volume_edges.length.var = 1.884164e-01\n",
    "VALID.a name.volume_edges.length.count = 18\n",
    "VALID.a name.volume_edges.length.count = 18\n",
    "VALID.a name.volume_edges.length.min_achieved = 1\n",
    "VALID.a name.volume_edges.length.max_achieved = 2\n",
    "VALID.a name.free_edge.count = 9\n",
    "VALID.a name.free_edge_component.count = 1\n",
    "VALID.a name.non_manifold_edge.count = 0\n",
    "VALID.a name.non_manifold_edge_component.count = 0\n",
    "VALID.a name.surface_component_by_edge.count = 1\n",
};

} // namespace korvane::testing
