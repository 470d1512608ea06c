#include "profiler/overrides_textures.h"
#include "host/hosts.h"
#include "profiler/override_columns.h"

namespace
{

// What a slot of a texture unit is for, and what the private texture in it shows.
struct STarget
{
    GLenum target;
    GLenum firstImage;  // what its images are uploaded to; the others follow
    GLenum imageCount;
    uint8_t pixels[4][4];  // RGBA
};

// By slot. 2D textures come out in reds, cube maps in blues.
STarget const kTargets[CProfiler::SContext::eUsedSlots] = {
    {GL_TEXTURE_2D,
     GL_TEXTURE_2D,
     1,
     {{0x64, 0x40, 0x40, 0xFF},
      {0x8C, 0x64, 0x64, 0xFF},
      {0xC8, 0x8C, 0x8C, 0xFF},
      {0xFF, 0xC8, 0xC8, 0xFF}}},
    {GL_TEXTURE_CUBE_MAP,
     GL_TEXTURE_CUBE_MAP_POSITIVE_X,
     6,
     {{0x40, 0x40, 0x64, 0xFF},
      {0x64, 0x64, 0x8C, 0xFF},
      {0x8C, 0x8C, 0xC8, 0xFF},
      {0xC8, 0xC8, 0xFF, 0xFF}}},
};

bool HasTexture(CProfiler::STextureBinding const& binding) { return binding.name != 0; }

// A texture that is drawn to must keep its real image.
bool IsReplaced(CProfiler::STextureBinding const& binding)
{
    return HasTexture(binding) && !binding.bIsAttachment;
}

template <typename Column>
void SelectUnit(Column const& column, int32_t unit)
{
    column.host.glActiveTexture(GLenum{GL_TEXTURE0} + static_cast<GLenum>(unit));
}

// Gives `visit` each slot that `isWanted`, with its unit active; then the application's unit is active again.
template <typename Column, typename Visit>
void VisitSlots(Column const& column, bool (*isWanted)(CProfiler::STextureBinding const&), Visit const& visit)
{
    for (int unit = 0; unit < CProfiler::SContext::kUnits; ++unit)
        for (int slot = 0; slot < Column::kSlots; ++slot)
        {
            CProfiler::STextureBinding const& binding = column.Binding(unit, slot);
            if (!isWanted(binding))
                continue;
            SelectUnit(column, unit);
            visit(slot, binding);
        }
    SelectUnit(column, column.ActiveTexture());
}

template <typename Column>
void SetFilters(Column const& column, int slot, GLenum minFilter, GLenum magFilter)
{
    GLenum const target = kTargets[slot].target;
    column.host.glTexParameteri(target, GL_TEXTURE_MIN_FILTER, static_cast<GLint>(minFilter));
    column.host.glTexParameteri(target, GL_TEXTURE_MAG_FILTER, static_cast<GLint>(magFilter));
}

template <typename Column>
void Upload(Column const& column, STarget const& target)
{
    for (GLenum image = 0; image < target.imageCount; ++image)
        for (GLint level = 0; level < 2; ++level)
        {
            // Level 1 is the first pixel alone.
            GLsizei const size = 2 >> level;
            column.host.glTexImage2D(target.firstImage + image, level, GL_RGBA, size, size, 0, GL_RGBA,
                                     GL_UNSIGNED_BYTE, target.pixels);
        }
}

template <typename Column>
void MakePrivateTexture(Column const& column, int slot)
{
    STarget const& target = kTargets[slot];
    uint32_t& texture = column.PrivateTexture(slot);
    column.host.glGenTextures(1, &texture);
    column.host.glBindTexture(target.target, texture);
    Upload(column, target);
    int32_t const unit = column.ActiveTexture();
    column.host.glBindTexture(target.target,
                              CProfiler::SContext::IsUnit(unit) ? column.Binding(unit, slot).name : 0);
}

}  // namespace

void BindPrivateTextures(CProfiler::SContext& context)
{
    InBothApis(context, [](auto const& column) {
        for (int slot = 0; slot < column.kSlots; ++slot)
            if (column.PrivateTexture(slot) == 0)
                MakePrivateTexture(column, slot);
        VisitSlots(column, &IsReplaced, [&](int slot, CProfiler::STextureBinding const& own) {
            column.host.glBindTexture(kTargets[slot].target, column.PrivateTexture(slot));
            SetFilters(column, slot, own.minFilter, own.magFilter);
        });
    });
}

void SetNearestFilters(CProfiler& profiler, CProfiler::SContext& context)
{
    InBothApis(context, [&](auto const& column) {
        VisitSlots(column, &HasTexture, [&](int slot, CProfiler::STextureBinding const& own) {
            SetFilters(column, slot, profiler.GetNearestFilter(own.minFilter), GL_NEAREST);
        });
    });
}

// On purpose: a texture that is drawn to is bound again, too, though it was not replaced.
void RestoreTextures(CProfiler::SContext& context)
{
    InBothApis(context, [](auto const& column) {
        VisitSlots(column, &HasTexture, [&](int slot, CProfiler::STextureBinding const& own) {
            column.host.glBindTexture(kTargets[slot].target, own.name);
        });
    });
}

void RestoreFilters(CProfiler::SContext& context)
{
    InBothApis(context, [](auto const& column) {
        VisitSlots(column, &HasTexture, [&](int slot, CProfiler::STextureBinding const& own) {
            SetFilters(column, slot, own.minFilter, own.magFilter);
        });
    });
}

unsigned int CProfiler::GetNearestFilter(unsigned int filter) const
{
    bool const needsMipmaps = filter >= GL_NEAREST_MIPMAP_NEAREST && filter <= GL_LINEAR_MIPMAP_LINEAR;
    return needsMipmaps ? GL_NEAREST_MIPMAP_NEAREST : GL_NEAREST;
}
