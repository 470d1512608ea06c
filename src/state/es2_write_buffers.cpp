// A snapshot as calls: vertex array objects and buffers.
#include "state/es2_context_state.h"
#include "state/visit_by_key.h"
#include "support/log.h"
#include "wrappers/es2.h"

namespace
{

constexpr GLenum kWriteOnly = GL_WRITE_ONLY_OES;

void WriteAttribute(GLuint index, VertexAttributeArray const& array)
{
    Es2::_glBindBuffer(GL_ARRAY_BUFFER, array.boundarraybuffer);
    Es2::_glVertexAttribPointer(index, array.size, array.type, static_cast<GLboolean>(array.normalized),
                                array.stride, array.pointer);
    if (array.enabled)
        Es2::_glEnableVertexAttribArray(index);
    else
        Es2::_glDisableVertexAttribArray(index);
}

void WriteBindings(VAODefinition const& vertexArray)
{
    Es2::_glBindBuffer(GL_ARRAY_BUFFER, vertexArray.boundarraybuffer);
    Es2::_glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, vertexArray.boundelementbuffer);
}

}  // namespace

void CEs2ContextState::WriteVAOState()
{
    mVertexArrayObjects[0];  // the default array object is always written
    for (int slot = 0; slot < mVertexArrayObjects.Count(); ++slot)
    {
        VAODefinition& vertexArray = mVertexArrayObjects.ValueAt(slot);
        if (vertexArray.name != 0)
            Trace_GenVertexArrays(1, &vertexArray.name);
        Trace_BindVertexArray(vertexArray.name);
        VisitByKey(vertexArray.vertexattributearrays, WriteAttribute);
        WriteBindings(vertexArray);
    }
    Trace_BindVertexArray(mBoundVAO);
}

// No names are generated: the bind brings a buffer into being.
void CEs2ContextState::WriteBufferData(bool optimize)
{
    for (int slot = 0; slot < m_sBufferDatas.Count(); ++slot)
    {
        BufferDefinition const& buffer = m_sBufferDatas.ValueAt(slot);
        if (optimize && !m_sUsedBuffers.Find(buffer.bufferName))
        {
            LogMessage("Buffer not used: %d. Ignored", buffer.bufferName);
            continue;
        }
        Es2::_glBindBuffer(buffer.bufferTarget, buffer.bufferName);
        Es2::_glBufferData(buffer.bufferTarget, buffer.bufferDataSize, buffer.bufferData, buffer.bufferUsage);
        if (buffer.isMappedOES)
            Es2::_glMapBufferOES(buffer.bufferTarget, kWriteOnly);
    }
    WriteBindings(BoundVertexArray());
}
