// The matrix stacks of GLES1: read out of the host and put back, and written as calls.
#include "tests/wrappers/es1_capture.h"

// With all depths 0 a stack's top matrix alone is read, and nothing is popped, pushed or loaded: a deep stack
// of the application stays where it is.
TEST_F(Es1Capture, ADeepStackOfTheApplicationStaysOnTheHost)
{
    HostAnswers(0x0BA3, 5);  // the depth of its modelview stack
    HostAnswersFloats(0x0BA6, std::vector<GLfloat>(16, 3.0f));
    EXPECT_EQ(Lines(), OnlyCalls(Asked(), {"glPopMatrix", "glPushMatrix", "glLoadMatrixf"}));
    EXPECT_EQ(0, State().m_iaMatrixStackDepth[0]);
    EXPECT_EQ(3.0f, State().m_faMatrixStacks[0][0][15]);
    EXPECT_EQ(0.0f, State().m_faMatrixStacks[0][1][15]);
}

// Where a depth is set the stack is read from its top down, and pushed again from its bottom up.
TEST_F(Es1Capture, AStackIsReadFromTheTopAndPutBack)
{
    State().m_iaMatrixStackDepth[1] = 2;
    GLfloat top = 9.0f;
    Fake().On("glGetFloatv", [&top](Call const& call) {
        if (call.Argument<GLenum>(0) == 0x0BA7)
            *call.Pointer<GLfloat>(1) = top;
    });
    Fake().On("glPopMatrix", [&top](Call const&) { top -= 1.0f; });
    std::vector<GLfloat> loaded;
    Fake().On("glLoadMatrixf", [&](Call const& call) { loaded.push_back(*call.Pointer<GLfloat>(0)); });
    Lines const asked = Asked();
    auto const begin = std::find(asked.begin(), asked.end(), "glMatrixMode 1701");
    Lines const expected = {"glMatrixMode 1701", "glGetFloatv 0BA7", "glPopMatrix",      "glGetFloatv 0BA7",
                            "glPopMatrix",       "glGetFloatv 0BA7", "glPushMatrix",     "glLoadMatrixf",
                            "glPushMatrix",      "glLoadMatrixf",    "glMatrixMode 1702"};
    ASSERT_LT(11, asked.end() - begin);
    EXPECT_EQ(expected, Lines(begin, begin + 11));
    for (int entry = 0; entry < 3; ++entry)
        EXPECT_EQ(static_cast<float>(entry + 7), State().m_faMatrixStacks[1][entry][0]);
    EXPECT_EQ((std::vector<GLfloat>{8.0f, 9.0f}), loaded);
}

// The palette's matrices are read between projection and the units; its current one is put back, then the
// unit and the mode.
TEST_F(Es1Capture, PaletteMatricesAreReadAndPutBack)
{
    HostHasPalette();
    HostAnswers(Es1Enum::kMaxTextureUnits, 1);
    HostAnswers(Es1Enum::kMatrixMode, Es1Enum::kProjection);
    HostAnswers(0x8842, 2);
    HostAnswers(0x8843, 1);
    Lines const asked = Asked();
    auto const begin = std::find(asked.begin(), asked.end(), "glGetIntegerv 0BA0");
    Lines const expected = {"glGetIntegerv 0BA0",
                            "glGetIntegerv 8842",
                            "glGetIntegerv 8843",
                            "glMatrixMode 1700",
                            "glGetFloatv 0BA6",
                            "glMatrixMode 1701",
                            "glGetFloatv 0BA7",
                            "glMatrixMode 8840",
                            "glCurrentPaletteMatrixOES 0000",
                            "glGetFloatv 8840",
                            "glMatrixMode 8840",
                            "glCurrentPaletteMatrixOES 0001",
                            "glGetFloatv 8840",
                            "glMatrixMode 1702",
                            "glActiveTexture 84C0",
                            "glGetFloatv 0BA8",
                            "glCurrentPaletteMatrixOES 0001",
                            "glActiveTexture 84C0",
                            "glMatrixMode 1701"};
    ASSERT_LT(19, asked.end() - begin);
    EXPECT_EQ(expected, Lines(begin, begin + 19));
    EXPECT_EQ(2, State().m_iMaxPaletteMatrices);
    EXPECT_EQ(1, State().m_iCurrentPaletteMatrix);
}

// A host that lost the palette since the last capture has no palette matrices: the units' stacks follow
// projection.
TEST_F(Es1Capture, WithoutAPaletteTheUnitsFollowProjection)
{
    HostAnswers(0x8842, 2);
    State().m_iMaxPaletteMatrices = 2;
    HostAnswersFloats(0x0BA8, std::vector<GLfloat>(16, 3.0f));
    Capture();
    EXPECT_EQ(4, State().MatrixStacks());
    EXPECT_EQ(3.0f, State().m_faMatrixStacks[2][0][0]);
    EXPECT_EQ(3.0f, State().m_faMatrixStacks[3][0][0]);
}

// With a palette its matrices stand between projection and the texture units. Each stack is selected and gets
// its matrix; behind them stand the current palette matrix and the matrix mode. On purpose: the last unit
// stays active.
TEST_F(Es1Snapshot, MatricesHaveOneOrder)
{
    HostHasPalette();
    HostAnswers(0x8842, 1);
    HostAnswers(0x8843, 4);
    HostAnswers(0x0BA0, 0x1702);
    HostAnswersFloats(0x0BA6, std::vector<GLfloat>(16, 1.0f));
    HostAnswersFloats(0x0BA7, std::vector<GLfloat>(16, 2.0f));
    HostAnswersFloats(0x8840, std::vector<GLfloat>(16, 3.0f));
    HostAnswersFloats(0x0BA8, std::vector<GLfloat>(16, 4.0f));
    auto const load = [](char value) {
        std::string line = "glLoadMatrixf(m = {";
        for (int i = 0; i < 16; ++i)
            line += std::string(i ? ", " : "") + value;
        return line + "})";
    };
    Lines const expected = {"glMatrixMode(mode = GL_MODELVIEW)",
                            load('1'),
                            "glMatrixMode(mode = GL_PROJECTION)",
                            load('2'),
                            "glMatrixMode(mode = GL_MATRIX_PALETTE_OES)",
                            "glCurrentPaletteMatrixOES(matrixpaletteindex = 0)",
                            load('3'),
                            "glMatrixMode(mode = GL_TEXTURE)",
                            "glActiveTexture(texture = GL_TEXTURE0)",
                            load('4'),
                            "glMatrixMode(mode = GL_TEXTURE)",
                            "glActiveTexture(texture = GL_TEXTURE1)",
                            load('4'),
                            "glCurrentPaletteMatrixOES(matrixpaletteindex = 4)",
                            "glMatrixMode(mode = GL_TEXTURE)"};
    EXPECT_EQ(expected, From(Taken(), "glMatrixMode", "glMatrixMode"));
}

// Where a depth is set, all matrices of the stack are written, bottom first, each pushed upon the one below.
TEST_F(Es1Snapshot, ADeepStackIsWrittenFromItsBottom)
{
    Capture();
    CEs1ContextState& frozen = CTraceRecordManager::m_Es1FileStateLastGet;
    frozen.m_iaMatrixStackDepth[1] = 2;
    for (int entry = 0; entry < 3; ++entry)
        frozen.m_faMatrixStacks[1][entry][0] = static_cast<float>(entry + 5);
    Lines const calls = From(Write(false), "glMatrixMode(mode = GL_PROJECTION)", "glActiveTexture");
    ASSERT_LT(5u, calls.size());
    EXPECT_EQ("glLoadMatrixf(m = {5, 0", calls[1].substr(0, 23));
    EXPECT_EQ("glPushMatrix()", calls[2]);
    EXPECT_EQ("glLoadMatrixf(m = {6, 0", calls[3].substr(0, 23));
    EXPECT_EQ("glPushMatrix()", calls[4]);
    EXPECT_EQ("glLoadMatrixf(m = {7, 0", calls[5].substr(0, 23));
    EXPECT_EQ("glMatrixMode(mode = GL_TEXTURE)", calls[6]);
}
