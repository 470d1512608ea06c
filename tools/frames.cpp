// `nebtrace frames`: the recorded frames as PNG files.
#include "commands.h"
#include "dump_options.h"
#include "picture_file.h"
#include "trace/reader.h"
#include "trace_fault.h"
#include <CLI/CLI.hpp>
#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>

using Json = nlohmann::ordered_json;
using namespace nebtrace;

namespace
{
struct Choice
{
    std::string file;
    std::string folder;
    std::string frames;
    bool json = false;
};

// Whether the frame was written: a swap can have been recorded without its pixels.
bool WriteFrame(Record const& record, std::string const& folder)
{
    DecodedCall decoded;
    if (!Decode(record.id, Api::Egl, record.payload, decoded))
        throw player::BadRecord("it fits no layout");
    std::optional<player::Picture> const picture = RecordedPicture(player::Call(record, decoded));
    if (picture)
        WritePicture(folder + "/" + FrameName(record.frame) + ".png", *picture);
    return picture.has_value();
}

void RunFrames(Choice const& choice)
{
    std::string error;
    std::unique_ptr<Reader> const reader =
        Reader::Open(choice.file == "-" ? "/dev/stdin" : choice.file, error);
    if (!reader)
        throw CommandFailed(error);
    Range range;
    ParseRange(choice.frames, range);
    MakeFolder(choice.folder);
    uint64_t written = 0;
    Record record;
    try
    {
        while (reader->Next(record) && record.frame <= range.last)
            if (record.id == kSwapBuffersId && range.Holds(record.frame) && WriteFrame(record, choice.folder))
                ++written;
    } catch (player::BadRecord const& bad)
    {
        throw CommandFailed(choice.file + ": the swap at offset " + std::to_string(record.offset) + ": " +
                            bad.what());
    }
    if (choice.json)
    {
        Json const object = {{"file", choice.file}, {"folder", choice.folder}, {"written", written}};
        std::cout << object.dump(2, ' ', true, Json::error_handler_t::replace) << "\n";
    }
    else
        std::cout << written << (written == 1 ? " frame" : " frames") << " written to " << choice.folder
                  << "\n";
    if (reader->End() != EndState::Reading && !reader->EndedInOrder())
        throw CommandFailed(TraceFault(choice.file, *reader));
    if (written == 0)
        throw CommandFailed(choice.file + ": no frame in the range was recorded with its pixels, "
                                          "as nebtrace record --save-frames does");
}
}  // namespace

void AddFramesCommand(CLI::App& app)
{
    auto const choice = std::make_shared<Choice>();
    CLI::App* const frames = app.add_subcommand("frames", "Write the recorded frames as PNG files");
    frames->add_option("FILE", choice->file, "The trace; - for standard input")->required();
    frames->add_option("DIR", choice->folder, "The folder for the files; made if it is missing")->required();
    frames->add_option("--frames", choice->frames, "Only these frames of the file: A-B, A- or A")
        ->type_name("FRAMES")
        ->check(CheckRange);
    frames->add_flag("--json", choice->json, "Print what was written as one JSON object");
    frames->callback([choice] { RunFrames(*choice); });
}
