// The record types of pointer arguments. Each is built on a wrapper's stack and must outlive the block that
// it is written into: the block keeps the caller's pointer and reads the bytes when it is written out.
#pragma once
#include "support/export.h"
#include <cstdint>

class CTraceBlock;

// Pointer, count, elements. The element's size is a fact of the wrapper. A null pointer has count 0.
struct NEBTRACE_API SArrayR
{
    void const* m_pArray;
    uint32_t m_ui32Count;

    SArrayR(void const* array, uint32_t count) : m_pArray(array), m_ui32Count(array ? count : 0) {}
    void Append(CTraceBlock& block, uint32_t elementSize) const;
};

// Pointer, length, bytes without terminator. A null pointer has length 0.
struct NEBTRACE_API SStringR
{
    char const* m_pText;
};

// Pointer, count, then pointer, size and bytes of each text.
struct NEBTRACE_API SStringListR
{
    char const* const* m_pTexts;
    uint32_t m_ui32Count;
    uint32_t* m_pSizes;

    explicit SStringListR(char const* const* texts) : m_pTexts(texts), m_ui32Count(0), m_pSizes(nullptr) {}
    ~SStringListR() { delete[] m_pSizes; }
    SStringListR(SStringListR const&) = delete;
    SStringListR& operator=(SStringListR const&) = delete;

    // A text's size is its entry in lengths, or what its terminator says where there is none or it is
    // negative.
    void SetSizes(int count, int const* lengths);
};

// Pointer, count, ints. The terminating EGL_NONE is counted and recorded.
struct NEBTRACE_API SEglAttribListR
{
    int const* m_pAttribs;
    uint32_t m_ui32Count;

    explicit SEglAttribListR(int const* attribs);
};

// Pointer, size in bytes, bytes. A null pointer has size 0.
struct NEBTRACE_API SImage2DR
{
    void const* m_pPixels;
    uint32_t m_ui32Size;

    explicit SImage2DR(void const* pixels) : m_pPixels(pixels), m_ui32Size(0) {}
    // Returns the computed size even where the pointer is null.
    uint32_t SetImageSize(unsigned int format, unsigned int type, int width, int height, int alignment,
                          int border);
};

struct NEBTRACE_API SImage3DR
{
    void const* m_pPixels;
    uint32_t m_ui32Size;

    explicit SImage3DR(void const* pixels) : m_pPixels(pixels), m_ui32Size(0) {}
    uint32_t SetImageSize(unsigned int format, unsigned int type, int width, int height, int depth,
                          int alignment, int border);
};

NEBTRACE_API CTraceBlock& operator<<(CTraceBlock& block, SStringR const& text);
NEBTRACE_API CTraceBlock& operator<<(CTraceBlock& block, SStringListR const& list);
NEBTRACE_API CTraceBlock& operator<<(CTraceBlock& block, SEglAttribListR const& list);
NEBTRACE_API CTraceBlock& operator<<(CTraceBlock& block, SImage2DR const& image);
NEBTRACE_API CTraceBlock& operator<<(CTraceBlock& block, SImage3DR const& image);
