#include "Files/Graphics_API/Device.h"

const DeviceTable* g_Device = nullptr;
