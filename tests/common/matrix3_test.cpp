#include "common/matrix3.h"

#include <array>
#include <cmath>
#include <limits>
#include <random>
#include <utility>

#include <gtest/gtest.h>

namespace korvane {

static bool operator==(Vec3 a, Vec3 b)
{
    return a.x == b.x && a.y == b.y && a.z == b.z;
}

namespace {

using Table = std::array<std::array<double, 4>, 3>; // a matrix and, as last column, a right side

Matrix3 matrix_in(const Table &table)
{
    Matrix3 matrix;
    for (std::size_t i = 0; i < 3; ++i)
        matrix.rows[i] = {table[i][0], table[i][1], table[i][2]};
    return matrix;
}

/// Elimination by indices, which row comes first, second and third being written out.
bool solve_naively(Table table, std::array<double, 3> &x)
{
    const auto magnitude = [&](int row, int column) {
        return std::fabs(table[static_cast<std::size_t>(row)][static_cast<std::size_t>(column)]);
    };
    const auto subtract = [&](int from, int row, int column) {
        auto &target = table[static_cast<std::size_t>(from)];
        const auto &pivot = table[static_cast<std::size_t>(row)];
        const auto c = static_cast<std::size_t>(column);
        const double factor = target[c] / pivot[c];
        for (std::size_t k = 0; k < 4; ++k)
            target[k] = target[k] - factor * pivot[k];
    };
    int first, second, third;
    if (magnitude(0, 0) > magnitude(1, 0) && magnitude(0, 0) > magnitude(2, 0))
        first = 0, second = 1, third = 2;
    else if (magnitude(1, 0) > magnitude(2, 0))
        first = 1, second = 0, third = 2;
    else
        first = 2, second = 0, third = 1;
    if (magnitude(first, 0) == 0)
        return false;
    subtract(second, first, 0);
    subtract(third, first, 0);
    if (magnitude(third, 1) >= magnitude(second, 1))
        std::swap(second, third);
    if (magnitude(second, 1) == 0)
        return false;
    subtract(third, second, 1);
    if (magnitude(third, 2) == 0)
        return false;
    const auto &one = table[static_cast<std::size_t>(first)];
    const auto &two = table[static_cast<std::size_t>(second)];
    const auto &three = table[static_cast<std::size_t>(third)];
    x[2] = three[3] / three[2];
    x[1] = (two[3] - two[2] * x[2]) / two[1];
    x[0] = (one[3] - one[1] * x[1] - one[2] * x[2]) / one[0];
    return true;
}

TEST(Matrix3, MultipliesRowsByColumns)
{
    const Matrix3 a{{{{1, 2, 3}, {4, 5, 6}, {7, 8, 10}}}};
    const Matrix3 b = matrix_of_columns({1, 0, 2}, {0, 1, 1}, {3, 1, 0});
    EXPECT_EQ((a * Vec3{1, 0, 2}), (Vec3{7, 16, 27}));
    const Matrix3 product = a * b;
    EXPECT_EQ(product.rows[0], (Vec3{7, 5, 5}));
    EXPECT_EQ(product.rows[1], (Vec3{16, 11, 17}));
    EXPECT_EQ(product.rows[2], (Vec3{27, 18, 29}));
    EXPECT_EQ(transposed(a).rows[0], (Vec3{1, 4, 7}));
    EXPECT_EQ(determinant(a), -3);
    EXPECT_EQ(determinant(b), -7);
}

TEST(Matrix3, InverseUndoesTheMatrix)
{
    std::mt19937 engine(3);
    std::uniform_real_distribution<double> number(-2, 2);
    int inverted = 0;
    for (int i = 0; i < 1000; ++i) {
        Matrix3 a;
        for (Vec3 &row : a.rows)
            row = {number(engine), number(engine), number(engine)};
        if (std::fabs(determinant(a)) < 0.1)
            continue;
        ++inverted;
        Matrix3 inverse;
        ASSERT_TRUE(try_invert(a, inverse));
        const Matrix3 identity = a * inverse;
        for (std::size_t row = 0; row < 3; ++row) {
            EXPECT_NEAR(identity.rows[row].x, row == 0, 1e-12);
            EXPECT_NEAR(identity.rows[row].y, row == 1, 1e-12);
            EXPECT_NEAR(identity.rows[row].z, row == 2, 1e-12);
        }
    }
    EXPECT_GT(inverted, 900);
}

TEST(Matrix3, TakesTheLaterOfRowsThatAreEquallyGoodPivots)
{
    std::mt19937 engine(5);
    std::uniform_int_distribution<int> small(-4, 4); // so that many magnitudes are equal
    int solved = 0;
    for (int i = 0; i < 20000; ++i) {
        Table table;
        for (auto &row : table)
            for (double &value : row)
                value = 0.1 * small(engine); // so that another order of rows rounds differently
        const Matrix3 matrix = matrix_in(table);
        std::array<double, 3> expected;
        Vec3 x{7, 7, 7};
        const bool solvable = determinant(matrix) != 0 && solve_naively(table, expected);
        ASSERT_EQ(try_solve(matrix, {table[0][3], table[1][3], table[2][3]}, x), solvable);
        if (solvable)
            ++solved;
        else
            expected = {7, 7, 7};
        EXPECT_EQ(x.x, expected[0]);
        EXPECT_EQ(x.y, expected[1]);
        EXPECT_EQ(x.z, expected[2]);
    }
    EXPECT_GT(solved, 15000);
}

TEST(Matrix3, RefusesWhatIsExactlySingular)
{
    const Matrix3 untouched{{{{7, 7, 7}, {7, 7, 7}, {7, 7, 7}}}};
    const double infinite = std::numeric_limits<double>::infinity();
    const Matrix3 rounded_to_zero{{{{5, 9, 0}, {3, 3 / 5.0 * 9, 1}, {0, 0, 1}}}}; // the second pivot
    EXPECT_NE(determinant(rounded_to_zero), 0);
    const Matrix3 refused[] = {
        Matrix3{},
        {{{{1, 2, 3}, {2, 4, 6}, {1, 1, 1}}}},
        matrix_of_columns({1, 2, 3}, {0, 0, 0}, {1, 1, 2}),
        // The determinant is not a number, the first pivot 0.
        matrix_of_columns({0, 0, 0}, {infinite, 1, 2}, {1, 2, 1}),
        rounded_to_zero,
    };
    for (const Matrix3 &matrix : refused) {
        Matrix3 inverse = untouched;
        EXPECT_FALSE(try_invert(matrix, inverse));
        EXPECT_EQ(inverse.rows[1], untouched.rows[1]);
    }
}

TEST(Matrix3, SolvesNearlySingularSystemsAllTheSame)
{
    Matrix3 inverse;
    EXPECT_TRUE(try_invert({{{{1, 0, 0}, {0, 1e-300, 0}, {0, 0, 1}}}}, inverse));
    EXPECT_EQ(inverse.rows[1], (Vec3{0, 1 / 1e-300, 0}));
}

TEST(Matrix3, NotANumberIsNeitherDeterminantNorPivotOfZero)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    Vec3 x{};
    // As the first coefficient, it does not become the pivot.
    EXPECT_TRUE(try_solve({{{{nan, 1, 0}, {1, 3, 1}, {1, 1, 4}}}}, {1, 1, 1}, x));
    EXPECT_TRUE(std::isnan(x.x));
    // Nothing is larger than it, so a later row is taken, be its coefficient 0.
    x = {7, 7, 7};
    EXPECT_FALSE(try_solve({{{{1, 1, 0}, {nan, 3, 1}, {0, 1, 4}}}}, {1, 1, 1}, x));
    EXPECT_EQ(x, (Vec3{7, 7, 7}));
    EXPECT_TRUE(try_solve({{{{1, 1, 0}, {1, 3, 1}, {nan, 1, 4}}}}, {1, 1, 1}, x));
    EXPECT_TRUE(std::isnan(x.x));
}

} // namespace
} // namespace korvane
