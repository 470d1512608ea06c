// A folder of a test's own, which is the working directory as long as it lives.
#pragma once
#include <fstream>
#include <gtest/gtest.h>
#include <string>

class ScratchFolder
{
public:
    ScratchFolder();
    ~ScratchFolder();
    ScratchFolder(ScratchFolder const&) = delete;
    ScratchFolder& operator=(ScratchFolder const&) = delete;

    std::string const& Path() const { return m_path; }
    void Write(std::string const& name, std::string const& contents)
    {
        std::ofstream(m_path + "/" + name) << contents;
    }
    std::string Read(std::string const& name)
    {
        std::ifstream file(m_path + "/" + name, std::ios::binary);
        return std::string((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    }

private:
    std::string m_path;
    std::string m_before;
};
