// The one INI file that scripts have open.

#include "Files/Function/Arguments.h"
#include "Files/Function/Function_File.h"
#include "Files/Function/Function_Registry.h"
#include "Files/IO/Ini_File.h"

namespace {

BUILTIN(F_ini_open)
{
    Ini_Open(ArgText(args, argc, 0));
}
BUILTIN(F_ini_open_from_string)
{
    Ini_OpenFromString(ArgText(args, argc, 0));
}
BUILTIN(F_ini_close)
{
    VXCreateString(&result, Ini_Close().c_str());
}

BUILTIN(F_ini_read_string)
{
    const VXText section = ArgText(args, argc, 0), key = ArgText(args, argc, 1);
    const VXText fallback = argc > 2 ? ToText(&args[2]) : VXText();
    VXCreateString(&result, Ini_ReadString(section, key, fallback).c_str());
}

BUILTIN(F_ini_read_real)
{
    const VXText section = ArgText(args, argc, 0), key = ArgText(args, argc, 1);
    SetReal(result, Ini_ReadReal(section, key, ArgReal(args, argc, 2)));
}

BUILTIN(F_ini_key_exists)
{
    const VXText section = ArgText(args, argc, 0), key = ArgText(args, argc, 1);
    SetBool(result, Ini_KeyExists(section, key));
}
BUILTIN(F_ini_section_exists)
{
    SetBool(result, Ini_SectionExists(ArgText(args, argc, 0)));
}

BUILTIN(F_ini_write_string)
{
    const VXText section = ArgText(args, argc, 0), key = ArgText(args, argc, 1);
    const VXText value = ArgText(args, argc, 2);
    if (section.IsNull() || key.IsNull() || value.IsNull()) return;  // reported already
    Ini_WriteString(section, key, value);
}
BUILTIN(F_ini_write_real)
{
    const VXText section = ArgText(args, argc, 0), key = ArgText(args, argc, 1);
    if (section.IsNull() || key.IsNull()) return;  // reported already
    Ini_WriteReal(section, key, ArgReal(args, argc, 2));
}

BUILTIN(F_ini_key_delete)
{
    Ini_KeyDelete(ArgText(args, argc, 0), ArgText(args, argc, 1));
}
BUILTIN(F_ini_section_delete)
{
    Ini_SectionDelete(ArgText(args, argc, 0));
}

constexpr BuiltinRow kRows[] = {
    {"ini_open", F_ini_open, 1},
    {"ini_open_from_string", F_ini_open_from_string, 1},
    {"ini_close", F_ini_close, 0},
    {"ini_read_string", F_ini_read_string, 3},
    {"ini_read_real", F_ini_read_real, 3},
    {"ini_write_string", F_ini_write_string, 3},
    {"ini_write_real", F_ini_write_real, 3},
    {"ini_key_exists", F_ini_key_exists, 2},
    {"ini_section_exists", F_ini_section_exists, 1},
    {"ini_key_delete", F_ini_key_delete, 2},
    {"ini_section_delete", F_ini_section_delete, 1},
};

}  // namespace

void Function_File_RegisterIni()
{
    Function_AddRows(kRows);
}
