#include "foundation/KW_List.h"

#include "platform/host/FailingMemory.h"
#include "tests/foundation/TestText.h"

#include <limits>

namespace {

template <typename T>
void expectExactBlock(const KW_List<T>& list) {
    ASSERT_NE(list.data, nullptr);
    EXPECT_EQ(BMGetHandleSize(list.data), list.count * static_cast<long>(sizeof(T)));
}

template <typename T>
std::vector<T> values(const KW_List<T>& list) {
    std::vector<T> all;
    for (long i = 0; i < list.count; ++i)
        all.push_back(list[i]);
    return all;
}

KW_List<long> listOf(const std::vector<long>& elements) {
    KW_List<long> list;
    for (const long element : elements)
        list.AddData(element, -1);
    return list;
}

// Counts the living, and survives a move of its bytes as KW_String does.
struct Counted {
    static long living;
    long value;
    explicit Counted(long number) : value(number) { ++living; }
    Counted(const Counted& other) : value(other.value) { ++living; }
    Counted& operator=(const Counted&) = default;
    ~Counted() { --living; }
};
long Counted::living = 0;

TEST(KW_List, InsertsAndDeletesAtPositionsThatItHas) {
    KW_List<long> list = listOf({1, 2, 3});
    list.AddData(0, 0);
    list.AddData(9, 4);
    list.AddData(5, 2);
    const std::vector<long> expected = {0, 1, 5, 2, 3, 9};
    EXPECT_EQ(values(list), expected);
    expectExactBlock(list);
    for (const long index : {-2L, 7L, std::numeric_limits<long>::min(), std::numeric_limits<long>::max()})
        list.AddData(7, index);
    for (const long index : {-1L, 6L, std::numeric_limits<long>::min(), std::numeric_limits<long>::max()})
        list.DeleteData(index);
    EXPECT_EQ(values(list), expected);
    for (const long index : {0L, 4L, 1L})
        list.DeleteData(index);
    EXPECT_EQ(values(list), (std::vector<long>{1, 2, 3}));
    expectExactBlock(list);
}

TEST(KW_List, SetsItsSize) {
    using Case = std::tuple<long, bool, std::vector<long>>;
    for (const auto& [size, keep, result] :
         {Case{3, false, {0, 0, 0}}, Case{3, true, {5, 6, 0}}, Case{1, true, {5}}, Case{1, false, {0}},
          Case{0, true, {}}, Case{-4, true, {}}}) {
        KW_List<long> list = listOf({5, 6});
        list.SetSize(size, keep);
        EXPECT_EQ(values(list), result) << size;
        expectExactBlock(list);
    }
}

TEST(KW_List, DestroysEachElementOnce) {
    {
        KW_List<Counted> list;
        for (long i = 0; i < 5; ++i)
            list.AddData(Counted(i), i / 2);
        EXPECT_EQ(Counted::living, 5);
        list.DeleteData(2);
        EXPECT_EQ(Counted::living, 4);
        list.SetSize(2, true);
        EXPECT_EQ(Counted::living, 2);
        const KW_List<Counted> copy(list);
        EXPECT_EQ(Counted::living, 4);
        list.Reset();
        EXPECT_EQ(Counted::living, 2);
        list.AddData(Counted(9), -1);
        list.AddData(list[0], -1);
        EXPECT_EQ(list[1].value, 9);
    }
    EXPECT_EQ(Counted::living, 0);
}

TEST(KW_List, OwnsDeepCopiesOfStrings) {
    KW_List<KW_String> list;
    const KW_String original = text(u"abc");
    list.AddData(original, -1);
    list.AddData(KW_String(), -1);
    list.AddData(list[0], 0);
    KW_List<KW_String> copy(list);
    copy[0] += "x";
    EXPECT_EQ(content(original), u"abc");
    copy.SetSize(4, true);
    EXPECT_EQ(contents(list), (std::vector<Content>{u"abc", u"abc", std::nullopt}));
    EXPECT_EQ(contents(copy), (std::vector<Content>{u"abcx", u"abc", std::nullopt, std::nullopt}));
    list.SetSize(2, false);
    EXPECT_EQ(contents(list), (std::vector<Content>{std::nullopt, std::nullopt}));
    list.Reset();
    expectExactBlock(list);
}

TEST(KW_List, IsLeftEmptyWithoutMemoryAndUsableAgainAfterSetSize) {
    constexpr long kMost = std::numeric_limits<long>::max();
    const auto expectLost = [](const KW_List<long>& list) {
        EXPECT_EQ(list.data, nullptr);
        EXPECT_EQ(list.count, 0);
    };
    for (void (*const resize)(KW_List<long>&) : std::initializer_list<void (*)(KW_List<long>&)>{
             [](auto& list) { list.AddData(1, 0); }, [](auto& list) { list.DeleteData(1); },
             [](auto& list) { list.Reset(); }, [](auto& list) { list.SetSize(2, true); },
             [](auto& list) { list.SetSize(9, false); }}) {
        platform::failMemoryAfter(1000);  // from now on every resizing asks for memory
        KW_List<long> list = listOf({1, 2, 3});
        const KW_List<long> source(list);
        platform::failMemoryAfter(0);
        expectLost(KW_List<long>());
        expectLost(KW_List<long>(source));
        resize(list);
        platform::failMemoryAfter(-1);
        expectLost(list);
        list.AddData(3, -1);
        list.DeleteData(0);
        list.Reset();
        expectLost(list);
        expectLost(KW_List<long>(list));
        list.SetSize(2, true);
        list.AddData(3, -1);
        EXPECT_EQ(values(list), (std::vector<long>{0, 0, 3}));
    }
    for (const long tooMany : {kMost, kMost / 8}) {
        KW_List<long> list = listOf({1});
        list.SetSize(tooMany, true);
        expectLost(list);
    }
}

}  // namespace
