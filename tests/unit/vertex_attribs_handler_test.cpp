#include "state/vertex_attribs_handler.h"
#include <gtest/gtest.h>

namespace
{

uint32_t Three() { return 3; }
uint32_t None() { return 0; }

}  // namespace

// Each fixed array has a record of its own, and texture coordinates have one for each unit.
TEST(VertexAttribsHandler, NumbersFollowTheTable)
{
    CVertexAttribsHandler handler(&Three);
    EXPECT_EQ(0u, handler.GetOGLESAttribNumber(0x8076));  // colour
    EXPECT_EQ(1u, handler.GetOGLESAttribNumber(0x8075));  // normal
    EXPECT_EQ(2u, handler.GetOGLESAttribNumber(0x8074));  // vertex
    EXPECT_EQ(3u, handler.GetOGLESAttribNumber(0x8B9C));  // point size
    EXPECT_EQ(4u, handler.GetOGLESAttribNumber(0x8844));  // matrix index
    EXPECT_EQ(5u, handler.GetOGLESAttribNumber(0x86AD));  // weight
    EXPECT_EQ(6u, handler.GetOGLESAttribNumber(0x8078));  // texture coordinates of unit 0
}

// The client's active unit tells whose texture coordinates are meant.
TEST(VertexAttribsHandler, TextureCoordinatesFollowTheActiveUnit)
{
    CVertexAttribsHandler handler(&Three);
    EXPECT_EQ(33984u, handler.clientActiveTexture);
    handler.clientActiveTexture = 33985;
    EXPECT_EQ(7u, handler.GetOGLESAttribNumber(32888));
    handler.clientActiveTexture = 33991;
    EXPECT_EQ(13u, handler.GetOGLESAttribNumber(32888));
}

// What is no array has a number that no record has.
TEST(VertexAttribsHandler, AnUnknownArrayIsNumber38)
{
    CVertexAttribsHandler handler(&Three);
    EXPECT_EQ(38u, handler.GetOGLESAttribNumber(0));
    EXPECT_EQ(38u, handler.GetOGLESAttribNumber(0x8077));
}

// The way back: all numbers from 6 up are texture coordinates.
TEST(VertexAttribsHandler, NamesAreTheInverse)
{
    CVertexAttribsHandler handler(&Three);
    unsigned int const names[] = {32886, 32885, 32884, 35740, 34884, 34477, 32888, 32888};
    for (unsigned int number = 0; number < 8; ++number)
        EXPECT_EQ(names[number], handler.GetOGLESAttribName(number)) << number;
    EXPECT_EQ(32888u, handler.GetOGLESAttribName(0xFFFFFFFF));
}

// Records come into being on first use, with GL's defaults.
TEST(VertexAttribsHandler, RecordsAreMadeOnFirstUse)
{
    CVertexAttribsHandler handler(&Three);
    EXPECT_EQ(nullptr, handler.pAttribs);
    EXPECT_EQ(0u, handler.attribCount);
    handler.CreateBuffer();
    ASSERT_NE(nullptr, handler.pAttribs);
    EXPECT_EQ(3u, handler.attribCount);
    CVertexAttribsHandler::SAttrib const& attrib = handler.pAttribs[2];
    EXPECT_EQ(4, attrib.size);
    EXPECT_EQ(5126u, attrib.type);
    EXPECT_FALSE(attrib.normalized);
    EXPECT_EQ(0, attrib.stride);
    EXPECT_EQ(nullptr, attrib.pointer);
    EXPECT_FALSE(attrib.enabled);
    EXPECT_EQ(0u, attrib.arrayBuffer);
}

// Made once: a second asking keeps what the records hold.
TEST(VertexAttribsHandler, RecordsAreMadeOnce)
{
    CVertexAttribsHandler handler(&Three);
    handler.CreateBuffer();
    CVertexAttribsHandler::SAttrib const* const made = handler.pAttribs;
    handler.pAttribs[1].size = 2;
    handler.CreateBuffer();
    EXPECT_EQ(made, handler.pAttribs);
    EXPECT_EQ(2, handler.pAttribs[1].size);
}

// A count of 0 means 16 records, and no function to ask means none.
TEST(VertexAttribsHandler, ACountOfZeroMeansSixteen)
{
    CVertexAttribsHandler sixteen(&None);
    EXPECT_EQ(16u, sixteen.GetMaxVertexAttribs());
    CVertexAttribsHandler none(nullptr);
    EXPECT_EQ(0u, none.GetMaxVertexAttribs());
    EXPECT_EQ(nullptr, none.GetVertAttribs(0));
    none.EnableVertexAttrib(0);
    EXPECT_EQ(nullptr, none.pAttribs);
}

// Arrays are switched by number; one past the last is ignored.
TEST(VertexAttribsHandler, EnablingBeyondTheLastIsIgnored)
{
    CVertexAttribsHandler handler(&Three);
    handler.EnableVertexAttrib(2);
    handler.EnableVertexAttrib(3);
    handler.EnableVertexAttrib(38);
    EXPECT_TRUE(handler.pAttribs[2].enabled);
    EXPECT_FALSE(handler.pAttribs[3].enabled);
    handler.DisableVertexAttrib(2);
    handler.DisableVertexAttrib(0xFFFFFFFF);
    EXPECT_FALSE(handler.pAttribs[2].enabled);
}

// On purpose: the place behind the last record is handed out. There is room for it, so that a store there
// harms nothing.
TEST(VertexAttribsHandler, TheIndexPastTheLastYieldsASpareRecord)
{
    CVertexAttribsHandler handler(&Three);
    EXPECT_EQ(handler.GetVertAttribs(0) + 3, handler.GetVertAttribs(3));
    handler.GetVertAttribs(3)->pointer = &handler;
    handler.GetVertAttribs(3)->enabled = true;
    EXPECT_EQ(3u, handler.GetMaxVertexAttribs());
}

// Beyond that there is nothing, which is logged in its own spelling.
TEST(VertexAttribsHandler, AHigherIndexIsLoggedAndNull)
{
    CVertexAttribsHandler handler(&Three);
    testing::internal::CaptureStdout();
    EXPECT_EQ(nullptr, handler.GetVertAttribs(4));
    EXPECT_EQ("NEBTRACE(M) CVertexAttribsHandler::GetVertAttribs: INDEX EXCEDED\n",
              testing::internal::GetCapturedStdout());
}

// The one of GLES1: six fixed arrays and eight texture units.
TEST(VertexAttribsHandler, Es1HasFourteenRecords)
{
    ASSERT_NE(nullptr, Es1::VAHandler.pfnGetCount);
    EXPECT_EQ(14u, Es1::VAHandler.pfnGetCount());
    EXPECT_EQ(14u, Es1::VAHandler.GetMaxVertexAttribs());
}
