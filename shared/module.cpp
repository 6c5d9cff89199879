#include "shared/module.h"

HINSTANCE g_hInstance;
