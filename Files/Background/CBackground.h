#pragma once
// Backgrounds: one picture each, drawn whole, tiled or in parts.

#include <cstdint>

struct ArchivePageEntry;
class CBitmap32;

class CBackground {
public:
    CBackground() = default;
    ~CBackground();
    CBackground(const CBackground&) = delete;
    CBackground& operator=(const CBackground&) = delete;

    // Slot of a background made at run time, made from its bitmap on first use; -1
    // for none.
    int32_t Texture();
    void SetBitmap(CBitmap32* picture);  // owned; drops the present picture
    // A block of width * height pixels 0xAARRGGBB for the caller to free; null when
    // the picture can't be read.
    uint32_t* Pixels() const;

    const char* name = "";
    bool nameOwned = false;
    int32_t width = 0, height = 0;
    bool transparent = false, smooth = false, preload = true;
    int32_t texture = -1;  // slot of a background made at run time
    CBitmap32* bitmap = nullptr;
    ArchivePageEntry* entry = nullptr;
    bool entryOwned = false;
};

void Background_Init();
void Background_Quit();
bool Background_Load(const uint8_t* chunk, uint32_t size, uint8_t* archiveBase);
bool Background_InitTextures();
int32_t Background_Count();
CBackground* Background_Data(int32_t index);
int32_t Background_Find(const char* name);
const char* Background_Name(int32_t index);
int32_t Background_Add(CBackground* background);  // owned
// Frees a background; its index answers as missing from then on.
bool Background_Delete(int32_t index);
// "__newbackground" and the index, as backgrounds made at run time are called.
void Background_NameNew(int32_t index);
