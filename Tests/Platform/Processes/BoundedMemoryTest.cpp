#include "BoundedMemory.h"

#include <gtest/gtest.h>
#include <new>
#include <vector>

using Platform::BoundedMemory;

TEST(BoundedMemoryTest, HandsOutAllThatItHasAndNoMore)
{
    BoundedMemory memory(100);
    void *const most = memory.allocate(60);
    EXPECT_THROW(static_cast<void>(memory.allocate(41)), std::bad_alloc);
    void *const rest = memory.allocate(40);
    EXPECT_THROW(static_cast<void>(memory.allocate(1)), std::bad_alloc);
    memory.deallocate(most, 60);
    memory.deallocate(rest, 40);
}

TEST(BoundedMemoryTest, WhatIsGivenBackIsHandedOutAgain)
{
    BoundedMemory memory(100);
    memory.deallocate(memory.allocate(100), 100);
    memory.deallocate(memory.allocate(100), 100);
}

TEST(BoundedMemoryTest, IsTheSameAsItselfOnly)
{
    const BoundedMemory memory(1);
    const BoundedMemory other(1);
    EXPECT_TRUE(memory.is_equal(memory));
    EXPECT_FALSE(memory.is_equal(other));
}
