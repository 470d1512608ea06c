// The GLES2 snapshot: vertex array objects and buffers.
#include "state/buffer_object_list.h"
#include "tests/wrappers/es2_snapshot.h"
#include <algorithm>

class Es2SnapshotBuffers : public Es2Snapshot
{
protected:
    // The calls behind those of the framebuffers, the marker left out.
    Lines OfBuffers(bool optimize = false)
    {
        Lines const calls = Taken(optimize);
        auto const at = std::find(calls.begin(), calls.end(),
                                  "glBindFramebuffer(target = GL_FRAMEBUFFER, framebuffer = 0)");
        EXPECT_NE(calls.end(), at);
        return at == calls.end() ? Lines() : Lines(at + 1, calls.end() - 1);
    }
    static std::string Bind(std::string const& target, GLuint name)
    {
        return "glBindBuffer(target = " + target + ", buffer = " + std::to_string(name) + ")";
    }
    static std::string BindArray(GLuint name) { return Bind("GL_ARRAY_BUFFER", name); }
    static std::string BindElements(GLuint name) { return Bind("GL_ELEMENT_ARRAY_BUFFER", name); }
    static std::string BindObject(GLuint name)
    {
        return "glBindVertexArrayOES(array = " + std::to_string(name) + ")";
    }
};

// The default array object is written wherever it stands in the store: behind others that were heard of
// first. Each is made where it has a name, bound, and given its arrays and bindings; the current one is bound
// last.
TEST_F(Es2SnapshotBuffers, ArrayObjectsComeInTheirOrder)
{
    GLuint names[] = {41, 42};
    Es2::_glGenVertexArraysOES(2, names);
    Es2::_glBindVertexArrayOES(42);
    Es2::_glBindBuffer(GL_ARRAY_BUFFER, 11);
    Es2::_glVertexAttribPointer(0, 3, GL_SHORT, GL_TRUE, 6, reinterpret_cast<void const*>(16));
    Es2::_glEnableVertexAttribArray(0);
    Es2::_glBindBuffer(GL_ARRAY_BUFFER, 12);
    Es2::_glVertexAttribPointer(1, 4, GL_UNSIGNED_BYTE, GL_FALSE, 0, nullptr);
    Es2::_glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, 13);
    Lines const expected = {
        "glGenVertexArraysOES(n = 1, arrays = {41})", BindObject(41), BindArray(0), BindElements(0),
        "glGenVertexArraysOES(n = 1, arrays = {42})", BindObject(42),
        // Each array under the buffer that it was given.
        BindArray(11),
        "glVertexAttribPointer(index = 0, size = 3, type = GL_SHORT, normalized = GL_TRUE, stride = 6, "
        "pointer = 0x10)",
        "glEnableVertexAttribArray(index = 0)", BindArray(12),
        "glVertexAttribPointer(index = 1, size = 4, type = GL_UNSIGNED_BYTE, normalized = GL_FALSE, stride "
        "= 0, pointer = NULL)",
        "glDisableVertexAttribArray(index = 1)",
        // And the bindings that the object was left with.
        BindArray(12), BindElements(13),
        // The default one.
        BindObject(0), BindArray(0), BindElements(0),
        // The current one, and its bindings behind the buffers.
        BindObject(42), BindArray(12), BindElements(13)};
    EXPECT_EQ(expected, OfBuffers());
}

// An object that was bound without being made has no name in its record: it is taken for the default one.
TEST_F(Es2SnapshotBuffers, AnObjectThatWasNotMadeHasNoName)
{
    Es2::_glBindVertexArrayOES(41);
    Lines const expected = {BindObject(0),   BindArray(0),   BindElements(0), BindObject(0),  BindArray(0),
                            BindElements(0), BindObject(41), BindArray(0),    BindElements(0)};
    EXPECT_EQ(expected, OfBuffers());
}

// A gap in the numbers of the arrays is passed over: what is there is written, by ascending number.
TEST_F(Es2SnapshotBuffers, GapsBetweenArraysArePassedOver)
{
    Es2::_glEnableVertexAttribArray(5);
    Es2::_glEnableVertexAttribArray(2);
    Lines const expected = {"glEnableVertexAttribArray(index = 2)", "glEnableVertexAttribArray(index = 5)"};
    EXPECT_EQ(expected, Only(OfBuffers(), {"glEnableVertexAttribArray", "glDisableVertexAttribArray"}));
    EXPECT_EQ(
        2, CTraceRecordManager::m_Es2FileStateLastGet.mVertexArrayObjects[0].vertexattributearrays.Count());
}

// A context of version 3 has no calls of the extension; arrays and bindings are written all the same.
TEST_F(Es2SnapshotBuffers, Version3HasNoArrayObjects)
{
    CTraceRecordManager::m_EglFileState->m_iClientVersion = 3;
    GLuint name = 41;
    Es2::_glGenVertexArraysOES(1, &name);
    Lines const expected = {BindArray(0),    BindElements(0), BindArray(0),
                            BindElements(0), BindArray(0),    BindElements(0)};
    EXPECT_EQ(expected, OfBuffers());
}

// Array objects come ahead of the buffers. A buffer's name comes into being by its binding, to the target of
// its last upload; the end binds the buffers of the current array object.
TEST_F(Es2SnapshotBuffers, EndWithTheBindingsOfTheCurrentArrayObject)
{
    Buffer(GL_ELEMENT_ARRAY_BUFFER, 12, {5, 6});
    Buffer(GL_ARRAY_BUFFER, 11, {1, 2, 3, 4});
    Es2::_glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, 0);
    Lines const expected = {
        BindObject(0),
        BindArray(11),
        BindElements(0),
        BindObject(0),
        BindElements(12),
        "glBufferData(target = GL_ELEMENT_ARRAY_BUFFER, size = 2, data = {5, 6}, usage = GL_STATIC_DRAW)",
        BindArray(11),
        "glBufferData(target = GL_ARRAY_BUFFER, size = 4, data = {1, 2, 3, 4}, usage = GL_STATIC_DRAW)",
        BindArray(11),
        BindElements(0)};
    EXPECT_EQ(expected, OfBuffers());
    Es2::BufferList.RemoveObject(12);
}

// A buffer that got its size alone has no data.
TEST_F(Es2SnapshotBuffers, ABufferWithoutContentsHasNoData)
{
    HostAnswers(GL_ARRAY_BUFFER_BINDING, 11);
    Es2::_glBufferData(GL_ARRAY_BUFFER, 4, nullptr, GL_STREAM_DRAW);
    EXPECT_EQ(
        Lines({"glBufferData(target = GL_ARRAY_BUFFER, size = 4, data = NULL, usage = GL_STREAM_DRAW)"}),
        Only(OfBuffers(), {"glBufferData"}));
}

// What the host has mapped is left mapped for the player, for writing.
TEST_F(Es2SnapshotBuffers, MappedOnesAreLeftMapped)
{
    Buffer(GL_ARRAY_BUFFER, 11, {1});
    Fake().On("glGetBufferParameteriv", [](Call const& call) { *call.Pointer<GLint>(2) = 1; });
    Lines const expected = {
        "glBufferData(target = GL_ARRAY_BUFFER, size = 1, data = {1}, usage = GL_STATIC_DRAW)",
        "glMapBufferOES(target = GL_ARRAY_BUFFER, access = GL_WRITE_ONLY) = NULL"};
    EXPECT_EQ(expected, Only(OfBuffers(), {"glBufferData", "glMapBufferOES"}));
}

// With the optimisation, a buffer that no draw used is left out and told of.
TEST_F(Es2SnapshotBuffers, UnusedOnesAreLeftOutWhenOptimised)
{
    Buffer(GL_ARRAY_BUFFER, 11, {1});
    Buffer(GL_ARRAY_BUFFER, 12, {2});
    State().m_sUsedBuffers[12] = 12;
    Lines const expected = {BindObject(0),
                            BindArray(12),
                            BindElements(0),
                            BindObject(0),
                            BindArray(12),
                            "glBufferData(target = GL_ARRAY_BUFFER, size = 1, data = {2}, usage = "
                            "GL_STATIC_DRAW)",
                            BindArray(12),
                            BindElements(0)};
    EXPECT_EQ(expected, OfBuffers(true));
    STraceConfig::m_bDoNativeCall = false;
    EXPECT_EQ("NEBTRACE(M) Buffer not used: 11. Ignored\n",
              Printed([] { CTraceRecordManager::m_Es2FileStateLastGet.WriteBufferData(true); }));
    EXPECT_EQ("", Printed([] { CTraceRecordManager::m_Es2FileStateLastGet.WriteBufferData(false); }));
    STraceConfig::m_bDoNativeCall = true;
}

// The record of the current array object is made where there is none.
TEST_F(Es2SnapshotBuffers, TheCurrentArrayObjectIsMade)
{
    State().mBoundVAO = 41;
    Lines const expected = {BindObject(0),  BindArray(0), BindElements(0),
                            BindObject(41), BindArray(0), BindElements(0)};
    EXPECT_EQ(expected, OfBuffers());
    EXPECT_EQ(nullptr, State().mVertexArrayObjects.Find(41));
    EXPECT_NE(nullptr, CTraceRecordManager::m_Es2FileStateLastGet.mVertexArrayObjects.Find(41));
}
