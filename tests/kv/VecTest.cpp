#include "Kv/Vec.h"

#include <gtest/gtest.h>

#include <string>
#include <type_traits>

TEST(Vec, IsAnAggregateOfItsValuesAlone) {
  EXPECT_TRUE((std::is_aggregate_v<vec_t_<double, 2>>));
  EXPECT_TRUE((std::is_trivially_copyable_v<vec_t_<unsigned long, 2>>));
  EXPECT_EQ(sizeof(vec_t_<double, 6>), 6 * sizeof(double));
}

TEST(Vec, HoldsItsValuesInOrder) {
  const vec_t_<unsigned long, 2> size = {{640, 480}};
  EXPECT_EQ(size.v[0], 640U);
  EXPECT_EQ(size.v[1], 480U);
}

TEST(Vec, ZeroesTheValuesNotGiven) {
  const vec_t_<int, 3> vector = {{5}};
  EXPECT_EQ(vector[0], 5);
  EXPECT_EQ(vector[1], 0);
  EXPECT_EQ(vector[2], 0);
}

TEST(Vec, IndexReadsAndWrites) {
  vec_t_<int, 2> vector = {{1, 2}};
  vector[1] = 9;
  const vec_t_<int, 2>& view = vector;
  EXPECT_EQ(view[0], 1);
  EXPECT_EQ(view[1], 9);
  EXPECT_EQ(&view[1], &vector.v[1]);
}

TEST(Vec, EqualsWhenEveryValueDoes) {
  const vec_t_<std::string, 2> vector = {{"a", "b"}};
  EXPECT_TRUE((vector == vec_t_<std::string, 2>{{"a", "b"}}));
  EXPECT_FALSE((vector != vec_t_<std::string, 2>{{"a", "b"}}));
}

TEST(Vec, DiffersWhenOneValueDoes) {
  const vec_t_<int, 3> vector = {{1, 2, 3}};
  EXPECT_FALSE((vector == vec_t_<int, 3>{{0, 2, 3}}));
  EXPECT_FALSE((vector == vec_t_<int, 3>{{1, 0, 3}}));
  EXPECT_FALSE((vector == vec_t_<int, 3>{{1, 2, 0}}));
  EXPECT_TRUE((vector != vec_t_<int, 3>{{1, 2, 0}}));
}

TEST(Vec, WorksAtCompileTime) {
  constexpr vec_t_<int, 2> kVector = {{3, 4}};
  static_assert(kVector[1] == 4);
  static_assert(kVector == vec_t_<int, 2>{{3, 4}});
  EXPECT_EQ(kVector[0], 3);
}
