// Versions of the platform.
#ifndef SHARED_VERSION_H
#define SHARED_VERSION_H

namespace shared {

// Whether the platform's major version is 4 or later. Queried on every call: what counts is
// the version at the creation of a window.
bool isVersion4();

} // namespace shared

#endif
