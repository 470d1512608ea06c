// What the shadow keeps of vertex attributes and vertex array objects.
#include "tests/wrappers/shadow.h"

class TrackVertexArrays : public Shadow
{
protected:
    static VAODefinition* Find(GLuint name) { return State().mVertexArrayObjects.Find(name); }
    static VertexAttributeArray* FindArray(GLuint name, GLuint index)
    {
        return Find(name) ? Find(name)->vertexattributearrays.Find(index) : nullptr;
    }
    static bool HasConstant(GLuint program) { return State().m_sPreAttribMap.Find(program) != nullptr; }
    static std::vector<GLfloat> Constant(int index)
    {
        ProgramAttribute const& attribute = State().m_sPreAttribMap[9][index];
        EXPECT_EQ(static_cast<uint32_t>(attribute.numValues), attribute.afValues.m_ui32Count);
        return std::vector<GLfloat>(attribute.afValues.m_pData,
                                    attribute.afValues.m_pData + attribute.afValues.m_ui32Count);
    }

    GLfloat m_values[4] = {1, 2, 3, 4};
};

// A constant attribute is in force at once, in the program in use. It has no location in its record.
TEST_F(TrackVertexArrays, ConstantsAreKept)
{
    State().m_sUsedProgram.name = 9;
    Es2::_glVertexAttrib1f(3, 1);
    EXPECT_EQ((std::vector<GLfloat>{1}), Constant(3));
    Es2::_glVertexAttrib2f(3, 1, 2);
    EXPECT_EQ((std::vector<GLfloat>{1, 2}), Constant(3));
    Es2::_glVertexAttrib3f(3, 1, 2, 3);
    EXPECT_EQ((std::vector<GLfloat>{1, 2, 3}), Constant(3));
    Es2::_glVertexAttrib4f(3, 1, 2, 3, 4);
    EXPECT_EQ((std::vector<GLfloat>{1, 2, 3, 4}), Constant(3));
    EXPECT_EQ(0, State().m_sPreAttribMap[9][3].location);
    EXPECT_EQ(nullptr, State().m_sPostAttribMap.Find(9));
}

// The same from arrays.
TEST_F(TrackVertexArrays, ConstantsFromArraysAreKept)
{
    State().m_sUsedProgram.name = 9;
    Es2::_glVertexAttrib1fv(3, m_values);
    EXPECT_EQ((std::vector<GLfloat>{1}), Constant(3));
    Es2::_glVertexAttrib2fv(3, m_values);
    EXPECT_EQ((std::vector<GLfloat>{1, 2}), Constant(3));
    Es2::_glVertexAttrib3fv(3, m_values);
    EXPECT_EQ((std::vector<GLfloat>{1, 2, 3}), Constant(3));
    Es2::_glVertexAttrib4fv(3, m_values);
    EXPECT_EQ((std::vector<GLfloat>{1, 2, 3, 4}), Constant(3));
    Es2::_glVertexAttrib4fv(5, nullptr);
    EXPECT_EQ(0u, State().m_sPreAttribMap[9][5].afValues.m_ui32Count);
}

// Setting a constant twice keeps the last four components only.
TEST_F(TrackVertexArrays, ASecondConstantReplacesTheFirst)
{
    State().m_sUsedProgram.name = 9;
    Es2::_glVertexAttrib4f(3, 1, 2, 3, 4);
    Es2::_glVertexAttrib4f(3, 5, 6, 7, 8);
    EXPECT_EQ((std::vector<GLfloat>{5, 6, 7, 8}), Constant(3));
}

// Constants pass the plain gate.
TEST_F(TrackVertexArrays, ConstantsPassThePlainGate)
{
    auto const isTracked = [] {
        bool const tracked = HasConstant(0);
        State().m_sPreAttribMap.removeElement(0);
        return tracked;
    };
    ExpectPlainGate([] { Es2::_glVertexAttrib2f(3, 1, 2); }, isTracked);
    ExpectPlainGate([this] { Es2::_glVertexAttrib3fv(3, m_values); }, isTracked);
}

// An array's pointer goes into the current array object, with the buffer that was bound through that object.
TEST_F(TrackVertexArrays, APointerIsKept)
{
    State().mBoundVAO = 2;
    Es2::_glBindBuffer(GL_ARRAY_BUFFER, 5);
    Es2::_glVertexAttribPointer(3, 2, GL_SHORT, GL_TRUE, 24, m_values);
    VertexAttributeArray const* const array = FindArray(2, 3);
    ASSERT_NE(nullptr, array);
    EXPECT_FALSE(array->enabled);
    EXPECT_EQ(1, array->normalized);
    EXPECT_EQ(2, array->size);
    EXPECT_EQ(0x1402u, array->type);
    EXPECT_EQ(24, array->stride);
    EXPECT_EQ(static_cast<void const*>(m_values), array->pointer);
    EXPECT_EQ(5u, array->boundarraybuffer);
    Es2::_glBindBuffer(GL_ARRAY_BUFFER, 6);
    EXPECT_EQ(5u, FindArray(2, 3)->boundarraybuffer);
}

// The pointer part needs contents and no error, in the recorded frames as well.
TEST_F(TrackVertexArrays, PointersOutliveTheShadow)
{
    auto const point = [this] { Es2::_glVertexAttribPointer(3, 2, GL_FLOAT, GL_FALSE, 0, m_values); };
    RecordFromHere();
    WithoutData(point);
    EXPECT_EQ(nullptr, FindArray(0, 3));
    ExpectSuccessGate(point, [] { return FindArray(0, 3) != nullptr; });
    EXPECT_EQ(nullptr, State().m_sPostAttribMap.Find(0));
}

// The attribute part says that no constant stands for it any more: for the next link, not for what is in
// force.
TEST_F(TrackVertexArrays, APointerEndsTheConstantOfTheNextLink)
{
    State().m_sUsedProgram.name = 9;
    State().m_sPreAttribMap[9][3].numValues = 4;
    State().m_sPostAttribMap[9][3].numValues = 4;
    Es2::_glVertexAttribPointer(3, 2, GL_FLOAT, GL_FALSE, 0, m_values);
    EXPECT_EQ(4, State().m_sPreAttribMap[9][3].numValues);
    EXPECT_EQ(0, State().m_sPostAttribMap[9][3].numValues);
}

// That part passes the plain gate.
TEST_F(TrackVertexArrays, TheAttributePartPassesThePlainGate)
{
    ExpectPlainGate([this] { Es2::_glVertexAttribPointer(3, 2, GL_FLOAT, GL_FALSE, 0, m_values); },
                    [] { return State().m_sPostAttribMap.Find(0) != nullptr; });
}

// Arrays are switched on and off in the current array object, in the recorded frames as well.
TEST_F(TrackVertexArrays, SwitchesPassTheSuccessGate)
{
    State().mBoundVAO = 2;
    ExpectSuccessGate([] { Es2::_glEnableVertexAttribArray(3); },
                      [] { return FindArray(2, 3) && FindArray(2, 3)->enabled; });
    ExpectSuccessGate([] { Es2::_glDisableVertexAttribArray(3); }, [] { return !FindArray(2, 3)->enabled; });
}

// Generated array objects have records that say how they came to be.
TEST_F(TrackVertexArrays, GeneratedObjectsHaveRecords)
{
    GLuint names[] = {4, 9};
    ExpectPlainGate([&] { Es2::_glGenVertexArraysOES(2, names); }, [] { return Find(4) != nullptr; });
    ASSERT_NE(nullptr, Find(9));
    EXPECT_EQ(9u, Find(9)->name);
    EXPECT_TRUE(Find(9)->createdwithextension);
    EXPECT_EQ(0, Find(9)->vertexattributearrays.Count());
    Es2::_glGenVertexArraysOES(2, nullptr);
    EXPECT_EQ(2, State().mVertexArrayObjects.Count());
}

// A bound object is the current one; its record says that it belongs to the extension.
TEST_F(TrackVertexArrays, BindingIsNoted)
{
    ExpectPlainGate([] { Es2::_glBindVertexArrayOES(4); }, [] { return State().mBoundVAO == 4; });
    ASSERT_NE(nullptr, Find(4));
    EXPECT_TRUE(Find(4)->createdwithextension);
    Es2::_glEnableVertexAttribArray(1);
    Es2::_glBindVertexArrayOES(0);
    EXPECT_EQ(0u, State().mBoundVAO);
    EXPECT_EQ(nullptr, FindArray(0, 1));
    EXPECT_NE(nullptr, FindArray(4, 1));
}

// A deleted object loses its record with all of its arrays.
TEST_F(TrackVertexArrays, DeletingRemovesTheRecord)
{
    GLuint const name = 4;
    State().mVertexArrayObjects[4].vertexattributearrays[1].enabled = true;
    State().mVertexArrayObjects[5].name = 5;
    ExpectPlainGate([&] { Es2::_glDeleteVertexArraysOES(1, &name); }, [] { return Find(4) == nullptr; });
    EXPECT_NE(nullptr, Find(5));
}

// The shadow's own calls go through the wrappers, or straight to the host; none is made for a newer context.
TEST_F(TrackVertexArrays, TheShadowsOwnCalls)
{
    RecordFromHere();
    unsigned int names[] = {4};
    constexpr unsigned short kVersions[] = {3, 2};
    for (unsigned short const version : kVersions)
    {
        Fake().Forget();
        State().m_usClientVersion = version;
        State().Trace_GenVertexArrays(1, names);
        State().Trace_BindVertexArray(4);
        EXPECT_EQ(version == 3 ? 0u : 2u,
                  Fake().Calls("glGenVertexArraysOES").size() + Fake().Calls("glBindVertexArrayOES").size());
        State().Host_BindVertexArray(4);
        EXPECT_EQ(version == 3 ? 0u : 2u, HostCalls("glBindVertexArrayOES"));
    }
    EXPECT_EQ(Joined(Expected(4009, U32(0), U8(2), U32(1), Ptr(names), Words({1, 4})),
                     Expected(4007, U32(0), U8(2), U32(4))),
              Written());
    HostLacks("glBindVertexArrayOES");
    State().Host_BindVertexArray(4);
}
