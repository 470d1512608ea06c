// Holds two recordings of one program against each other that were made on machines of different kinds:
// record by record and field by field, to the last byte, but for what a machine gives anew in each run.
//
// Free are the values of addresses, of EGL's handles and of thread IDs. They must still be null in both or in
// neither, and a handle or a thread of the one recording must stand for one and the same of the other
// throughout. A small number in a pointer's place is no address, but an offset into a buffer, and must be the
// same.
#pragma once
#include "trace/decode.h"
#include "trace/reader.h"
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

class TraceComparison
{
public:
    // `left` decides what is an address: it is to come from the 32-bit machine, where a recorded pointer is
    // whole.
    TraceComparison(nebtrace::Reader& left, nebtrace::Reader& right) : m_left(left), m_right(right) {}

    // Reads both to their ends; returns whether they are the same.
    bool Run();

    uint64_t Records() const { return m_records; }
    uint64_t Fields() const { return m_fields; }
    // One line each; no more than a few of those that there are.
    std::vector<std::string> const& Differences() const { return m_differences; }

private:
    struct Side
    {
        nebtrace::Record record;
        nebtrace::DecodedCall call;
        nebtrace::Api hint = nebtrace::Api::Any;
    };

    void CompareRecords(Side& left, Side& right);
    void CompareCalls(Side& left, Side& right);
    void CompareFields(nebtrace::DecodedField const& left, nebtrace::DecodedField const& right);
    bool SameItems(nebtrace::DecodedField const& left, nebtrace::DecodedField const& right);
    bool SameValue(nebtrace::Kind kind, std::string const& domain, uint64_t left, uint64_t right);
    bool SamePointer(uint64_t left, uint64_t right) const;
    bool SameName(std::string const& domain, uint64_t left, uint64_t right);
    void Require(bool same, std::string const& what);
    void CompareEnds();

    nebtrace::Reader& m_left;
    nebtrace::Reader& m_right;
    std::map<std::string, std::map<uint64_t, uint64_t>> m_names;  // by class, from left to right
    std::map<std::string, std::map<uint64_t, uint64_t>> m_back;   // and from right to left
    std::string m_where;
    std::vector<std::string> m_differences;
    uint64_t m_records = 0;
    uint64_t m_fields = 0;
};
