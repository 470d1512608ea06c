// Arguments as the driver gets them.
#include "player/arguments.h"
#include "tests/reader/trace_builder.h"
#include <gtest/gtest.h>

using namespace nebtrace;
using namespace nebtrace::player;

namespace
{
uint32_t Plus100(std::string const&, uint32_t recorded) { return recorded + 100; }

class ArgumentsTest : public testing::Test
{
protected:
    Arguments Of(uint16_t id, Payload payload)
    {
        m_payload = std::move(payload);
        EXPECT_TRUE(Decode(id, Api::Es2, m_payload.View(), m_decoded));
        return Arguments(Call(m_record, m_decoded), Plus100);
    }

private:
    Payload m_payload;
    Record m_record;
    DecodedCall m_decoded;
};
}  // namespace

// Sizes and offsets are as wide as a pointer in the driver, so a negative one must stay negative.
TEST_F(ArgumentsTest, SignedValuesKeepTheirSign)
{
    // glViewport(-1, 2, 3, 4)
    Arguments const arguments = Of(2142, Payload().Words({0, 0xFFFFFFFF, 2, 3, 4}));
    ASSERT_EQ(arguments.Count(), 4u);
    EXPECT_EQ(arguments.Words()[0], UINT64_MAX);
    EXPECT_EQ(arguments.Words()[1], 2u);
}

// Only the fields that the layouts call objects are names.
TEST_F(ArgumentsTest, NamesAreTranslatedAndNumbersAreNot)
{
    // glFramebufferTexture2D(target, attachment, textarget, texture 7, level 0)
    Arguments const arguments = Of(2048, Payload().Words({0, 0x8D40, 0x8CE0, 0x0DE1, 7, 0}));
    EXPECT_EQ(arguments.Words()[0], 0x8D40u);
    EXPECT_EQ(arguments.Words()[3], 107u);
    EXPECT_EQ(arguments.Words()[4], 0u);
}

// The driver reads as many elements as the count says, so the record must have them.
TEST_F(ArgumentsTest, AnArrayShorterThanItsCountIsRefused)
{
    // glDeleteTextures(n 3, pointer, count 1, name)
    EXPECT_THROW(Of(2031, Payload().Words({0, 3, 0x10, 1, 7})), BadRecord);
    Arguments const arguments = Of(2031, Payload().Words({0, 1, 0x10, 1, 7}));
    EXPECT_EQ(*reinterpret_cast<uint32_t const*>(arguments.Words()[1]), 107u);
}

// glTexParameterfv has no count: what the driver may read beyond the record is zero.
TEST_F(ArgumentsTest, AnArrayWithoutACountIsFilledUpWithZeros)
{
    Arguments const arguments = Of(2108, Payload().Words({0, 0x0DE1, 0x1004, 0x10, 1, 0x3F800000}));
    auto const* const values = reinterpret_cast<uint32_t const*>(arguments.Words()[2]);
    EXPECT_EQ(values[0], 0x3F800000u);
    EXPECT_EQ(values[1], 0u);
    EXPECT_EQ(values[15], 0u);
}

// A bare pointer of the recording means nothing here and must never be followed.
TEST_F(ArgumentsTest, APointerWithoutItsDataIsRefused)
{
    // glVertexAttribPointer, whose pointer is recorded bare.
    EXPECT_THROW(Of(2141, Payload().Words({0, 0, 4, 0x1406}).U8(0).Words({0, 0x1000})), BadRecord);
    // glDeleteTextures of a recording without data.
    EXPECT_THROW(Of(2031, Payload().Words({0, 1, 0x10})), BadRecord);
}

// Texts have no terminator in the records, and need one in the driver.
TEST_F(ArgumentsTest, TextsAreTerminated)
{
    // glBindAttribLocation(program 3, index 1, "ab")
    Arguments const arguments = Of(2003, Payload().Words({0, 3, 1, 0x10, 2}).Text("ab"));
    EXPECT_STREQ(reinterpret_cast<char const*>(arguments.Words()[2]), "ab");
}
