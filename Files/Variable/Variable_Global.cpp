#include "Files/Variable/Variable_Global.h"

#include "Files/Variable/Variable_BuiltIn.h"

void Variable_RegisterGlobalRows()
{
    Variable_RegisterRoomRows();
    Variable_RegisterGameRows();
    Variable_RegisterInputRows();
}
