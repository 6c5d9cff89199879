// Reads the pixel maps. Each line of a source file is one of
//
//   ; comment
//   palette NAME             begins a palette
//   color LETTER RRGGBB ...  next entry of its colour table, then its name
//   clear LETTER             the letter of a transparent pixel
//   resource KIND FILE       begins a resource
//   hotspot X Y              hot spot of a cursor
//   picture NAME             begins a picture
//   |...|                    next row of the picture, one letter per pixel
#include "pictures.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace {

const Area anywhere = {0, 0, 31, 31};

const std::vector<Kind> kinds = {
    {"toolbar", "toolbar", Encoding::Bitmap, 4, {{16, 15}}, 15, anywhere},
    // The rows of the lists are 16 pixels high and their text starts at
    // column 24, while the whole icon covers 32 by 32 pixels.
    {"listicon", "icon", Encoding::Icon, 4, {{32, 32}}, 1, {4, 2, 19, 13}},
    {"windowicon", "icon", Encoding::Icon, 4, {{32, 32}, {16, 16}}, 2, anywhere},
    {"cursor", "cursor", Encoding::Cursor, 1, {{32, 32}}, 1, anywhere},
    {"letters", "cursor", Encoding::None, 1, {{5, 7}}, 0, anywhere},
};

std::string inQuotes(const std::string& text)
{
    return "\"" + text + "\"";
}

std::string numbers(int first, const char* between, int second)
{
    return std::to_string(first) + between + std::to_string(second);
}

class Reader {
public:
    Reader(const std::string& path, Sources& sources) : path_(path), sources_(sources)
    {
    }

    void read()
    {
        std::ifstream in(path_);
        std::string text;
        while (std::getline(in, text)) {
            ++line_;
            // Editors leave carriage returns and trailing blanks.
            text.erase(text.find_last_not_of(" \t\r") + 1);
            readLine(text);
        }
        if (in.bad() || line_ == 0)
            throw std::runtime_error(path_ + ": cannot be read or is empty");
        endResource();
    }

private:
    [[noreturn]] void refuse(int line, const std::string& reason) const
    {
        throw std::runtime_error(path_ + ":" + std::to_string(line) + ": " + reason);
    }

    void readLine(const std::string& text)
    {
        if (text.empty() || text[0] == ';')
            return;
        if (text[0] == '|') {
            readRow(text);
            return;
        }
        endPicture();
        std::istringstream words(text);
        std::string keyword;
        words >> keyword;
        if (keyword == "palette")
            beginPalette(words);
        else if (keyword == "color")
            addColor(words);
        else if (keyword == "clear")
            setClear(words);
        else if (keyword == "resource")
            beginResource(words);
        else if (keyword == "hotspot")
            setHotSpot(words);
        else if (keyword == "picture")
            beginPicture(words);
        else
            refuse(line_, "unknown keyword " + inQuotes(keyword));
    }

    void beginPalette(std::istringstream& words)
    {
        endResource();
        Palette palette;
        if (!(words >> palette.name))
            refuse(line_, "a palette needs a name");
        if (findPalette(palette.name))
            refuse(line_, "palette " + inQuotes(palette.name) + " is there twice");
        sources_.palettes.push_back(palette);
        inPalette_ = true;
    }

    Palette& currentPalette()
    {
        if (!inPalette_)
            refuse(line_, "this line belongs into a palette");
        return sources_.palettes.back();
    }

    std::string newLetter(std::istringstream& words, const Palette& palette) const
    {
        std::string letter;
        if (!(words >> letter) || letter.size() != 1 || letter == "|")
            refuse(line_, "a palette entry is one letter, and not the bar of a row");
        if (letter[0] == palette.clearLetter || indexOf(palette, letter[0]) != clearPixel)
            refuse(line_, "letter " + inQuotes(letter) + " is there twice");
        return letter;
    }

    void addColor(std::istringstream& words)
    {
        Palette& palette = currentPalette();
        const std::string letter = newLetter(words, palette);
        std::string hex;
        words >> hex;
        if (hex.size() != 6 || hex.find_first_not_of("0123456789ABCDEF") != std::string::npos)
            refuse(line_, "a colour is six hexadecimal digits RRGGBB");
        const unsigned long value = std::stoul(hex, nullptr, 16);
        const Color color = {static_cast<std::uint8_t>(value >> 16 & 0xFF),
                             static_cast<std::uint8_t>(value >> 8 & 0xFF),
                             static_cast<std::uint8_t>(value & 0xFF)};
        palette.entries.push_back({letter[0], color});
    }

    void setClear(std::istringstream& words)
    {
        Palette& palette = currentPalette();
        palette.clearLetter = newLetter(words, palette)[0];
    }

    void beginResource(std::istringstream& words)
    {
        endResource();
        std::string kindName;
        Resource resource;
        if (!(words >> kindName >> resource.name))
            refuse(line_, "a resource needs a kind and a file name");
        for (const Kind& kind : kinds)
            if (kind.name == kindName)
                resource.kind = &kind;
        if (!resource.kind)
            refuse(line_, "unknown kind of resource " + inQuotes(kindName));
        for (const Resource& other : sources_.resources)
            if (other.name == resource.name)
                refuse(line_, "resource " + inQuotes(resource.name) + " is there twice");
        resource.palette = findPalette(resource.kind->palette);
        if (!resource.palette)
            refuse(line_, "there is no palette " + inQuotes(resource.kind->palette));
        if (resource.palette->entries.size() != std::size_t{1} << resource.kind->bits)
            refuse(line_, "palette " + inQuotes(resource.kind->palette) + " has " +
                              std::to_string(resource.palette->entries.size()) +
                              " colours instead of " + std::to_string(1 << resource.kind->bits));
        resource.line = line_;
        sources_.resources.push_back(resource);
        inResource_ = true;
    }

    Resource& currentResource()
    {
        if (!inResource_)
            refuse(line_, "this line belongs into a resource");
        return sources_.resources.back();
    }

    void setHotSpot(std::istringstream& words)
    {
        Resource& resource = currentResource();
        if (resource.kind->encoding != Encoding::Cursor)
            refuse(line_, "only a cursor has a hot spot");
        const Size size = resource.kind->sizes[0];
        const bool inside = words >> resource.hotX >> resource.hotY && resource.hotX >= 0 &&
                            resource.hotX < size.width && resource.hotY >= 0 &&
                            resource.hotY < size.height;
        if (!inside)
            refuse(line_, "a hot spot is an x and a y inside the cursor");
    }

    void beginPicture(std::istringstream& words)
    {
        Resource& resource = currentResource();
        Picture picture;
        if (!(words >> picture.name))
            refuse(line_, "a picture needs a name");
        picture.line = line_;
        resource.pictures.push_back(picture);
        inPicture_ = true;
    }

    void readRow(const std::string& text)
    {
        if (!inPicture_)
            refuse(line_, "a row of pixels belongs into a picture");
        if (text.size() < 3 || text.back() != '|')
            refuse(line_, "a row of pixels begins and ends with a bar");
        const Resource& resource = sources_.resources.back();
        Picture& picture = sources_.resources.back().pictures.back();
        const std::string letters = text.substr(1, text.size() - 2);
        if (picture.size.height == 0)
            setWidth(*resource.kind, picture, static_cast<int>(letters.size()));
        if (static_cast<int>(letters.size()) != picture.size.width)
            refuse(line_, "the row has " + std::to_string(letters.size()) + " pixels instead of " +
                              std::to_string(picture.size.width));
        for (const char letter : letters)
            picture.pixels.push_back(pixelOf(resource, picture, letter));
        ++picture.size.height;
    }

    void setWidth(const Kind& kind, Picture& picture, int width) const
    {
        std::string widths;
        for (const Size& size : kind.sizes) {
            if (size.width == width)
                picture.size.width = width;
            widths += (widths.empty() ? "" : " or ") + std::to_string(size.width);
        }
        if (picture.size.width == 0)
            refuse(line_, "the row has " + std::to_string(width) + " pixels instead of " + widths);
    }

    int pixelOf(const Resource& resource, const Picture& picture, char letter) const
    {
        if (letter == resource.palette->clearLetter)
            return clearPixel;
        const int index = indexOf(*resource.palette, letter);
        if (index == clearPixel)
            refuse(line_, "unknown pixel letter " + inQuotes(std::string(1, letter)));
        const int x =
            static_cast<int>(picture.pixels.size()) - picture.size.width * picture.size.height;
        const int y = picture.size.height;
        const Area& area = resource.kind->opaque;
        if (x < area.left || x > area.right || y < area.top || y > area.bottom)
            refuse(line_, "opaque pixel at column " + numbers(x, ", row ", y) + "; only columns " +
                              numbers(area.left, " to ", area.right) + " and rows " +
                              numbers(area.top, " to ", area.bottom) + " may be opaque");
        return index;
    }

    void endPicture()
    {
        if (!inPicture_)
            return;
        inPicture_ = false;
        const Resource& resource = sources_.resources.back();
        const Picture& picture = resource.pictures.back();
        for (const Size& size : resource.kind->sizes)
            if (size.width == picture.size.width && size.height == picture.size.height)
                return;
        refuse(picture.line, "picture " + inQuotes(picture.name) + " is " +
                                 numbers(picture.size.width, " by ", picture.size.height) +
                                 " pixels, which no " + resource.kind->name + " picture may be");
    }

    void endResource()
    {
        endPicture();
        inPalette_ = false;
        if (!inResource_)
            return;
        inResource_ = false;
        const Resource& resource = sources_.resources.back();
        const std::size_t wanted = resource.kind->pictures;
        if (wanted != 0 && resource.pictures.size() != wanted)
            refuse(resource.line, inQuotes(resource.name) + " has " +
                                      std::to_string(resource.pictures.size()) +
                                      " pictures instead of " + std::to_string(wanted));
        if (resource.kind->encoding == Encoding::Cursor && resource.hotX < 0)
            refuse(resource.line, inQuotes(resource.name) + " has no hot spot");
    }

    const Palette* findPalette(const std::string& name) const
    {
        for (const Palette& palette : sources_.palettes)
            if (palette.name == name)
                return &palette;
        return nullptr;
    }

    static int indexOf(const Palette& palette, char letter)
    {
        for (std::size_t i = 0; i < palette.entries.size(); ++i)
            if (palette.entries[i].letter == letter)
                return static_cast<int>(i);
        return clearPixel;
    }

    const std::string path_;
    Sources& sources_;
    int line_ = 0;
    bool inPalette_ = false;
    bool inResource_ = false;
    bool inPicture_ = false;
};

} // namespace

void readSources(const std::string& directory, Sources& sources)
{
    // The palettes come first, because the resources refer to them.
    const std::string paletteFile = directory + "/palettes.txt";
    Reader(paletteFile, sources).read();
    std::vector<std::string> paths;
    for (const auto& entry : std::filesystem::directory_iterator(directory))
        if (entry.path().extension() == ".txt" && entry.path() != paletteFile)
            paths.push_back(entry.path().string());
    std::sort(paths.begin(), paths.end());
    for (const std::string& path : paths)
        Reader(path, sources).read();
}
