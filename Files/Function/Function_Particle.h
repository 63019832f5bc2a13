#pragma once
// The families of particle built-ins, and what they share.

#include "Files/Function/Function_Registry.h"
#include "Files/Particle/Particle_Main.h"

void Function_Particle_RegisterSystems();  // and particles, emitters
