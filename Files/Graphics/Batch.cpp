#include "Files/Graphics/Batch.h"

#include "Files/Base/Error.h"
#include "Files/Graphics/GpuState.h"
#include "Files/Graphics/Window.h"
#include "Platform/MemoryManager.h"

GraphicsStats g_GraphicsStats;

namespace {

constexpr int32_t kMaxVertices = 65536;
constexpr int32_t kFirstCapacity = 294912;                         // bytes
constexpr int32_t kPoolMinimum = 16384, kPoolMinimumIntel = 4096;  // vertices
constexpr int64_t kReuseAfterFrames = 4, kNewBufferAge = 7;

struct VertexBuffer {
    VertexBuffer* next;
    DeviceBuffer* device;
    bool locked, dynamic, written;
    bool bytes;           // start, cursor and capacity count bytes, else vertices
    int32_t vertexBytes;  // 0 for a byte buffer: any stride
    int32_t start, cursor, capacity;
    uint8_t* base;
    int64_t lastFrame;
};

struct VertexBatch {
    int32_t primType;
    GpuTexture* texture;
    int32_t stride;
    bool mustBreak;
    bool textureValid;  // `texture` is that of the open batch
    uint8_t* base;
    VertexBuffer* buffer;  // null at the start of a frame
    int32_t used;          // vertices, in the memory method
};

VertexBatch s_batch;
VertexBuffer* s_buffers;
int32_t s_bufferCount;
int64_t s_frame;
int32_t s_method;
int32_t s_dynamicCapacity;  // bytes
uint8_t* s_memory;
int32_t s_memoryCapacity;  // bytes
bool s_drawing = true;

int32_t Request(const VertexBuffer& buffer, int32_t stride, int32_t count)
{
    return buffer.bytes ? stride * count : count;
}

bool HasRoom(int32_t stride, int32_t count)
{
    if (s_method == BATCH_MEMORY) return (s_batch.used + count) * stride <= s_memoryCapacity;
    const VertexBuffer* buffer = s_batch.buffer;
    return buffer && buffer->cursor + Request(*buffer, stride, count) <= buffer->capacity;
}

VertexBuffer* CreateBuffer(int32_t bytes, int32_t vertexBytes)
{
    DeviceBuffer* device = g_Device->CreateBuffer(static_cast<uint32_t>(bytes), true);
    const bool dynamic = device != nullptr;
    if (!device) device = g_Device->CreateBuffer(static_cast<uint32_t>(bytes), false);
    if (!device) {
        int32_t total = 0;
        for (const VertexBuffer* other = s_buffers; other; other = other->next)
            total += other->bytes ? other->capacity : other->capacity * other->vertexBytes;
        Error_Fatal(
            "Fatal Error: Can not create vertex buffer of size %d bytes\n"
            "%d vertex buffers allocated with total size of %d KB\n",
            bytes, s_bufferCount, total / 1024);
        return nullptr;
    }
    auto* buffer = VxNew<VertexBuffer>();
    *buffer = VertexBuffer{};
    buffer->device = device;
    buffer->dynamic = dynamic;
    buffer->bytes = vertexBytes == 0;
    buffer->vertexBytes = vertexBytes;
    buffer->capacity = vertexBytes == 0 ? bytes : bytes / vertexBytes;
    buffer->lastFrame = s_frame - kNewBufferAge;
    buffer->next = s_buffers;
    s_buffers = buffer;
    ++s_bufferCount;
    return buffer;
}

void Unlock(VertexBuffer* buffer)
{
    if (!buffer->locked) return;
    g_Device->UnlockBuffer(buffer->device);
    buffer->locked = false;
}

void FreeBuffer(VertexBuffer* buffer)
{
    VertexBuffer** link = &s_buffers;
    while (*link != buffer) link = &(*link)->next;
    *link = buffer->next;
    if (g_Device) {
        Unlock(buffer);
        g_Device->FreeBuffer(buffer->device);
    }
    VxDelete(buffer);
    --s_bufferCount;
}

bool OpenMemory(int32_t bytes)
{
    if (bytes > s_memoryCapacity) {
        MemoryManager::Free(s_memory);
        s_memory = nullptr;
        while (s_memoryCapacity < bytes) s_memoryCapacity *= 2;
    }
    if (!s_memory)
        s_memory =
            static_cast<uint8_t*>(MemoryManager::Alloc(static_cast<size_t>(s_memoryCapacity)));
    s_batch.base = s_memory;
    return true;
}

VertexBuffer* FindDynamic(int32_t bytes)
{
    VertexBuffer* buffer = s_buffers;
    while (buffer && !buffer->bytes) buffer = buffer->next;
    if (buffer && bytes > buffer->capacity) {
        FreeBuffer(buffer);
        buffer = nullptr;
    }
    while (s_dynamicCapacity < bytes) s_dynamicCapacity *= 2;
    if (!buffer) buffer = CreateBuffer(s_dynamicCapacity, 0);
    if (buffer && buffer->cursor + bytes > buffer->capacity) buffer->cursor = 0;
    return buffer;
}

VertexBuffer* FindPooled(int32_t stride, int32_t count)
{
    for (VertexBuffer* buffer = s_buffers; buffer; buffer = buffer->next) {
        const bool fits =
            buffer->vertexBytes == stride && buffer->cursor + count <= buffer->capacity;
        // lastFrame moves only at a frame's end, so a frame goes on filling its buffers.
        if (fits && buffer->lastFrame + kReuseAfterFrames < s_frame) return buffer;
    }
    const int32_t least = g_IntelMode ? kPoolMinimumIntel : kPoolMinimum;
    return CreateBuffer((count > least ? count : least) * stride, stride);
}

bool OpenBuffer(int32_t stride, int32_t count)
{
    VertexBuffer* buffer =
        s_method == BATCH_DYNAMIC ? FindDynamic(stride * count) : FindPooled(stride, count);
    s_batch.buffer = buffer;
    if (!buffer) return false;
    const int32_t unit = buffer->bytes ? 1 : buffer->vertexBytes;
    auto mode = DeviceLock::Plain;
    if (buffer->dynamic && buffer->bytes)
        mode = buffer->cursor == 0 ? DeviceLock::Discard : DeviceLock::NoOverwrite;
    else if (buffer->dynamic)
        mode = buffer->written ? DeviceLock::NoOverwrite : DeviceLock::Discard;
    buffer->start = buffer->cursor;
    buffer->base = static_cast<uint8_t*>(g_Device->LockBuffer(
        buffer->device, static_cast<uint32_t>(buffer->cursor * unit),
        static_cast<uint32_t>((buffer->capacity - buffer->cursor) * unit), mode));
    if (!buffer->base) {
        s_batch.buffer = nullptr;
        return false;
    }
    buffer->locked = true;
    buffer->written = true;
    s_batch.base = buffer->base;
    return true;
}

// Opens a batch after the last one was flushed; false leaves none open.
bool OpenBatch(int32_t primType, GpuTexture* texture, int32_t stride, int32_t count)
{
    const bool opened =
        s_method == BATCH_MEMORY ? OpenMemory(stride * count) : OpenBuffer(stride, count);
    if (!opened) return false;
    s_batch.primType = primType;
    s_batch.texture = texture;
    s_batch.textureValid = true;
    s_batch.stride = stride;
    s_batch.mustBreak = primType == PRIMITIVE_LINE_STRIP || primType == PRIMITIVE_TRIANGLE_STRIP ||
                        primType == PRIMITIVE_TRIANGLE_FAN;
    return true;
}

void* Take(int32_t stride, int32_t count)
{
    if (s_method == BATCH_MEMORY) {
        uint8_t* vertices = s_batch.base + static_cast<ptrdiff_t>(s_batch.used) * stride;
        s_batch.used += count;
        return vertices;
    }
    VertexBuffer& buffer = *s_batch.buffer;
    const int32_t offset = (buffer.cursor - buffer.start) * (buffer.bytes ? 1 : stride);
    buffer.cursor += Request(buffer, stride, count);
    return s_batch.base + offset;
}

void DrawMemory(bool visible)
{
    const int32_t count = s_batch.used;
    s_batch.used = 0;
    if (!visible || Batch_PrimitiveCount(s_batch.primType, count) <= 0) return;
    g_Device->DrawUp(static_cast<DevicePrimitive>(s_batch.primType), s_batch.stride, s_batch.base,
                     count);
    ++g_GraphicsStats.drawCalls;
    g_GraphicsStats.vertices += count;
}

void DrawBuffer(bool visible)
{
    VertexBuffer& buffer = *s_batch.buffer;
    const int32_t unit = buffer.bytes ? 1 : buffer.vertexBytes;
    const int32_t count = (buffer.cursor - buffer.start) * unit / s_batch.stride;
    Unlock(&buffer);
    const int32_t start = buffer.start;
    if (g_IntelMode && !buffer.bytes) buffer.cursor = buffer.capacity;
    if (!visible || Batch_PrimitiveCount(s_batch.primType, count) <= 0) return;
    g_Device->Draw(static_cast<DevicePrimitive>(s_batch.primType), s_batch.stride, buffer.device,
                   static_cast<uint32_t>(start * unit), count);
    ++g_GraphicsStats.drawCalls;
    g_GraphicsStats.vertices += count;
}

void CloseBatch()
{
    s_batch.primType = PRIMITIVE_NONE;
    s_batch.mustBreak = true;
    s_batch.texture = nullptr;
    s_batch.textureValid = false;
    s_batch.stride = 0;
}

}  // namespace

int32_t Batch_PrimitiveCount(int32_t primType, int32_t count)
{
    switch (primType) {
        case PRIMITIVE_POINTS:
            return count;
        case PRIMITIVE_LINES:
            return count / 2;
        case PRIMITIVE_LINE_STRIP:
            return count - 1;
        case PRIMITIVE_TRIANGLES:
            return count / 3;
        case PRIMITIVE_TRIANGLE_STRIP:
        case PRIMITIVE_TRIANGLE_FAN:
            return count - 2;
        default:
            return 0;
    }
}

void* Batch_Alloc(int32_t primType, GpuTexture* texture, int32_t stride, int32_t count)
{
    const bool joins = s_batch.textureValid && texture == s_batch.texture &&
                       primType == s_batch.primType && stride == s_batch.stride && !g_GpuDirty &&
                       !s_batch.mustBreak && HasRoom(stride, count);
    if (!joins) {
        if (!g_Device || count <= 0 || count > kMaxVertices) return nullptr;
        Batch_Flush();
        if (!OpenBatch(primType, texture, stride, count)) return nullptr;
    }
    return Take(stride, count);
}

void Batch_Flush()
{
    if (!g_Device) return;
    if (s_batch.primType != PRIMITIVE_NONE) {
        const bool visible = s_drawing && Texture_Bind(g_TextureStage, s_batch.texture);
        if (s_method == BATCH_MEMORY)
            DrawMemory(visible);
        else
            DrawBuffer(visible);
        CloseBatch();
    }
    GpuState_Apply();
}

void Batch_Giveback(int32_t count)
{
    if (s_method == BATCH_MEMORY)
        s_batch.used -= count;
    else if (s_batch.buffer)
        s_batch.buffer->cursor -= Request(*s_batch.buffer, s_batch.stride, count);
}

int32_t Batch_MaxVertices()
{
    return kMaxVertices;
}

int32_t Batch_MaxBytes()
{
    return kMaxVertices * kStrideNormal;
}

void Batch_EndFrame()
{
    for (VertexBuffer* buffer = s_buffers; buffer; buffer = buffer->next) {
        Unlock(buffer);
        if (!buffer->written) continue;
        if (!buffer->bytes) buffer->cursor = 0;
        buffer->lastFrame = s_frame;
        buffer->written = false;
    }
    ++s_frame;
    s_batch.buffer = nullptr;
    s_batch.used = 0;
    CloseBatch();
}

void Batch_Init()
{
    s_batch = VertexBatch{};
    CloseBatch();
    s_frame = 0;
    s_method = BATCH_DYNAMIC;
    s_dynamicCapacity = s_memoryCapacity = kFirstCapacity;
    s_drawing = true;
    g_GraphicsStats = GraphicsStats{};
}

void Batch_Quit()
{
    while (s_buffers) FreeBuffer(s_buffers);
    MemoryManager::Free(s_memory);
    s_memory = nullptr;
    s_batch.buffer = nullptr;
    CloseBatch();
}

void Batch_SetMethod(int32_t method)
{
    Batch_Flush();
    s_batch.buffer = nullptr;
    s_batch.used = 0;
    s_method = method < BATCH_DYNAMIC || method > BATCH_MEMORY ? BATCH_DYNAMIC : method;
}

int32_t Batch_Method()
{
    return s_method;
}

void Batch_ForgetTexture(const GpuTexture* texture)
{
    if (s_batch.textureValid && s_batch.texture == texture) Batch_Flush();
}

void Batch_SetDrawing(bool on)
{
    s_drawing = on;
}
