#include "run_command.h"
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <sys/wait.h>

static std::string Replaced(std::string text, std::string const& from, std::string const& to)
{
    for (size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size()))
        text.replace(at, from.size(), to);
    return text;
}

// Each test has files of its own: tests run side by side.
static std::string BaseName()
{
    testing::TestInfo const& test = *testing::UnitTest::GetInstance()->current_test_info();
    return testing::TempDir() + "nebtrace_" + test.test_suite_name() + "_" + test.name();
}

CommandTest::CommandTest() : m_base(BaseName()) {}

CommandTest::~CommandTest()
{
    for (char const* const ending : {".nebt", ".out", ".err"})
        std::remove((m_base + ending).c_str());
}

void CommandTest::Write(std::string const& bytes) const
{
    std::ofstream(m_base + ".nebt", std::ios::binary) << bytes;
}

std::string CommandTest::Read(std::string const& ending) const
{
    std::ifstream file(m_base + ending, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

Outcome CommandTest::Run(std::string const& arguments, std::string shell) const
{
    shell = Replaced(shell, "@", NEBTRACE_BINARY " " + arguments);
    shell = Replaced(shell, "FILE", m_base + ".nebt");
    int const status = std::system(("( " + shell + " ) >" + m_base + ".out 2>" + m_base + ".err").c_str());
    Outcome outcome;
    outcome.code = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    outcome.out = Named(Read(".out"));
    outcome.err = Named(Read(".err"));
    return outcome;
}

std::string CommandTest::Named(std::string text) const
{
    return Replaced(std::move(text), m_base + ".nebt", "FILE");
}
