#include "Files/Run/Run_State.h"
#include "Host/Host.h"
#include "game/Attachment.h"

#if MARLOWICK_LINKED_ARCHIVE
extern "C" {
extern const uint8_t g_LinkedArchive[];
extern const uint32_t g_LinkedArchiveSize;
}
#endif

int main(int argc, char** argv)
{
    Host_UseSDL();
    RunnerData attachment = Game_Attachment();
#if MARLOWICK_LINKED_ARCHIVE
    attachment.archive = g_LinkedArchive;
    attachment.archiveSize = g_LinkedArchiveSize;
#endif
    return Runner_Main(argc, argv, attachment);
}
