// Versions of the platform.
#ifndef SHARED_VERSION_H
#define SHARED_VERSION_H

namespace shared {

// Whether the platform's major version is 4 or later. It is queried on every call, because it
// counts at the moment when a window is created.
bool isVersion4();

} // namespace shared

#endif
