// What glDrawArrays and glDrawElements of both GL APIs keep of arrays in the application's memory.
//
// `Arrays` is an API's source of them:
//
//     Most()              how many there can be
//     ForEach(visit)      gives visit each SClientArray that is enabled and in no buffer, by ascending index
//     IsReadByHost(array) whether the host's word on the array agrees
//     kNoPointer          the log's line for an array without pointer
//     Elements()          the API's SElementBuffers
#pragma once
#include "support/log.h"
#include "wrappers/client_arrays.h"
#include "wrappers/element_buffers.h"
#include "wrappers/frame.h"

// Data in a buffer object is captured by the buffer's own calls. The arrays that the wrappers have followed
// can be another array object's or another context's, the pointer an offset or memory that is long gone: the
// host's word counts before anything is read.
template <typename Arrays>
void AppendClientArrays(CTraceBlock& block, CClientArrayCapture& capture, uint64_t elements,
                        char const* withoutPointer)
{
    Arrays::ForEach([&](SClientArray const& array) {
        if (!array.pointer && withoutPointer)
            LogMessage("%s", withoutPointer);
        if (array.pointer && Arrays::IsReadByHost(array))
            capture.Append(block, array, elements);
    });
}

template <typename Arrays, typename Frame>
void RecordDrawArrays(Frame const& frame, GLenum mode, GLint first, GLsizei count)
{
    if (!frame.IsRecording() || !frame.RecordsData())
        return frame.Record(mode, first, count);
    CClientArrayCapture capture(Arrays::Most());  // the block reads it at its end
    CTraceBlock block(frame.Id());
    frame.AppendHeadAndResult(block);
    AppendFields(block, frame.RecordState(), mode, first, count);
    // On purpose: `first` is not applied, the entries begin with the arrays' first element.
    AppendClientArrays<Arrays>(block, capture, CountOf(count), nullptr);
}

template <typename Arrays, typename Frame>
void RecordDrawElements(Frame const& frame, GLenum mode, SIndices const& indices)
{
    if (!frame.IsRecording() || !frame.RecordsData())
        return frame.Record(mode, indices.count, indices.type, indices.argument);
    CClientArrayCapture capture(Arrays::Most());  // the block reads it at its end
    CTraceBlock block(frame.Id());
    frame.AppendHeadAndResult(block);
    AppendFields(block, frame.RecordState(), mode, indices.count, indices.type);
    uint32_t largest = 0;
    // On purpose: a draw of no elements keeps one of each array.
    if (Arrays::Elements().AppendIndices(block, indices, largest))
        AppendClientArrays<Arrays>(block, capture, uint64_t{largest} + 1, Arrays::kNoPointer);
}
