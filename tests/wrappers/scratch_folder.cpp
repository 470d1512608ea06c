#include "tests/wrappers/scratch_folder.h"
#include <cstdlib>
#include <filesystem>

namespace fs = std::filesystem;

ScratchFolder::ScratchFolder() : m_before(fs::current_path())
{
    std::string name = testing::TempDir() + "scratch_XXXXXX";
    if (mkdtemp(&name[0]))
        fs::current_path(name);
    m_path = fs::current_path();
}

ScratchFolder::~ScratchFolder()
{
    fs::current_path(m_before);
    std::error_code ignored;
    fs::remove_all(m_path, ignored);
}
