#include "Host/Host.h"

Host g_Host{};
