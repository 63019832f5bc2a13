// Points, lines, rectangles, ellipses and what is made of them.

#include <algorithm>
#include <cmath>

#include "Files/Graphics/Batch.h"
#include "Files/Graphics/Draw_State.h"

float primitiveOffsetX = 1.0F, primitiveOffsetY = 1.0F;
int32_t circlePrecision = 24;

namespace {

constexpr int32_t kLeastSegments = 4, kMostSegments = 64;
constexpr double kTwoPi = 6.283185307179586;
constexpr uint32_t kWhite = 0xFFFFFFU, kDark = 0x808080U, kFace = 0xC0C0C0U;

float s_sine[kMostSegments + 1], s_cosine[kMostSegments + 1];

// Vertices on the white texture; null when there is no device.
VertexTextured* White(int32_t kind, int32_t count)
{
    return static_cast<VertexTextured*>(Batch_Alloc(kind, Texture_White(), kStrideTextured, count));
}

VertexTextured Vertex(float x, float y, uint32_t colour)
{
    return {x, y, 0, colour, 0, 0};
}

VertexTextured OffsetVertex(float x, float y, uint32_t colour)
{
    return Vertex(x + primitiveOffsetX, y + primitiveOffsetY, colour);
}

void Filled(float x1, float y1, float x2, float y2, const uint32_t c[4])
{
    VertexTextured* v = White(PRIMITIVE_TRIANGLES, 6);
    if (!v) return;
    const float right = x2 + primitiveOffsetX, bottom = y2 + primitiveOffsetY;
    v[0] = Vertex(x1, y1, c[0]);
    v[1] = Vertex(right, y1, c[1]);
    v[2] = Vertex(right, bottom, c[2]);
    v[3] = v[2];
    v[4] = Vertex(x1, bottom, c[3]);
    v[5] = v[0];
}

// A line may leave its last pixel out, so the corners are drawn once more as points.
void Outlined(float x1, float y1, float x2, float y2, const uint32_t c[4])
{
    const VertexTextured corners[4] = {OffsetVertex(x1, y1, c[0]), OffsetVertex(x2, y1, c[1]),
                                       OffsetVertex(x2, y2, c[2]), OffsetVertex(x1, y2, c[3])};
    if (VertexTextured* v = White(PRIMITIVE_LINE_STRIP, 5)) {
        std::copy_n(corners, 4, v);
        v[4] = corners[0];
    }
    if (VertexTextured* v = White(PRIMITIVE_POINTS, 4)) std::copy_n(corners, 4, v);
}

// A closed rim about a centre: filled as a triangle for each two neighbours, or as
// one line strip. The rim's last point is its first.
void Rim(DrawPoint centre, const DrawPoint* rim, int32_t points, uint32_t centreColour,
         uint32_t rimColour, bool outline)
{
    if (outline) {
        VertexTextured* v = White(PRIMITIVE_LINE_STRIP, points);
        for (int32_t i = 0; v && i < points; ++i)
            v[i] = OffsetVertex(rim[i].x, rim[i].y, rimColour);
        return;
    }
    VertexTextured* v = White(PRIMITIVE_TRIANGLES, (points - 1) * 3);
    for (int32_t i = 0; v && i + 1 < points; ++i, v += 3) {
        v[0] = OffsetVertex(centre.x, centre.y, centreColour);
        v[1] = OffsetVertex(rim[i].x, rim[i].y, rimColour);
        v[2] = OffsetVertex(rim[i + 1].x, rim[i + 1].y, rimColour);
    }
}

uint32_t Mix(uint32_t a, uint32_t b, float share)
{
    uint32_t mixed = 0;
    for (uint32_t shift = 0; shift < 24; shift += 8) {
        const auto from = static_cast<float>(a >> shift & 0xFFU);
        const auto to = static_cast<float>(b >> shift & 0xFFU);
        mixed |= static_cast<uint32_t>(std::lrint(from + (to - from) * share)) << shift;
    }
    return mixed;
}

}  // namespace

void Draw_SetCirclePrecision(int32_t segments)
{
    circlePrecision = std::clamp(segments, kLeastSegments, kMostSegments) / 4 * 4;
    for (int32_t i = 0; i <= circlePrecision; ++i) {
        const double angle = kTwoPi * i / circlePrecision;
        s_sine[i] = static_cast<float>(std::sin(angle));
        s_cosine[i] = static_cast<float>(std::cos(angle));
    }
}

void Draw_Rectangle(float x1, float y1, float x2, float y2, bool outline)
{
    const uint32_t c = drawColourARGB;
    const uint32_t corners[4] = {c, c, c, c};
    Draw_RectangleColours(x1, y1, x2, y2, corners, outline);
}

void Draw_RectangleColours(float x1, float y1, float x2, float y2, const uint32_t corners[4],
                           bool outline)
{
    if (x1 > x2) std::swap(x1, x2);
    if (y1 > y2) std::swap(y1, y2);
    if (outline)
        Outlined(x1, y1, x2, y2, corners);
    else
        Filled(x1, y1, x2, y2, corners);
}

void Draw_Point(float x, float y, uint32_t colour)
{
    if (VertexTextured* v = White(PRIMITIVE_POINTS, 1)) *v = OffsetVertex(x, y, colour);
}

void Draw_Line(DrawPoint from, DrawPoint to, uint32_t fromColour, uint32_t toColour)
{
    VertexTextured* v = White(PRIMITIVE_LINES, 2);
    if (!v) return;
    v[0] = OffsetVertex(from.x, from.y, fromColour);
    v[1] = OffsetVertex(to.x, to.y, toColour);
}

void Draw_LineWidth(DrawPoint from, DrawPoint to, float width, uint32_t fromColour,
                    uint32_t toColour)
{
    const float dx = to.x - from.x, dy = to.y - from.y;
    const float length = std::sqrt(dx * dx + dy * dy);
    if (!(length > 0)) return;
    const float nx = -dy / length * width * 0.5F, ny = dx / length * width * 0.5F;
    VertexTextured* v = White(PRIMITIVE_TRIANGLES, 6);
    if (!v) return;
    v[0] = OffsetVertex(from.x + nx, from.y + ny, fromColour);
    v[1] = OffsetVertex(to.x + nx, to.y + ny, toColour);
    v[2] = OffsetVertex(to.x - nx, to.y - ny, toColour);
    v[3] = v[2];
    v[4] = OffsetVertex(from.x - nx, from.y - ny, fromColour);
    v[5] = v[0];
}

void Draw_Triangle(const DrawPoint points[3], const uint32_t colours[3], bool outline)
{
    VertexTextured* v =
        White(outline ? PRIMITIVE_LINE_STRIP : PRIMITIVE_TRIANGLES, outline ? 4 : 3);
    if (!v) return;
    for (int i = 0; i < (outline ? 4 : 3); ++i) {
        const DrawPoint point = points[i % 3];
        v[i] = outline ? OffsetVertex(point.x, point.y, colours[i % 3])
                       : Vertex(point.x, point.y, colours[i]);
    }
}

void Draw_Ellipse(float x1, float y1, float x2, float y2, uint32_t centre, uint32_t rim,
                  bool outline)
{
    const DrawPoint middle{(x1 + x2) / 2, (y1 + y2) / 2};
    const float radiusX = (x2 - x1) / 2, radiusY = (y2 - y1) / 2;
    DrawPoint points[kMostSegments + 1];
    for (int32_t i = 0; i <= circlePrecision; ++i)
        points[i] = {middle.x + s_cosine[i] * radiusX, middle.y + s_sine[i] * radiusY};
    Rim(middle, points, circlePrecision + 1, centre, rim, outline);
}

void Draw_RoundRectangle(float x1, float y1, float x2, float y2, float radiusX, float radiusY,
                         uint32_t centre, uint32_t rim, bool outline)
{
    if (x1 > x2) std::swap(x1, x2);
    if (y1 > y2) std::swap(y1, y2);
    const float rx = std::clamp(radiusX, 0.0F, (x2 - x1) / 2);
    const float ry = std::clamp(radiusY, 0.0F, (y2 - y1) / 2);
    const DrawPoint corners[4] = {
        {x2 - rx, y2 - ry}, {x1 + rx, y2 - ry}, {x1 + rx, y1 + ry}, {x2 - rx, y1 + ry}};
    DrawPoint points[kMostSegments + 5];
    int32_t count = 0;
    const int32_t quarter = circlePrecision / 4;
    for (int32_t corner = 0; corner < 4; ++corner)
        for (int32_t i = corner * quarter; i <= (corner + 1) * quarter; ++i)
            points[count++] = {corners[corner].x + s_cosine[i] * rx,
                               corners[corner].y + s_sine[i] * ry};
    points[count++] = points[0];
    Rim({(x1 + x2) / 2, (y1 + y2) / 2}, points, count, centre, rim, outline);
}

void Draw_Arrow(DrawPoint from, DrawPoint to, float size)
{
    const float dx = to.x - from.x, dy = to.y - from.y;
    const float length = std::sqrt(dx * dx + dy * dy);
    if (!(length > 0)) return;
    const float head = std::min(size, length);
    const float ux = dx / length * head, uy = dy / length * head;
    Draw_Line(from, to, drawColourARGB, drawColourARGB);
    const DrawPoint points[3] = {
        to, {to.x - ux - uy / 3, to.y - uy + ux / 3}, {to.x - ux + uy / 3, to.y - uy - ux / 3}};
    const uint32_t colours[3] = {drawColourARGB, drawColourARGB, drawColourARGB};
    Draw_Triangle(points, colours, false);
}

void Draw_Button(float x1, float y1, float x2, float y2, bool up)
{
    const uint32_t face = Draw_VertexWord(kFace);
    const uint32_t faces[4] = {face, face, face, face};
    const uint32_t lit = Draw_VertexWord(up ? kWhite : kDark);
    const uint32_t dark = Draw_VertexWord(up ? kDark : kWhite);
    Draw_RectangleColours(x1, y1, x2, y2, faces, false);
    Draw_Line({x1 - 1, y1 - 1}, {x2 - 1, y1 - 1}, lit, lit);
    Draw_Line({x1 - 1, y1 - 1}, {x1 - 1, y2 - 1}, lit, lit);
    Draw_Line({x2 - 1, y1 - 1}, {x2 - 1, y2 - 1}, dark, dark);
    Draw_Line({x1 - 1, y2 - 1}, {x2, y2 - 1}, dark, dark);
}

void Draw_HealthBar(const HealthBar& bar)
{
    const float share = std::clamp(bar.amount, 0.0F, 100.0F) / 100.0F;
    float x1 = std::min(bar.x1, bar.x2), x2 = std::max(bar.x1, bar.x2);
    float y1 = std::min(bar.y1, bar.y2), y2 = std::max(bar.y1, bar.y2);
    const uint32_t kept = drawColourARGB;
    if (bar.showBack) {
        Draw_SetColour(bar.back);
        Draw_Rectangle(x1, y1, x2, y2, false);
    }
    const float left = x1, top = y1, right = x2, bottom = y2;
    switch (bar.anchor) {
        case HealthDirection::Left:
            x2 = x1 + share * (x2 - x1);
            break;
        case HealthDirection::Right:
            x1 = x2 - share * (x2 - x1);
            break;
        case HealthDirection::Top:
            y2 = y1 + share * (y2 - y1);
            break;
        case HealthDirection::Bottom:
            y1 = y2 - share * (y2 - y1);
            break;
    }
    if (share > 0) {
        Draw_SetColour(Mix(bar.least, bar.most, share));
        Draw_Rectangle(x1, y1, x2, y2, false);
    }
    if (bar.showBorder) {
        Draw_SetColour(0);
        Draw_Rectangle(left, top, right, bottom, true);
    }
    drawColourARGB = kept;
}
