#pragma once
// A stage that becomes a touch platform, and the pages that the game opens there.

#include <string>
#include <vector>

#include "Files/Variable/Variable_BuiltIn.h"
#include "tests/game/support_Level.h"

inline std::vector<std::string> g_pages;

inline bool Get_PhoneType(CInstance*, int32_t, RValue* out)
{
    *out = RValue(4.0);
    return true;
}
inline void OpenPage(RValue&, CInstance*, CInstance*, int, RValue* args)
{
    g_pages.push_back(VXGetText(&args[0]));
}

// The run that has been booted goes on there.
inline void BecomePhone()
{
    const int32_t row = Variable_BuiltIn_Find("os_type");
    const_cast<VariableRow*>(Variable_BuiltIn_Row(row))->getter = Get_PhoneType;
    Serve("url_open", OpenPage);
    g_pages.clear();
}
