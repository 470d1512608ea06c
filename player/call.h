// A decoded record as the player's handlers read it: arguments by name, and an exception for what is not
// there.
#pragma once
#include "trace/decode.h"
#include "trace/reader.h"
#include <stdexcept>
#include <string>
#include <vector>

namespace nebtrace::player
{
// A record that cannot have been recorded so: replay names it and stops.
struct BadRecord : std::runtime_error
{
    using std::runtime_error::runtime_error;
};

// The machine's driver refuses what a replay cannot do without.
struct DriverFailure : std::runtime_error
{
    using std::runtime_error::runtime_error;
};

class Call
{
public:
    Call(Record const& record, DecodedCall const& decoded) : m_record(record), m_decoded(decoded) {}

    uint64_t Number() const { return m_record.call; }
    uint64_t Frame() const { return m_record.frame; }
    std::string Name() const { return std::string(m_decoded.Name()); }
    uint16_t Id() const { return m_record.id; }
    bool Failed() const { return m_decoded.Failed(); }
    DecodedCall const& Decoded() const { return m_decoded; }

    DecodedField const* Find(std::string_view name) const { return m_decoded.Find(name); }
    // Throws BadRecord when the record's form has no such field.
    DecodedField const& Field(std::string_view name) const;

    int32_t Int(std::string_view name) const { return static_cast<int32_t>(Field(name).value); }
    uint32_t Word(std::string_view name) const { return static_cast<uint32_t>(Field(name).value); }
    float Real(std::string_view name) const;
    uint32_t Result() const;

    // What a pointer argument pointed at; empty for a null pointer. Throws BadRecord for a pointer whose data
    // were not recorded.
    Bytes Data(std::string_view name) const;
    std::string Text(std::string_view name) const { return Text(Field(name)); }
    std::vector<uint32_t> Words(std::string_view name) const;

    static std::string Text(DecodedField const& field);
    static Bytes Data(DecodedField const& field);

private:
    Record const& m_record;
    DecodedCall const& m_decoded;
};
}  // namespace nebtrace::player
