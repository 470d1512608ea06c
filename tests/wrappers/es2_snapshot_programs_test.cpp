// The GLES2 snapshot: shaders and programs, their uniforms and attributes.
#include "tests/wrappers/es2_snapshot.h"
#include <algorithm>

class Es2SnapshotPrograms : public Es2Snapshot
{
protected:
    // The calls of shaders and programs alone.
    Lines OfPrograms()
    {
        Lines const calls = Taken();
        auto const end = std::find(calls.begin(), calls.end(), "glReleaseShaderCompiler()");
        EXPECT_NE(calls.end(), end);
        return calls.empty() ? calls : Lines(calls.begin() + 1, end);
    }
    // `once`, three times: as recorded, and in the two passes of the program in use.
    static Lines Thrice(Lines const& once)
    {
        Lines all;
        for (int i = 0; i < 3; ++i)
            all.insert(all.end(), once.begin(), once.end());
        return all;
    }
};

// A deleted shader that a program needs is made, attached and linked before it is deleted.
TEST_F(Es2SnapshotPrograms, DeletesShadersOnlyBehindThePrograms)
{
    Fake().Result("glIsShader", 1);
    Fake().On("glGetShaderiv", [](Call const& call) { *call.Pointer<GLint>(2) = 1; });
    Shader(GL_VERTEX_SHADER, 3, "v");
    Shader(GL_FRAGMENT_SHADER, 4, "f");
    Es2::_glCompileShader(3);
    Es2::_glCompileShader(4);
    Program(7, 3, 4);
    Es2::_glDeleteShader(3);
    Es2::_glLinkProgram(7);
    Lines const expected = {"glCreateShader(type = GL_VERTEX_SHADER) = 3",
                            "glShaderSource(shader = 3, count = 1, string = {\"v\"}, length = NULL)",
                            "glCompileShader(shader = 3)",
                            "glCreateShader(type = GL_FRAGMENT_SHADER) = 4",
                            "glShaderSource(shader = 4, count = 1, string = {\"f\"}, length = NULL)",
                            "glCompileShader(shader = 4)",
                            "glCreateProgram() = 7",
                            "glAttachShader(program = 7, shader = 4)",
                            "glAttachShader(program = 7, shader = 3)",
                            "glLinkProgram(program = 7)",
                            "glUseProgram(program = 7)",
                            "glDeleteShader(shader = 3)"};
    EXPECT_EQ(expected,
              Only(Taken(), {"glCreateShader", "glShaderSource", "glCompileShader", "glCreateProgram",
                             "glAttachShader", "glLinkProgram", "glUseProgram", "glDeleteShader"}));
}

// The program in use is written twice more behind all programs: as it was when used, then as its record says.
TEST_F(Es2SnapshotPrograms, BringsTheProgramInUseToItsRecord)
{
    Shader(GL_VERTEX_SHADER, 3, "v");
    Shader(GL_FRAGMENT_SHADER, 4, "f");
    Shader(GL_FRAGMENT_SHADER, 5, "g");
    Program(7, 3, 4);
    Es2::_glLinkProgram(7);
    Es2::_glUseProgram(7);
    Es2::_glDetachShader(7, 4);
    Es2::_glAttachShader(7, 5);
    Lines const expected = {
        // As recorded in the map.
        "glCreateProgram() = 7", "glAttachShader(program = 7, shader = 5)",
        "glAttachShader(program = 7, shader = 3)", "glLinkProgram(program = 7)", "glUseProgram(program = 7)",
        // As it was when it was used.
        "glDetachShader(program = 7, shader = 5)", "glDetachShader(program = 7, shader = 3)",
        "glAttachShader(program = 7, shader = 4)", "glAttachShader(program = 7, shader = 3)",
        "glLinkProgram(program = 7)", "glUseProgram(program = 7)",
        // And back.
        "glDetachShader(program = 7, shader = 4)", "glDetachShader(program = 7, shader = 3)",
        "glAttachShader(program = 7, shader = 5)", "glAttachShader(program = 7, shader = 3)",
        "glLinkProgram(program = 7)", "glUseProgram(program = 7)"};
    EXPECT_EQ(expected, Only(Taken(), {"glCreateProgram", "glAttachShader", "glDetachShader", "glLinkProgram",
                                       "glUseProgram"}));
}

// A program deleted while in use is not created: only the pass for the program in use writes it.
TEST_F(Es2SnapshotPrograms, DoesNotCreateAProgramDeletedInUse)
{
    Shader(GL_VERTEX_SHADER, 3, "v");
    Shader(GL_FRAGMENT_SHADER, 4, "f");
    Program(7, 3, 4);
    Es2::_glLinkProgram(7);
    Es2::_glUseProgram(7);
    Es2::_glDeleteProgram(7);
    Lines const expected = {"glAttachShader(program = 7, shader = 4)",
                            "glAttachShader(program = 7, shader = 3)", "glLinkProgram(program = 7)",
                            "glUseProgram(program = 7)"};
    EXPECT_EQ(expected, Only(Taken(), {"glCreateProgram", "glAttachShader", "glDetachShader", "glLinkProgram",
                                       "glUseProgram"}));
}

// Locations bound before the link stand ahead of it, those bound since behind it.
TEST_F(Es2SnapshotPrograms, BindsLocationsAroundTheLink)
{
    Program(7, 0, 0);
    Es2::_glBindAttribLocation(7, 2, "before");
    Es2::_glLinkProgram(7);
    Es2::_glBindAttribLocation(7, 3, "since");
    Lines const expected = {"glBindAttribLocation(program = 7, index = 2, name = \"before\")",
                            "glLinkProgram(program = 7)",
                            "glBindAttribLocation(program = 7, index = 2, name = \"before\")",
                            "glBindAttribLocation(program = 7, index = 3, name = \"since\")"};
    EXPECT_EQ(expected, Only(Taken(), {"glBindAttribLocation", "glLinkProgram"}));
}

// Shaders come in the order in which they were made, compiled where the host says so; a deleted one without a
// program is made and deleted.
TEST_F(Es2SnapshotPrograms, ShadersComeInTheirOrder)
{
    Shader(GL_FRAGMENT_SHADER, 8, "f");
    Shader(GL_VERTEX_SHADER, 3, "v");
    Fake().Result("glCreateShader", 6u);
    Es2::_glCreateShader(GL_VERTEX_SHADER, 0);  // no source yet
    Es2::_glDeleteShader(8);
    Fake().Result("glIsShader", 1u);
    Fake().On("glGetShaderiv",
              [](Call const& call) { *call.Pointer<GLint>(2) = call.Argument<GLuint>(0) == 3 ? 1 : 0; });
    Lines const expected = {"glCreateShader(type = GL_FRAGMENT_SHADER) = 8",
                            "glShaderSource(shader = 8, count = 1, string = {\"f\"}, length = NULL)",
                            "glCreateShader(type = GL_VERTEX_SHADER) = 3",
                            "glShaderSource(shader = 3, count = 1, string = {\"v\"}, length = NULL)",
                            "glCompileShader(shader = 3)",
                            "glCreateShader(type = GL_VERTEX_SHADER) = 6",
                            "glShaderSource(shader = 6, count = 1, string = {\"\"}, length = NULL)",
                            "glDeleteShader(shader = 8)"};
    EXPECT_EQ(expected, OfPrograms());
}

// The name 0, which deletes nothing, leaves no shader behind.
TEST_F(Es2SnapshotPrograms, DeletingNoShaderLeavesNone)
{
    Es2::_glDeleteShader(0);
    EXPECT_EQ(Lines(), OfPrograms());
}

// One pass in full: make, attach, bind locations, link, bind those for a later link, use, uniforms,
// constants.
TEST_F(Es2SnapshotPrograms, APassHasItsOrder)
{
    Shader(GL_VERTEX_SHADER, 3, "v");
    Shader(GL_FRAGMENT_SHADER, 4, "f");
    Program(7, 3, 4);
    Es2::_glBindAttribLocation(7, 2, "a");
    Es2::_glLinkProgram(7);
    Es2::_glUseProgram(7);
    Locate(7, "u", 6);
    Es2::_glUniform1i(6, 5);
    Es2::_glVertexAttrib1f(2, 0.5f);
    Es2::_glUseProgram(0);
    Lines const expected = {"glCreateShader(type = GL_VERTEX_SHADER) = 3",
                            "glShaderSource(shader = 3, count = 1, string = {\"v\"}, length = NULL)",
                            "glCreateShader(type = GL_FRAGMENT_SHADER) = 4",
                            "glShaderSource(shader = 4, count = 1, string = {\"f\"}, length = NULL)",
                            "glCreateProgram() = 7",
                            "glAttachShader(program = 7, shader = 4)",
                            "glAttachShader(program = 7, shader = 3)",
                            "glBindAttribLocation(program = 7, index = 2, name = \"a\")",
                            "glLinkProgram(program = 7)",
                            "glBindAttribLocation(program = 7, index = 2, name = \"a\")",
                            "glUseProgram(program = 7)",
                            "glGetUniformLocation(program = 7, name = \"u\") = 6",
                            "glUniform1i(location = 6, v0 = 5)",
                            "glVertexAttrib1f(index = 2, x = 0.5)"};
    EXPECT_EQ(expected, OfPrograms());
}

// With no program in use the passes for it are skipped. On purpose: glUseProgram(0) is not written.
TEST_F(Es2SnapshotPrograms, WithNoneInUseThereIsNoPassForIt)
{
    UseProgram(7);
    UseProgram(8);
    Es2::_glUseProgram(0);
    Lines const expected = {"glCreateProgram() = 7",      "glLinkProgram(program = 7)",
                            "glUseProgram(program = 7)",  "glCreateProgram() = 8",
                            "glLinkProgram(program = 8)", "glUseProgram(program = 8)"};
    EXPECT_EQ(expected, OfPrograms());
    EXPECT_EQ(3, CTraceRecordManager::m_Es2FileStateLastGet.m_sProgramMap.Count());
}

// A program that is not linked ends behind its locations: it is not used, and has no values.
TEST_F(Es2SnapshotPrograms, AnUnlinkedProgramIsNotUsed)
{
    Program(7, 0, Shader(GL_FRAGMENT_SHADER, 4, "f"));
    Es2::_glBindAttribLocation(7, 2, "a");
    Locate(7, "u", 6);
    Lines const calls = OfPrograms();
    Lines const expected = {"glCreateProgram() = 7", "glAttachShader(program = 7, shader = 4)",
                            "glBindAttribLocation(program = 7, index = 2, name = \"a\")"};
    EXPECT_EQ(expected, Lines(calls.begin() + 2, calls.end()));
}

// An attribute that only an array made known has no location to bind.
TEST_F(Es2SnapshotPrograms, BindsOnlyLocationsThatWereBound)
{
    UseProgram(7);
    Es2::_glVertexAttribPointer(3, 2, GL_BYTE, GL_FALSE, 0, nullptr);
    Es2::_glLinkProgram(7);
    EXPECT_EQ(Lines(), Only(OfPrograms(), {"glBindAttribLocation"}));
}

// A deleted program that is in use has lost its uniforms, but not the attributes of its last link.
TEST_F(Es2SnapshotPrograms, AProgramDeletedInUseKeepsItsAttributes)
{
    Program(7, 0, 0);
    Es2::_glBindAttribLocation(7, 2, "a");
    Es2::_glLinkProgram(7);
    Es2::_glUseProgram(7);
    Locate(7, "u", 6);
    Es2::_glDeleteProgram(7);
    Lines const expected = {"glBindAttribLocation(program = 7, index = 2, name = \"a\")",
                            "glLinkProgram(program = 7)", "glUseProgram(program = 7)"};
    EXPECT_EQ(expected, OfPrograms());
}

// Single values, of one to four components and of both kinds.
TEST_F(Es2SnapshotPrograms, WritesSingleValues)
{
    UseProgram(7);
    for (GLint location = 0; location < 8; ++location)
        Locate(7, "u", location);
    Es2::_glUniform1i(0, 1);
    Es2::_glUniform2i(1, 1, 2);
    Es2::_glUniform3i(2, 1, 2, 3);
    Es2::_glUniform4i(3, 1, 2, 3, 4);
    Es2::_glUniform1f(4, 0.5f);
    Es2::_glUniform2f(5, 0.5f, 1.5f);
    Es2::_glUniform3f(6, 0.5f, 1.5f, 2.5f);
    Es2::_glUniform4f(7, 0.5f, 1.5f, 2.5f, 3.5f);
    Lines const expected = {"glUniform1i(location = 0, v0 = 1)",
                            "glUniform2i(location = 1, v0 = 1, v1 = 2)",
                            "glUniform3i(location = 2, v0 = 1, v1 = 2, v2 = 3)",
                            "glUniform4i(location = 3, v0 = 1, v1 = 2, v2 = 3, v3 = 4)",
                            "glUniform1f(location = 4, v0 = 0.5)",
                            "glUniform2f(location = 5, v0 = 0.5, v1 = 1.5)",
                            "glUniform3f(location = 6, v0 = 0.5, v1 = 1.5, v2 = 2.5)",
                            "glUniform4f(location = 7, v0 = 0.5, v1 = 1.5, v2 = 2.5, v3 = 3.5)"};
    EXPECT_EQ(Thrice(expected), Only(OfPrograms(), NamesOf(expected)));
}

// Arrays of more than one element, of one to four components and of both kinds.
TEST_F(Es2SnapshotPrograms, WritesArrays)
{
    UseProgram(7);
    for (GLint location = 0; location < 8; ++location)
        Locate(7, "u", location);
    GLint const ints[] = {1, 2, 3, 4, 5, 6, 7, 8};
    GLfloat const floats[] = {1, 2, 3, 4, 5, 6, 7, 8};
    Es2::_glUniform1iv(0, 3, ints);
    Es2::_glUniform2iv(1, 2, ints);
    Es2::_glUniform3iv(2, 2, ints);
    Es2::_glUniform4iv(3, 2, ints);
    Es2::_glUniform1fv(4, 3, floats);
    Es2::_glUniform2fv(5, 2, floats);
    Es2::_glUniform3fv(6, 2, floats);
    Es2::_glUniform4fv(7, 2, floats);
    Lines const expected = {"glUniform1iv(location = 0, count = 3, value = {1, 2, 3})",
                            "glUniform2iv(location = 1, count = 2, value = {{1, 2}, {3, 4}})",
                            "glUniform3iv(location = 2, count = 2, value = {{1, 2, 3}, {4, 5, 6}})",
                            "glUniform4iv(location = 3, count = 2, value = {{1, 2, 3, 4}, {5, 6, 7, 8}})",
                            "glUniform1fv(location = 4, count = 3, value = {1, 2, 3})",
                            "glUniform2fv(location = 5, count = 2, value = {{1, 2}, {3, 4}})",
                            "glUniform3fv(location = 6, count = 2, value = {{1, 2, 3}, {4, 5, 6}})",
                            "glUniform4fv(location = 7, count = 2, value = {{1, 2, 3, 4}, {5, 6, 7, 8}})"};
    EXPECT_EQ(Thrice(expected), Only(OfPrograms(), NamesOf(expected)));
}

// An array of one element, or of none, is written by the call for a single value.
TEST_F(Es2SnapshotPrograms, WritesShortArraysAsValues)
{
    UseProgram(7);
    Locate(7, "u", 0);
    Locate(7, "v", 1);
    GLint const ints[] = {8, 9};
    Es2::_glUniform2iv(0, 1, ints);
    Es2::_glUniform2fv(1, 0, nullptr);
    Lines const expected = {"glUniform2i(location = 0, v0 = 8, v1 = 9)",
                            "glUniform2f(location = 1, v0 = 0, v1 = 0)"};
    EXPECT_EQ(Thrice(expected), Only(OfPrograms(), {"glUniform2i", "glUniform2f", "glUniform2iv"}));
}

// Matrices are arrays whatever their count, and never transposed.
TEST_F(Es2SnapshotPrograms, WritesMatrices)
{
    UseProgram(7);
    GLfloat const v[] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16};
    for (GLint location = 0; location < 3; ++location)
        Locate(7, "m", location);
    Es2::_glUniformMatrix2fv(0, 2, GL_TRUE, v);
    Es2::_glUniformMatrix3fv(1, 1, GL_FALSE, v);
    Es2::_glUniformMatrix4fv(2, 1, GL_FALSE, v);
    Lines const expected = {
        "glUniformMatrix2fv(location = 0, count = 2, transpose = GL_FALSE, value = {{1, 2, 3, 4}, {5, 6, 7, "
        "8}})",
        "glUniformMatrix3fv(location = 1, count = 1, transpose = GL_FALSE, value = {{1, 2, 3, 4, 5, 6, 7, 8, "
        "9}})",
        "glUniformMatrix4fv(location = 2, count = 1, transpose = GL_FALSE, value = {{1, 2, 3, 4, 5, 6, 7, 8, "
        "9, 10, 11, 12, 13, 14, 15, 16}})"};
    EXPECT_EQ(Thrice(expected), Only(OfPrograms(), NamesOf(expected)));
}

// A uniform is written behind its location, which the player needs to know of; without a value that is all.
// One whose location was never asked for is not written.
TEST_F(Es2SnapshotPrograms, WritesUniformsBehindTheirLocations)
{
    UseProgram(7);
    Locate(7, "set", 4);
    Locate(7, "unset", 2);
    Es2::_glUniform1f(4, 0.5f);
    Es2::_glUniform1f(9, 2.0f);
    Lines const expected = {"glGetUniformLocation(program = 7, name = \"set\") = 4",
                            "glUniform1f(location = 4, v0 = 0.5)",
                            "glGetUniformLocation(program = 7, name = \"unset\") = 2"};
    EXPECT_EQ(Thrice(expected), Only(OfPrograms(), {"glGetUniformLocation", "glUniform1f"}));
}

// A relinked program starts without uniforms.
TEST_F(Es2SnapshotPrograms, ARelinkForgetsTheUniforms)
{
    UseProgram(7);
    Locate(7, "u", 4);
    Es2::_glUniform1f(4, 0.5f);
    Es2::_glLinkProgram(7);
    EXPECT_EQ(Lines(), Only(OfPrograms(), {"glGetUniformLocation", "glUniform1f"}));
}

// Constant attributes of one to four components stand at the location that was bound ahead of the link. On
// purpose: one that was not stands at 0.
TEST_F(Es2SnapshotPrograms, WritesConstantsAtTheirLocations)
{
    Program(7, 0, 0);
    for (GLuint index = 1; index < 5; ++index)
        Es2::_glBindAttribLocation(7, index, "a");
    Es2::_glLinkProgram(7);
    Es2::_glUseProgram(7);
    Es2::_glVertexAttrib1f(1, 1);
    Es2::_glVertexAttrib2f(2, 1, 2);
    Es2::_glVertexAttrib3f(3, 1, 2, 3);
    Es2::_glVertexAttrib4f(4, 1, 2, 3, 4);
    Es2::_glVertexAttrib2f(9, 5, 6);
    Lines const expected = {"glVertexAttrib1f(index = 1, x = 1)", "glVertexAttrib2f(index = 2, x = 1, y = 2)",
                            "glVertexAttrib3f(index = 3, x = 1, y = 2, z = 3)",
                            "glVertexAttrib4f(index = 4, x = 1, y = 2, z = 3, w = 4)",
                            "glVertexAttrib2f(index = 0, x = 5, y = 6)"};
    EXPECT_EQ(Thrice(expected), Only(OfPrograms(), NamesOf(expected)));
}
