#include "extract.h"
#include "api/types.h"
#include "commands.h"
#include "image_pixels.h"
#include "picture_file.h"
#include "trace/enums.h"
#include <cerrno>
#include <cinttypes>
#include <cstdio>
#include <cstring>
#include <iostream>
#include <unistd.h>

using namespace nebtrace;

namespace
{
constexpr char kCreateShader[] = "glCreateShader";

// Of the arrays of bytes, these are contents; the others are a byte of some pointer.
bool IsContent(DecodedField const& field)
{
    FieldSpec const& spec = *field.spec;
    return spec.kind == Kind::Array && spec.element == Kind::Byte &&
           (spec.name == "data" || spec.name == "binary");
}

// Pixels that came out of a frame buffer, whose first row is the lowest. Those of a texture have no such
// direction: most applications upload a picture's top row first.
bool IsReadBack(DecodedCall const& call)
{
    return call.Name() == "eglSwapBuffers" || call.Name() == "glReadPixels" ||
           call.Name() == "glReadnPixelsEXT";
}
}  // namespace

Extract::Extract(std::string folder) : m_folder(std::move(folder))
{
    MakeFolder(m_folder);
    if (access(m_folder.c_str(), W_OK | X_OK) != 0)
        throw CommandFailed(m_folder + ": " + std::strerror(errno));
}

// Contexts that share nothing may use a name twice. The latest creation counts: a source follows its shader's
// creation closely.
void Extract::Observe(Record const& record)
{
    if (record.id != FindRecord(Api::Es2, kCreateShader)->id || record.type != RecordType::Call ||
        !Decode(record.id, Api::Es2, record.payload, m_observed))
        return;
    uint32_t const shader = static_cast<uint32_t>(m_observed.Result()->value);
    if (shader != 0)
        m_shaderTypes[shader] = static_cast<uint32_t>(m_observed.Find("type")->value);
}

void Extract::Write(uint64_t number, DecodedCall const& call)
{
    m_number = number;
    m_call = &call;
    for (DecodedField const& field : call.fields)
        if (field.hasData && !field.bytes.empty())
            WriteField(field);
}

void Extract::WriteField(DecodedField const& field)
{
    switch (field.spec->kind)
    {
    case Kind::Image:
        return WriteImage(field);
    case Kind::Blob:
        return WriteBytes(FormatSuffix() + ".bin", field.bytes);
    case Kind::IndexData:
        return WriteBytes("-indices.bin", field.bytes);
    case Kind::ClientArrays:
        return WriteClientArrays(field);
    case Kind::TextList:
        return WriteSource(field);
    default:
        break;
    }
    if (IsContent(field))
        WriteBytes(".bin", field.bytes);
}

void Extract::WriteImage(DecodedField const& image)
{
    ImageLayout layout;
    layout.width = static_cast<int32_t>(Argument("width", 0));
    layout.height = static_cast<int32_t>(Argument("height", 0));
    layout.depth = static_cast<int32_t>(Argument("depth", 1));
    // A frame's pixels say nothing of these: they are always the same.
    layout.format = Argument("format", GL_RGBA);
    layout.type = Argument("type", GL_UNSIGNED_BYTE);
    layout.alignment = Argument("alignment", 1);
    player::Picture picture;
    std::string const reason = ToPicture(layout, image.bytes, picture);
    if (reason.empty())
        return WritePicture(FileName(".png"), picture,
                            IsReadBack(*m_call) ? FirstRow::Lowest : FirstRow::Highest);
    std::cerr << "nebtrace: call " << m_number << ", " << m_call->Name() << ": " << reason
              << ": written as they are\n";
    WriteBytes(".bin", image.bytes);
}

void Extract::WriteClientArrays(DecodedField const& arrays)
{
    ItemReader reader(arrays);
    for (ItemReader::Item item; reader.Next(item);)
        if (!item.bytes.empty())
            WriteBytes("-array" + std::to_string(item.index) + ".bin", item.bytes);
}

// The texts of one call are one source, cut where the application had it cut.
void Extract::WriteSource(DecodedField const& texts)
{
    std::string source;
    ItemReader reader(texts);
    for (ItemReader::Item item; reader.Next(item);)
        source.append(reinterpret_cast<char const*>(item.bytes.data), item.bytes.size);
    WriteBytes(ShaderEnding(), {reinterpret_cast<uint8_t const*>(source.data()), source.size()});
}

std::string Extract::ShaderEnding() const
{
    auto const known = m_shaderTypes.find(Argument("shader", 0));
    switch (Argument("type", known == m_shaderTypes.end() ? 0 : known->second))
    {
    case GL_VERTEX_SHADER:
        return ".vert";
    case GL_FRAGMENT_SHADER:
        return ".frag";
    default:
        return ".glsl";
    }
}

// "-GL_ETC1_RGB8_OES" for a compressed image, nothing for anything else.
std::string Extract::FormatSuffix() const
{
    DecodedField const* const internal = m_call->Find("internalformat");
    DecodedField const* const format = internal ? internal : m_call->Find("format");
    if (!format)
        return "";
    auto const value = static_cast<uint32_t>(format->value);
    char number[16];
    std::snprintf(number, sizeof number, "0x%" PRIX32, value);
    char const* const name = EnumName(format->spec->group, value);
    return std::string("-") + (name ? name : number);
}

uint32_t Extract::Argument(std::string_view name, uint32_t otherwise) const
{
    DecodedField const* const field = m_call->Find(name);
    return field ? static_cast<uint32_t>(field->value) : otherwise;
}

std::string Extract::FileName(std::string const& ending) const
{
    char number[32];
    std::snprintf(number, sizeof number, "%06" PRIu64, m_number);
    return m_folder + "/" + number + "-" + std::string(m_call->Name()) + ending;
}

void Extract::WriteBytes(std::string const& ending, Bytes bytes) const
{
    std::string const path = FileName(ending);
    std::FILE* const file = std::fopen(path.c_str(), "wb");
    if (!file)
        throw CommandFailed(path + ": " + std::strerror(errno));
    errno = 0;
    bool const written = std::fwrite(bytes.data, 1, bytes.size, file) == bytes.size;
    bool const closed = std::fclose(file) == 0;
    if (!written || !closed)
        throw CommandFailed(path + ": " + std::strerror(errno));
}
