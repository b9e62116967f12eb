// The keyed collection: order, case-blind keys, duplicates refused, removal keeping order.
#include "core/keyed_collection.h"

#include <gtest/gtest.h>

#include <memory>

namespace kiv {
namespace {

std::string Keys(const KeyedCollection<int>& c) {
  std::string keys;
  for (const auto& entry : c) keys += entry.key + "=" + std::to_string(entry.value) + " ";
  return keys;
}

TEST(KeyedCollectionTest, KeepsInsertionOrderAndFindsKeysInAnyCase) {
  KeyedCollection<int> c;
  c.Add("Zeta", 1);
  c.Add("alpha", 2);
  c.Add("Mid", 3);
  EXPECT_EQ(Keys(c), "Zeta=1 alpha=2 Mid=3 ");
  ASSERT_NE(c.Find("ZETA"), nullptr);
  EXPECT_EQ(*c.Find("ALPHA"), 2);
  EXPECT_EQ(c.Item("mid"), 3);
  EXPECT_EQ(c.At(1).key, "alpha");
  c.Item("MID") = 30;
  EXPECT_EQ(c.At(2).value, 30);
}

TEST(KeyedCollectionTest, RefusesADuplicateKeyWithoutChangingAnything) {
  KeyedCollection<int> c;
  c.Add("K1", 1);
  try {
    c.Add("k1", 2);
    FAIL() << "duplicate accepted";
  } catch (const VbError& e) {
    EXPECT_EQ(e.Number(), 457);
    EXPECT_EQ(e.Description(), "This key is already associated with an element of this collection");
  }
  EXPECT_EQ(c.Count(), 1u);
  EXPECT_EQ(*c.Find("K1"), 1);
}

TEST(KeyedCollectionTest, MissingKeysAndPositions) {
  KeyedCollection<int> c;
  EXPECT_EQ(c.Find("none"), nullptr);
  EXPECT_FALSE(c.Remove("none"));
  EXPECT_FALSE(c.RemoveFirst());
  c.Add("a", 1);
  EXPECT_EQ(c.Find("ab"), nullptr);
  EXPECT_THROW(
      try { c.Item("b"); } catch (const VbError& e) {
        EXPECT_EQ(e.Number(), kErrInvalidCall);
        throw;
      },
      VbError);
  EXPECT_THROW(c.At(1), VbError);
}

TEST(KeyedCollectionTest, RemovalKeepsTheRestInOrderAndFindable) {
  KeyedCollection<int> c;
  for (int i = 1; i <= 5; ++i) c.Add("k" + std::to_string(i), i);
  EXPECT_TRUE(c.RemoveFirst());
  EXPECT_TRUE(c.Remove("K3"));
  EXPECT_EQ(Keys(c), "k2=2 k4=4 k5=5 ");
  EXPECT_EQ(*c.Find("k5"), 5);
  EXPECT_EQ(*c.Find("k4"), 4);
  EXPECT_EQ(c.Find("k1"), nullptr);
  c.Add("k1", 10);  // a removed key may come back, at the end
  EXPECT_EQ(Keys(c), "k2=2 k4=4 k5=5 k1=10 ");
  c.Clear();
  EXPECT_EQ(c.Count(), 0u);
  EXPECT_EQ(c.Find("k2"), nullptr);
}

TEST(KeyedCollectionTest, HoldsSharedObjects) {
  KeyedCollection<std::shared_ptr<std::string>> c;
  auto shared = std::make_shared<std::string>("record");
  c.Add("r", shared);
  *shared = "changed";
  EXPECT_EQ(**c.Find("R"), "changed");
}

}  // namespace
}  // namespace kiv
