// Reads a built trace both as a file can be read and as a pipe can, which must not differ.
#pragma once
#include "trace/reader.h"
#include "trace_builder.h"
#include <gtest/gtest.h>
#include <memory>
#include <sstream>

enum class Input
{
    File,
    Pipe
};

inline void PrintTo(Input input, std::ostream* stream)
{
    *stream << (input == Input::File ? "File" : "Pipe");
}

class ReaderTest : public testing::TestWithParam<Input>
{
protected:
    nebtrace::Reader& Read(std::string const& bytes)
    {
        m_pipe = std::make_unique<PipeBuffer>(bytes);
        m_file = std::make_unique<std::stringbuf>(bytes);
        std::streambuf* const buffer =
            GetParam() == Input::Pipe ? static_cast<std::streambuf*>(m_pipe.get()) : m_file.get();
        m_stream = std::make_unique<std::istream>(buffer);
        m_reader = std::make_unique<nebtrace::Reader>(*m_stream);
        return *m_reader;
    }
    nebtrace::Reader& Read(Trace const& trace) { return Read(trace.All()); }

    // Reads to the end; the number of records that came.
    static size_t Walk(nebtrace::Reader& reader)
    {
        nebtrace::Record record;
        size_t count = 0;
        while (reader.Next(record))
            ++count;
        return count;
    }

private:
    std::unique_ptr<PipeBuffer> m_pipe;
    std::unique_ptr<std::stringbuf> m_file;
    std::unique_ptr<std::istream> m_stream;
    std::unique_ptr<nebtrace::Reader> m_reader;
};

inline std::string InputName(testing::TestParamInfo<Input> const& info)
{
    return info.param == Input::File ? "File" : "Pipe";
}
