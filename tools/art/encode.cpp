// Encodes pictures as Windows bitmap, icon and cursor files.
#include "pictures.h"

namespace {

constexpr std::size_t fileHeaderSize = 14;
constexpr std::size_t infoHeaderSize = 40;
constexpr std::size_t directoryHeaderSize = 6;
constexpr std::size_t directoryEntrySize = 16;

void put(std::string& bytes, std::size_t value, int count)
{
    for (int i = 0; i < count; ++i)
        bytes += static_cast<char>(value >> (8 * i) & 0xFF);
}

void put8(std::string& bytes, std::size_t value)
{
    put(bytes, value, 1);
}
void put16(std::string& bytes, std::size_t value)
{
    put(bytes, value, 2);
}
void put32(std::string& bytes, std::size_t value)
{
    put(bytes, value, 4);
}

// The rows of an image are stored bottom up, each padded to a multiple of 32 bits.
template <typename Value> std::string packRows(Size size, int bits, Value value)
{
    std::string bytes;
    for (int y = size.height - 1; y >= 0; --y) {
        std::string row;
        unsigned packed = 0;
        for (int x = 0; x < size.width; ++x) {
            packed = packed << bits | static_cast<unsigned>(value(x, y));
            if ((x + 1) * bits % 8 == 0) {
                put8(row, packed);
                packed = 0;
            }
        }
        row.resize((row.size() + 3) / 4 * 4);
        bytes += row;
    }
    return bytes;
}

// The colour table is always full, because the toolbar computes the offset of the pixels
// from the number of bits alone.
void putInfo(std::string& bytes, int width, int height, int bits, std::size_t imageSize,
             const Palette& palette)
{
    put32(bytes, infoHeaderSize);
    put32(bytes, static_cast<std::size_t>(width));
    put32(bytes, static_cast<std::size_t>(height));
    put16(bytes, 1);
    put16(bytes, static_cast<std::size_t>(bits));
    put32(bytes, 0);
    put32(bytes, imageSize);
    put32(bytes, 0);
    put32(bytes, 0);
    put32(bytes, palette.entries.size());
    put32(bytes, 0);
    for (const PaletteEntry& entry : palette.entries) {
        put8(bytes, entry.color.blue);
        put8(bytes, entry.color.green);
        put8(bytes, entry.color.red);
        put8(bytes, 0);
    }
}

std::string encodeBitmap(const Resource& resource)
{
    const int bits = resource.kind->bits;
    const Size cell = resource.pictures[0].size;
    const Size size = {cell.width * static_cast<int>(resource.pictures.size()), cell.height};
    const std::string rows = packRows(size, bits, [&](int x, int y) {
        return resource.pictures[static_cast<std::size_t>(x / cell.width)].at(x % cell.width, y);
    });
    std::string info;
    putInfo(info, size.width, size.height, bits, rows.size(), *resource.palette);

    std::string bytes = "BM";
    put32(bytes, fileHeaderSize + info.size() + rows.size());
    put32(bytes, 0);
    put32(bytes, fileHeaderSize + info.size());
    return bytes + info + rows;
}

// Transparent pixels leave the screen unchanged: they are 1 in the mask and black in the
// colours, which are combined by exclusive or.
std::string encodeMasked(const Picture& picture, const Palette& palette, int bits)
{
    const std::string colors = packRows(picture.size, bits, [&](int x, int y) {
        const int pixel = picture.at(x, y);
        return pixel == clearPixel ? 0 : pixel;
    });
    const std::string mask = packRows(
        picture.size, 1, [&](int x, int y) { return picture.at(x, y) == clearPixel ? 1 : 0; });
    std::string bytes;
    // The height is that of colours and mask together.
    putInfo(bytes, picture.size.width, 2 * picture.size.height, bits, colors.size() + mask.size(),
            palette);
    return bytes + colors + mask;
}

std::string encodeDirectory(const Resource& resource)
{
    const bool cursor = resource.kind->encoding == Encoding::Cursor;
    const int bits = resource.kind->bits;
    std::string bytes;
    put16(bytes, 0);
    put16(bytes, cursor ? 2 : 1);
    put16(bytes, resource.pictures.size());

    std::string images;
    for (const Picture& picture : resource.pictures) {
        const std::string image = encodeMasked(picture, *resource.palette, bits);
        put8(bytes, static_cast<std::size_t>(picture.size.width));
        put8(bytes, static_cast<std::size_t>(picture.size.height));
        put8(bytes, resource.palette->entries.size());
        put8(bytes, 0);
        // Cursors store the hot spot in the fields in which icons store planes and bits.
        put16(bytes, static_cast<std::size_t>(cursor ? resource.hotX : 1));
        put16(bytes, static_cast<std::size_t>(cursor ? resource.hotY : bits));
        put32(bytes, image.size());
        put32(bytes,
              directoryHeaderSize + directoryEntrySize * resource.pictures.size() + images.size());
        images += image;
    }
    return bytes + images;
}

} // namespace

std::string encodeResource(const Resource& resource)
{
    return resource.kind->encoding == Encoding::Bitmap ? encodeBitmap(resource)
                                                       : encodeDirectory(resource);
}
