// The shape of every GLES1 record: which calls are plain values, and how many elements stand behind the
// pointers of the others.
#include "tests/wrappers/every_wrapper.h"
#include <set>

using nebtrace::DecodedCall;
using nebtrace::DecodedField;
using nebtrace::Form;

namespace
{

using Names = std::vector<std::string>;

// Every argument by its value, pointers too.
Names const kScalars = {
    "glLoadIdentity", "glHint", "glGetError", "glFrontFace", "glFlush", "glFinish", "glEnable", "glDepthFunc",
    "glCullFace", "glClear", "glBlendFunc", "glBindTexture", "glBindBuffer", "glActiveTexture", "glIsTexture",
    "glIsEnabled", "glIsBuffer", "glDepthMask", "glColorMask", "glColor4ub", "glViewport", "glTranslatex",
    "glTexEnvx", "glTexEnvi", "glStencilFunc", "glScissor", "glScalex", "glSampleCoveragex", "glRotatex",
    "glPolygonOffsetx", "glPointSizex", "glPointParameterx", "glPixelStorei", "glOrthox", "glNormal3x",
    "glMultiTexCoord4x", "glMaterialx", "glLineWidthx", "glLightx", "glLightModelx", "glFrustumx", "glFogx",
    "glDepthRangex", "glCopyTexSubImage2D", "glCopyTexImage2D", "glColor4x", "glClearStencil",
    "glClearDepthx", "glClearColorx", "glAlphaFuncx", "glShadeModel", "glPushMatrix", "glPopMatrix",
    "glMatrixMode", "glLogicOp", "glStencilMask", "glStencilOp", "glLineWidth", "glLightf", "glLightModelf",
    "glFrustumf", "glFogf", "glDepthRangef", "glColor4f", "glClearDepthf", "glClearColor", "glAlphaFunc",
    "glSampleCoverage", "glTranslatef", "glTexEnvf", "glScalef", "glRotatef", "glPolygonOffset",
    "glPointSize", "glPointParameterf", "glOrthof", "glNormal3f", "glMultiTexCoord4f", "glMaterialf",
    "glDisable", "glTexParameterx", "glTexParameteri", "glTexParameterf", "glVertexPointer",
    "glNormalPointer", "glColorPointer", "glTexCoordPointer", "glPointSizePointerOES", "glEnableClientState",
    "glDisableClientState", "glClientActiveTexture", "glDrawArrays",
    // Extensions.
    "glEndTilingQCOM", "glStartTilingQCOM", "glExtIsProgramBinaryQCOM", "glDisableDriverControlQCOM",
    "glEnableDriverControlQCOM", "glSetFenceNV", "glFinishFenceNV", "glTestFenceNV", "glIsFenceNV",
    "glGetGraphicsResetStatusEXT", "glResolveMultisampleFramebufferAPPLE", "glIsVertexArrayOES",
    "glBindVertexArrayOES", "glLoadPaletteFromModelViewMatrixOES", "glCurrentPaletteMatrixOES",
    "glFramebufferRenderbufferOES", "glCheckFramebufferStatusOES", "glIsFramebufferOES",
    "glIsRenderbufferOES", "glBlendEquationOES", "glBlendFuncSeparateOES", "glBlendEquationSeparateOES",
    "glTexBindStreamNBX", "glExtTexObjectStateOverrideiQCOM", "glFramebufferTexture2DMultisampleNBX",
    "glRenderbufferStorageMultisampleNBX", "glTextureStorage3DEXT", "glTextureStorage2DEXT",
    "glTextureStorage1DEXT", "glTexStorage3DEXT", "glTexStorage2DEXT", "glTexStorage1DEXT",
    "glFramebufferTexture2DMultisampleEXT", "glRenderbufferStorageMultisampleEXT",
    "glRenderbufferStorageMultisampleAPPLE", "glCopyTextureLevelsAPPLE", "glTexGenxOES", "glTexGeniOES",
    "glFramebufferTexture2DOES", "glRenderbufferStorageOES", "glTranslatexOES", "glTexEnvxOES", "glScalexOES",
    "glSampleCoveragexOES", "glRotatexOES", "glPolygonOffsetxOES", "glPointSizexOES", "glPointParameterxOES",
    "glOrthoxOES", "glNormal3xOES", "glMultiTexCoord4xOES", "glMaterialxOES", "glLineWidthxOES",
    "glLightxOES", "glLightModelxOES", "glFrustumxOES", "glFogxOES", "glDepthRangexOES", "glColor4xOES",
    "glClearDepthxOES", "glClearColorxOES", "glAlphaFuncxOES", "glDeleteSyncAPPLE", "glIsSyncAPPLE",
    "glFenceSyncAPPLE", "glEGLImageTargetRenderbufferStorageOES", "glEGLImageTargetTexture2DOES",
    "glWaitSyncAPPLE", "glClientWaitSyncAPPLE", "glTexGenfOES", "glClearDepthfOES", "glOrthofOES",
    "glFrustumfOES", "glDepthRangefOES", "glClipPlanefOES", "glGenerateMipmapOES", "glTexParameterxOES",
    "glBindFramebufferOES", "glBindRenderbufferOES", "glWeightPointerOES", "glMatrixIndexPointerOES",
    "glMapBufferOES", "glMapBufferRangeEXT", "glFlushMappedBufferRangeEXT", "glDrawTexfOES", "glDrawTexiOES",
    "glDrawTexsOES", "glDrawTexxOES", "glMultiDrawElementsEXT"};

// A pointer and this many bytes.
std::map<std::string, uint32_t> const kFixedArrays = {
    {"glLoadMatrixf", 64},    {"glLoadMatrixx", 64},    {"glMultMatrixf", 64},   {"glMultMatrixx", 64},
    {"glLoadMatrixxOES", 64}, {"glMultMatrixxOES", 64}, {"glClipPlanef", 16},    {"glClipPlanex", 16},
    {"glClipPlanexOES", 16},  {"glClipPlanexNBX", 16},  {"glClipPlanefNBX", 16}, {"glDrawTexfvOES", 20},
    {"glDrawTexivOES", 20},   {"glDrawTexxvOES", 20},   {"glDrawTexsvOES", 10}};

// The elements behind a call's last argument when its pname (or count) is this.
struct Sized
{
    Names names;
    Word value;
    uint32_t count;
    uint32_t width;
};
Names const kNameArrays = {"glGenTextures",           "glGenBuffers",
                           "glDeleteTextures",        "glDeleteBuffers",
                           "glGenFramebuffersOES",    "glGenRenderbuffersOES",
                           "glDeleteFramebuffersOES", "glDeleteRenderbuffersOES",
                           "glGenVertexArraysOES",    "glDeleteVertexArraysOES",
                           "glGenFencesNV",           "glDeleteFencesNV",
                           "glDiscardFramebufferEXT"};
Names const kFog = {"glFogfv", "glFogxv", "glFogxvOES"};
Names const kLight = {"glLightfv", "glLightxv", "glLightxvOES"};
Names const kLightModel = {"glLightModelfv", "glLightModelxv", "glLightModelxvOES"};
Names const kMaterial = {"glMaterialfv", "glMaterialxv", "glMaterialxvOES"};
Names const kPoint = {"glPointParameterfv", "glPointParameterxv", "glPointParameterxvOES"};
Names const kTexEnv = {"glTexEnvfv", "glTexEnviv", "glTexEnvxv", "glTexEnvxvOES"};
Names const kTexGen = {"glTexGenfvOES", "glTexGenivOES", "glTexGenxvOES"};
Names const kTexParam = {"glTexParameterfv", "glTexParameteriv", "glTexParameterxv", "glTexParameterxvOES"};
std::vector<Sized> const kInputs = {
    {kNameArrays, 3, 3, 4},    {kFog, 0x0B66, 4, 4},        {kFog, 0x0B62, 1, 4},
    {kLight, 0x1200, 4, 4},    {kLight, 0x1203, 4, 4},      {kLight, 0x1204, 3, 4},
    {kLight, 0x1205, 1, 4},    {kLightModel, 0x0B53, 4, 4}, {kLightModel, 0x0B52, 1, 4},
    {kMaterial, 0x1602, 4, 4}, {kMaterial, 0x1600, 4, 4},   {kMaterial, 0x1601, 1, 4},
    {kPoint, 0x8129, 3, 4},    {kPoint, 0x8126, 1, 4},      {kTexEnv, 0x2201, 4, 4},
    {kTexEnv, 0x2200, 1, 4},   {kTexGen, 0x2500, 1, 4},     {kTexGen, 0x2501, 4, 4},
    {kTexParam, 0x2801, 1, 4}, {kTexParam, 0x2201, 1, 4},   {kTexParam, 0x8B9D, 1, 4}};

Names const kGet = {"glGetFloatv", "glGetIntegerv", "glGetFixedv", "glGetFixedvOES"};
Names const kGetBytes = {"glGetBooleanv"};
Names const kGetLight = {"glGetLightfv", "glGetLightxv", "glGetLightxvOES"};
Names const kGetMaterial = {"glGetMaterialfv", "glGetMaterialxv", "glGetMaterialxvOES"};
// On purpose: one texture query is sized with the environments.
Names const kGetTexEnv = {"glGetTexEnvfv", "glGetTexEnviv", "glGetTexEnvxv", "glGetTexEnvxvOES",
                          "glGetTexParameterfv"};
Names const kGetTexParam = {"glGetTexParameteriv", "glGetTexParameterxv", "glGetTexParameterxvOES"};
Names const kGetTexGen = {"glGetTexGenfvOES", "glGetTexGenivOES", "glGetTexGenxvOES"};
Names const kGetOne = {"glGetPointerv",
                       "glGetBufferParameteriv",
                       "glGetRenderbufferParameterivOES",
                       "glGetFramebufferAttachmentParameterivOES",
                       "glGetFenceivNV",
                       "glExtGetTexLevelParameterivQCOM",
                       "glGetTexStreamDeviceAttributeivNBX"};
std::vector<Sized> const kOutputs = {
    {kGet, 0x0BA6, 16, 4},
    {kGet, 0x0B02, 4, 4},
    {kGet, 0x0B70, 2, 4},
    {kGet, 0x0D33, 1, 4},
    {kGetBytes, 0x0C23, 4, 1},
    {kGetBytes, 0x0B72, 1, 1},
    {kGetLight, 0x1204, 3, 4},
    {kGetLight, 0x1201, 4, 4},
    {kGetLight, 0x1206, 1, 4},
    {kGetMaterial, 0x1202, 4, 4},
    {kGetMaterial, 0x1601, 1, 4},
    {kGetTexEnv, 0x2201, 4, 4},
    {kGetTexEnv, 0x2801, 1, 4},
    {kGetTexParam, 0x2201, 1, 4},
    {kGetTexParam, 0x2801, 1, 4},
    {kGetTexGen, 0x2500, 1, 4},
    {kGetTexGen, 0x2501, 4, 4},
    {kGetOne, 0x8892, 1, 4},
    {{"glGetInteger64vAPPLE"}, 0x9111, 1, 8},
    {{"glGetBufferPointervOES", "glExtGetBufferPointervQCOM"}, 0x88BD, 1, 1}};

// Told one by one elsewhere in these tests, or below.
Names const kOthers = {"glGetString",
                       "glGetTexStreamDeviceNameNBX",
                       "glGetClipPlanef",
                       "glGetClipPlanex",
                       "glGetClipPlanefOES",
                       "glGetClipPlanexOES",
                       "glQueryMatrixxOES",
                       "glExtGetTexturesQCOM",
                       "glExtGetBuffersQCOM",
                       "glExtGetRenderbuffersQCOM",
                       "glExtGetFramebuffersQCOM",
                       "glExtGetShadersQCOM",
                       "glExtGetProgramsQCOM",
                       "glGetDriverControlsQCOM",
                       "glGetSyncivAPPLE",
                       "glGetDriverControlStringQCOM",
                       "glExtGetProgramBinarySourceQCOM",
                       "glDrawElements",
                       "glTexImage2D",
                       "glTexSubImage2D",
                       "glCompressedTexImage2D",
                       "glCompressedTexSubImage2D",
                       "glReadPixels",
                       "glReadnPixelsEXT",
                       "glExtGetTexSubImageQCOM",
                       "glBufferData",
                       "glBufferSubData",
                       "glUnmapBufferOES",
                       "glMultiDrawArraysEXT"};

Function const& Find(std::string const& name)
{
    for (Function const& function : AllFunctions())
        if (function.library == "es1" && function.name == name)
            return function;
    ADD_FAILURE() << "no function " << name;
    return AllFunctions().front();
}

// What a value takes: one byte for truth values and colours, two for shorts, eight for timeouts.
size_t Width(Argument const& argument)
{
    if (argument.isPointer)
        return 4;
    return argument.name == "timeout" ? 8 : std::min<size_t>(argument.size, 4);
}

}  // namespace

class Es1Shapes : public EveryWrapper
{
protected:
    // The words that stand ahead of a call's arguments.
    static Bytes Head(Function const& function, Outcome const& outcome, uint32_t error = 0)
    {
        Bytes head = U32(error);
        if (function.id >= 4000)
            head.push_back(1);
        if (function.resultKind != ResultKind::None)
            head = Joined(head, Little(outcome.returned, std::min<size_t>(function.resultSize, 4)));
        return head;
    }
    static Bytes Values(Function const& function, Outcome const& outcome)
    {
        Bytes values;
        for (size_t i = 0; i < function.arguments.size(); ++i)
            values = Joined(values, Little(outcome.arguments[i], Width(function.arguments[i])));
        return values;
    }
    // One call, its second last argument (the last of the values) being `value`.
    Outcome RunWith(Function const& function, Word value)
    {
        Outcome outcome;
        outcome.arguments = function.makeArguments(m_memory);
        outcome.arguments.at(outcome.arguments.size() - 2) = value;
        Written();
        Printed([&] { outcome.returned = function.call(function.wrapper, outcome.arguments); });
        outcome.record = Written();
        return outcome;
    }
    // The whole record: values, pointer, count, elements.
    static Bytes Filled(Function const& function, Outcome const& outcome, uint32_t count, uint32_t width,
                        uint32_t error = 0)
    {
        return Expected(function.id, Head(function, outcome, error), Values(function, outcome), U32(count),
                        Raw(fakehost::FromWord<void const*>(outcome.arguments.back()), count * width));
    }
    void ExpectSized(std::vector<Sized> const& table, bool isGated)
    {
        for (Sized const& sized : table)
            for (std::string const& name : sized.names)
            {
                SCOPED_TRACE(name + " " + std::to_string(sized.value));
                Function const& function = Find(name);
                Record();
                Outcome const outcome = RunWith(function, sized.value);
                EXPECT_EQ(Filled(function, outcome, sized.count, sized.width), outcome.record);
                HostFails(0x502);
                Outcome const refused = RunWith(function, sized.value);
                EXPECT_EQ(Filled(function, refused, isGated ? 0 : sized.count, sized.width, 0x502),
                          refused.record);
                RecordWithoutData();
                Outcome const bare = RunWith(function, sized.value);
                EXPECT_EQ(Expected(function.id, Head(function, bare), Values(function, bare)), bare.record);
            }
    }

private:
    Buffers m_memory;
};

// Each of the 296 functions stands in exactly one of the lists, so that none is left out of these tests.
TEST_F(Es1Shapes, EachFunctionHasOneShape)
{
    std::multiset<std::string> listed(kScalars.begin(), kScalars.end());
    listed.insert(kOthers.begin(), kOthers.end());
    for (auto const& [name, bytes] : kFixedArrays)
        listed.insert(name);
    std::set<std::string> sizedNames;
    for (auto const* table : {&kInputs, &kOutputs})
        for (Sized const& sized : *table)
            sizedNames.insert(sized.names.begin(), sized.names.end());
    listed.insert(sizedNames.begin(), sizedNames.end());
    std::multiset<std::string> functions;
    for (Function const& function : AllFunctions())
        if (function.library == "es1")
            functions.insert(function.name);
    EXPECT_EQ(functions, listed);
    EXPECT_EQ(296u, listed.size());
}

// A record of values is the error word, the API byte of an extension, the result and the values, each of its
// own width, and has the same bytes with contents and without.
TEST_F(Es1Shapes, ValuesStandInTheOrderOfTheCall)
{
    for (std::string const& name : kScalars)
    {
        SCOPED_TRACE(name);
        Function const& function = Find(name);
        Record();
        Outcome const outcome = Run(function);
        Bytes const expected = Expected(function.id, Head(function, outcome), Values(function, outcome));
        EXPECT_EQ(expected, outcome.record);
        RecordWithoutData();
        EXPECT_EQ(expected, Run(function).record);
    }
}

// Matrices, planes and rectangles are a pointer and their bytes, without a count.
TEST_F(Es1Shapes, FixedArraysHaveTheirBytes)
{
    for (auto const& [name, bytes] : kFixedArrays)
    {
        SCOPED_TRACE(name);
        Function const& function = Find(name);
        Record();
        Outcome const outcome = Run(function);
        EXPECT_EQ(Expected(function.id, Head(function, outcome), Values(function, outcome),
                           Raw(fakehost::FromWord<void const*>(outcome.arguments.back()), bytes)),
                  outcome.record);
    }
}

// What a call reads is sized by its pname or count, and recorded whatever the host said of it.
TEST_F(Es1Shapes, InputsAreSizedByTheirNames) { ExpectSized(kInputs, false); }

// What the host stores is sized in the same way, and recorded only when the host succeeded.
TEST_F(Es1Shapes, OutputsAreSizedByTheirNames) { ExpectSized(kOutputs, true); }
