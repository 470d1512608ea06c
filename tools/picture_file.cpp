#include "picture_file.h"
#include "commands.h"
#include <cinttypes>
#include <cstdio>
#include <filesystem>
#include <png.h>

std::string FrameName(uint64_t index)
{
    char name[40];
    std::snprintf(name, sizeof name, "frame_%05" PRIu64, index);
    return name;
}

void MakeFolder(std::string const& folder)
{
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    if (!std::filesystem::is_directory(folder))
        throw CommandFailed(folder + ": " + (error ? error.message() : "is no folder"));
}

void WritePicture(std::string const& path, nebtrace::player::Picture const& picture, FirstRow first)
{
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    image.width = static_cast<png_uint_32>(picture.width);
    image.height = static_cast<png_uint_32>(picture.height);
    image.format = PNG_FORMAT_RGBA;
    // PNG's first row is the highest: a negative stride turns a picture over that begins with the lowest.
    int const stride = first == FirstRow::Lowest ? -picture.width * 4 : picture.width * 4;
    if (!png_image_write_to_file(&image, path.c_str(), 0, picture.pixels.data(), stride, nullptr))
        throw CommandFailed(path + ": " + image.message);
}
