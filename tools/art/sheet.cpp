// Draws the contact sheet: every picture in its own size and enlarged, on the
// backgrounds and in the states in which the windows show it. The system
// colours are those of the classic grey scheme unless a title says otherwise.
#include "pictures.h"

#include <cctype>
#include <cstring>
#include <map>

namespace {

constexpr Color black = {0, 0, 0};
constexpr Color white = {0xFF, 0xFF, 0xFF};
constexpr Color lightGrey = {0xC0, 0xC0, 0xC0};
constexpr Color darkGrey = {0x80, 0x80, 0x80};
constexpr Color darkBlue = {0, 0, 0x80};
constexpr Color darkMagenta = {0x80, 0, 0x80};
constexpr Color background = {0xE8, 0xE8, 0xE0};

constexpr Size buttonSize = {24, 22};
constexpr int enlarged = 8;
constexpr int sheetWidth = 1600;
constexpr int margin = 16;
constexpr int textScale = 2;
constexpr int textHeight = 7 * textScale;

bool same(Color a, Color b)
{
    return a.red == b.red && a.green == b.green && a.blue == b.blue;
}

class Canvas {
public:
    Canvas(Size size, Color color)
        : size_(size), pixels_(static_cast<std::size_t>(size.width * size.height), color)
    {
    }

    Size size() const
    {
        return size_;
    }
    Color at(int x, int y) const
    {
        return pixels_[index(x, y)];
    }

    void set(int x, int y, Color color)
    {
        if (x >= 0 && x < size_.width && y >= 0 && y < size_.height)
            pixels_[index(x, y)] = color;
    }

    void fill(int x, int y, Size size, Color color)
    {
        for (int row = 0; row < size.height; ++row)
            for (int column = 0; column < size.width; ++column)
                set(x + column, y + row, color);
    }

    void paste(const Canvas& other, int x, int y, int scale)
    {
        for (int row = 0; row < other.size_.height; ++row)
            for (int column = 0; column < other.size_.width; ++column)
                fill(x + column * scale, y + row * scale, {scale, scale}, other.at(column, row));
    }

private:
    std::size_t index(int x, int y) const
    {
        return static_cast<std::size_t>(y * size_.width + x);
    }

    Size size_;
    std::vector<Color> pixels_;
};

struct Tile {
    Canvas canvas;
    std::string caption;
};

struct Block {
    std::string title;
    int scale;
    std::vector<Tile> tiles;
};

struct Scheme {
    Color text;
    Color shadow;
    Color face;
    Color highlight;
    Color selection;
    Color window;
};

constexpr Scheme classic = {black, darkGrey, lightGrey, white, darkBlue, white};
constexpr Scheme highContrast = {white, darkGrey, black, lightGrey, darkMagenta, black};

enum class Look { Enabled, Disabled, Checked };

struct ToolbarView {
    const Scheme& scheme;
    Look look;
    const char* title;
};

const ToolbarView toolbarViews[] = {
    {classic, Look::Enabled, "toolbar enabled"},
    {classic, Look::Disabled, "toolbar disabled"},
    {classic, Look::Checked, "toolbar checked"},
    {highContrast, Look::Enabled, "toolbar enabled in high contrast"},
};

Color systemColor(const Scheme& scheme, Color color)
{
    const struct {
        Color from;
        Color to;
    } map[] = {
        {{0x00, 0x00, 0x00}, scheme.text},      {{0x80, 0x80, 0x80}, scheme.shadow},
        {{0xC0, 0xC0, 0xC0}, scheme.face},      {{0xFF, 0xFF, 0xFF}, scheme.highlight},
        {{0x00, 0x00, 0xFF}, scheme.selection}, {{0xFF, 0x00, 0xFF}, scheme.window},
    };
    for (const auto& row : map)
        if (same(row.from, color))
            return row.to;
    return color;
}

// The upper left part of a picture on a background of the given colour.
Canvas drawOn(const Resource& resource, const Picture& picture, Color color, Size size)
{
    Canvas canvas(size, color);
    for (int y = 0; y < size.height; ++y)
        for (int x = 0; x < size.width; ++x)
            if (picture.at(x, y) != clearPixel) {
                const auto pixel = static_cast<std::size_t>(picture.at(x, y));
                canvas.set(x, y, resource.palette->entries[pixel].color);
            }
    return canvas;
}

Canvas drawInScheme(const Scheme& scheme, const Resource& toolbar, const Picture& picture)
{
    Canvas canvas = drawOn(toolbar, picture, lightGrey, picture.size);
    for (int y = 0; y < picture.size.height; ++y)
        for (int x = 0; x < picture.size.width; ++x)
            canvas.set(x, y, systemColor(scheme, canvas.at(x, y)));
    return canvas;
}

void drawButtonFace(Canvas& canvas, const Scheme& scheme)
{
    const Size size = canvas.size();
    canvas.fill(1, 0, {size.width - 2, 1}, scheme.text);
    canvas.fill(1, size.height - 1, {size.width - 2, 1}, scheme.text);
    canvas.fill(0, 1, {1, size.height - 2}, scheme.text);
    canvas.fill(size.width - 1, 1, {1, size.height - 2}, scheme.text);
    canvas.fill(1, 1, {1, size.height - 3}, scheme.highlight);
    canvas.fill(1, 1, {size.width - 3, 1}, scheme.highlight);
    for (int inset = 2; inset <= 3; ++inset) {
        const Size column = {1, size.height - 2 * inset + 2};
        const Size row = {size.width - 2 * inset + 2, 1};
        canvas.fill(size.width - inset, inset - 1, column, scheme.shadow);
        canvas.fill(inset - 1, size.height - inset, row, scheme.shadow);
    }
}

// Draws only those pixels that are neither face nor highlight colour.
template <typename Recolor>
void drawDark(Canvas& canvas, const Canvas& picture, int left, int top, const Scheme& scheme,
              Recolor recolor)
{
    for (int y = 0; y < picture.size().height; ++y)
        for (int x = 0; x < picture.size().width; ++x) {
            const Color color = picture.at(x, y);
            if (!same(color, scheme.face) && !same(color, scheme.highlight))
                canvas.set(left + x, top + y, recolor(color));
        }
}

// A disabled picture shows its dark pixels in the shadow colour, with a highlight one
// pixel below and to the right.
void drawEngraved(Canvas& canvas, const Canvas& picture, int left, int top, const Scheme& scheme)
{
    drawDark(canvas, picture, left + 1, top + 1, scheme, [&](Color) { return scheme.highlight; });
    drawDark(canvas, picture, left, top, scheme, [&](Color) { return scheme.shadow; });
}

// The dark pixels of a checked picture are drawn on a checkerboard of face and
// highlight colour, which fills the frame.
void drawChecked(Canvas& canvas, const Canvas& picture, int left, int top, const Scheme& scheme)
{
    for (int y = 2; y < buttonSize.height - 1; ++y)
        for (int x = 2; x < buttonSize.width - 1; ++x)
            canvas.set(x, y, (x + y) % 2 == 0 ? scheme.face : scheme.highlight);
    drawDark(canvas, picture, left, top, scheme, [](Color color) { return color; });
}

Canvas drawButton(const Canvas& picture, Look look, const Scheme& scheme)
{
    constexpr int left = 3;
    constexpr int top = 3;
    Canvas canvas(buttonSize, scheme.face);
    drawButtonFace(canvas, scheme);
    switch (look) {
    case Look::Enabled:
        canvas.paste(picture, left, top, 1);
        break;
    case Look::Disabled:
        drawEngraved(canvas, picture, left, top, scheme);
        break;
    case Look::Checked:
        drawChecked(canvas, picture, left + 1, top + 1, scheme);
        break;
    }
    return canvas;
}

class Sheet {
public:
    explicit Sheet(const Sources& sources) : sources_(sources)
    {
        for (const Resource& resource : sources.resources)
            if (resource.kind->encoding == Encoding::None)
                for (const Picture& letter : resource.pictures)
                    letters_[letter.name[0]] = &letter;
        addBlocks(1);
        addBlocks(enlarged);
    }

    std::string encode() const
    {
        Canvas canvas({sheetWidth, layOut(nullptr)}, background);
        layOut(&canvas);
        std::string bytes = "P6 " + std::to_string(canvas.size().width) + " " +
                            std::to_string(canvas.size().height) + " 255\n";
        for (int y = 0; y < canvas.size().height; ++y)
            for (int x = 0; x < canvas.size().width; ++x) {
                const Color color = canvas.at(x, y);
                bytes += static_cast<char>(color.red);
                bytes += static_cast<char>(color.green);
                bytes += static_cast<char>(color.blue);
            }
        return bytes;
    }

private:
    void addBlocks(int scale)
    {
        for (const ToolbarView& view : toolbarViews)
            blocks_.push_back({view.title, scale, buttons(view)});
        blocks_.push_back({"list icons", scale, pictures("listicon", {white, darkBlue})});
        blocks_.push_back({"window icons", scale, pictures("windowicon", {white, darkBlue})});
        blocks_.push_back({"cursors", scale, pictures("cursor", {white, darkGrey, black})});
    }

    std::vector<Tile> buttons(const ToolbarView& view) const
    {
        std::vector<Tile> tiles;
        for (const Resource& resource : sources_.resources)
            if (resource.kind->encoding == Encoding::Bitmap)
                for (const Picture& picture : resource.pictures)
                    tiles.push_back({drawButton(drawInScheme(view.scheme, resource, picture),
                                                view.look, view.scheme),
                                     picture.name});
        return tiles;
    }

    std::vector<Tile> pictures(const char* kind, const std::vector<Color>& colors) const
    {
        std::vector<Tile> tiles;
        for (const Color color : colors)
            for (const Resource& resource : sources_.resources)
                if (std::strcmp(resource.kind->name, kind) == 0)
                    for (const Picture& picture : resource.pictures) {
                        const Size size = shownSize(resource, picture);
                        tiles.push_back({drawOn(resource, picture, color, size), picture.name});
                    }
        return tiles;
    }

    // For a list icon, the part that is visible in a row of a list.
    static Size shownSize(const Resource& resource, const Picture& picture)
    {
        const Area& opaque = resource.kind->opaque;
        const Size row = {opaque.left + opaque.right + 1, opaque.top + opaque.bottom + 1};
        return row.width < picture.size.width ? row : picture.size;
    }

    // Draws the blocks below each other and returns the height that they need;
    // without a canvas it only computes the height.
    int layOut(Canvas* canvas) const
    {
        int y = margin;
        for (const Block& block : blocks_) {
            drawText(canvas, margin, y, block.title);
            y += textHeight + margin / 2;
            y = layOutTiles(canvas, block, y) + margin;
        }
        return y;
    }

    int layOutTiles(Canvas* canvas, const Block& block, int y) const
    {
        const bool captioned = block.scale > 1;
        int x = margin;
        int lineHeight = 0;
        for (const Tile& tile : block.tiles) {
            const Size size = tile.canvas.size();
            const int width = size.width * block.scale;
            int height = size.height * block.scale;
            if (x + width > sheetWidth - margin) {
                x = margin;
                y += lineHeight;
                lineHeight = 0;
            }
            if (canvas)
                canvas->paste(tile.canvas, x, y, block.scale);
            if (captioned) {
                drawText(canvas, x, y + height + textScale, tile.caption);
                height += textScale + textHeight + margin / 2;
            }
            lineHeight = height > lineHeight ? height : lineHeight;
            x += width + 4;
        }
        return y + lineHeight;
    }

    void drawText(Canvas* canvas, int x, int y, const std::string& text) const
    {
        for (const char character : text) {
            const auto letter = letters_.find(
                static_cast<char>(std::toupper(static_cast<unsigned char>(character))));
            if (canvas && letter != letters_.end())
                drawLetter(*canvas, x, y, *letter->second);
            x += 6 * textScale;
        }
    }

    static void drawLetter(Canvas& canvas, int x, int y, const Picture& letter)
    {
        for (int row = 0; row < letter.size.height; ++row)
            for (int column = 0; column < letter.size.width; ++column)
                if (letter.at(column, row) != clearPixel)
                    canvas.fill(x + column * textScale, y + row * textScale, {textScale, textScale},
                                black);
    }

    const Sources& sources_;
    std::map<char, const Picture*> letters_;
    std::vector<Block> blocks_;
};

} // namespace

std::string encodeSheet(const Sources& sources)
{
    return Sheet(sources).encode();
}
