#pragma once
// Draw colour, alpha and the plain shapes. Positions are floats in the units of the
// present view; shapes go to the batch with the white texture.

#include <cstdint>

extern uint32_t drawColourARGB;     // vertex word with the draw alpha in the high byte
extern int32_t drawAlpha;           // 0 to 255
extern uint32_t g_StartDrawColour;  // "@@DrawColour", 0x00BBGGRR
// Added to the points of lines and to the far edges of rectangles.
extern float primitiveOffsetX, primitiveOffsetY;
extern int32_t circlePrecision;  // segments of a circle, a multiple of 4, 4 to 64

void DrawState_Init();
void Draw_SetColour(uint32_t colour);  // 0x00BBGGRR
uint32_t Draw_GetColour();
void Draw_SetAlpha(double alpha);
double Draw_GetAlpha();
// A script colour under the draw alpha, as a vertex word.
uint32_t Draw_VertexWord(uint32_t colour);
void Draw_SetCirclePrecision(int32_t segments);

// ---- shapes; colours are vertex words
struct DrawPoint {
    float x, y;
};
void Draw_Rectangle(float x1, float y1, float x2, float y2, bool outline);
// corners: top left, top right, bottom right, bottom left.
void Draw_RectangleColours(float x1, float y1, float x2, float y2, const uint32_t corners[4],
                           bool outline);
void Draw_Point(float x, float y, uint32_t colour);
void Draw_Line(DrawPoint from, DrawPoint to, uint32_t fromColour, uint32_t toColour);
void Draw_LineWidth(DrawPoint from, DrawPoint to, float width, uint32_t fromColour,
                    uint32_t toColour);
void Draw_Triangle(const DrawPoint points[3], const uint32_t colours[3], bool outline);
void Draw_Ellipse(float x1, float y1, float x2, float y2, uint32_t centre, uint32_t rim,
                  bool outline);
void Draw_RoundRectangle(float x1, float y1, float x2, float y2, float radiusX, float radiusY,
                         uint32_t centre, uint32_t rim, bool outline);
void Draw_Arrow(DrawPoint from, DrawPoint to, float size);
void Draw_Button(float x1, float y1, float x2, float y2, bool up);

enum class HealthDirection : int32_t { Left = 0, Right = 1, Top = 2, Bottom = 3 };
struct HealthBar {
    float x1, y1, x2, y2;
    float amount;                // 0 to 100
    uint32_t back, least, most;  // script colours
    HealthDirection anchor;      // the side that stays filled
    bool showBack, showBorder;
};
void Draw_HealthBar(const HealthBar& bar);

// ---- vertices collected by scripts, at most 1000
void Primitive_Begin(int32_t kind, int32_t textureSlot);  // -1: untextured
void Primitive_Vertex(float x, float y, float u, float v, uint32_t colour);
void Primitive_End();
