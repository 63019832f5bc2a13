#pragma once
// The units of the family "Math..", one registration each.

void Function_Math_RegisterRandom();
void Function_Math_RegisterText();
void Function_Math_RegisterArrays();
void Function_Math_RegisterDates();
