// Writes down what a program has in memory when it draws, one line of JSON for each draw, so that a recording
// can be held against it.
#pragma once
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>

namespace examples
{
class ArrayLog
{
public:
    ArrayLog() = default;
    ArrayLog(ArrayLog const&) = delete;
    ArrayLog& operator=(ArrayLog const&) = delete;
    ~ArrayLog()
    {
        if (m_file)
            std::fclose(m_file);
    }

    // Without a file nothing is written. False: the file can't be made.
    bool Open(std::string const& path)
    {
        m_file = std::fopen(path.c_str(), "w");
        return m_file != nullptr;
    }

    // For each draw: its name and its indices, if they are in the program's memory; its arrays by ascending
    // attribute; then the end of the line.
    void Draw(char const* call, void const* indices = nullptr, std::size_t size = 0)
    {
        if (!m_file)
            return;
        std::fprintf(m_file, R"({"call": "%s", "indices": ")", call);
        WriteBytes(indices, size);
        std::fprintf(m_file, R"(", "arrays": [)");
        m_separator = "";
    }
    // `count` elements of `size` bytes, `stride` bytes apart.
    void Array(unsigned index, void const* first, std::size_t size, std::size_t stride, std::size_t count)
    {
        if (!m_file)
            return;
        std::fprintf(m_file, R"(%s{"index": %u, "bytes": ")", m_separator, index);
        for (std::size_t i = 0; i < count; ++i)
            WriteBytes(static_cast<std::uint8_t const*>(first) + i * stride, size);
        std::fprintf(m_file, "\"}");
        m_separator = ", ";
    }
    void End()
    {
        if (m_file)
            std::fprintf(m_file, "]}\n");
    }

private:
    void WriteBytes(void const* bytes, std::size_t size)
    {
        for (std::size_t i = 0; i < size; ++i)
            std::fprintf(m_file, "%02x", static_cast<std::uint8_t const*>(bytes)[i]);
    }

    std::FILE* m_file = nullptr;
    char const* m_separator = "";
};
}  // namespace examples
