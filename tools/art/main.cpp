// Makes the library's bitmap, icons and cursors from their pixel maps.
//
//   art SOURCES RESOURCES SHEET     writes the resource files and the sheet
//   art --check SOURCES RESOURCES   compares, writes nothing
//
// The exit code is 0 for success, 1 for resource files that differ from their
// sources, 2 if the tool could not do its work.
#include "pictures.h"

#include <fstream>
#include <iostream>
#include <iterator>
#include <stdexcept>

namespace {

void writeFile(const std::string& path, const std::string& bytes)
{
    std::ofstream out(path, std::ios::binary);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    out.close();
    if (!out)
        throw std::runtime_error(path + ": cannot be written");
}

// Returns nothing for a file that cannot be opened; no resource file is empty.
std::string readFile(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

int check(const Sources& sources, const std::string& directory)
{
    int result = 0;
    for (const Resource& resource : sources.resources) {
        if (resource.kind->encoding == Encoding::None)
            continue;
        const std::string path = directory + "/" + resource.name;
        if (readFile(path) != encodeResource(resource)) {
            std::cout << path << ": missing or different from its source\n";
            result = 1;
        }
    }
    return result;
}

void write(const Sources& sources, const std::string& directory, const std::string& sheet)
{
    for (const Resource& resource : sources.resources)
        if (resource.kind->encoding != Encoding::None)
            writeFile(directory + "/" + resource.name, encodeResource(resource));
    writeFile(sheet, encodeSheet(sources));
}

int run(const std::vector<std::string>& arguments)
{
    const bool checking = !arguments.empty() && arguments[0] == "--check";
    if (arguments.size() != 3) {
        std::cerr << "usage: art SOURCES RESOURCES SHEET\n"
                     "       art --check SOURCES RESOURCES\n";
        return 2;
    }
    Sources sources;
    if (checking) {
        readSources(arguments[1], sources);
        return check(sources, arguments[2]);
    }
    readSources(arguments[0], sources);
    write(sources, arguments[1], arguments[2]);
    return 0;
}

} // namespace

int main(int count, char** arguments)
{
    try {
        return run(std::vector<std::string>(arguments + 1, arguments + count));
    } catch (const std::exception& fault) {
        std::cerr << fault.what() << '\n';
        return 2;
    }
}
