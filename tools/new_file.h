// A file that appears whole under its name or not at all.
#pragma once
#include <cstdio>
#include <string>

class NewFile
{
public:
    // Opens a file beside the named one. What stands under the name stays until Keep. Throws CommandFailed,
    // as all of these do.
    explicit NewFile(std::string const& name);
    // Without Keep, nothing is left.
    ~NewFile();
    NewFile(NewFile const&) = delete;
    NewFile& operator=(NewFile const&) = delete;

    void Write(void const* data, size_t size);
    // Puts the file, whole and on the disk, in the place of what has the name.
    void Keep();

private:
    [[noreturn]] void Fail() const;

    std::string m_name;
    std::string m_beside;
    std::FILE* m_file = nullptr;
};
