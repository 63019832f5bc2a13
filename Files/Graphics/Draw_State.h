#pragma once
// Draw colour, alpha and the text state.

#include <cstdint>

extern uint32_t drawColourARGB;  // vertex word with the draw alpha in the high byte
extern int32_t drawAlpha;        // 0 to 255
extern uint32_t g_StartDrawColour;  // "@@DrawColour"

void DrawState_Init();
void Draw_SetColour(uint32_t colour);  // 0x00BBGGRR
uint32_t Draw_GetColour();
void Draw_SetAlpha(double alpha);
float Draw_GetAlpha();
void Draw_Rectangle(float x1, float y1, float x2, float y2, bool outline);
