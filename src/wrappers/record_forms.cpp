#include "wrappers/record_forms.h"
#include <cstring>

void AppendArray(CTraceBlock& block, void const* pointer, uint32_t count, uint32_t elementSize)
{
    SArrayR(pointer, count).Append(block, elementSize);
}

void AppendHandles(CTraceBlock& block, void const* const* handles, uint32_t count)
{
    AppendPointer(block, handles);
    AppendU32(block, count);
    for (uint32_t i = 0; i < count; ++i)
        AppendPointer(block, handles[i]);
}

void AppendText(CTraceBlock& block, char const* text) { block << SStringR{text}; }

// The block reads the texts, not the list of sizes, when it is written out: the list need not outlive this.
void STextList::Append(CTraceBlock& block, SRecordState) const
{
    SStringListR list(argument);
    list.SetSizes(count, lengths);
    block << list;
}

void SAttribList::Append(CTraceBlock& block, SRecordState) const { block << SEglAttribListR(argument); }

void SOutText::Append(CTraceBlock& block, SRecordState) const
{
    auto const length = argument ? strnlen(argument, CountOf(size)) : 0;
    AppendArray(block, argument, static_cast<uint32_t>(length), 1);
}
