// Containers of scripts: what is common to all kinds.

#include "Files/Function/Function_DS.h"

#include <cmath>

namespace {

BUILTIN(F_ds_set_precision)
{
    ds_precision = std::fabs(ArgReal(args, argc, 0));
}

BUILTIN(F_ds_exists)
{
    const DSLock lock(DsMutex());
    const int32_t id = ArgInt(args, argc, 0, -1);
    bool exists = false;
    switch (ArgInt(args, argc, 1)) {
        case ds_type_map:
            exists = DS_Table<CDS_Map>().At(id);
            break;
        case ds_type_list:
            exists = DS_Table<CDS_List>().At(id);
            break;
        case ds_type_stack:
            exists = DS_Table<CDS_Stack>().At(id);
            break;
        case ds_type_queue:
            exists = DS_Table<CDS_Queue>().At(id);
            break;
        case ds_type_grid:
            exists = DS_Table<CDS_Grid>().At(id);
            break;
        case ds_type_priority:
            exists = DS_Table<CDS_Priority>().At(id);
            break;
        default:
            break;
    }
    SetBool(result, exists);
}

constexpr BuiltinRow kRows[] = {
    {"ds_set_precision", F_ds_set_precision, 1},
    {"ds_exists", F_ds_exists, 2},
};

}  // namespace

void Function_DS_Register()
{
    Function_AddRows(kRows);
    Function_DS_RegisterMaps();
    Function_DS_RegisterLists();
    Function_DS_RegisterGrids();
}
