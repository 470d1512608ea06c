#include "wrappers/track_contents.h"
#include "support/log.h"
#include "wrappers/sizing.h"
#include <algorithm>
#include <climits>
#include <cstring>
#include <iterator>

namespace
{

// No host takes it, but one that reports no errors does not say so.
bool IsImpossible(TrackContents::SSubImage const& update)
{
    return update.xoffset < 0 || update.yoffset < 0 || update.width < 0 || update.height < 0;
}

// On purpose: a height of 0 limits nothing.
bool IsOutOfLimits(SImageDefinition const& image, TrackContents::SSubImage const& update)
{
    return (image.height != 0 && update.height > image.height) || update.width > image.width;
}

// Gives an image that was defined without pixels the bytes that the update goes into. Returns the alignment
// that counts as the update's.
GLint MakePrivate(SImageDefinition& image, TrackContents::SSubImage const& update, GLint alignment)
{
    if (image.externalData)
    {
        uint8_t const* const shared = image.pixels;
        image.Allocate(image.imageSize);
        if (shared && image.pixels)
            std::memcpy(image.pixels, shared, static_cast<std::size_t>(image.imageSize));
        return shared ? alignment : image.alignment;
    }
    if (!image.pixels)
    {
        image.format = update.format;
        image.type = update.type;
        image.width = update.width;
        image.alignment = alignment;
        image.imageSize = static_cast<int>(
            GlImage2DSize(image.format, image.type, image.width, image.height, alignment, image.border));
        image.Allocate(image.imageSize);
    }
    return alignment;
}

// On purpose: row by row as if rows had no padding, with the record's width as the length of a row. What
// would fall outside the image's bytes is left out.
void CopyRows(SImageDefinition& image, TrackContents::SSubImage const& update, uint8_t const* source)
{
    auto const pixel = static_cast<std::size_t>(GetPixelSizeImage2D(update.format, update.type));
    std::size_t const sourceRow = pixel * static_cast<std::size_t>(update.width);
    std::size_t const imageRow = pixel * static_cast<std::size_t>(image.width);
    auto const imageSize = static_cast<std::size_t>(image.imageSize);
    for (std::size_t row = 0; row < static_cast<std::size_t>(update.height); ++row)
    {
        std::size_t const at = (row + static_cast<std::size_t>(update.yoffset)) * imageRow +
                               static_cast<std::size_t>(update.xoffset) * pixel;
        if (at + sourceRow <= imageSize)
            std::memcpy(image.pixels + at, source + row * sourceRow, sourceRow);
    }
}

// Gives the record bytes of its own where it has none or shares them.
void MakePrivate(BufferDefinition& record)
{
    if (!record.externalData && record.bufferData)
        return;
    uint8_t const* const shared = record.bufferData;
    record.Allocate(record.bufferDataSize);
    if (shared && record.bufferData)
        std::memcpy(record.bufferData, shared, static_cast<std::size_t>(record.bufferDataSize));
}

}  // namespace

void TrackContents::MergeSubImage(SImageDefinition& image, SSubImage const& update, GLint alignment)
{
    if (image.isCompressed || IsImpossible(update))
        return;
    if (IsOutOfLimits(image, update))
    {
        LogError("glTexSubImage2D: trying to update a texture out of limits.");
        return;
    }
    alignment = MakePrivate(image, update, alignment);
    // On purpose: an update in another format leaves the image as it is.
    bool const differs =
        image.format != update.format || image.type != update.type || image.alignment != alignment;
    if ((image.format != 0 && differs) || !image.pixels || !update.pixels)
        return;
    image.Unshare();
    bool const whole = update.xoffset == 0 && update.yoffset == 0 && update.width == image.width &&
                       update.height == image.height;
    auto const* const source = static_cast<uint8_t const*>(update.pixels);
    if (whole)
        std::memcpy(image.pixels, source, std::min(static_cast<uint32_t>(image.imageSize), update.readable));
    else
        CopyRows(image, update, source);
}

int TrackContents::ParamIndex(GLenum pname)
{
    constexpr GLenum kKept[] = {GL_TEXTURE_MIN_FILTER, GL_TEXTURE_MAG_FILTER, GL_TEXTURE_WRAP_S,
                                GL_TEXTURE_WRAP_T};
    GLenum const* const found = std::find(std::begin(kKept), std::end(kKept), pname);
    return found == std::end(kKept) ? -1 : static_cast<int>(found - kKept);
}

int TrackContents::Truncated(GLfloat value)
{
    if (!(value > 0.0f))
        return 0;
    return value < 4294967296.0f ? static_cast<int>(static_cast<uint32_t>(value)) : -1;
}

bool TrackContents::IsCountable(GLintptr offset, GLsizeiptr size)
{
    return size >= 0 && offset >= 0 && size <= INT_MAX && offset <= INT_MAX;
}

void TrackContents::DefineBuffer(BufferDefinition& record, GLuint name, GLenum target, GLsizeiptr size,
                                 void const* data, GLenum usage)
{
    BufferDefinition given;
    given.bufferName = name;
    given.bufferTarget = target;
    given.bufferDataSize = static_cast<int>(size);
    given.bufferUsage = usage;
    given.bufferData = const_cast<uint8_t*>(static_cast<uint8_t const*>(data));
    given.externalData = true;
    record.deepCopy = true;
    record = given;
    record.externalData = false;
}

void TrackContents::UpdateBuffer(BufferDefinition& record, GLintptr offset, GLsizeiptr size, void const* data)
{
    MakePrivate(record);
    if (!data || !IsCountable(offset, size))
        return;
    if (size > record.bufferDataSize)
    {
        record.bufferDataSize = static_cast<int>(size);
        record.Allocate(record.bufferDataSize);
    }
    GLsizeiptr const room = record.bufferDataSize - static_cast<GLsizeiptr>(offset);
    GLsizeiptr const copied = size < room ? size : room;
    record.Unshare();
    if (copied > 0)
        std::memcpy(record.bufferData + offset, data, static_cast<std::size_t>(copied));
}
