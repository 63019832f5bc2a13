#include "game/Curves.h"

#include "game/Rules.h"

namespace {

RValue& answer(RValue& result, double (*curve)(double, double, double, double), RValue** args)
{
    result = RValue(curve(REAL_RValue(args[0]), REAL_RValue(args[1]), REAL_RValue(args[2]),
                          REAL_RValue(args[3])));
    return result;
}

}  // namespace

double ease_in_quad(double t, double b, double c, double d)
{
    const double u = t / d;
    return c * u * u + b;
}

double ease_out_quad(double t, double b, double c, double d)
{
    const double u = t / d;
    return -c * u * (u - 2) + b;
}

double ease_out_cubic(double t, double b, double c, double d)
{
    const double u = t / d - 1;
    return c * (u * u * u + 1) + b;
}

RValue& vxl_Script_EaseInQuad(CInstance* self, CInstance* other, RValue& result, int, RValue** args)
{
    Frame frame(self, other);
    return answer(result, ease_in_quad, args);
}

RValue& vxl_Script_EaseOutQuad(CInstance* self, CInstance* other, RValue& result, int,
                               RValue** args)
{
    Frame frame(self, other);
    return answer(result, ease_out_quad, args);
}

RValue& vxl_Script_EaseOutCubic(CInstance* self, CInstance* other, RValue& result, int,
                                RValue** args)
{
    Frame frame(self, other);
    return answer(result, ease_out_cubic, args);
}
