// Buffers by id, and what goes between them and files, digests and texts.

#include <cstdio>
#include <cstring>

#include "Files/Base/Error.h"
#include "Files/Data/Buffer.h"
#include "Files/Data/DS_Tables.h"
#include "Files/Data/Digests.h"
#include "Files/Data/Json.h"
#include "Files/Data/Secure_Map.h"
#include "Files/Function/Arguments.h"
#include "Files/Function/Function_Registry.h"
#include "Files/IO/File_Disk.h"
#include "Files/IO/File_Memory.h"
#include "Files/IO/File_Names.h"

namespace {

// The buffer of an argument. Null after a report, and then the result is -1.
Buffer_Standard* Named(RValue& result, const RValue* args, int argc, int i = 0)
{
    Buffer_Standard* buffer = Buffer_Find(ArgInt(args, argc, i, -1));
    if (buffer) return buffer;
    Error_Show("Illegal Buffer Index", false);
    SetReal(result, -1);
    return nullptr;
}

RValue ArgRaw(const RValue* args, int argc, int i)  // no reference is taken
{
    return i < argc ? args[i] : RValue();
}

// ---- life and shape

BUILTIN(F_buffer_create)
{
    const int32_t size = ArgInt(args, argc, 0), type = ArgInt(args, argc, 1);
    const int32_t alignment = ArgInt(args, argc, 2);
    const char* fault = nullptr;
    if (size < 1)
        fault = "buffer_create: Illegal size";
    else if (alignment < 1 || alignment > Buffer_Standard::kLargestAlignment ||
             (alignment & (alignment - 1)) != 0)
        fault = "buffer_create: Illegal alignment size";
    else if (type < buffer_fixed || type > buffer_vbuffer)
        fault =
            "Unknown buffer type, should be one of buffer_fixed, buffer_grow, buffer_wrap, "
            "buffer_fast, buffer_vbuffer";
    SetReal(result, -1);
    if (fault) return Error_Show(fault, false);
    SetReal(result,
            Buffer_Add(VxNew<Buffer_Standard>(size, static_cast<BufferType>(type), alignment)));
}
BUILTIN(F_buffer_delete)
{
    if (Named(result, args, argc)) Buffer_Delete(ArgInt(args, argc, 0));
}
BUILTIN(F_buffer_exists)
{
    SetBool(result, Buffer_Find(ArgInt(args, argc, 0, -1)) != nullptr);
}
BUILTIN(F_buffer_get_size)
{
    if (const auto* buffer = Named(result, args, argc)) SetReal(result, buffer->Size());
}
BUILTIN(F_buffer_get_type)
{
    if (const auto* buffer = Named(result, args, argc)) SetReal(result, buffer->Type());
}
BUILTIN(F_buffer_get_alignment)
{
    if (const auto* buffer = Named(result, args, argc)) SetReal(result, buffer->Alignment());
}
BUILTIN(F_buffer_resize)
{
    auto* buffer = Named(result, args, argc);
    const int32_t size = ArgInt(args, argc, 1);
    if (!buffer) return;
    if (size < 1) return Error_Show("buffer_resize: Illegal size", false);
    buffer->Resize(size);
}
BUILTIN(F_buffer_sizeof)
{
    SetReal(result, Buffer_SizeOf(ArgInt(args, argc, 0)));
}

// ---- values

BUILTIN(F_buffer_write)
{
    if (auto* buffer = Named(result, args, argc))
        SetReal(result, buffer->Write(ArgInt(args, argc, 1), ArgRaw(args, argc, 2)));
}
BUILTIN(F_buffer_poke)
{
    if (auto* buffer = Named(result, args, argc))
        SetReal(result,
                buffer->Poke(ArgInt(args, argc, 1), ArgInt(args, argc, 2), ArgRaw(args, argc, 3)));
}

// What was read, or 0 after a report.
void PutRead(RValue& result, bool read, const RValue& value)
{
    SetReal(result, 0);
    if (read)
        result = value;
    else
        Error_Show("Attempting to read from outside the buffer, returning 0", false);
}
BUILTIN(F_buffer_read)
{
    RValue value;
    auto* buffer = Named(result, args, argc);
    if (!buffer) return SetReal(result, 0);
    const bool read = buffer->Read(ArgInt(args, argc, 1), &value);
    PutRead(result, read, value);
}
BUILTIN(F_buffer_peek)
{
    RValue value;
    auto* buffer = Named(result, args, argc);
    if (!buffer) return;
    const bool read = buffer->Peek(ArgInt(args, argc, 1), ArgInt(args, argc, 2), &value);
    PutRead(result, read, value);
}
BUILTIN(F_buffer_seek)
{
    auto* buffer = Named(result, args, argc);
    if (!buffer) return;
    buffer->Seek(ArgInt(args, argc, 1), ArgInt(args, argc, 2));
    SetReal(result, buffer->Tell());
}
BUILTIN(F_buffer_tell)
{
    if (const auto* buffer = Named(result, args, argc)) SetReal(result, buffer->Tell());
}

BUILTIN(F_buffer_fill)
{
    if (auto* buffer = Named(result, args, argc))
        buffer->Fill(ArgInt(args, argc, 1), ArgInt(args, argc, 2), ArgRaw(args, argc, 3),
                     ArgInt(args, argc, 4));
}
BUILTIN(F_buffer_copy)
{
    const auto* from = Named(result, args, argc);
    auto* to = from ? Named(result, args, argc, 3) : nullptr;
    if (!to) return;
    const VxVector<uint8_t> bytes = from->Slice(ArgInt(args, argc, 1), ArgInt(args, argc, 2));
    to->PutBytes(ArgInt(args, argc, 4), bytes.data(), bytes.size());
}

// ---- files

BUILTIN(F_buffer_save)
{
    const auto* buffer = Named(result, args, argc);
    if (!buffer) return;
    const VxVector<uint8_t> bytes =
        buffer->Slice(ArgInt(args, argc, 2, 0), ArgInt(args, argc, 3, -1));
    WriteSaveFile(ArgText(args, argc, 1), bytes.data(), static_cast<uint32_t>(bytes.size()));
}

int32_t BufferOf(const uint8_t* bytes, size_t size)
{
    auto* buffer = VxNew<Buffer_Standard>(static_cast<int32_t>(size ? size : 1), buffer_grow, 1);
    buffer->PutBytes(0, bytes, size);
    return Buffer_Add(buffer);
}
// A growing buffer, or -1 when there is no such file.
BUILTIN(F_buffer_load)
{
    uint32_t size = 0;
    uint8_t* bytes = ReadNamedFile(ArgText(args, argc, 0), &size);
    SetReal(result, bytes ? BufferOf(bytes, size) : -1);
    MemoryManager::Free(bytes);
}

void LoadInto(Buffer_Standard* buffer, const char* name, int64_t from, int64_t length,
              int32_t offset)
{
    uint32_t size = 0;
    uint8_t* bytes = buffer ? ReadNamedFile(name, &size) : nullptr;
    from = from < 0 ? 0 : from;
    if (length < 0 || length > size - from) length = size - from;
    if (bytes && length > 0) buffer->PutBytes(offset, bytes + from, static_cast<size_t>(length));
    MemoryManager::Free(bytes);
}
BUILTIN(F_buffer_load_ext)
{
    LoadInto(Named(result, args, argc), ArgText(args, argc, 1), 0, -1, ArgInt(args, argc, 2));
}
BUILTIN(F_buffer_load_partial)
{
    LoadInto(Named(result, args, argc), ArgText(args, argc, 1), ArgInt(args, argc, 2),
             ArgInt(args, argc, 3), ArgInt(args, argc, 4));
}

// ---- texts of a part

using ToPrint = VxString (*)(const void* bytes, size_t size);
template <ToPrint print>
BUILTIN(PrintPart)
{
    const auto* buffer = Named(result, args, argc);
    if (!buffer) return;
    const VxVector<uint8_t> bytes = buffer->Slice(ArgInt(args, argc, 1), ArgInt(args, argc, 2));
    VXCreateString(&result, print(bytes.data(), bytes.size()).c_str());
}

VxVector<uint8_t> Decoded(const char* text)
{
    return Base64_Decode(text, std::strlen(text));
}
BUILTIN(F_buffer_base64_decode)
{
    const VxVector<uint8_t> bytes = Decoded(ArgText(args, argc, 0));
    SetReal(result, BufferOf(bytes.data(), bytes.size()));
}
BUILTIN(F_buffer_base64_decode_ext)
{
    auto* buffer = Named(result, args, argc);
    const VxVector<uint8_t> bytes = Decoded(ArgText(args, argc, 1));
    if (buffer) buffer->PutBytes(ArgInt(args, argc, 2), bytes.data(), bytes.size());
}

// ---- maps as text

BUILTIN(F_json_encode)
{
    VXCreateString(&result, Json_Encode(ArgInt(args, argc, 0, -1)).c_str());
}
BUILTIN(F_json_decode)
{
    const bool text = argc > 0 && args[0].Kind() == VALUE_STRING;
    char number[330];
    std::snprintf(number, sizeof number, "%.2f", text ? 0 : ArgReal(args, argc, 0));
    SetReal(result, Json_DecodeAny(text ? ArgText(args, argc, 0).get() : number));
}

BUILTIN(F_ds_map_secure_save)
{
    const VxString text = SecureMap_Text(ArgInt(args, argc, 0, -1));
    WriteSaveFile(ArgText(args, argc, 1), text.data(), static_cast<uint32_t>(text.size()));
    SetReal(result, 0);
}
BUILTIN(F_ds_map_secure_load)
{
    SetReal(result, -1);
    const MappedPath path(GetSaveFileName, ArgText(args, argc, 0), kScriptPathSize);
    MemoryFile* file = MemoryFile::Open(path, "rb");
    if (!file) return;
    file->SeekEnd();
    VxString text(static_cast<size_t>(file->Tell()), '\0');
    file->Seek(0);
    file->Read(text.data(), text.size());
    MemoryFile::Close(file);
    SetReal(result, SecureMap_Open(text.data(), text.size()));
}
BUILTIN(F_ds_map_secure_save_buffer)
{
    auto* buffer = Named(result, args, argc, 1);
    if (!buffer) return;
    RValue text;
    VXCreateString(&text, SecureMap_Text(ArgInt(args, argc, 0, -1)).c_str());
    SetReal(result, buffer->Write(buffer_string, text));
    FREE_RValue(&text);
}
BUILTIN(F_ds_map_secure_load_buffer)
{
    const auto* buffer = Named(result, args, argc);
    if (!buffer) return;
    const VxVector<uint8_t> bytes = buffer->Slice(buffer->Tell(), buffer->Size());
    SetReal(result, SecureMap_Open(reinterpret_cast<const char*>(bytes.data()), bytes.size()));
}

constexpr BuiltinRow kRows[] = {
    {"buffer_create", F_buffer_create, 3},
    {"buffer_delete", F_buffer_delete, 1},
    {"buffer_exists", F_buffer_exists, 1},
    {"buffer_get_size", F_buffer_get_size, 1},
    {"buffer_get_type", F_buffer_get_type, 1},
    {"buffer_get_alignment", F_buffer_get_alignment, 1},
    {"buffer_resize", F_buffer_resize, 2},
    {"buffer_sizeof", F_buffer_sizeof, 1},
    {"buffer_write", F_buffer_write, 3},
    {"buffer_read", F_buffer_read, 2},
    {"buffer_poke", F_buffer_poke, 4},
    {"buffer_peek", F_buffer_peek, 3},
    {"buffer_seek", F_buffer_seek, 3},
    {"buffer_tell", F_buffer_tell, 1},
    {"buffer_fill", F_buffer_fill, 5},
    {"buffer_copy", F_buffer_copy, 5},
    {"buffer_save", F_buffer_save, 2},
    {"buffer_save_ext", F_buffer_save, 4},
    {"buffer_load", F_buffer_load, 1},
    {"buffer_load_ext", F_buffer_load_ext, 3},
    {"buffer_load_partial", F_buffer_load_partial, 5},
    {"buffer_md5", PrintPart<Md5_Text>, 3},
    {"buffer_sha1", PrintPart<Sha1_Text>, 3},
    {"buffer_base64_encode", PrintPart<Base64_Encode>, 3},
    {"buffer_base64_decode", F_buffer_base64_decode, 1},
    {"buffer_base64_decode_ext", F_buffer_base64_decode_ext, 3},
    {"json_encode", F_json_encode, 1},
    {"json_decode", F_json_decode, 1},
    {"ds_map_secure_save", F_ds_map_secure_save, 2},
    {"ds_map_secure_load", F_ds_map_secure_load, 1},
    {"ds_map_secure_save_buffer", F_ds_map_secure_save_buffer, 2},
    {"ds_map_secure_load_buffer", F_ds_map_secure_load_buffer, 1},
};

}  // namespace

void Function_Buffers_Register()
{
    Function_AddRows(kRows);
}
