// Pictures as PNG files.
#pragma once
#include "player/picture.h"
#include <string>

// "frame_00012" for the file's frame 12, as the other subcommands count them.
std::string FrameName(uint64_t index);

// Makes the folder if it is missing. Throws CommandFailed.
void MakeFolder(std::string const& folder);

// Which row of the picture its pixels begin with. GL's own pictures begin with the lowest.
enum class FirstRow
{
    Lowest,
    Highest
};

// Throws CommandFailed if the file cannot be written.
void WritePicture(std::string const& path, nebtrace::player::Picture const& picture,
                  FirstRow first = FirstRow::Lowest);
