#include "Files/IO/Ini_File.h"

#include <cstdio>
#include <cstring>

#include "Files/Base/Error.h"
#include "Files/IO/File_Disk.h"

namespace {

constexpr char kCommandSection[] = "SYSTEM_COMMAND";
constexpr char kFlushKey[] = "INI_FILE_FLUSH";
constexpr char kFlushValue[] = "NOW";
constexpr int kRealSize = 330;  // the longest double with six decimals

IniFile* g_ini = nullptr;

// The open file; without one a report, then null.
IniFile* OpenFile(const char* complaint = "Trying to read from undefined INI file")
{
    if (!g_ini) Error_Show(complaint, false);
    return g_ini;
}

IniFile* ChangedFile()
{
    return OpenFile("Trying to change undefined INI file");
}

}  // namespace

void IniFile::Open(const char* fileName)
{
    name = fileName;
    uint32_t size = 0;
    uint8_t* bytes = ReadNamedFile(fileName, &size);
    if (bytes) Parse(reinterpret_cast<const char*>(bytes), size);
    MemoryManager::Free(bytes);
}

bool IniFile::Set(const char* section, const char* key, const char* value)
{
    if (!section || !key) return false;
    dirty = true;
    if (!value) value = "";
    if (std::strcmp(section, kCommandSection) == 0) {
        if (std::strcmp(key, kFlushKey) == 0 && std::strcmp(value, kFlushValue) == 0) Write();
        return true;
    }
    Place(section, key)->value = value;
    return true;
}

bool IniFile::DeleteKey(const char* section, const char* key)
{
    const bool found = RemoveEntry(section, key);
    dirty |= found;
    return found;
}

bool IniFile::DeleteSection(const char* section)
{
    const bool found = RemoveSection(section);
    dirty |= found;
    return found;
}

VxString IniFile::Write()
{
    VxString text;
    for (const IniSection* section = Sections(); section; section = section->next) {
        text += "[" + section->name + "]\r\n";
        for (const IniEntry* entry = section->entries; entry; entry = entry->next)
            text += entry->key + "=\"" + entry->value + "\"\r\n";
    }
    if (dirty && !name.empty())
        WriteSaveFile(name.c_str(), text.data(), static_cast<uint32_t>(text.size()));
    dirty = false;
    return text;
}

void Ini_Open(const char* name)
{
    Ini_Close();
    g_ini = VxNew<IniFile>();
    g_ini->Open(name);
}

void Ini_OpenFromString(const char* text)
{
    Ini_Close();
    g_ini = VxNew<IniFile>();
    if (text) g_ini->Parse(text, static_cast<uint32_t>(std::strlen(text)));
}

VxString Ini_Close()
{
    VxString text;
    if (g_ini) text = g_ini->Write();
    Ini_Quit();
    return text;
}

void Ini_Quit()
{
    VxDelete(g_ini);
    g_ini = nullptr;
}

const IniFile* Ini_Current()
{
    return g_ini;
}

VxString Ini_ReadString(const char* section, const char* key, const char* fallback)
{
    const IniFile* ini = OpenFile();
    return ini ? ini->ReadString(section, key, fallback) : fallback;
}

double Ini_ReadReal(const char* section, const char* key, double fallback)
{
    const IniFile* ini = OpenFile();
    return ini ? ini->ReadReal(section, key, fallback) : fallback;
}

bool Ini_KeyExists(const char* section, const char* key)
{
    const IniFile* ini = OpenFile();
    return ini && ini->FindEntry(section, key);
}

bool Ini_SectionExists(const char* section)
{
    const IniFile* ini = OpenFile();
    return ini && ini->FindSection(section);
}

void Ini_WriteString(const char* section, const char* key, const char* value)
{
    if (IniFile* ini = OpenFile()) ini->Set(section, key, value);
}

void Ini_WriteReal(const char* section, const char* key, double value)
{
    char text[kRealSize];
    std::snprintf(text, sizeof text, "%f", value);
    Ini_WriteString(section, key, text);
}

void Ini_KeyDelete(const char* section, const char* key)
{
    if (IniFile* ini = ChangedFile()) ini->DeleteKey(section, key);
}

void Ini_SectionDelete(const char* section)
{
    if (IniFile* ini = ChangedFile()) ini->DeleteSection(section);
}
