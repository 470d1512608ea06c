// The wrappers that are the same in both GL APIs: one text for each, which names the calls, the host and the
// trackers of the namespace that it stands in.
#include "wrappers/calls.h"
#include "wrappers/element_buffers.h"
#include "wrappers/es1/track.h"
#include "wrappers/es2/track.h"
#include "wrappers/host_queries.h"
#include "wrappers/mapped_copy.h"
#include "wrappers/sizing.h"

namespace Es1
{
#include "wrappers/gl/buffers.inc"
#include "wrappers/gl/draws.inc"
#include "wrappers/gl/framebuffers.inc"
#include "wrappers/gl/pipeline.inc"
#include "wrappers/gl/qcom.inc"
#include "wrappers/gl/queries.inc"
#include "wrappers/gl/sync.inc"
#include "wrappers/gl/textures.inc"
#include "wrappers/gl/vertex_arrays.inc"
}  // namespace Es1

namespace Es2
{
#include "wrappers/gl/buffers.inc"
#include "wrappers/gl/draws.inc"
#include "wrappers/gl/framebuffers.inc"
#include "wrappers/gl/pipeline.inc"
#include "wrappers/gl/qcom.inc"
#include "wrappers/gl/queries.inc"
#include "wrappers/gl/sync.inc"
#include "wrappers/gl/textures.inc"
#include "wrappers/gl/vertex_arrays.inc"
}  // namespace Es2
