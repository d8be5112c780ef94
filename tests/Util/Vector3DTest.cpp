#include "Util/Vector3D.h"

#include <gtest/gtest.h>

#include <array>
#include <memory>
#include <type_traits>
#include <utility>

using Util::Vector3D;
using Util::Vector4D;

namespace {

void expectComponents(const Vector4D &actual, const std::array<double, 4> &expected)
{
    for (unsigned i = 0; i < 4; ++i)
        EXPECT_EQ(actual[i], expected[i]) << "component " << i;
}

/// A Vector3D is accepted where a Vector4D is asked for.
double sumOf(const Vector4D &vector)
{
    return vector[0] + vector[1] + vector[2] + vector[3];
}

} // namespace

TEST(Vector3DTest, StartsWithAllFourComponentsZero)
{
    expectComponents(Vector3D(), {0, 0, 0, 0});
}

TEST(Vector3DTest, OneValueFillsThreeComponentsAndLeavesWZero)
{
    expectComponents(Vector3D(2.5), {2.5, 2.5, 2.5, 0});
}

TEST(Vector3DTest, ThreeValuesAreTakenInOrderAndWIsZero)
{
    expectComponents(Vector3D(1, 2, 3), {1, 2, 3, 0});
}

TEST(Vector3DTest, MadeFromAVector4DItDropsW)
{
    expectComponents(Vector3D(Vector4D(1, 2, 3, 4)), {1, 2, 3, 0});
    const Vector3D converted = Vector4D(5, 6, 7, 8);
    expectComponents(converted, {5, 6, 7, 0});
}

TEST(Vector3DTest, CopyHasTheSameThreeComponents)
{
    const Vector3D source(1, 2, 3);
    const Vector3D copy(source);
    expectComponents(copy, {1, 2, 3, 0});
}

TEST(Vector3DTest, AssigningAVector4DLeavesW)
{
    Vector3D vector(1, 2, 3);
    EXPECT_EQ(&(vector = Vector4D(5, 6, 7, 8)), &vector);
    expectComponents(vector, {5, 6, 7, 0});
    vector[3] = 9;
    vector = Vector4D(1, 2, 3, 4);
    expectComponents(vector, {1, 2, 3, 9});
}

TEST(Vector3DTest, AssigningAVector3DLeavesW)
{
    Vector3D vector(1, 2, 3);
    vector[3] = 9;
    EXPECT_EQ(&(vector = Vector3D(5, 6, 7)), &vector);
    expectComponents(vector, {5, 6, 7, 9});
}

TEST(Vector3DTest, AssignedToAVector4DItBringsItsW)
{
    Vector4D target(1, 2, 3, 4);
    target = Vector3D(5, 6, 7);
    expectComponents(target, {5, 6, 7, 0});
}

TEST(Vector3DTest, IsAcceptedWhereAVector4DIsAskedFor)
{
    EXPECT_EQ(sumOf(Vector3D(1, 2, 3)), 6);
    EXPECT_TRUE((std::is_base_of_v<Vector4D, Vector3D>));
    EXPECT_TRUE((std::is_convertible_v<Vector3D *, Vector4D *>));
}

TEST(Vector3DTest, AddsNothingToItsBase)
{
    EXPECT_EQ(sizeof(Vector3D), sizeof(Vector4D));
    const std::unique_ptr<Vector4D> destroyedThroughItsBase = std::make_unique<Vector3D>(1, 2, 3);
    expectComponents(*destroyedThroughItsBase, {1, 2, 3, 0});
}

TEST(Vector3DTest, EveryIndexFromThreeOnMeansW)
{
    Vector3D vector(1, 2, 3);
    vector[7] = 4;
    expectComponents(vector, {1, 2, 3, 4});
    EXPECT_EQ(vector[100], 4);
}

TEST(Vector3DTest, SumsDifferencesAndProductsAreVector4D)
{
    const Vector3D left(1, 2, 3);
    const Vector3D right(10, 20, 30);
    static_assert(std::is_same_v<decltype(left + right), Vector4D>);
    static_assert(std::is_same_v<decltype(left - right), Vector4D>);
    static_assert(std::is_same_v<decltype(2.0 * left), Vector4D>);
    expectComponents(left + right, {11, 22, 33, 0});
    expectComponents(left - right, {-9, -18, -27, 0});
    expectComponents(2.0 * left, {2, 4, 6, 0});
}

TEST(Vector3DTest, MixesWithAVector4DInAllFourComponents)
{
    expectComponents(Vector3D(1, 2, 3) + Vector4D(10, 20, 30, 40), {11, 22, 33, 40});
    expectComponents(Vector3D(1, 2, 3) - Vector4D(10, 20, 30, 40), {-9, -18, -27, -40});
}

TEST(Vector3DTest, AddingInPlaceAddsAllFour)
{
    Vector3D vector(1, 2, 3);
    vector += Vector3D(10, 20, 30);
    expectComponents(vector, {11, 22, 33, 0});
    vector += Vector4D(1, 1, 1, 5);
    expectComponents(vector, {12, 23, 34, 5});
}

TEST(Vector3DTest, SumGoesBackIntoAVector3DWithoutItsW)
{
    Vector3D position(1, 2, 3);
    position = position + Vector4D(10, 20, 30, 40);
    expectComponents(position, {11, 22, 33, 0});
    const Vector3D made = position + Vector4D(0, 0, 0, 40);
    expectComponents(made, {11, 22, 33, 0});
}
