// EGL wrappers: function lookup and errors, which depart from the frame.
#include "support/log.h"
#include "wrappers/calls.h"
#include "wrappers/keep_mark.h"

namespace
{

AnyFunction ExchangeInEs1(char const* name, AnyFunction pointer)
{
    CKeepMark const keep(STraceConfig::m_bES1Used);
    return Es1Host()->FunctionPtrExchange(name, pointer);
}

AnyFunction ExchangeInEs2(char const* name, AnyFunction pointer)
{
    CKeepMark const keep(STraceConfig::m_bES2Used);
    return Es2Host()->FunctionPtrExchange(name, pointer);
}

// The wrapper for a name, or null. Both GL tables are always asked, so that one name can fill an entry in
// each; the GLES2 wrapper wins.
AnyFunction Exchange(char const* name, AnyFunction pointer)
{
    AnyFunction const es1 = ExchangeInEs1(name, pointer);
    AnyFunction const es2 = ExchangeInEs2(name, pointer);
    if (es2)
        return es2;
    return es1 ? es1 : EglHost()->FunctionPtrExchange(name, pointer);
}

}  // namespace

namespace Egl
{

__eglMustCastToProperFunctionPointerType _eglGetProcAddress(const char* procname)
{
    CFrame frame(Calls::eglGetProcAddress, procname);
    frame.CallHost();
    frame.Record(Always(Text(procname)));
    AnyFunction const pointer = frame.Result();
    if (!pointer || !procname)
    {
        LogMessage("eglGetProcAddress Extension Error: %s", procname ? procname : "");
        return pointer;
    }
    AnyFunction const wrapper = Exchange(procname, pointer);
    return wrapper ? wrapper : pointer;
}

// On purpose: the error check after every call has consumed the host's error, so that the application sees
// EGL_SUCCESS here whenever the host path is on; a failure stands only in its own call's record. The host is
// called for its time alone.
EGLint _eglGetError()
{
    int const argCount = 0;
    void const* const args[] = {&argCount};
    STraceConfig::SFunctionConfig config{};
    STraceConfig::GetFunctionConfig(Calls::eglGetError.id, config, args);
    ClearError();
    EGLint result = 0;
    if (config.bCallHost && config.pStopwatch)
    {
        config.pStopwatch->Start();
        result = EglHost()->eglGetError();
        config.pStopwatch->Stop();
        if (config.pProfiler)
            config.pProfiler->DidCall(Calls::eglGetError.id,
                                      static_cast<unsigned long>(config.pStopwatch->ResultUS()));
    }
    if (config.bCallHost && config.bGetErrors && config.pProfiler)
    {
        config.pProfiler->DidCall(Calls::eglGetError.id, args);
        config.pProfiler->TrackState(Calls::eglGetError.id, args, &result);
    }
    if (config.bCallHost)
        result = config.bGetErrors ? static_cast<EGLint>(getError()) : EGL_SUCCESS;
    error = EGL_SUCCESS;
    if (config.bSaveCall)
    {
        CTraceBlock block(Calls::eglGetError.id);
        AppendU32(block, error);
        AppendPlain(block, result);
    }
    return result;
}

}  // namespace Egl
