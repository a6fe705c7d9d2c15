// Sets of fields, and the states of fields.

#include "cable_info/module_memory/field_set.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

using cable_info::FieldSet;
using cable_info::FieldState;
using cable_info::FieldStates;

// 130 fields: two words of 64 bits, and two bits of a third.
enum class Item { kFirst, kLastOfWord = 63, kFirstOfNext = 64, kLast = 129, kCount };

using Items = std::vector<Item>;

Items Of(const FieldSet<Item>& set) { return {set.begin(), set.end()}; }

Items All() {
  Items items;
  for (int i = 0; i < 130; ++i) items.push_back(static_cast<Item>(i));
  return items;
}

TEST(FieldSet, IsEmptyAtFirst) {
  const FieldSet<Item> set;
  EXPECT_EQ(Of(set), Items());
  EXPECT_EQ(set.NextFrom(0), 130U);
  EXPECT_EQ(Of(~set), All());
}

TEST(FieldSet, IteratesInTheOrderOfTheEnumeration) {
  FieldSet<Item> set;
  for (const Item item : {Item::kLast, Item::kFirst, Item::kFirstOfNext, Item::kLastOfWord}) {
    EXPECT_FALSE(set.Has(item));
    set.Add(item);
    EXPECT_TRUE(set.Has(item));
  }
  EXPECT_EQ(Of(set), (Items{Item::kFirst, Item::kLastOfWord, Item::kFirstOfNext, Item::kLast}));
  set.Put(Item::kLastOfWord, false);
  set.Put(Item::kLast, true);
  EXPECT_EQ(Of(set), (Items{Item::kFirst, Item::kFirstOfNext, Item::kLast}));
}

TEST(FieldSet, FindsTheNextField) {
  FieldSet<Item> set;
  set.Add(Item::kLastOfWord);
  set.Add(Item::kLast);
  EXPECT_EQ(set.NextFrom(0), 63U);
  EXPECT_EQ(set.NextFrom(63), 63U);
  EXPECT_EQ(set.NextFrom(64), 129U);
  EXPECT_EQ(set.NextFrom(129), 129U);
  EXPECT_EQ(set.NextFrom(130), 130U);
  EXPECT_EQ(set.NextFrom(1000), 130U);
}

TEST(FieldSet, UnitesAndIntersects) {
  FieldSet<Item> a;
  FieldSet<Item> b;
  a.Add(Item::kFirst);
  a.Add(Item::kLast);
  b.Add(Item::kFirstOfNext);
  b.Add(Item::kLast);
  FieldSet<Item> both = a;
  both &= b;
  EXPECT_EQ(Of(both), Items{Item::kLast});
  FieldSet<Item> either = a;
  either |= b;
  EXPECT_EQ(Of(either), (Items{Item::kFirst, Item::kFirstOfNext, Item::kLast}));
  EXPECT_TRUE(a != b);
  b |= a;
  EXPECT_TRUE(b == either);
}

TEST(FieldStates, AreNotImplementedInitially) {
  const FieldStates<Item> states;
  EXPECT_EQ(states[Item::kLast], FieldState::kNotImplemented);
  EXPECT_EQ(Of(states.In(FieldState::kNotImplemented)), All());
  EXPECT_EQ(Of(states.In(FieldState::kPresent)), Items());
}

TEST(FieldStates, EachFieldHasTheStateThatWasSetLast) {
  constexpr FieldState kStates[] = {FieldState::kPresent, FieldState::kNotImplemented,
                                    FieldState::kNotRead, FieldState::kNotReady};
  for (const FieldState before : kStates) {
    for (const FieldState state : kStates) {
      FieldStates<Item> states;
      states.Set(Item::kFirst, before);
      states.Set(Item::kFirstOfNext, before);
      states.Set(Item::kFirstOfNext, state);
      EXPECT_EQ(states[Item::kFirst], before);
      EXPECT_EQ(states[Item::kFirstOfNext], state);
      for (const FieldState other : kStates) {
        EXPECT_EQ(states.In(other).Has(Item::kFirst), other == before);
        EXPECT_EQ(states.In(other).Has(Item::kFirstOfNext), other == state);
      }
    }
  }
}

TEST(FieldStates, SeveralFieldsGetAStateAtOnce) {
  FieldSet<Item> some;
  some.Add(Item::kFirst);
  some.Add(Item::kLast);
  FieldStates<Item> states;
  states.Set(Item::kFirst, FieldState::kNotReady);
  states.Set(Item::kFirstOfNext, FieldState::kPresent);
  states.Set(some, FieldState::kNotRead);
  EXPECT_EQ(Of(states.In(FieldState::kNotRead)), (Items{Item::kFirst, Item::kLast}));
  EXPECT_EQ(Of(states.In(FieldState::kPresent)), Items{Item::kFirstOfNext});
  states.Set(some, FieldState::kNotImplemented);
  EXPECT_EQ(states[Item::kLast], FieldState::kNotImplemented);
  EXPECT_EQ(Of(states.In(FieldState::kNotRead)), Items());
}

}  // namespace
