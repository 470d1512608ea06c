// compare_traces LEFT RIGHT: what differs between two recordings of one program, of which LEFT was made on a
// 32-bit machine. Exits with 0 if nothing does, with 1 if something does, with 2 if they cannot be compared.
#include "trace_comparison.h"
#include <cinttypes>
#include <cstdio>

int main(int argc, char** argv)
{
    if (argc != 3)
        return 2;
    std::string error;
    auto const left = nebtrace::Reader::Open(argv[1], error);
    auto const right = nebtrace::Reader::Open(argv[2], error);
    if (!left || !right)
    {
        std::fprintf(stderr, "%s\n", error.c_str());
        return 2;
    }
    TraceComparison comparison(*left, *right);
    bool const same = comparison.Run();
    for (std::string const& difference : comparison.Differences())
        std::printf("%s\n", difference.c_str());
    std::printf("%" PRIu64 " records, %" PRIu64 " fields compared: %s\n", comparison.Records(),
                comparison.Fields(), same ? "the same" : "they differ");
    return same ? 0 : 1;
}
