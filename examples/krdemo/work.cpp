#include "work.h"
#include "address.h"

namespace demo {

namespace {

constexpr char ASK_CAPTION[] = "Sample caller";

struct Work {
    const Host* host = nullptr;
    Address address;
    HWND owner = nullptr;
    bool isRunning = false;
    unsigned number = 0;
    std::function<void(bool)> onEnd;
};

Work work;

void finish(bool stopped)
{
    std::function<void(bool)> onEnd = std::move(work.onEnd);
    work.isRunning = false;
    onEnd(stopped);
}

} // namespace

void openHost(const Address& address)
{
    closeHost();
#ifdef KRDEMO_CURL
    work.host = address.protocol == Protocol::Folder ? &FOLDER_HOST : &CURL_HOST;
#else
    work.host = &FOLDER_HOST;
#endif
    work.host->open(address);
    work.address = address;
    wipe(&work.address.password);
}

void closeHost()
{
    if (work.host != nullptr) {
        stopWork();
        work.host->close();
        work.host = nullptr;
    }
}

const Address& hostAddress()
{
    return work.address;
}

void setAsker(HWND owner)
{
    work.owner = owner;
}

bool beginWork(std::function<void(bool)> onEnd)
{
    if (work.isRunning || work.host == nullptr) {
        return false;
    }
    work.isRunning = true;
    ++work.number;
    work.onEnd = std::move(onEnd);
    return true;
}

void endWork()
{
    finish(false);
}

void stopWork()
{
    if (work.isRunning) {
        work.host->stop();
        finish(true);
    }
}

bool isWorking()
{
    return work.isRunning;
}

unsigned workNumber()
{
    return work.number;
}

bool isWorking(unsigned number)
{
    return work.isRunning && work.number == number;
}

void askHost(Request&& request)
{
    work.host->start(std::move(request));
}

void removeOnHost(const std::string& path, std::function<void(const Answer&)> onDone)
{
    work.host->remove(path, std::move(onDone));
}

int ask(const std::string& question, UINT type)
{
    return MessageBoxA(work.owner, question.c_str(), ASK_CAPTION, type);
}

} // namespace demo
