#include "shared/version.h"

#include <windows.h>

bool shared::isVersion4()
{
    return LOBYTE(GetVersion()) >= 4;
}
