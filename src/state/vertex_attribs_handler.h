// The client arrays of OpenGL ES 1, as attribute records.
#pragma once
#include "support/export.h"
#include <cstdint>

class NEBTRACE_API CVertexAttribsHandler
{
public:
    struct SAttrib
    {
        int size = 4;  // components
        unsigned int type;
        bool normalized = false;
        int stride = 0;
        void const* pointer = nullptr;
        bool enabled = false;
        unsigned int arrayBuffer = 0;

        SAttrib();
    };
    using GetCount = uint32_t (*)();

    // `getCount` is asked for the number of records on their first use. Null: there are none ever.
    explicit CVertexAttribsHandler(GetCount getCount);
    CVertexAttribsHandler(CVertexAttribsHandler const&) = delete;
    CVertexAttribsHandler& operator=(CVertexAttribsHandler const&) = delete;
    ~CVertexAttribsHandler();

    // The record number of a GL array. Texture coordinates are those of the active client unit; what is no
    // array has number 38, which no record has.
    unsigned int GetOGLESAttribNumber(unsigned int array);
    // The GL array of a record number; texture coordinates from 6 up.
    unsigned int GetOGLESAttribName(unsigned int number);

    // Makes the records, unless they are there.
    void CreateBuffer();
    // Beyond the last record these do nothing.
    void EnableVertexAttrib(unsigned int index);
    void DisableVertexAttrib(unsigned int index);
    uint32_t GetMaxVertexAttribs();
    // The record, or null past the record that follows the last one.
    SAttrib* GetVertAttribs(unsigned int index);

    SAttrib* pAttribs;
    uint32_t attribCount;
    GetCount pfnGetCount;
    unsigned int clientActiveTexture;
};

namespace Es1
{
NEBTRACE_API extern CVertexAttribsHandler VAHandler;
}
