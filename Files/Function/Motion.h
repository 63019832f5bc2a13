#pragma once
// What setting a speed or a direction does, for built-ins that set both.

class CInstance;

void Motion_SetSpeed(CInstance* instance, float speed);          // pixels a step
void Motion_SetDirection(CInstance* instance, float direction);  // degrees, any range
