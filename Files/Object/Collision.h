#pragma once
// Bounding boxes, pixel masks and the place tests.

#include "Files/Object/CInstance.h"

void ComputeBoundingBox(CInstance* instance);
inline void EnsureBoundingBox(CInstance* instance)
{
    if (instance->bboxDirty) ComputeBoundingBox(instance);
}
bool CollisionInstance(CInstance* a, CInstance* b, bool precise);
bool CollisionPoint(CInstance* instance, float x, float y, bool precise);

// The caller is only lent to the point; its position is restored in any case.
bool Place_Free(CInstance* self, float x, float y);
bool Place_Empty(CInstance* self, float x, float y);
// The instance found, or null. `target` is an instance number; -1 and -2 mean self and other.
CInstance* Place_Find(CInstance* self, CInstance* other, float x, float y, int32_t target);
CInstance* Position_Find(CInstance* self, CInstance* other, float x, float y, int32_t target);
bool Place_Snapped(const CInstance* self, double hsnap, double vsnap);

// Nearest integer, halves to even: the rounding of every box and mask sum.
int32_t RoundToEven(double value);
