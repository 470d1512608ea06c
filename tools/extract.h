// `nebtrace dump --extract`: what records carry, as files.
#pragma once
#include "player/picture.h"
#include "trace/decode.h"
#include "trace/reader.h"
#include <map>
#include <string>

class Extract
{
public:
    // Makes the folder if it is missing. Throws CommandFailed if nothing can be written there.
    explicit Extract(std::string folder);

    // Every record that may tell the type of a shader has to come by here, whether it is written or not: a
    // shader's source may be asked for without its creation.
    void Observe(nebtrace::Record const& record);

    // Writes what the call carries. Throws CommandFailed.
    void Write(uint64_t number, nebtrace::DecodedCall const& call);

private:
    void WriteField(nebtrace::DecodedField const& field);
    void WriteImage(nebtrace::DecodedField const& image);
    void WriteClientArrays(nebtrace::DecodedField const& arrays);
    void WriteSource(nebtrace::DecodedField const& texts);
    void WriteBytes(std::string const& ending, nebtrace::Bytes bytes) const;
    std::string FormatSuffix() const;
    std::string ShaderEnding() const;
    uint32_t Argument(std::string_view name, uint32_t otherwise) const;
    std::string FileName(std::string const& ending) const;

    std::string m_folder;
    std::map<uint32_t, uint32_t> m_shaderTypes;  // by the name that the recording application had
    nebtrace::DecodedCall m_observed;
    // The call that is being written.
    uint64_t m_number = 0;
    nebtrace::DecodedCall const* m_call = nullptr;
};
