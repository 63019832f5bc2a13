#include "Files/Room/CRoom.h"

#include "Files/Object/Instance_Main.h"

CRoom::~CRoom()
{
    for (CInstance* instance = activeHead; instance;) {
        CInstance* following = instance->next;
        Instance_Free(instance);
        instance = following;
    }
    for (CInstance* instance = deactivatedHead; instance;) {
        CInstance* following = instance->next;
        Instance_Free(instance);
        instance = following;
    }
    VxDelete(content);
}
