// Standard output for commands that print much. Whoever reads it may stop reading, `head` for one: that is no
// failure, and no reason to go on.
#pragma once
#include <string>

class Output
{
public:
    Output();

    // False once nobody reads any more. Throws CommandFailed when the output cannot be written otherwise.
    bool Line(std::string const& text);

    // What is still buffered; to be called once, at the end.
    bool Flush();

private:
    bool Check(bool written);
};
