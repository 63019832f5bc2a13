// The draw colour and alpha, plain shapes, and primitives collected by scripts.

#include "Files/Function/Function_Graphic.h"
#include "Files/Function/Function_Registry.h"
#include "Files/Graphics/Draw_State.h"
#include "Files/Graphics/Quad.h"
#include "Files/Run/Run_State.h"

namespace {

constexpr float kRoundRadius = 10.0F;  // pixels, where a script names none

DrawPoint PointAt(const RValue* args, int argc, int i)
{
    return {ArgFloat(args, argc, i), ArgFloat(args, argc, i + 1)};
}

// A colour argument under the draw alpha.
uint32_t WordAt(const RValue* args, int argc, int i)
{
    return Draw_VertexWord(ArgColour(args, argc, i));
}

}  // namespace

BUILTIN(draw_set_colour)
{
    Draw_SetColour(ArgColour(args, argc, 0));
}

BUILTIN(draw_get_colour)
{
    SetReal(result, Draw_GetColour());
}

BUILTIN(draw_set_alpha)
{
    Draw_SetAlpha(ArgReal(args, argc, 0));
}

BUILTIN(draw_get_alpha)
{
    SetReal(result, Draw_GetAlpha());
}

BUILTIN(draw_point)
{
    const DrawPoint point = PointAt(args, argc, 0);
    Draw_Point(point.x, point.y, drawColourARGB);
}

BUILTIN(draw_point_colour)
{
    const DrawPoint point = PointAt(args, argc, 0);
    Draw_Point(point.x, point.y, WordAt(args, argc, 2));
}

BUILTIN(draw_line)
{
    Draw_Line(PointAt(args, argc, 0), PointAt(args, argc, 2), drawColourARGB, drawColourARGB);
}

BUILTIN(draw_line_colour)
{
    Draw_Line(PointAt(args, argc, 0), PointAt(args, argc, 2), WordAt(args, argc, 4),
              WordAt(args, argc, 5));
}

BUILTIN(draw_line_width)
{
    Draw_LineWidth(PointAt(args, argc, 0), PointAt(args, argc, 2), ArgFloat(args, argc, 4),
                   drawColourARGB, drawColourARGB);
}

BUILTIN(draw_line_width_colour)
{
    Draw_LineWidth(PointAt(args, argc, 0), PointAt(args, argc, 2), ArgFloat(args, argc, 4),
                   WordAt(args, argc, 5), WordAt(args, argc, 6));
}

BUILTIN(draw_rectangle)
{
    const DrawPoint a = PointAt(args, argc, 0), b = PointAt(args, argc, 2);
    Draw_Rectangle(a.x, a.y, b.x, b.y, ArgBool(args, argc, 4));
}

BUILTIN(draw_rectangle_colour)
{
    const DrawPoint a = PointAt(args, argc, 0), b = PointAt(args, argc, 2);
    uint32_t corners[4];
    for (int i = 0; i < 4; ++i) corners[i] = WordAt(args, argc, 4 + i);
    Draw_RectangleColours(a.x, a.y, b.x, b.y, corners, ArgBool(args, argc, 8));
}

// x1, y1, x2, y2, outline
BUILTIN(draw_roundrect)
{
    const DrawPoint a = PointAt(args, argc, 0), b = PointAt(args, argc, 2);
    Draw_RoundRectangle(a.x, a.y, b.x, b.y, kRoundRadius, kRoundRadius, drawColourARGB,
                        drawColourARGB, ArgBool(args, argc, 4));
}

// x1, y1, x2, y2, radius x, radius y, outline
BUILTIN(draw_roundrect_ext)
{
    const DrawPoint a = PointAt(args, argc, 0), b = PointAt(args, argc, 2);
    Draw_RoundRectangle(a.x, a.y, b.x, b.y, ArgFloat(args, argc, 4), ArgFloat(args, argc, 5),
                        drawColourARGB, drawColourARGB, ArgBool(args, argc, 6));
}

// x1, y1, x2, y2, centre colour, rim colour, outline
BUILTIN(draw_roundrect_colour)
{
    const DrawPoint a = PointAt(args, argc, 0), b = PointAt(args, argc, 2);
    Draw_RoundRectangle(a.x, a.y, b.x, b.y, kRoundRadius, kRoundRadius, WordAt(args, argc, 4),
                        WordAt(args, argc, 5), ArgBool(args, argc, 6));
}

// x1, y1, x2, y2, radius x, radius y, centre colour, rim colour, outline
BUILTIN(draw_roundrect_colour_ext)
{
    const DrawPoint a = PointAt(args, argc, 0), b = PointAt(args, argc, 2);
    Draw_RoundRectangle(a.x, a.y, b.x, b.y, ArgFloat(args, argc, 4), ArgFloat(args, argc, 5),
                        WordAt(args, argc, 6), WordAt(args, argc, 7), ArgBool(args, argc, 8));
}

BUILTIN(draw_triangle)
{
    const DrawPoint points[3] = {PointAt(args, argc, 0), PointAt(args, argc, 2),
                                 PointAt(args, argc, 4)};
    const uint32_t colours[3] = {drawColourARGB, drawColourARGB, drawColourARGB};
    Draw_Triangle(points, colours, ArgBool(args, argc, 6));
}

BUILTIN(draw_triangle_colour)
{
    const DrawPoint points[3] = {PointAt(args, argc, 0), PointAt(args, argc, 2),
                                 PointAt(args, argc, 4)};
    const uint32_t colours[3] = {WordAt(args, argc, 6), WordAt(args, argc, 7),
                                 WordAt(args, argc, 8)};
    Draw_Triangle(points, colours, ArgBool(args, argc, 9));
}

BUILTIN(draw_circle)
{
    const DrawPoint c = PointAt(args, argc, 0);
    const float r = ArgFloat(args, argc, 2);
    Draw_Ellipse(c.x - r, c.y - r, c.x + r, c.y + r, drawColourARGB, drawColourARGB,
                 ArgBool(args, argc, 3));
}

BUILTIN(draw_circle_colour)
{
    const DrawPoint c = PointAt(args, argc, 0);
    const float r = ArgFloat(args, argc, 2);
    Draw_Ellipse(c.x - r, c.y - r, c.x + r, c.y + r, WordAt(args, argc, 3), WordAt(args, argc, 4),
                 ArgBool(args, argc, 5));
}

BUILTIN(draw_ellipse)
{
    const DrawPoint a = PointAt(args, argc, 0), b = PointAt(args, argc, 2);
    Draw_Ellipse(a.x, a.y, b.x, b.y, drawColourARGB, drawColourARGB, ArgBool(args, argc, 4));
}

BUILTIN(draw_ellipse_colour)
{
    const DrawPoint a = PointAt(args, argc, 0), b = PointAt(args, argc, 2);
    Draw_Ellipse(a.x, a.y, b.x, b.y, WordAt(args, argc, 4), WordAt(args, argc, 5),
                 ArgBool(args, argc, 6));
}

BUILTIN(draw_arrow)
{
    Draw_Arrow(PointAt(args, argc, 0), PointAt(args, argc, 2), ArgFloat(args, argc, 4));
}

BUILTIN(draw_button)
{
    const DrawPoint a = PointAt(args, argc, 0), b = PointAt(args, argc, 2);
    Draw_Button(a.x, a.y, b.x, b.y, ArgBool(args, argc, 4));
}

// x1, y1, x2, y2, amount, back colour, colour at 0, colour at 100, side, show back, show border
BUILTIN(draw_healthbar)
{
    const DrawPoint a = PointAt(args, argc, 0), b = PointAt(args, argc, 2);
    const int32_t side = ArgInt(args, argc, 8);
    Draw_HealthBar(
        {a.x, a.y, b.x, b.y, ArgFloat(args, argc, 4), ArgColour(args, argc, 5),
         ArgColour(args, argc, 6), ArgColour(args, argc, 7),
         side >= 0 && side <= 3 ? static_cast<HealthDirection>(side) : HealthDirection::Left,
         ArgBool(args, argc, 9), ArgBool(args, argc, 10)});
}

BUILTIN(draw_set_circle_precision)
{
    Draw_SetCirclePrecision(ArgInt(args, argc, 0));
}

BUILTIN(draw_primitive_begin)
{
    Primitive_Begin(ArgInt(args, argc, 0), -1);
}

BUILTIN(draw_primitive_begin_texture)
{
    Primitive_Begin(ArgInt(args, argc, 0), ArgInt(args, argc, 1, -1));
}

BUILTIN(draw_vertex)
{
    const DrawPoint at = PointAt(args, argc, 0);
    Primitive_Vertex(at.x, at.y, 0, 0, drawColourARGB);
}

BUILTIN(draw_vertex_colour)
{
    const DrawPoint at = PointAt(args, argc, 0);
    Primitive_Vertex(at.x, at.y, 0, 0,
                     VertexColour(ArgColour(args, argc, 2), ArgFloat(args, argc, 3)));
}

BUILTIN(draw_vertex_texture)
{
    const DrawPoint at = PointAt(args, argc, 0), uv = PointAt(args, argc, 2);
    Primitive_Vertex(at.x, at.y, uv.x, uv.y, drawColourARGB);
}

BUILTIN(draw_vertex_texture_colour)
{
    const DrawPoint at = PointAt(args, argc, 0), uv = PointAt(args, argc, 2);
    Primitive_Vertex(at.x, at.y, uv.x, uv.y,
                     VertexColour(ArgColour(args, argc, 4), ArgFloat(args, argc, 5)));
}

BUILTIN(draw_primitive_end)
{
    Primitive_End();
}

BUILTIN(draw_enable_drawevent)
{
    g_DrawEnabled = ArgBool(args, argc, 0, true);
}

static constexpr BuiltinRow kRows[] = {
    {"draw_set_colour", draw_set_colour, 1},
    {"draw_set_color", draw_set_colour, 1},
    {"draw_get_colour", draw_get_colour, 0},
    {"draw_get_color", draw_get_colour, 0},
    {"draw_set_alpha", draw_set_alpha, 1},
    {"draw_get_alpha", draw_get_alpha, 0},
    {"draw_point", draw_point, 2},
    {"draw_point_colour", draw_point_colour, 3},
    {"draw_point_color", draw_point_colour, 3},
    {"draw_line", draw_line, 4},
    {"draw_line_colour", draw_line_colour, 6},
    {"draw_line_color", draw_line_colour, 6},
    {"draw_line_width", draw_line_width, 5},
    {"draw_line_width_colour", draw_line_width_colour, 7},
    {"draw_line_width_color", draw_line_width_colour, 7},
    {"draw_rectangle", draw_rectangle, 5},
    {"draw_rectangle_colour", draw_rectangle_colour, 9},
    {"draw_rectangle_color", draw_rectangle_colour, 9},
    {"draw_roundrect", draw_roundrect, 5},
    {"draw_roundrect_ext", draw_roundrect_ext, 7},
    {"draw_roundrect_colour", draw_roundrect_colour, 7},
    {"draw_roundrect_color", draw_roundrect_colour, 7},
    {"draw_roundrect_colour_ext", draw_roundrect_colour_ext, 9},
    {"draw_roundrect_color_ext", draw_roundrect_colour_ext, 9},
    {"draw_triangle", draw_triangle, 7},
    {"draw_triangle_colour", draw_triangle_colour, 10},
    {"draw_triangle_color", draw_triangle_colour, 10},
    {"draw_circle", draw_circle, 4},
    {"draw_circle_colour", draw_circle_colour, 6},
    {"draw_circle_color", draw_circle_colour, 6},
    {"draw_ellipse", draw_ellipse, 5},
    {"draw_ellipse_colour", draw_ellipse_colour, 7},
    {"draw_ellipse_color", draw_ellipse_colour, 7},
    {"draw_arrow", draw_arrow, 5},
    {"draw_button", draw_button, 5},
    {"draw_healthbar", draw_healthbar, 11},
    {"draw_set_circle_precision", draw_set_circle_precision, 1},
    {"draw_primitive_begin", draw_primitive_begin, 1},
    {"draw_primitive_begin_texture", draw_primitive_begin_texture, 2},
    {"draw_vertex", draw_vertex, 2},
    {"draw_vertex_colour", draw_vertex_colour, 4},
    {"draw_vertex_color", draw_vertex_colour, 4},
    {"draw_vertex_texture", draw_vertex_texture, 4},
    {"draw_vertex_texture_colour", draw_vertex_texture_colour, 6},
    {"draw_vertex_texture_color", draw_vertex_texture_colour, 6},
    {"draw_primitive_end", draw_primitive_end, 0},
    {"draw_enable_drawevent", draw_enable_drawevent, 1},
};

void Function_Graphic_RegisterShapes()
{
    Function_AddRows(kRows);
}
