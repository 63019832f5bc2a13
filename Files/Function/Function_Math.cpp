// Numbers: rounding, powers, angles, vectors, choice among values, kinds.

#include <algorithm>
#include <cmath>

#include "Files/Function/Arguments.h"
#include "Files/Function/Function_Math_Families.h"
#include "Files/Function/Function_Registry.h"
#include "Platform/MemoryManager.h"

namespace {

constexpr double kDegree = kScriptPi / 180.0;
constexpr double kSmallestEpsilon = 1e-11;  // what an epsilon of 0 stores
// A leg this close to a whole pixel is whole: the angle's rounding would show as drift.
constexpr double kWholePixel = 1e-4;

// A built-in of one real argument.
template <double (*Function)(double)>
void OneReal(RValue& result, CInstance*, CInstance*, int argc, RValue* args)
{
    SetReal(result, Function(ArgReal(args, argc, 0)));
}
// A built-in of two real arguments.
template <double (*Function)(double, double)>
void TwoReals(RValue& result, CInstance*, CInstance*, int argc, RValue* args)
{
    const double first = ArgReal(args, argc, 0);
    SetReal(result, Function(first, ArgReal(args, argc, 1)));
}

double Abs(double x)
{
    return std::fabs(x);
}
double Round(double x)
{
    return std::nearbyint(x);
}  // halves to even
double Floor(double x)
{
    return std::floor(x);
}
double Ceil(double x)
{
    return std::ceil(x);
}
double Sign(double x)
{
    return x > 0 ? 1 : x < 0 ? -1 : 0;
}
double Frac(double x)
{
    return x - std::trunc(x);
}
double Sqr(double x)
{
    return x * x;
}
double Sqrt(double x)
{
    return std::sqrt(x);
}
double Exp(double x)
{
    return std::exp(x);
}
double Ln(double x)
{
    return std::log(x);
}
double Log2(double x)
{
    return std::log2(x);
}
double Log10(double x)
{
    return std::log10(x);
}
double LogN(double base, double x)
{
    return std::log(x) / std::log(base);
}
double Power(double x, double y)
{
    return std::pow(x, y);
}

double Sin(double x)
{
    return std::sin(x);
}
double Cos(double x)
{
    return std::cos(x);
}
double Tan(double x)
{
    return std::tan(x);
}
double ArcSin(double x)
{
    return std::asin(x);
}
double ArcCos(double x)
{
    return std::acos(x);
}
double ArcTan(double x)
{
    return std::atan(x);
}
double ArcTan2(double y, double x)
{
    return std::atan2(y, x);
}
double DegToRad(double x)
{
    return x * kDegree;
}
double RadToDeg(double x)
{
    return x / kDegree;
}
double DSin(double x)
{
    return std::sin(x * kDegree);
}
double DCos(double x)
{
    return std::cos(x * kDegree);
}
double DTan(double x)
{
    return std::tan(x * kDegree);
}
double DArcSin(double x)
{
    return std::asin(x) / kDegree;
}
double DArcCos(double x)
{
    return std::acos(x) / kDegree;
}
double DArcTan(double x)
{
    return std::atan(x) / kDegree;
}
double DArcTan2(double y, double x)
{
    return std::atan2(y, x) / kDegree;
}

// In -180 to 180: the shortest way from the second angle to the first, in degrees.
double AngleDifference(double to, double from)
{
    const double turn = std::fmod(std::fmod(to - from, 360.0) + 540.0, 360.0) - 180.0;
    return turn == -180.0 ? 180.0 : turn;
}

double NearWhole(double x)
{
    const double whole = std::nearbyint(x);
    return std::fabs(x - whole) < kWholePixel ? whole : x;
}
double LengthDirX(double length, double direction)
{
    return NearWhole(length * DCos(direction));
}
double LengthDirY(double length, double direction)
{
    return NearWhole(-length * DSin(direction));
}

BUILTIN(F_point_distance)
{
    SetReal(result, std::hypot(ArgReal(args, argc, 2) - ArgReal(args, argc, 0),
                               ArgReal(args, argc, 3) - ArgReal(args, argc, 1)));
}

BUILTIN(F_point_distance_3d)
{
    SetReal(result, std::hypot(ArgReal(args, argc, 3) - ArgReal(args, argc, 0),
                               ArgReal(args, argc, 4) - ArgReal(args, argc, 1),
                               ArgReal(args, argc, 5) - ArgReal(args, argc, 2)));
}

// Degrees from 0 up to 360, counter-clockwise with y growing downward.
BUILTIN(F_point_direction)
{
    const double dx = ArgReal(args, argc, 2) - ArgReal(args, argc, 0);
    const double dy = ArgReal(args, argc, 3) - ArgReal(args, argc, 1);
    if (dx == 0) {
        SetReal(result, dy > 0 ? 270 : dy < 0 ? 90 : 0);
        return;
    }
    const double direction = std::atan2(-dy, dx) * (180.0 / 3.14159265358979323846);
    SetReal(result, direction < 0 ? direction + 360 : direction);
}

// The sum of products of two vectors of `size` numbers; of their unit vectors when asked.
double DotProduct(const RValue* args, int argc, int size, bool normalised)
{
    double dot = 0, a2 = 0, b2 = 0;
    for (int i = 0; i < size; ++i) {
        const double a = ArgReal(args, argc, i), b = ArgReal(args, argc, size + i);
        dot += a * b;
        a2 += a * a;
        b2 += b * b;
    }
    if (!normalised) return dot;
    return a2 > 0 && b2 > 0 ? dot / std::sqrt(a2 * b2) : 0;
}

BUILTIN(F_dot_product)
{
    SetReal(result, DotProduct(args, argc, 2, false));
}
BUILTIN(F_dot_product_3d)
{
    SetReal(result, DotProduct(args, argc, 3, false));
}
BUILTIN(F_dot_product_normalised)
{
    SetReal(result, DotProduct(args, argc, 2, true));
}
BUILTIN(F_dot_product_3d_normalised)
{
    SetReal(result, DotProduct(args, argc, 3, true));
}

BUILTIN(F_min)
{
    double least = ArgReal(args, argc, 0);
    for (int i = 1; i < argc; ++i) least = std::min(least, VXGetReal(args, i));
    SetReal(result, least);
}

BUILTIN(F_max)
{
    double greatest = ArgReal(args, argc, 0);
    for (int i = 1; i < argc; ++i) greatest = std::max(greatest, VXGetReal(args, i));
    SetReal(result, greatest);
}

BUILTIN(F_mean)
{
    double sum = 0;
    for (int i = 0; i < argc; ++i) sum += VXGetReal(args, i);
    SetReal(result, argc > 0 ? sum / argc : 0);
}

// Of an even count the smaller of the two middle values.
BUILTIN(F_median)
{
    VxVector<double> values;
    for (int i = 0; i < argc; ++i) values.push_back(VXGetReal(args, i));
    std::sort(values.begin(), values.end());
    SetReal(result, argc > 0 ? values[static_cast<size_t>(argc - 1) / 2] : 0);
}

// The two limits in either order.
BUILTIN(F_clamp)
{
    const double a = ArgReal(args, argc, 1), b = ArgReal(args, argc, 2);
    SetReal(result, std::clamp(ArgReal(args, argc, 0), std::min(a, b), std::max(a, b)));
}

BUILTIN(F_lerp)
{
    const double from = ArgReal(args, argc, 0), to = ArgReal(args, argc, 1);
    SetReal(result, from + (to - from) * ArgReal(args, argc, 2));
}

BUILTIN(F_math_get_epsilon)
{
    SetReal(result, g_MathEpsilon);
}

// From 0 up to 1; other values are ignored.
BUILTIN(F_math_set_epsilon)
{
    const double epsilon = ArgReal(args, argc, 0, -1);
    if (epsilon >= 0 && epsilon < 1) g_MathEpsilon = epsilon == 0 ? kSmallestEpsilon : epsilon;
}

uint32_t KindOf(const RValue* args, int argc)
{
    return argc > 0 ? args[0].Kind() : VALUE_UNDEFINED;
}

template <uint32_t Kind>
void IsKind(RValue& result, CInstance*, CInstance*, int argc, RValue* args)
{
    SetBool(result, KindOf(args, argc) == Kind);
}

BUILTIN(F_is_real)
{
    const uint32_t kind = KindOf(args, argc);
    SetBool(result, kind == VALUE_REAL || kind == VALUE_INT32 || kind == VALUE_INT64);
}

BUILTIN(F_is_nan)
{
    SetBool(result, argc > 0 && std::isnan(ToNumber(&args[0])));
}
BUILTIN(F_is_infinity)
{
    SetBool(result, argc > 0 && std::isinf(ToNumber(&args[0])));
}

BUILTIN(F_typeof)
{
    static constexpr RValue kNone;
    VXCreateString(&result, KindName(argc > 0 ? &args[0] : &kNone));
}

constexpr BuiltinRow kRows[] = {
    {"abs", OneReal<Abs>, 1},
    {"round", OneReal<Round>, 1},
    {"floor", OneReal<Floor>, 1},
    {"ceil", OneReal<Ceil>, 1},
    {"sign", OneReal<Sign>, 1},
    {"frac", OneReal<Frac>, 1},
    {"sqr", OneReal<Sqr>, 1},
    {"sqrt", OneReal<Sqrt>, 1},
    {"exp", OneReal<Exp>, 1},
    {"ln", OneReal<Ln>, 1},
    {"log2", OneReal<Log2>, 1},
    {"log10", OneReal<Log10>, 1},
    {"logn", TwoReals<LogN>, 2},
    {"power", TwoReals<Power>, 2},
    {"sin", OneReal<Sin>, 1},
    {"cos", OneReal<Cos>, 1},
    {"tan", OneReal<Tan>, 1},
    {"arcsin", OneReal<ArcSin>, 1},
    {"arccos", OneReal<ArcCos>, 1},
    {"arctan", OneReal<ArcTan>, 1},
    {"arctan2", TwoReals<ArcTan2>, 2},
    {"degtorad", OneReal<DegToRad>, 1},
    {"radtodeg", OneReal<RadToDeg>, 1},
    {"dsin", OneReal<DSin>, 1},
    {"dcos", OneReal<DCos>, 1},
    {"dtan", OneReal<DTan>, 1},
    {"darcsin", OneReal<DArcSin>, 1},
    {"darccos", OneReal<DArcCos>, 1},
    {"darctan", OneReal<DArcTan>, 1},
    {"darctan2", TwoReals<DArcTan2>, 2},
    {"angle_difference", TwoReals<AngleDifference>, 2},
    {"lengthdir_x", TwoReals<LengthDirX>, 2},
    {"lengthdir_y", TwoReals<LengthDirY>, 2},
    {"point_distance", F_point_distance, 4},
    {"point_distance_3d", F_point_distance_3d, 6},
    {"point_direction", F_point_direction, 4},
    {"dot_product", F_dot_product, 4},
    {"dot_product_3d", F_dot_product_3d, 6},
    {"dot_product_normalised", F_dot_product_normalised, 4},
    {"dot_product_normalized", F_dot_product_normalised, 4},
    {"dot_product_3d_normalised", F_dot_product_3d_normalised, 6},
    {"dot_product_3d_normalized", F_dot_product_3d_normalised, 6},
    {"min", F_min, -1},
    {"max", F_max, -1},
    {"mean", F_mean, -1},
    {"median", F_median, -1},
    {"clamp", F_clamp, 3},
    {"lerp", F_lerp, 3},
    {"math_get_epsilon", F_math_get_epsilon, 0},
    {"math_set_epsilon", F_math_set_epsilon, 1},
    {"is_real", F_is_real, 1},
    {"is_string", IsKind<VALUE_STRING>, 1},
    {"is_array", IsKind<VALUE_ARRAY>, 1},
    {"is_undefined", IsKind<VALUE_UNDEFINED>, 1},
    {"is_int32", IsKind<VALUE_INT32>, 1},
    {"is_int64", IsKind<VALUE_INT64>, 1},
    {"is_bool", IsKind<VALUE_BOOL>, 1},
    {"is_ptr", IsKind<VALUE_PTR>, 1},
    {"is_vec3", IsKind<VALUE_VEC3>, 1},
    {"is_vec4", IsKind<VALUE_VEC4>, 1},
    {"is_matrix", IsKind<VALUE_VEC44>, 1},
    {"is_nan", F_is_nan, 1},
    {"is_infinity", F_is_infinity, 1},
    {"typeof", F_typeof, 1},
};

}  // namespace

void Function_Math_Register()
{
    Function_AddRows(kRows);
    Function_Math_RegisterRandom();
    Function_Math_RegisterText();
    Function_Math_RegisterArrays();
    Function_Math_RegisterDates();
}
