#include "ledger.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <stdlib.h>
#include <string.h>
#include <tuple>
#include <utility>

namespace {

// Each thing with the call that gave it.
std::multimap<const void*, const char*> s_owed;
bool s_fAll;
bool s_fObjectsFail;
int s_nUntilFailure;
bool s_fForGood;
bool s_fFailed;

bool isToFail()
{
    bool fFail = s_nUntilFailure > 0 && --s_nUntilFailure == 0;
    if (fFail && s_fForGood) {
        s_nUntilFailure = 1;
    }
    s_fFailed = s_fFailed || fFail;
    return fFail;
}

void take(const void* p, const char* pszFrom)
{
    if (p != nullptr) {
        s_owed.emplace(p, pszFrom);
    }
}

// Returns whether the thing was owed; nothing at all counts as that.
bool giveBack(const void* p, const char* pszBy)
{
    auto found = s_owed.find(p);
    bool fOwed = p == nullptr || found != s_owed.end();
    if (found != s_owed.end()) {
        s_owed.erase(found);
    } else if (p != nullptr && s_fAll) {
        ADD_FAILURE() << pszBy << " of what isn't owed";
    }
    return fOwed;
}

HGLOBAL WINAPI owingGlobalAlloc(UINT uFlags, SIZE_T cb)
{
    HGLOBAL h = isToFail() ? nullptr : GlobalAlloc(uFlags, cb);
    take(h, "GlobalAlloc");
    return h;
}

// Freed blocks stay, filled with this, so that a use after the end shows.
constexpr BYTE DEAD = 0xDD;
std::vector<HGLOBAL> s_dead;

HGLOBAL WINAPI owingGlobalFree(HGLOBAL h)
{
    giveBack(h, "GlobalFree");
    if (h != nullptr) {
        memset(GlobalLock(h), DEAD, GlobalSize(h));
        s_dead.push_back(h);
    }
    return nullptr;
}

// The heap moves a block only when it has to; this one always does.
HGLOBAL WINAPI owingGlobalReAlloc(HGLOBAL hOld, SIZE_T cb, UINT uFlags)
{
    HGLOBAL h = owingGlobalAlloc(uFlags, cb);
    if (h != nullptr) {
        memcpy(GlobalLock(h), GlobalLock(hOld), std::min(GlobalSize(hOld), cb));
        GlobalUnlock(h);
        owingGlobalFree(hOld);
    }
    return h;
}

void burySafely()
{
    for (HGLOBAL h : std::exchange(s_dead, {})) {
        auto pb = static_cast<const BYTE*>(GlobalLock(h));
        EXPECT_EQ(std::count(pb, pb + GlobalSize(h), DEAD), int(GlobalSize(h)))
            << "written to after its end";
        while (GlobalUnlock(h)) {
        }
        GlobalFree(h);
    }
}

void* owingMalloc(size_t cb)
{
    void* p = isToFail() ? nullptr : malloc(cb);
    take(p, "malloc");
    return p;
}

// The compiler makes it of malloc and memset.
void* owingCalloc(size_t c, size_t cb)
{
    void* p = isToFail() ? nullptr : calloc(c, cb);
    take(p, "calloc");
    return p;
}

void* owingRealloc(void* pOld, size_t cb)
{
    if (isToFail()) {
        return nullptr;
    }
    bool fOwed = giveBack(pOld, "realloc");
    void* p = realloc(pOld, cb);
    take(fOwed ? p : nullptr, "realloc");
    return p;
}

void owingFree(void* p)
{
    giveBack(p, "free");
    free(p);
}

BOOL WINAPI owingEndPaint(HWND hwnd, const PAINTSTRUCT* pPaint)
{
    giveBack(pPaint->hdc, "EndPaint");
    return EndPaint(hwnd, pPaint);
}

// The fakes of platform calls that give something, and of those that take it back. A number
// for each, because calls of one type would share a fake.
template <int NUMBER, typename Result, typename... Args> struct Owing {
    static inline Result(WINAPI* s_pfn)(Args...);
    static inline const char* s_pszName;
    static Result WINAPI make(Args... args)
    {
        Result result = s_fObjectsFail && isToFail() ? nullptr : s_pfn(args...);
        take(result, s_pszName);
        return result;
    }
    template <int ARGUMENT> static Result WINAPI give(Args... args)
    {
        const void* p = std::get<ARGUMENT>(std::make_tuple(args...));
        giveBack(p, s_pszName);
        Result result = s_pfn(args...);
        EXPECT_TRUE(p == nullptr || result) << s_pszName;
        return result;
    }
};

} // namespace

template <int NUMBER, typename Result, typename... Args>
void Ledger::makes(const char* pszName, Result(WINAPI* pfn)(Args...))
{
    Owing<NUMBER, Result, Args...>::s_pfn = pfn;
    Owing<NUMBER, Result, Args...>::s_pszName = pszName;
    replace(pszName, Owing<NUMBER, Result, Args...>::make);
}

template <int NUMBER, int ARGUMENT, typename Result, typename... Args>
void Ledger::gives(const char* pszName, Result(WINAPI* pfn)(Args...))
{
    Owing<NUMBER, Result, Args...>::s_pfn = pfn;
    Owing<NUMBER, Result, Args...>::s_pszName = pszName;
    replace(pszName, Owing<NUMBER, Result, Args...>::template give<ARGUMENT>);
}

Ledger::Ledger(bool fAll) : ReplacedImports(GetModuleHandleA("KRHAUL.DLL"))
{
    begin(fAll);
    replace("GlobalAlloc", owingGlobalAlloc);
    replace("GlobalReAlloc", owingGlobalReAlloc);
    replace("GlobalFree", owingGlobalFree);
    replace("malloc", owingMalloc);
    replace("calloc", owingCalloc);
    replace("realloc", owingRealloc);
    replace("free", owingFree);
    makes<0>("LoadLibraryA", LoadLibraryA);
    gives<1, 0>("FreeLibrary", FreeLibrary);
    makes<11>("BeginPaint", BeginPaint);
    replace("EndPaint", owingEndPaint);
    watchObjects();
}

Ledger::Ledger(HMODULE hProgram) : ReplacedImports(hProgram)
{
    begin(false);
    s_fObjectsFail = true;
    watchObjects();
}

void Ledger::begin(bool fAll)
{
    s_owed.clear();
    s_fAll = fAll;
    s_fObjectsFail = false;
    failAt(0);
}

void Ledger::watchObjects()
{
    makes<2>("CreateFontA", CreateFontA);
    makes<3>("CreatePen", CreatePen);
    makes<4>("CreateSolidBrush", CreateSolidBrush);
    makes<5>("CreatePatternBrush", CreatePatternBrush);
    makes<6>("CreateBitmap", CreateBitmap);
    makes<7>("CreateDIBitmap", CreateDIBitmap);
    makes<8>("CreateDiscardableBitmap", CreateDiscardableBitmap);
    makes<9>("CreateCompatibleDC", CreateCompatibleDC);
    makes<10>("GetDC", GetDC);
    gives<12, 0>("DeleteObject", DeleteObject);
    gives<13, 0>("DeleteDC", DeleteDC);
    gives<14, 1>("ReleaseDC", ReleaseDC);
}

Ledger::~Ledger()
{
    burySafely();
}

size_t Ledger::count()
{
    return s_owed.size();
}

std::string Ledger::owed()
{
    std::string all;
    for (const auto& [p, pszFrom] : s_owed) {
        all += std::string(pszFrom) + " ";
    }
    return all;
}

void Ledger::failAt(int n, bool fForGood)
{
    s_nUntilFailure = n;
    s_fForGood = fForGood;
    s_fFailed = false;
}

bool Ledger::hasFailed() const
{
    return s_fFailed;
}
