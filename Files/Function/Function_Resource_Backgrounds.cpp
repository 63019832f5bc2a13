// Backgrounds by number: what they hold, and making and changing them while the
// game runs.

#include <cstring>

#include "Files/Background/CBackground.h"
#include "Files/Base/Archive_Records.h"
#include "Files/Function/Function_Registry.h"
#include "Files/Function/Function_Resource.h"
#include "Files/Graphics/Bitmap.h"
#include "Files/Graphics/Picture_Files.h"
#include "Files/Graphics/Surface.h"
#include "Platform/MemoryManager.h"

namespace {

constexpr int32_t kLargestSide = 8192;  // pixels, of a background made of a colour
constexpr uint32_t kOpaque = 0xFF000000U;

CBackground* BackgroundArgument(const RValue* args, int argc, int i = 0)
{
    return Background_Data(ArgInt(args, argc, i, -1));
}

CBitmap32* BitmapOf(uint32_t* pixels, int32_t width, int32_t height)
{
    if (!pixels) return nullptr;
    auto* bitmap = VxNew<CBitmap32>(width, height);
    std::memcpy(bitmap->data, pixels, static_cast<size_t>(width) * static_cast<size_t>(height) * 4);
    MemoryManager::Free(pixels);
    return bitmap;
}

CBitmap32* Finished(CBitmap32* bitmap, bool removeBackground, bool smoothEdges)
{
    if (!bitmap) return nullptr;
    if (removeBackground) Picture_RemoveBackground(bitmap->data, bitmap->width, bitmap->height);
    if (smoothEdges) Picture_SmoothEdges(bitmap->data, bitmap->width, bitmap->height);
    return bitmap;
}

// The index of a new background with that picture; -1 for none.
int32_t AddNew(CBitmap32* bitmap, bool transparent, bool smooth)
{
    if (!bitmap) return -1;
    auto* background = VxNew<CBackground>();
    background->SetBitmap(bitmap);
    background->transparent = transparent;
    background->smooth = smooth;
    const int32_t index = Background_Add(background);
    Background_NameNew(index);
    return index;
}

// file, remove background, smooth edges; `first` is the file
CBitmap32* FromFile(const RValue* args, int argc, int first)
{
    return Finished(Picture_Load(ArgText(args, argc, first)), ArgBool(args, argc, first + 1),
                    ArgBool(args, argc, first + 2));
}

uint32_t Pixel(uint32_t colour)
{
    return kOpaque | (colour & 0xFF00U) | (colour & 0xFFU) << 16 | (colour >> 16 & 0xFFU);
}

template <auto Member>
void GetField(RValue& result, CInstance*, CInstance*, int argc, RValue* args)
{
    const CBackground* background = BackgroundArgument(args, argc);
    SetReal(result, background ? background->*Member : -1);
}

}  // namespace

BUILTIN(background_exists)
{
    SetBool(result, BackgroundArgument(args, argc) != nullptr);
}

BUILTIN(background_get_name)
{
    VXCreateString(&result, Background_Name(ArgInt(args, argc, 0, -1)));
}

BUILTIN(background_get_texture)
{
    CBackground* background = BackgroundArgument(args, argc);
    SetReal(result, !background         ? -1
                    : background->entry ? background->entry->texture
                                        : background->Texture());
}

// file, remove background, smooth edges; -1 on failure
BUILTIN(background_add)
{
    SetReal(result,
            AddNew(FromFile(args, argc, 0), ArgBool(args, argc, 1), ArgBool(args, argc, 2)));
}

// background, and the arguments of background_add
BUILTIN(background_replace)
{
    CBackground* background = BackgroundArgument(args, argc);
    CBitmap32* bitmap = background ? FromFile(args, argc, 1) : nullptr;
    if (bitmap) background->SetBitmap(bitmap);
    SetBool(result, bitmap != nullptr);
}

BUILTIN(background_delete)
{
    SetBool(result, Background_Delete(ArgInt(args, argc, 0, -1)));
}

BUILTIN(background_duplicate)
{
    const CBackground* from = BackgroundArgument(args, argc);
    CBitmap32* bitmap = from ? BitmapOf(from->Pixels(), from->width, from->height) : nullptr;
    SetReal(result, AddNew(bitmap, from && from->transparent, from && from->smooth));
}

// background, the one that it becomes a copy of
BUILTIN(background_assign)
{
    CBackground* to = BackgroundArgument(args, argc);
    const CBackground* from = BackgroundArgument(args, argc, 1);
    if (!to || !from || to == from) return;
    if (CBitmap32* bitmap = BitmapOf(from->Pixels(), from->width, from->height))
        to->SetBitmap(bitmap);
}

// background, file
BUILTIN(background_save)
{
    const CBackground* background = BackgroundArgument(args, argc);
    uint32_t* pixels = background ? background->Pixels() : nullptr;
    if (pixels) Picture_Save(ArgText(args, argc, 1), pixels, background->width, background->height);
    MemoryManager::Free(pixels);
}

// width, height, colour
BUILTIN(background_create_colour)
{
    SetReal(result, -1);
    const int32_t width = ArgInt(args, argc, 0), height = ArgInt(args, argc, 1);
    if (width < 1 || height < 1 || width > kLargestSide || height > kLargestSide) return;
    auto* bitmap = VxNew<CBitmap32>(width, height);
    const uint32_t pixel = Pixel(static_cast<uint32_t>(ArgInt(args, argc, 2)));
    for (size_t i = 0; i < static_cast<size_t>(width) * static_cast<size_t>(height); ++i)
        bitmap->data[i] = pixel;
    SetReal(result, AddNew(bitmap, false, false));
}

// surface, x, y, width, height, remove background, smooth edges; or with nine arguments
// remove background, smooth edges and preload behind a flag that is not used
BUILTIN(background_create_from_surface)
{
    const int flags = argc >= 9 ? 6 : 5;
    const int32_t width = ArgInt(args, argc, 3), height = ArgInt(args, argc, 4);
    uint32_t* pixels = Surface_Grab(ArgInt(args, argc, 0, -1), ArgInt(args, argc, 1),
                                    ArgInt(args, argc, 2), width, height);
    const bool remove = ArgBool(args, argc, flags), smooth = ArgBool(args, argc, flags + 1);
    CBitmap32* bitmap = Finished(BitmapOf(pixels, width, height), remove, smooth);
    if (bitmap) {
        SetReal(result, AddNew(bitmap, remove, smooth));
        return;
    }
    const int32_t index = Background_Add(VxNew<CBackground>());
    Background_NameNew(index);
    SetReal(result, index);
}

static constexpr BuiltinRow kRows[] = {
    {"background_exists", background_exists, 1},
    {"background_get_name", background_get_name, 1},
    {"background_get_width", GetField<&CBackground::width>, 1},
    {"background_get_height", GetField<&CBackground::height>, 1},
    {"background_get_texture", background_get_texture, 1},
    {"background_add", background_add, 3},
    {"background_replace", background_replace, 4},
    {"background_delete", background_delete, 1},
    {"background_duplicate", background_duplicate, 1},
    {"background_assign", background_assign, 2},
    {"background_save", background_save, 2},
    {"background_create_colour", background_create_colour, 3},
    {"background_create_color", background_create_colour, 3},
    {"background_create_from_surface", background_create_from_surface, -1},
};

void Function_Resource_RegisterBackgrounds()
{
    Function_AddRows(kRows);
}
