#include "trace/layout.h"
#include "trace/format.h"
#include <algorithm>
#include <unordered_map>

namespace nebtrace
{
namespace
{
struct Row
{
    Api api;
    uint16_t id;
    char const* name;
    char const* layout;
    char const* shortLayout;  // null: the layout with bare pointers
    bool oneForm;
};

constexpr Row kRows[] = {
#define RECORD(id, name, layout) {Api::Egl, id, #name, layout, nullptr, false},
#define RECORD_SHORT(id, name, layout, shortLayout) {Api::Egl, id, #name, layout, shortLayout, false},
#define RECORD_ONE_FORM(id, name, layout) {Api::Egl, id, #name, layout, nullptr, true},
#include "trace/records/egl.def"
#define RECORD(id, name, layout) {Api::Es1, id, #name, layout, nullptr, false},
#define RECORD_SHORT(id, name, layout, shortLayout) {Api::Es1, id, #name, layout, shortLayout, false},
#define RECORD_ONE_FORM(id, name, layout) {Api::Es1, id, #name, layout, nullptr, true},
#include "trace/records/es1.def"
#define RECORD(id, name, layout) {Api::Es2, id, #name, layout, nullptr, false},
#define RECORD_SHORT(id, name, layout, shortLayout) {Api::Es2, id, #name, layout, shortLayout, false},
#define RECORD_ONE_FORM(id, name, layout) {Api::Es2, id, #name, layout, nullptr, true},
#include "trace/records/es2.def"
};

std::vector<FieldSpec> ShortOf(std::vector<FieldSpec> fields)
{
    auto const longOnly = [](FieldSpec const& field) {
        return field.kind == Kind::IndexData || field.kind == Kind::ClientArrays;
    };
    fields.erase(std::remove_if(fields.begin(), fields.end(), longOnly), fields.end());
    return fields;
}

class Tables
{
public:
    Tables();
    RecordSpec const* Find(Api api, uint32_t id) const;
    RecordSpec const* Find(Api api, std::string_view name) const;

    std::vector<RecordSpec> records;
    std::vector<std::string> faults;

private:
    static uint32_t Key(Api api, uint32_t id) { return static_cast<uint32_t>(api) << 16 | id; }
    static std::string Key(Api api, std::string_view name) { return ApiName(api) + std::string(name); }
    bool Parse(Row const& row, char const* layout, std::vector<FieldSpec>& fields);
    void Add(Row const& row);

    std::unordered_map<uint32_t, size_t> m_byId;
    std::unordered_map<std::string, size_t> m_byName;
};

Tables::Tables()
{
    records.reserve(std::size(kRows));
    for (Row const& row : kRows)
        Add(row);
    for (size_t i = 0; i < records.size(); ++i)
    {
        bool const isNew = m_byId.emplace(Key(records[i].api, records[i].id), i).second &&
                           m_byName.emplace(Key(records[i].api, records[i].name), i).second;
        if (!isNew)
            faults.push_back(std::string(records[i].name) + ": stands in the table twice");
    }
}

bool Tables::Parse(Row const& row, char const* layout, std::vector<FieldSpec>& fields)
{
    std::string error;
    if (ParseLayout(layout, fields, error))
        return true;
    faults.push_back(std::string(row.name) + ": " + error);
    return false;
}

void Tables::Add(Row const& row)
{
    RecordSpec record;
    record.api = row.api;
    record.id = row.id;
    record.name = row.name;
    record.oneForm = row.oneForm;
    bool whole = Parse(row, row.layout, record.longForm);
    if (row.shortLayout)
        whole = Parse(row, row.shortLayout, record.shortForm) && whole;
    else if (!row.oneForm)
        record.shortForm = ShortOf(record.longForm);
    if (!whole)
    {
        record.longForm.clear();
        record.shortForm.clear();
    }
    records.push_back(std::move(record));
}

RecordSpec const* Tables::Find(Api api, uint32_t id) const
{
    auto const found = m_byId.find(Key(api, id));
    return found == m_byId.end() ? nullptr : &records[found->second];
}

RecordSpec const* Tables::Find(Api api, std::string_view name) const
{
    auto const found = m_byName.find(Key(api, name));
    return found == m_byName.end() ? nullptr : &records[found->second];
}

Tables const& GetTables()
{
    static Tables const tables;
    return tables;
}

template <typename What>
RecordSpec const* FindInAny(Api api, What what)
{
    if (api != Api::Any)
        return GetTables().Find(api, what);
    for (Api const each : {Api::Egl, Api::Es2, Api::Es1})
        if (RecordSpec const* const record = GetTables().Find(each, what))
            return record;
    return nullptr;
}
}  // namespace

char const* ApiName(Api api)
{
    switch (api)
    {
    case Api::Egl:
        return "egl";
    case Api::Es1:
        return "es1";
    case Api::Es2:
        return "es2";
    case Api::Any:
        break;
    }
    return "?";
}

bool IsComposite(Kind kind) { return kind >= Kind::Array; }

size_t ScalarSize(Kind kind)
{
    switch (kind)
    {
    case Kind::ApiByte:
    case Kind::Bool:
    case Kind::Byte:
        return 1;
    case Kind::Short:
        return 2;
    case Kind::Signed64:
    case Kind::Unsigned64:
        return 8;
    default:
        return 4;
    }
}

bool RecordSpec::HasResult() const
{
    auto const isResult = [](FieldSpec const& field) { return field.isResult; };
    return std::any_of(longForm.begin(), longForm.end(), isResult);
}

std::vector<RecordSpec> const& AllRecords() { return GetTables().records; }

std::vector<std::string> const& LayoutFaults() { return GetTables().faults; }

RecordSpec const* FindRecord(Api api, uint16_t id) { return FindInAny<uint32_t>(api, id); }

RecordSpec const* FindRecord(Api api, std::string_view name) { return FindInAny(api, name); }
}  // namespace nebtrace
