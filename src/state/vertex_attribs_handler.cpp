#include "state/vertex_attribs_handler.h"
#include "api/es1_enums.h"
#include "api/types.h"
#include "support/log.h"
#include <algorithm>
#include <iterator>

namespace
{

// By record number. Texture coordinates take this number and all that follow, one for each texture unit.
constexpr unsigned int kNames[] = {
    Es1Enum::kColorArray,     Es1Enum::kNormalArray,      Es1Enum::kVertexArray,
    Es1Enum::kPointSizeArray, Es1Enum::kMatrixIndexArray, Es1Enum::kWeightArray,
};
constexpr auto kTextureCoords = static_cast<unsigned int>(std::size(kNames));
constexpr unsigned int kNoNumber = 38;
constexpr uint32_t kTextureUnits = 8;

uint32_t CountOfEs1() { return kTextureCoords + kTextureUnits; }

}  // namespace

namespace Es1
{
CVertexAttribsHandler VAHandler(&CountOfEs1);
}

CVertexAttribsHandler::SAttrib::SAttrib() : type(GL_FLOAT) {}

CVertexAttribsHandler::CVertexAttribsHandler(GetCount getCount)
    : pAttribs(nullptr), attribCount(0), pfnGetCount(getCount), clientActiveTexture(GL_TEXTURE0)
{
}

CVertexAttribsHandler::~CVertexAttribsHandler()
{
    delete[] pAttribs;
    pAttribs = nullptr;
    attribCount = 0;
}

unsigned int CVertexAttribsHandler::GetOGLESAttribNumber(unsigned int array)
{
    if (array == Es1Enum::kTextureCoordArray)
        return clientActiveTexture - GL_TEXTURE0 + kTextureCoords;
    auto const* const found = std::find(std::begin(kNames), std::end(kNames), array);
    return found == std::end(kNames) ? kNoNumber : static_cast<unsigned int>(found - kNames);
}

unsigned int CVertexAttribsHandler::GetOGLESAttribName(unsigned int number)
{
    return number < kTextureCoords ? kNames[number] : static_cast<unsigned int>(Es1Enum::kTextureCoordArray);
}

void CVertexAttribsHandler::CreateBuffer()
{
    constexpr uint32_t kFallback = 16;
    if (pAttribs || !pfnGetCount)
        return;
    uint32_t const count = pfnGetCount();
    attribCount = count ? count : kFallback;
    // One to spare: GetVertAttribs hands out the place behind the last record too.
    pAttribs = new SAttrib[std::size_t{attribCount} + 1];
}

void CVertexAttribsHandler::EnableVertexAttrib(unsigned int index)
{
    CreateBuffer();
    if (index < attribCount)
        pAttribs[index].enabled = true;
}

void CVertexAttribsHandler::DisableVertexAttrib(unsigned int index)
{
    CreateBuffer();
    if (index < attribCount)
        pAttribs[index].enabled = false;
}

uint32_t CVertexAttribsHandler::GetMaxVertexAttribs()
{
    CreateBuffer();
    return attribCount;
}

CVertexAttribsHandler::SAttrib* CVertexAttribsHandler::GetVertAttribs(unsigned int index)
{
    CreateBuffer();
    // On purpose: an index equal to the count is let through, to the spare record.
    if (index <= attribCount)
        return pAttribs ? pAttribs + index : nullptr;
    LogMessage("CVertexAttribsHandler::GetVertAttribs: INDEX EXCEDED");
    return nullptr;
}
