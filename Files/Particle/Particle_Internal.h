#pragma once
// What the units of particles share among themselves.

#include "Files/Particle/Particle_Main.h"

inline constexpr float kRadian = 3.1415927F / 180.0F;
inline constexpr double kTurn = 6.283185307179586;  // radians

const VxVector<CParticleSystem*>& ParticleSystem_Table();  // null where a place is empty
void ParticleTables_Free();

// To and fro between -1 and 1 once in `period` steps.
float Particle_Wiggle(int32_t phase, int32_t period);
float Particle_Random(float least, float most);  // draws nothing when both are equal
// 0x00BBGGRR between two colours; share 0 to 1.
uint32_t Particle_Blend(uint32_t from, uint32_t to, float share);

// Alpha of each pixel of a shape's picture, row by row from the top.
void Particle_PaintShape(int32_t shape, uint8_t* alpha);
int32_t ParticleShape_Slot(int32_t shape);    // of its texture; -1 before there is one
int32_t ParticleShape_Sprite(int32_t shape);  // the archive's stand-in; -1 for none
