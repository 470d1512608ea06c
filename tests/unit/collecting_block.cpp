#include "collecting_block.h"

namespace
{

std::vector<uint8_t> g_collected;

void Collect(unsigned int size, void const* data)
{
    uint8_t const* const bytes = static_cast<uint8_t const*>(data);
    if (bytes)
        g_collected.insert(g_collected.end(), bytes, bytes + size);
}

}  // namespace

std::vector<uint8_t> const& Collected() { return g_collected; }

CTraceBlock::CTraceBlock(unsigned short) : m_pBlock(nullptr) { g_collected.clear(); }
CTraceBlock::~CTraceBlock() {}
void CTraceBlock::AppendValue(unsigned int size, void const* data) { Collect(size, data); }
void CTraceBlock::AppendData(unsigned int size, void const* data) { Collect(size, data); }
