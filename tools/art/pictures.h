// The records of the art tool, and its three steps: read the sources, encode
// the resource files, draw the contact sheet.
#pragma once

#include <cstdint>
#include <deque>
#include <string>
#include <vector>

struct Color {
    std::uint8_t red = 0;
    std::uint8_t green = 0;
    std::uint8_t blue = 0;
};

struct PaletteEntry {
    char letter;
    Color color;
};

// The entries are in the order of the colour table in the file.
struct Palette {
    std::string name;
    std::vector<PaletteEntry> entries;
    char clearLetter = 0; // 0 for a palette without a transparent pixel.
};

struct Size {
    int width = 0;
    int height = 0;
};

// Both the first and the last column and row belong to the area.
struct Area {
    int left;
    int top;
    int right;
    int bottom;
};

enum class Encoding { Bitmap, Icon, Cursor, None };

// What all resources of a kind have in common. The windows of the library
// depend on these numbers, so they are fixed here and not in the sources.
struct Kind {
    const char* name;
    const char* palette;
    Encoding encoding;
    int bits;                // Bits per pixel; the palette has an entry for each value.
    std::vector<Size> sizes; // Sizes that a picture may have.
    std::size_t pictures;    // Pictures in one resource, 0 for any number.
    Area opaque;             // A picture may have opaque pixels only here.
};

constexpr int clearPixel = -1;

struct Picture {
    std::string name;
    Size size;
    std::vector<int> pixels; // Indices into the palette, or clearPixel.
    int line = 0;

    int at(int x, int y) const
    {
        return pixels[static_cast<std::size_t>(y * size.width + x)];
    }
};

struct Resource {
    const Kind* kind = nullptr;
    const Palette* palette = nullptr;
    std::string name; // Name of the file to write.
    int hotX = -1;
    int hotY = -1;
    std::vector<Picture> pictures;
    int line = 0;
};

struct Sources {
    std::deque<Palette> palettes; // The resources point to its elements.
    std::vector<Resource> resources;
};

// Reads every source file of a directory. Throws std::runtime_error with a
// text of the form "file:line: what is wrong" at the first error.
void readSources(const std::string& directory, Sources& sources);

std::string encodeResource(const Resource& resource);

// The contact sheet as a binary PPM.
std::string encodeSheet(const Sources& sources);
