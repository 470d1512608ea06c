#include "api/types.h"
#include "collecting_block.h"
#include "wrappers/argument_records.h"
#include <gtest/gtest.h>

namespace
{

using Bytes = std::vector<uint8_t>;

// The low 32 bits of a pointer, little-endian, in front of the bytes that a test writes out.
Bytes WithPointer(void const* pointer, Bytes const& rest)
{
    uintptr_t const value = reinterpret_cast<uintptr_t>(pointer);
    Bytes bytes;
    for (int shift = 0; shift < 32; shift += 8)
        bytes.push_back(static_cast<uint8_t>(value >> shift));
    bytes.insert(bytes.end(), rest.begin(), rest.end());
    return bytes;
}

Bytes Joined(Bytes left, Bytes const& right)
{
    left.insert(left.end(), right.begin(), right.end());
    return left;
}

template <typename Record>
Bytes Written(Record const& record)
{
    CTraceBlock block(0);
    block << record;
    return Collected();
}

}  // namespace

// An array is its pointer, its count and its elements.
TEST(ArgumentRecords, AnArrayIsPointerCountElements)
{
    uint16_t const elements[] = {0x0102, 0x0304, 0x0506};
    CTraceBlock block(0);
    SArrayR(elements, 2).Append(block, 2);
    EXPECT_EQ(WithPointer(elements, {2, 0, 0, 0, 2, 1, 4, 3}), Collected());
}

// A null pointer has no elements, whatever count came with it.
TEST(ArgumentRecords, ANullArrayHasCountZero)
{
    CTraceBlock block(0);
    SArrayR(nullptr, 7).Append(block, 4);
    EXPECT_EQ((Bytes{0, 0, 0, 0, 0, 0, 0, 0}), Collected());
}

// A text is its pointer, its length and its bytes, without the terminator.
TEST(ArgumentRecords, ATextHasNoTerminator)
{
    char const* const text = "ab";
    EXPECT_EQ(WithPointer(text, {2, 0, 0, 0, 'a', 'b'}), Written(SStringR{text}));
    EXPECT_EQ((Bytes{0, 0, 0, 0, 0, 0, 0, 0}), Written(SStringR{nullptr}));
    char const* const empty = "";
    EXPECT_EQ(WithPointer(empty, {0, 0, 0, 0}), Written(SStringR{empty}));
}

// A text's length comes from the call where that gives one, and from its terminator where it is negative.
TEST(ArgumentRecords, NegativeLengthsMeanTheTerminator)
{
    char const* const texts[] = {"abcdef", "xy"};
    int const lengths[] = {3, -1};
    SStringListR list(texts);
    list.SetSizes(2, lengths);
    ASSERT_EQ(2u, list.m_ui32Count);
    EXPECT_EQ(3u, list.m_pSizes[0]);
    EXPECT_EQ(2u, list.m_pSizes[1]);
    list.SetSizes(2, nullptr);
    EXPECT_EQ(6u, list.m_pSizes[0]);
}

// A list is its pointer and count, then each text as a text, of its own size.
TEST(ArgumentRecords, AListIsATextForEachEntry)
{
    char const* const texts[] = {"abcdef", "xy"};
    int const lengths[] = {3, -1};
    SStringListR list(texts);
    list.SetSizes(2, lengths);
    Bytes const expected =
        Joined(WithPointer(texts, {2, 0, 0, 0}), Joined(WithPointer(texts[0], {3, 0, 0, 0, 'a', 'b', 'c'}),
                                                        WithPointer(texts[1], {2, 0, 0, 0, 'x', 'y'})));
    EXPECT_EQ(expected, Written(list));
}

// A null list, and a count that no list has, give an empty one.
TEST(ArgumentRecords, ANullListIsEmpty)
{
    SStringListR null(nullptr);
    null.SetSizes(3, nullptr);
    EXPECT_EQ((Bytes{0, 0, 0, 0, 0, 0, 0, 0}), Written(null));
    char const* const texts[] = {"a"};
    SStringListR negative(texts);
    negative.SetSizes(-1, nullptr);
    EXPECT_EQ(WithPointer(texts, {0, 0, 0, 0}), Written(negative));
}

// A null text in a list is empty, so that a reader can walk on to the next.
TEST(ArgumentRecords, ANullTextInAListIsEmpty)
{
    char const* const texts[] = {nullptr};
    int const lengths[] = {3};
    SStringListR list(texts);
    list.SetSizes(1, lengths);
    EXPECT_EQ(Joined(WithPointer(texts, {1, 0, 0, 0}), {0, 0, 0, 0, 0, 0, 0, 0}), Written(list));
}

// The terminator is counted and recorded, at whatever key it stands.
TEST(ArgumentRecords, AttributeListsKeepTheirTerminator)
{
    int const config[] = {0x3024, 8, 0x3038};
    EXPECT_EQ(3u, SEglAttribListR(config).m_ui32Count);
    EXPECT_EQ(WithPointer(config, {3, 0, 0, 0,          // count
                                   0x24, 0x30, 0, 0,    // EGL_RED_SIZE
                                   8, 0, 0, 0,          //
                                   0x38, 0x30, 0, 0}),  // EGL_NONE
              Written(SEglAttribListR(config)));
    int const none[] = {0x3038, 1, 2};
    EXPECT_EQ(1u, SEglAttribListR(none).m_ui32Count);
    EXPECT_EQ((Bytes{0, 0, 0, 0, 0, 0, 0, 0}), Written(SEglAttribListR(nullptr)));
}

// Only keys end a list: a value that equals EGL_NONE does not.
TEST(ArgumentRecords, AValueDoesNotEndAnAttributeList)
{
    int const attribs[] = {0x3020, 0x3038, 0x3021, 1, 0x3038};
    EXPECT_EQ(5u, SEglAttribListR(attribs).m_ui32Count);
}

// An image is its pointer, its size in bytes and its bytes.
TEST(ArgumentRecords, AnImageIsPointerSizeBytes)
{
    uint8_t const pixels[] = {1, 2, 3, 0xEE, 4, 5, 6, 0xEE};
    SImage2DR image(pixels);
    EXPECT_EQ(8u, image.SetImageSize(GL_RGB, GL_UNSIGNED_BYTE, 1, 2, 4, 0));
    EXPECT_EQ(WithPointer(pixels, {8, 0, 0, 0, 1, 2, 3, 0xEE, 4, 5, 6, 0xEE}), Written(image));
    SImage3DR volume(pixels);
    EXPECT_EQ(6u, volume.SetImageSize(GL_RGB, GL_UNSIGNED_BYTE, 1, 1, 2, 1, 0));
    EXPECT_EQ(WithPointer(pixels, {6, 0, 0, 0, 1, 2, 3, 0xEE, 4, 5}), Written(volume));
}

// The computed size comes back even where no pixels do: the shadow of a texture needs it.
TEST(ArgumentRecords, ANullImageStillTellsItsSize)
{
    SImage2DR image(nullptr);
    EXPECT_EQ(16u, image.SetImageSize(GL_RGBA, GL_UNSIGNED_BYTE, 2, 2, 4, 0));
    EXPECT_EQ((Bytes{0, 0, 0, 0, 0, 0, 0, 0}), Written(image));
    SImage3DR volume(nullptr);
    EXPECT_EQ(32u, volume.SetImageSize(GL_RGBA, GL_UNSIGNED_BYTE, 2, 2, 2, 4, 0));
    EXPECT_EQ(0u, volume.m_ui32Size);
}
