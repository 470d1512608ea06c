#include "trace_comparison.h"
#include <algorithm>

using namespace nebtrace;

namespace
{
constexpr size_t kMostDifferences = 20;
// No machine maps its lowest page.
constexpr uint64_t kFirstAddress = 4096;

bool SameBytes(Bytes left, Bytes right)
{
    return left.size == right.size && std::equal(left.begin(), left.end(), right.begin());
}

bool IsHandle(std::string const& domain) { return domain.compare(0, 3, "EGL") == 0 || domain == "sync"; }

// Whether values of this kind are free, so that they are looked at one by one.
bool IsFree(FieldSpec const& spec)
{
    return spec.element == Kind::Pointer || (spec.element == Kind::Object && IsHandle(spec.domain));
}

bool HasItems(FieldSpec const& spec)
{
    return spec.kind == Kind::TextList || spec.kind == Kind::ClientArrays;
}
}  // namespace

bool TraceComparison::Run()
{
    m_where = "the header: ";
    Require(m_left.GetHeader().recordData == m_right.GetHeader().recordData, "the record-data flags differ");
    Require(m_left.GetHeader().frameBuffer == m_right.GetHeader().frameBuffer,
            "the frame-buffer flags differ");
    Side left;
    Side right;
    while (m_differences.size() < kMostDifferences)
    {
        bool const more = m_left.Next(left.record);
        if (more != m_right.Next(right.record))
        {
            m_where = "behind record " + std::to_string(m_records);
            Require(false, ": one recording has more records than the other");
            break;
        }
        if (!more)
        {
            CompareEnds();
            break;
        }
        ++m_records;
        m_where = "record " + std::to_string(m_records);
        CompareRecords(left, right);
    }
    return m_differences.empty();
}

void TraceComparison::CompareRecords(Side& left, Side& right)
{
    Record const& one = left.record;
    Record const& other = right.record;
    if (one.type != other.type || one.id != other.id)
    {
        Require(false, ": IDs " + std::to_string(one.id) + " and " + std::to_string(other.id));
        return;
    }
    Require(SameName("thread", one.thread, other.thread), ": the threads are not those of earlier records");
    if (one.type == RecordType::Call)
        CompareCalls(left, right);
    else if (one.type == RecordType::StateMarker)
        Require(SameBytes(one.payload, other.payload), ": the markers differ");
}

void TraceComparison::CompareCalls(Side& left, Side& right)
{
    bool const decoded = Decode(left.record.id, left.hint, left.record.payload, left.call) &&
                         Decode(right.record.id, right.hint, right.record.payload, right.call);
    if (!decoded || left.call.spec != right.call.spec || left.call.form != right.call.form ||
        left.call.fields.size() != right.call.fields.size())
    {
        Require(false, " (ID " + std::to_string(left.record.id) + "): not of one layout");
        return;
    }
    left.hint = right.hint = left.call.GetApi();
    m_where += " " + std::string(left.call.Name());
    Require(left.call.error == right.call.error, ": the error words differ");
    for (size_t i = 0; i < left.call.fields.size(); ++i)
        CompareFields(left.call.fields[i], right.call.fields[i]);
}

void TraceComparison::CompareFields(DecodedField const& left, DecodedField const& right)
{
    ++m_fields;
    FieldSpec const& spec = *left.spec;
    std::string const what = ", " + spec.name;
    Require(left.hasData == right.hasData && left.count == right.count, what + ": lengths or forms differ");
    if (!IsComposite(spec.kind))
    {
        Require(SameValue(spec.element, spec.domain, left.value, right.value), what + ": values differ");
        return;
    }
    if (spec.kind != Kind::ClientArrays)
        Require(SamePointer(left.value, right.value), what + ": pointers that cannot be the same");
    if (HasItems(spec))
        Require(SameItems(left, right), what + ": items differ");
    else if (!IsFree(spec))
        Require(SameBytes(left.bytes, right.bytes), what + ": contents differ");
    else
        for (size_t at = 0; at + 4 <= std::min(left.bytes.size, right.bytes.size); at += 4)
            Require(SameValue(spec.element, spec.domain, LoadU32(left.bytes.data + at),
                              LoadU32(right.bytes.data + at)),
                    what + ": elements differ");
}

bool TraceComparison::SameItems(DecodedField const& left, DecodedField const& right)
{
    ItemReader ones(left);
    ItemReader others(right);
    ItemReader::Item one;
    ItemReader::Item other;
    while (ones.Next(one))
        if (!others.Next(other) || one.index != other.index || !SamePointer(one.pointer, other.pointer) ||
            !SameBytes(one.bytes, other.bytes))
            return false;
    return !others.Next(other);
}

bool TraceComparison::SameValue(Kind kind, std::string const& domain, uint64_t left, uint64_t right)
{
    if (kind == Kind::Pointer)
        return SamePointer(left, right);
    if (kind == Kind::Object && IsHandle(domain))
        return SameName(domain, left, right);
    return left == right;
}

bool TraceComparison::SamePointer(uint64_t left, uint64_t right) const
{
    return left < kFirstAddress ? left == right : right != 0;
}

bool TraceComparison::SameName(std::string const& domain, uint64_t left, uint64_t right)
{
    if (left == 0 || right == 0)
        return left == right;
    uint64_t const there = m_names[domain].emplace(left, right).first->second;
    uint64_t const back = m_back[domain].emplace(right, left).first->second;
    return there == right && back == left;
}

void TraceComparison::Require(bool same, std::string const& what)
{
    if (!same && m_differences.size() < kMostDifferences)
        m_differences.push_back(m_where + what);
}

void TraceComparison::CompareEnds()
{
    m_where = "the end: ";
    Require(m_left.End() == m_right.End(), "one recording ends otherwise than the other");
    Require(m_left.EndOffset() == m_right.EndOffset(), "the sizes differ");
    Require(m_left.SnapshotPosition() == m_right.SnapshotPosition(), "the states stand elsewhere");
}
