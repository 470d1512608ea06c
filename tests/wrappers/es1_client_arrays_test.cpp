// GLES1's client arrays: how their calls stand in the record, and what of them is followed.
#include "tests/wrappers/es1_arrays.h"
#include <functional>

class ClientArrays : public Es1Arrays
{
protected:
    // A call that names an array, and the slot that follows it.
    struct Pointer
    {
        std::function<void()> call;
        Bytes record;
        unsigned int slot;
        int size;
        unsigned int type;
    };
    std::vector<Pointer> Pointers() const
    {
        void const* const at = m_vertices;
        Bytes const two = Joined(Words({2, 0x1402, 24}), Ptr(at));  // size, type, stride, pointer
        Bytes const none = Joined(Words({0x1402, 24}), Ptr(at));    // without size
        return {
            {[=] { Es1::_glColorPointer(2, GL_SHORT, 24, at); }, Expected(3022, U32(0), two), 0, 2, 0x1402},
            {[=] { Es1::_glNormalPointer(GL_SHORT, 24, at); }, Expected(3100, U32(0), none), 1, 3, 0x1402},
            {[=] { Es1::_glVertexPointer(2, GL_SHORT, 24, at); }, Expected(3143, U32(0), two), 2, 2, 0x1402},
            {[=] { Es1::_glPointSizePointerOES(GL_SHORT, 24, at); }, Expected(3145, U32(0), none), 3, 1,
             0x1402},
            {[=] { Es1::_glMatrixIndexPointerOES(2, GL_SHORT, 24, at); }, Expected(4013, U32(0), U8(1), two),
             4, 2, 0x1402},
            {[=] { Es1::_glWeightPointerOES(2, GL_SHORT, 24, at); }, Expected(4014, U32(0), U8(1), two), 5, 2,
             0x1402},
            {[=] { Es1::_glTexCoordPointer(2, GL_SHORT, 24, at); }, Expected(3126, U32(0), two), 6, 2,
             0x1402},
        };
    }
    bool IsAsMade(unsigned int slot) const
    {
        Array const& array = Slot(slot);
        return array.size == 4 && array.type == GL_FLOAT && array.stride == 0 && !array.pointer;
    }
    void ExpectAllAsMade() const
    {
        for (unsigned int slot = 0; slot < kPlaces; ++slot)
            EXPECT_TRUE(IsAsMade(slot)) << slot;
    }
};

// A pointer stands bare, with contents or without: what lies behind it is known at a draw alone.
TEST_F(ClientArrays, PointersAreRecordedBare)
{
    for (Pointer const& pointer : Pointers())
    {
        SCOPED_TRACE(pointer.slot);
        pointer.call();
        EXPECT_EQ(pointer.record, Written());
        WithoutData(pointer.call);
        EXPECT_EQ(pointer.record, Written());
    }
}

// Each array has its slot, with the array buffer of the moment. Normals have three components, point sizes
// one, whatever the call says nothing of.
TEST_F(ClientArrays, EachPointerFillsItsSlot)
{
    HostKnows({{GL_ARRAY_BUFFER_BINDING, 5}});
    for (Pointer const& pointer : Pointers())
    {
        SCOPED_TRACE(pointer.slot);
        pointer.call();
        Array const& array = Slot(pointer.slot);
        EXPECT_EQ(pointer.size, array.size);
        EXPECT_EQ(pointer.type, array.type);
        EXPECT_EQ(24, array.stride);
        EXPECT_EQ(m_vertices, array.pointer);
        EXPECT_EQ(5u, array.arrayBuffer);
        EXPECT_FALSE(array.enabled);
        EXPECT_FALSE(array.normalized);
    }
    EXPECT_TRUE(IsAsMade(7));
}

// Pointers are followed ahead of the recorded frames and in them, but not when the host refused them, was not
// asked, or when no contents are wanted.
TEST_F(ClientArrays, PointersAreFollowedWhenTheHostTookThem)
{
    for (Pointer const& pointer : Pointers())
    {
        WithoutData(pointer.call);
        Refused(pointer.call);
        WithoutErrors(pointer.call);
        WithoutHost(pointer.call);
    }
    ExpectAllAsMade();
    Play();
    for (Pointer const& pointer : Pointers())
    {
        pointer.call();
        EXPECT_EQ(m_vertices, Slot(pointer.slot).pointer) << pointer.slot;
    }
}

// A missing extension has no array.
TEST_F(ClientArrays, MissingExtensionsAreNotFollowed)
{
    HostLacks("glMatrixIndexPointerOES");
    HostLacks("glWeightPointerOES");
    Es1::_glMatrixIndexPointerOES(2, GL_SHORT, 24, m_vertices);
    Es1::_glWeightPointerOES(2, GL_SHORT, 24, m_vertices);
    ExpectAllAsMade();
}

// Texture coordinates are those of the client's active unit: unit 2 has slot 8.
TEST_F(ClientArrays, TextureCoordinatesFillTheSlotOfTheirUnit)
{
    Es1::_glClientActiveTexture(GL_TEXTURE2);
    EXPECT_EQ(Expected(3015, U32(0), U32(0x84C2)), Written());
    Es1::_glTexCoordPointer(3, GL_FLOAT, 0, m_vertices);
    EXPECT_EQ(m_vertices, Slot(8).pointer);
    EXPECT_EQ(3, Slot(8).size);
    EXPECT_TRUE(IsAsMade(6));
}

// On purpose: unit 8 has the place behind the last slot. It is there to be stored into, and no draw reads it.
TEST_F(ClientArrays, TheUnitBehindTheLastFillsTheSparePlace)
{
    Es1::_glClientActiveTexture(GL_TEXTURE8);
    EXPECT_EQ("", Printed([this] { Es1::_glTexCoordPointer(2, GL_FLOAT, 0, m_vertices); }));
    EXPECT_EQ(m_vertices, Slot(14).pointer);
    Es1::_glEnableClientState(0x8078);
    EXPECT_FALSE(Slot(14).enabled);
    Written();
    Es1::_glDrawArrays(GL_POINTS, 0, 1);
    EXPECT_EQ(Expected(3036, Words({0, 0, 0, 1})), Written());
}

// A higher unit has no place at all, which is logged; the application goes on, and the call is recorded.
TEST_F(ClientArrays, AHigherUnitIsLoggedAndHasNoSlot)
{
    Es1::_glClientActiveTexture(GL_TEXTURE9);
    Written();
    EXPECT_EQ("NEBTRACE(M) CVertexAttribsHandler::GetVertAttribs: INDEX EXCEDED\n",
              Printed([this] { Es1::_glTexCoordPointer(2, GL_FLOAT, 0, m_vertices); }));
    EXPECT_EQ(Expected(3126, U32(0), Words({2, 0x1406, 0}), Ptr(m_vertices)), Written());
    ExpectAllAsMade();
}

// The switches are a record each, and set the slot's flag.
TEST_F(ClientArrays, SwitchesSetTheSlotsFlag)
{
    GLenum const arrays[] = {0x8076, 0x8075, 0x8074, 0x8B9C, 0x8844, 0x86AD, 0x8078};
    for (unsigned int slot = 0; slot < 7; ++slot)
    {
        Es1::_glEnableClientState(arrays[slot]);
        EXPECT_EQ(Expected(3039, U32(0), U32(arrays[slot])), Written());
        EXPECT_TRUE(Slot(slot).enabled) << slot;
        Es1::_glDisableClientState(arrays[slot]);
        EXPECT_EQ(Expected(3035, U32(0), U32(arrays[slot])), Written());
        EXPECT_FALSE(Slot(slot).enabled) << slot;
    }
}

// What is no array has number 38, beyond all slots.
TEST_F(ClientArrays, AnUnknownArrayIsIgnored)
{
    Es1::_glEnableClientState(0x8077);
    EXPECT_EQ(Expected(3039, U32(0), U32(0x8077)), Written());
    for (unsigned int slot = 0; slot < kPlaces; ++slot)
        EXPECT_FALSE(Slot(slot).enabled) << slot;
}

// Switches are followed when the host took them, with contents or without, in the recorded frames too.
TEST_F(ClientArrays, SwitchesPassTheSuccessGate)
{
    ExpectSuccessGate([] { Es1::_glEnableClientState(0x8074); }, [] { return Slot(2).enabled; });
    ExpectSuccessGate([] { Es1::_glDisableClientState(0x8074); }, [] { return !Slot(2).enabled; });
    WithoutData([] { Es1::_glEnableClientState(0x8074); });
    EXPECT_TRUE(Slot(2).enabled);
}

// So is the active unit.
TEST_F(ClientArrays, TheActiveUnitPassesTheSuccessGate)
{
    ExpectSuccessGate([] { Es1::_glClientActiveTexture(GL_TEXTURE3); },
                      [] { return Es1::VAHandler.clientActiveTexture == GL_TEXTURE3; });
}
