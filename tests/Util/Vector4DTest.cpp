#include "Util/Vector4D.h"

#include <gtest/gtest.h>

#include <array>
#include <limits>
#include <type_traits>
#include <utility>

using Util::Vector4D;

namespace {

/// Exact, as these operations have no tolerance.
void expectComponents(const Vector4D &actual, const std::array<double, 4> &expected)
{
    for (unsigned i = 0; i < 4; ++i)
        EXPECT_EQ(actual[i], expected[i]) << "component " << i;
}

template <typename Left, typename = void>
struct CanBeCompared : std::false_type
{};
template <typename Left>
struct CanBeCompared<Left,
                     std::void_t<decltype(std::declval<Left>() == std::declval<const Left &>())>>
    : std::true_type
{};

} // namespace

TEST(Vector4DTest, StartsWithAllFourComponentsZero)
{
    expectComponents(Vector4D(), {0, 0, 0, 0});
}

TEST(Vector4DTest, OneValueFillsAllFourComponents)
{
    expectComponents(Vector4D(2.5), {2.5, 2.5, 2.5, 2.5});
}

TEST(Vector4DTest, FourValuesAreTakenInOrder)
{
    expectComponents(Vector4D(1, 2, 3, 4), {1, 2, 3, 4});
}

TEST(Vector4DTest, EveryIndexFromThreeOnMeansW)
{
    const Vector4D vector(1, 2, 3, 4);
    for (const unsigned index : {3U, 4U, 5U, 1000U, std::numeric_limits<unsigned>::max()})
        EXPECT_EQ(vector[index], 4) << index;

    Vector4D changed(1, 2, 3, 4);
    changed[4] = 5;
    expectComponents(changed, {1, 2, 3, 5});
    changed[std::numeric_limits<unsigned>::max()] = 6;
    expectComponents(changed, {1, 2, 3, 6});
}

TEST(Vector4DTest, IndexGivesAReferenceToEachComponent)
{
    Vector4D vector;
    for (unsigned i = 0; i < 4; ++i)
        vector[i] = 10.0 + i;
    expectComponents(vector, {10, 11, 12, 13});
    static_assert(std::is_same_v<decltype(std::declval<Vector4D &>()[0]), double &>);
    static_assert(std::is_same_v<decltype(std::declval<const Vector4D &>()[0]), double>);
}

TEST(Vector4DTest, SumGoesComponentByComponent)
{
    const Vector4D left(1, 2, 3, 4);
    const Vector4D right(10, 200, 3000, 40000);
    expectComponents(left + right, {11, 202, 3003, 40004});
    expectComponents(left, {1, 2, 3, 4});
    expectComponents(right, {10, 200, 3000, 40000});
}

TEST(Vector4DTest, DifferenceGoesComponentByComponent)
{
    expectComponents(Vector4D(10, 200, 3000, 40000) - Vector4D(1, 2, 3, 4), {9, 198, 2997, 39996});
}

TEST(Vector4DTest, AddingInPlaceAddsAllFour)
{
    Vector4D vector(1, 2, 3, 4);
    vector += Vector4D(10, 20, 30, 40);
    expectComponents(vector, {11, 22, 33, 44});
}

TEST(Vector4DTest, AddingInPlaceGivesTheVectorItself)
{
    Vector4D vector(1, 2, 3, 4);
    EXPECT_EQ(&(vector += Vector4D(1)), &vector);
    vector += vector;
    expectComponents(vector, {4, 6, 8, 10});
}

TEST(Vector4DTest, NumberTimesVectorScalesAllFour)
{
    expectComponents(-2.0 * Vector4D(1, 2, 3, 4), {-2, -4, -6, -8});
}

TEST(Vector4DTest, AssignmentCopiesAllFour)
{
    const Vector4D source(1, 2, 3, 4);
    Vector4D target(9);
    EXPECT_EQ(&(target = source), &target);
    expectComponents(target, {1, 2, 3, 4});
    target[3] = 0;
    expectComponents(source, {1, 2, 3, 4});
}

TEST(Vector4DTest, CopyHasAllFour)
{
    const Vector4D source(1, 2, 3, 4);
    const Vector4D copy(source);
    expectComponents(copy, {1, 2, 3, 4});
}

TEST(Vector4DTest, DataPointsToTheFourComponents)
{
    Vector4D vector(1, 2, 3, 4);
    double *data = vector.data();
    for (unsigned i = 0; i < 4; ++i)
        EXPECT_EQ(data + i, &vector[i]);
    data[2] = 30;
    expectComponents(vector, {1, 2, 30, 4});

    const Vector4D &constant = vector;
    EXPECT_EQ(constant.data(), data);
}

TEST(Vector4DTest, ComponentsAreSixtyFourBitFloats)
{
    // All whole numbers up to 2^53 are doubles.
    const double large = 9007199254740991.0;
    expectComponents(Vector4D(large) + Vector4D(1, 0, 0, 1), {large + 1, large, large, large + 1});
    EXPECT_EQ((Vector4D(1e-300) - Vector4D(2e-300))[0], -1e-300);
}

TEST(Vector4DTest, OnlyTheDestructorIsVirtual)
{
    EXPECT_TRUE(std::has_virtual_destructor_v<Vector4D>);
    EXPECT_EQ(sizeof(Vector4D), sizeof(void *) + 4 * sizeof(double));
}

TEST(Vector4DTest, EqualityIsNotDefined)
{
    EXPECT_FALSE(CanBeCompared<Vector4D>::value);
    EXPECT_TRUE(CanBeCompared<double>::value);
}
