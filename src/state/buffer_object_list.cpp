#include "state/buffer_object_list.h"
#include <cstring>

namespace Es1
{
CBufferObjectList BufferList;
}
namespace Es2
{
CBufferObjectList BufferList;
}

namespace
{

char* CopyBytes(char const* data, uint32_t size)
{
    if (size == 0)
        return nullptr;
    char* const bytes = new char[size]();
    if (data)
        std::memcpy(bytes, data, size);
    return bytes;
}

}  // namespace

CBufferObjectList::CBufferObjectList() : m_pHead(nullptr), m_pTail(nullptr) {}

CBufferObjectList::~CBufferObjectList()
{
    m_pTail = nullptr;  // a thread may still be adding while the process ends
    while (m_pHead)
    {
        SBufferObject* const next = m_pHead->next;
        delete[] m_pHead->data;
        delete m_pHead;
        m_pHead = next;
    }
}

CBufferObjectList::SBufferObject* CBufferObjectList::GetBufferObject(unsigned int name)
{
    SBufferObject* object = m_pHead;
    while (object && object->name != name)
        object = object->next;
    return object;
}

int CBufferObjectList::AddObject(unsigned int name, unsigned int size, char const* data)
{
    // Copied before the old bytes go: the new ones may be a part of them.
    char* const bytes = CopyBytes(data, size);
    if (SBufferObject* const object = GetBufferObject(name))
    {
        delete[] object->data;
        object->data = bytes;
        object->size = size;
        return 1;
    }
    SBufferObject* const object = new SBufferObject{bytes, size, name, nullptr};
    (m_pTail ? m_pTail->next : m_pHead) = object;
    m_pTail = object;
    return 1;
}

int CBufferObjectList::RemoveObject(unsigned int name)
{
    SBufferObject* before = nullptr;
    SBufferObject* object = m_pHead;
    while (object && object->name != name)
    {
        before = object;
        object = object->next;
    }
    if (!object)
        return 1;
    (before ? before->next : m_pHead) = object->next;
    if (m_pTail == object)
        m_pTail = before;
    delete[] object->data;
    delete object;
    return 1;
}
