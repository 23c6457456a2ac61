#include "SmallObjects.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <new>
#include <set>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace {

/// Memory that is filled with one byte, and says whether it still is.
class Filled {
public:
    Filled(std::size_t size, char byte)
        : _memory(static_cast<char *>(::operator new(size))), _bytes(size, byte)
    {
        std::memcpy(_memory, _bytes.data(), size);
    }
    Filled(Filled &&other) noexcept
        : _memory(std::exchange(other._memory, nullptr)), _bytes(std::move(other._bytes))
    {
    }
    ~Filled() { ::operator delete(_memory); }

    bool isWhole() const { return std::memcmp(_memory, _bytes.data(), _bytes.size()) == 0; }
    void *memory() const { return _memory; }

private:
    char *_memory;
    std::string _bytes;
};

/// Objects of all sizes up to some that are no longer small.
std::vector<Filled> objectsOfAllSizes(char first)
{
    std::vector<Filled> objects;
    for (std::size_t size = 0; size < 600; ++size)
        objects.emplace_back(size, static_cast<char>(first + static_cast<char>(size % 50)));
    return objects;
}

void expectWhole(const std::vector<Filled> &objects)
{
    for (const Filled &object : objects)
        EXPECT_TRUE(object.isWhole());
}

TEST(SmallObjectsTest, ObjectsOfEverySizeHaveMemoryOfTheirOwn)
{
    const std::vector<Filled> some = objectsOfAllSizes('0');
    const std::vector<Filled> others = objectsOfAllSizes('A');
    expectWhole(some);
    expectWhole(others);
}

TEST(SmallObjectsTest, TheyLieWhereAnyTypeMay)
{
    for (const Filled &object : objectsOfAllSizes('0'))
        EXPECT_EQ(0U, reinterpret_cast<std::uintptr_t>(object.memory()) %
                          __STDCPP_DEFAULT_NEW_ALIGNMENT__);
}

TEST(SmallObjectsTest, WhatIsDeletedServesTheNextOfItsSize)
{
    void *const object = ::operator new(40);
    ::operator delete(object);
    void *const larger = ::operator new(80);
    void *const next = ::operator new(33); // both are rounded up to 48
    EXPECT_NE(object, larger);
    EXPECT_EQ(object, next);
    ::operator delete(larger);
    ::operator delete(next);
}

TEST(SmallObjectsTest, AnyThreadMayDeleteThem)
{
    for (int round = 0; round < 20; ++round) {
        std::vector<Filled> objects = objectsOfAllSizes('0');
        std::thread other([mine = std::move(objects)]() mutable {
            const std::vector<Filled> more = objectsOfAllSizes('A');
            expectWhole(mine);
            mine.clear();
            expectWhole(more);
        });
        expectWhole(objectsOfAllSizes('a'));
        other.join();
    }
}

TEST(SmallObjectsTest, ThereIsMemoryWhenTheRoomIsUsedUp)
{
    constexpr std::size_t kSize = 512;
    std::vector<void *> objects(kRoomForSmallObjects / kSize + 100);
    for (void *&object : objects)
        object = ::operator new(kSize);
    EXPECT_EQ(objects.size(), std::set<void *>(objects.begin(), objects.end()).size());
    expectWhole(objectsOfAllSizes('0'));
    for (void *object : objects)
        ::operator delete(object);
    expectWhole(objectsOfAllSizes('0'));
}

} // namespace
