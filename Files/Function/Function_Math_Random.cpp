// The built-ins that share the random number generator.

#include <algorithm>

#include "Files/Function/Arguments.h"
#include "Files/Function/Function_Math_Families.h"
#include "Files/Function/Function_Registry.h"

namespace {

int64_t ArgInt64(const RValue* args, int argc, int i)
{
    return i < argc ? VXGetInt64(args, i) : 0;
}

BUILTIN(F_random)
{
    SetReal(result, Random_Real(ArgReal(args, argc, 0)));
}

BUILTIN(F_random_range)
{
    const double a = ArgReal(args, argc, 0), b = ArgReal(args, argc, 1);
    SetReal(result, std::min(a, b) + Random_Real(std::max(a, b) - std::min(a, b)));
}

BUILTIN(F_irandom)
{
    SetReal(result, static_cast<double>(Random_Integer(ArgInt64(args, argc, 0))));
}

BUILTIN(F_irandom_range)
{
    const int64_t a = ArgInt64(args, argc, 0), b = ArgInt64(args, argc, 1);
    const int64_t low = std::min(a, b);
    // Wraps around only for limits that lie more than 63 bits apart.
    const uint64_t span = static_cast<uint64_t>(std::max(a, b)) - static_cast<uint64_t>(low);
    const int64_t drawn = Random_Integer(static_cast<int64_t>(span));
    SetReal(result, static_cast<double>(low) + static_cast<double>(drawn));
}

BUILTIN(F_choose)
{
    if (argc <= 0) {
        SetReal(result, 0);
        return;
    }
    ASSIGN_RValue(&result, &args[Random_Word() % static_cast<uint32_t>(argc)]);
}

BUILTIN(F_randomize)
{
    SetReal(result, Random_Randomize());
}
BUILTIN(F_random_get_seed)
{
    SetReal(result, Random_GetSeed());
}
BUILTIN(F_random_set_seed)
{
    Random_Seed(argc > 0 ? VXGetUint32(args, 0) : 0);
}
BUILTIN(F_random_use_old_version)
{
    Random_UseOldVersion(ArgReal(args, argc, 0) > 0);
}

constexpr BuiltinRow kRows[] = {
    {"random", F_random, 1},
    {"random_range", F_random_range, 2},
    {"irandom", F_irandom, 1},
    {"irandom_range", F_irandom_range, 2},
    {"choose", F_choose, -1},
    {"randomize", F_randomize, 0},
    {"randomise", F_randomize, 0},
    {"random_get_seed", F_random_get_seed, 0},
    {"random_set_seed", F_random_set_seed, 1},
    {"random_use_old_version", F_random_use_old_version, 1},
};

}  // namespace

void Function_Math_RegisterRandom()
{
    Function_AddRows(kRows);
}
