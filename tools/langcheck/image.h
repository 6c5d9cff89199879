// A module as the bytes of its file. It isn't loaded: whatever is in it, no more is read than the
// file holds.
#ifndef LANGCHECK_IMAGE_H
#define LANGCHECK_IMAGE_H

#include <windows.h>

#include <string>
#include <vector>

namespace langcheck {

struct Bytes {
    const BYTE* p;
    size_t cb;
};

struct Image {
    std::vector<BYTE> file;
    DWORD peHeader; // offset of the signature
};

// Reads a file whole and checks that it is a 32-bit module with resources. Returns an empty text,
// or what is wrong.
std::string openImage(const std::string& path, Image* image);

// The same for bytes that image->file holds already.
std::string checkImage(Image* image);

// Whether the file is a DLL and not a program.
bool isLibrary(const Image& image);

// Empty, or what in the file could run: an entry point, imports, or a section.
std::string codeIn(const Image& image);

// The resource of this type and name, each an atom by MAKEINTRESOURCE or a text, in the first
// language that there is. Without one p is null.
Bytes findResource(const Image& image, const char* type, const char* name);

} // namespace langcheck

#endif
