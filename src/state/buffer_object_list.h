// CPU copies of the application's buffer objects, in the order in which they first got data.
#pragma once
#include "support/export.h"
#include <cstdint>

class NEBTRACE_API CBufferObjectList
{
public:
    struct SBufferObject
    {
        char* data;  // owned; null when size is 0
        uint32_t size;
        uint32_t name;
        SBufferObject* next;
    };

    CBufferObjectList();
    CBufferObjectList(CBufferObjectList const&) = delete;
    CBufferObjectList& operator=(CBufferObjectList const&) = delete;
    ~CBufferObjectList();

    // The object of that name, or null.
    SBufferObject* GetBufferObject(unsigned int name);
    // Makes or refills the object; null data means zeros. Returns 1.
    int AddObject(unsigned int name, unsigned int size, char const* data);
    // Returns 1 whether or not the name was present.
    int RemoveObject(unsigned int name);

private:
    SBufferObject* m_pHead;
    SBufferObject* m_pTail;
};

namespace Es1
{
NEBTRACE_API extern CBufferObjectList BufferList;
}
namespace Es2
{
NEBTRACE_API extern CBufferObjectList BufferList;
}
