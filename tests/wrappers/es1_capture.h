// What a GLES1 snapshot asks the host for, as lines.
#pragma once
#include "tests/wrappers/es1_snapshot.h"
#include <cstdio>

class Es1Capture : public Es1Snapshot
{
protected:
    // The host's calls as lines: the name, and the arguments that are no addresses of ours.
    static std::string LineOf(Call const& call)
    {
        static std::map<std::string, size_t> const kValues = {
            {"glGetLightfv", 2},           {"glGetMaterialfv", 2},
            {"glGetTexEnviv", 2},          {"glGetTexEnvfv", 2},
            {"glGetBufferParameteriv", 2}, {"glGetRenderbufferParameterivOES", 2},
            {"glLoadMatrixf", 0},          {"glGetFramebufferAttachmentParameterivOES", 3}};
        auto const found = kValues.find(call.name);
        size_t values = call.name.rfind("glGet", 0) == 0 ? 1 : call.words.size();
        if (found != kValues.end())
            values = found->second;
        std::string line = call.name;
        for (size_t i = 0; i < values && i < call.words.size(); ++i)
        {
            char word[24];
            std::snprintf(word, sizeof word, " %04X", static_cast<unsigned int>(call.words[i]));
            line += word;
        }
        return line;
    }
    Lines Asked()
    {
        Fake().Forget();
        Capture();
        Lines lines;
        for (Call const& call : Fake().Calls())
            lines.push_back(LineOf(call));
        return lines;
    }
    // The lines of those functions.
    static Lines OnlyCalls(Lines const& lines, std::vector<std::string> const& names)
    {
        Lines only;
        for (std::string const& line : lines)
            if (std::count(names.begin(), names.end(), line.substr(0, line.find(' '))) > 0)
                only.push_back(line);
        return only;
    }
};
