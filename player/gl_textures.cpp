// Images: what is uploaded, and how its rows are aligned.
#include "player/arguments.h"
#include "player/gl_player.h"
#include "player/pixels.h"
#include <GLES/gl.h>

namespace nebtrace::player
{
namespace
{
// Of a format that the player does not know, no pixel is larger than this.
constexpr unsigned kLargestPixel = 16;

// The alignment of the rows in a record. glTexImage2D of ES 2 records another state's alignment while it
// measures the application's own rows, which the player's state has; only a captured image has no other than
// its own. One that GL has not is not tried: the driver would stay at the state's, and must be measured by
// it.
GLint RowAlignment(GlPlayer& player, Call const& call)
{
    bool const other = call.Name() == "glTexImage2D" && !player.InState() && !player.IsEs1();
    GLint const recorded = call.Int("alignment");
    return other || !IsAlignment(recorded) ? player.Now().unpackAlignment : recorded;
}

ImageShape ShapeOf(Call const& call)
{
    ImageShape shape;
    shape.width = call.Int("width");
    shape.height = call.Int("height");
    shape.depth = call.Find("depth") ? call.Int("depth") : 1;
    shape.pixelSize = PixelSize(call.Word("format"), call.Word("type"));
    return shape;
}

// An image as the driver reads it, in memory that is long enough.
class Image
{
public:
    Image(Call const& call, GLint alignment)
    {
        DecodedField const& field = call.Field("pixels");
        Bytes const bytes = Call::Data(field);
        if (field.value == 0)
            return;
        ImageShape shape = ShapeOf(call);
        bool const known = shape.pixelSize != 0;
        shape.pixelSize = known ? shape.pixelSize : kLargestPixel;
        uint64_t const tight = ImageSize(shape, 1);
        uint64_t const needed = ImageSize(shape, alignment);
        if (known && bytes.size < tight)
            throw BadRecord("its image has " + std::to_string(bytes.size) + " bytes, and needs " +
                            std::to_string(tight));
        if (needed > bytes.size && needed - bytes.size > kMostPadding)
            throw BadRecord("its image is too short");
        m_copy = std::make_unique<Copy>(bytes, static_cast<size_t>(needed));
    }

    void const* Pixels() const { return m_copy ? m_copy->Begin() : nullptr; }

private:
    std::unique_ptr<Copy> m_copy;
};

// Uploads under an alignment of their own; the state is as before afterwards.
class Aligned
{
public:
    Aligned(GlPlayer& player, Call const& call)
        : m_player(player), m_own(RowAlignment(player, call)), m_image(call, m_own)
    {
        m_player.Gl().glPixelStorei(GL_UNPACK_ALIGNMENT, m_own);
    }
    ~Aligned() { m_player.Gl().glPixelStorei(GL_UNPACK_ALIGNMENT, m_player.Now().unpackAlignment); }
    Aligned(Aligned const&) = delete;
    Aligned& operator=(Aligned const&) = delete;

    void const* Pixels() const { return m_image.Pixels(); }

private:
    GlPlayer& m_player;
    GLint m_own;
    Image m_image;
};

void TexImage2D(GlPlayer& player, Call const& call)
{
    Aligned const upload(player, call);
    player.Gl().glTexImage2D(call.Word("target"), call.Int("level"), call.Int("internalformat"),
                             call.Int("width"), call.Int("height"), call.Int("border"), call.Word("format"),
                             call.Word("type"), upload.Pixels());
}

void TexSubImage2D(GlPlayer& player, Call const& call)
{
    Aligned const upload(player, call);
    if (!upload.Pixels())
        return;
    player.Gl().glTexSubImage2D(call.Word("target"), call.Int("level"), call.Int("xoffset"),
                                call.Int("yoffset"), call.Int("width"), call.Int("height"),
                                call.Word("format"), call.Word("type"), upload.Pixels());
}

void TexImage3D(GlPlayer& player, Call const& call)
{
    if (!player.Gl().glTexImage3DOES)
        return player.NotReplayed(call, "the driver has no such function");
    Aligned const upload(player, call);
    player.Gl().glTexImage3DOES(call.Word("target"), call.Int("level"), call.Word("internalformat"),
                                call.Int("width"), call.Int("height"), call.Int("depth"), call.Int("border"),
                                call.Word("format"), call.Word("type"), upload.Pixels());
}

void TexSubImage3D(GlPlayer& player, Call const& call)
{
    if (!player.Gl().glTexSubImage3DOES)
        return player.NotReplayed(call, "the driver has no such function");
    Aligned const upload(player, call);
    if (!upload.Pixels())
        return;
    player.Gl().glTexSubImage3DOES(call.Word("target"), call.Int("level"), call.Int("xoffset"),
                                   call.Int("yoffset"), call.Int("zoffset"), call.Int("width"),
                                   call.Int("height"), call.Int("depth"), call.Word("format"),
                                   call.Word("type"), upload.Pixels());
}

// The rows that records hold follow from the alignments alone: other ways to lay out rows, which extensions
// have, would make the driver read what is not there.
void PixelStore(GlPlayer& player, Call const& call)
{
    GLenum const name = call.Word("pname");
    GLint const value = call.Int("param");
    if (name != GL_UNPACK_ALIGNMENT && name != GL_PACK_ALIGNMENT)
        return player.NotReplayed(call, "only alignments are");
    player.Gl().glPixelStorei(name, value);
    if (name == GL_UNPACK_ALIGNMENT && IsAlignment(value))
        player.Now().unpackAlignment = value;
}

void GenerateMipmap(GlPlayer& player, Call const& call)
{
    if (player.InState() && call.Word("target") == GL_TEXTURE_CUBE_MAP_POSITIVE_X)
        player.OweCubeMipmaps();
    else
        player.PlayPlain(call);
}

GLeglImageOES ImageOf(GlPlayer& player, Call const& call)
{
    return player.Egl().OwnImage(call.Word("image"));
}

template <void (*GlFunctions::*Function)(GLenum, GLeglImageOES)>
void ImageTarget(GlPlayer& player, Call const& call)
{
    auto const function = player.Gl().*Function;
    GLeglImageOES const image = ImageOf(player, call);
    if (!function || !image)
        return player.NotReplayed(call, "its image is not in the trace");
    function(call.Word("target"), image);
}

// A null pointer leaves the storage of a compressed texture undefined, as it does for others.
template <bool Sub>
void CompressedTexImage2D(GlPlayer& player, Call const& call)
{
    DecodedField const& field = call.Field("data");
    Bytes const bytes = Call::Data(field);
    int32_t const size = call.Int("imageSize");
    if (size > 0 && bytes.size < static_cast<uint32_t>(size) && field.value != 0)
        throw BadRecord("data has " + std::to_string(bytes.size) + " bytes, not " + std::to_string(size));
    Copy const copy(bytes);
    void const* const data = field.value != 0 ? copy.Begin() : nullptr;
    if (!Sub)
        player.Gl().glCompressedTexImage2D(call.Word("target"), call.Int("level"),
                                           call.Word("internalformat"), call.Int("width"), call.Int("height"),
                                           call.Int("border"), size, data);
    else if (data)
        player.Gl().glCompressedTexSubImage2D(call.Word("target"), call.Int("level"), call.Int("xoffset"),
                                              call.Int("yoffset"), call.Int("width"), call.Int("height"),
                                              call.Word("format"), size, data);
}

// Mesa's driver takes as many units in OpenGL ES 1 as its shaders have, and brings the process down at the
// texture matrix of one that the API itself lacks.
void ActiveTexture(GlPlayer& player, Call const& call)
{
    GLint units = 0;
    if (player.IsEs1())
        player.Gl().glGetIntegerv(GL_MAX_TEXTURE_UNITS, &units);
    bool const lacking = player.IsEs1() && call.Word("texture") - GL_TEXTURE0 >= static_cast<GLuint>(units);
    if (!lacking)
        player.PlayPlain(call);
    else if (!call.Failed())
        player.NotReplayed(call, "the driver has no such texture unit");
}
}  // namespace

std::vector<GlEntry> GlTextureHandlers()
{
    return {{"glActiveTexture", ActiveTexture},
            {"glTexImage2D", TexImage2D},
            {"glTexSubImage2D", TexSubImage2D},
            {"glTexImage3DOES", TexImage3D},
            {"glTexSubImage3DOES", TexSubImage3D},
            {"glCompressedTexImage2D", CompressedTexImage2D<false>},
            {"glCompressedTexSubImage2D", CompressedTexImage2D<true>},
            {"glPixelStorei", PixelStore},
            {"glGenerateMipmap", GenerateMipmap},
            {"glEGLImageTargetTexture2DOES", ImageTarget<&GlFunctions::glEGLImageTargetTexture2DOES>},
            {"glEGLImageTargetRenderbufferStorageOES",
             ImageTarget<&GlFunctions::glEGLImageTargetRenderbufferStorageOES>}};
}
}  // namespace nebtrace::player
