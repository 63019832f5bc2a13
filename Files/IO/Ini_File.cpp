#include "Files/IO/Ini_File.h"

#include <cstring>

#include "Files/Base/Archive_Main.h"
#include "Files/Base/Error.h"
#include "Host/Host.h"

namespace {

IniText* g_ini = nullptr;

// A name that stays inside the folder that it is joined to.
bool StaysInside(const char* name)
{
    if (name[0] == '/' || name[0] == '\0') return false;
    for (const char* at = std::strstr(name, ".."); at; at = std::strstr(at + 1, "..")) {
        const bool starts = at == name || at[-1] == '/';
        const bool ends = at[2] == '\0' || at[2] == '/';
        if (starts && ends) return false;
    }
    return true;
}

// The bytes of the name's file, to be freed, or null.
uint8_t* ReadNamed(const char* name, uint32_t* size)
{
    if (!StaysInside(name)) return nullptr;
    const VxString saved = g_Host.files.LocalData() + g_GameHeader.fileName + "/" + name;
    if (uint8_t* bytes = g_Host.files.ReadAll(saved.c_str(), size)) return bytes;
    return g_Host.files.ReadAll((g_WorkingDirectory + name).c_str(), size);
}

// Reports a read without a file and gives null.
const IniText* OpenFile()
{
    if (!g_ini) Error_Show("Trying to read from undefined INI file", false);
    return g_ini;
}

}  // namespace

void Ini_Open(const char* name)
{
    Ini_Close();
    g_ini = VxNew<IniText>();
    uint32_t size = 0;
    if (uint8_t* bytes = ReadNamed(name, &size)) {
        g_ini->Parse(reinterpret_cast<const char*>(bytes), size);
        MemoryManager::Free(bytes);
    }
}

void Ini_OpenFromString(const char* text)
{
    Ini_Close();
    g_ini = VxNew<IniText>();
    if (text) g_ini->Parse(text, static_cast<uint32_t>(std::strlen(text)));
}

VxString Ini_Close()
{
    VxString text;
    if (!g_ini) return text;
    for (const IniSection* section = g_ini->Sections(); section; section = section->next) {
        text += "[" + section->name + "]\r\n";
        for (const IniEntry* entry = section->entries; entry; entry = entry->next)
            text += entry->key + "=\"" + entry->value + "\"\r\n";
    }
    Ini_Quit();
    return text;
}

void Ini_Quit()
{
    VxDelete(g_ini);
    g_ini = nullptr;
}

const IniText* Ini_Current()
{
    return g_ini;
}

VxString Ini_ReadString(const char* section, const char* key, const char* fallback)
{
    const IniText* ini = OpenFile();
    return ini ? ini->ReadString(section, key, fallback) : fallback;
}

double Ini_ReadReal(const char* section, const char* key, double fallback)
{
    const IniText* ini = OpenFile();
    return ini ? ini->ReadReal(section, key, fallback) : fallback;
}

bool Ini_KeyExists(const char* section, const char* key)
{
    const IniText* ini = OpenFile();
    return ini && ini->FindEntry(section, key);
}

bool Ini_SectionExists(const char* section)
{
    const IniText* ini = OpenFile();
    return ini && ini->FindSection(section);
}
