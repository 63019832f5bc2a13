#pragma once
// What the units of the object module share.

void Object_ResetEvents();      // no event under way
void Object_FreeEventTables();  // g_EventObjects and the collision pairs
