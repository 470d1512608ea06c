// A recorder of GLES1 calls whose client arrays a test looks into.
#pragma once
#include "state/buffer_object_list.h"
#include "state/vertex_attribs_handler.h"
#include "tests/wrappers/shadow.h"

class Es1Arrays : public Shadow
{
protected:
    using Array = CVertexAttribsHandler::SAttrib;
    // 14 slots, and the spare one behind them.
    static constexpr unsigned int kPlaces = 15;

    Es1Arrays()
    {
        ForgetArrays();
        RecordFromHere();
        for (int i = 0; i < 64; ++i)
            m_vertices[i] = static_cast<GLfloat>(i) / 4;
    }
    ~Es1Arrays() override
    {
        ForgetArrays();
        Es1::BufferList.RemoveObject(77);
    }

    static Array& Slot(unsigned int slot) { return *Es1::VAHandler.GetVertAttribs(slot); }

    // What the host answers to glGetIntegerv; to any other name it stores nothing, so that it agrees with
    // what the library has followed.
    static void HostKnows(std::map<GLenum, GLint> const& answers)
    {
        Fake().On("glGetIntegerv", [answers](Call const& call) {
            auto const found = answers.find(call.Argument<GLenum>(0));
            if (found != answers.end())
                *call.Pointer<GLint>(1) = found->second;
        });
    }

    GLfloat m_vertices[64];

private:
    // There is one handler for the process.
    static void ForgetArrays()
    {
        for (unsigned int slot = 0; slot < kPlaces; ++slot)
            Slot(slot) = Array();
        Es1::VAHandler.clientActiveTexture = GL_TEXTURE0;
    }
};
