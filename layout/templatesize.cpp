#include "layout/templatesize.h"

namespace {

// Where the size is in the two kinds of templates, in words: an extended one begins with the
// version 1 and a signature, which no plain one has as its style.
constexpr WORD EXTENDED_VERSION = 1;
constexpr WORD EXTENDED_SIGNATURE = 0xFFFF;
constexpr int EXTENDED_WIDTH = 11;
constexpr int PLAIN_WIDTH = 7;
constexpr DWORD LEAST_BYTES = 2 * (EXTENDED_WIDTH + 2);

const WORD* loadTemplate(HMODULE hModule, const char* pszTemplate)
{
    HRSRC hResource = FindResourceA(hModule, pszTemplate, RT_DIALOG);
    if (hResource == nullptr || SizeofResource(hModule, hResource) < LEAST_BYTES) {
        return nullptr;
    }
    HGLOBAL hTemplate = LoadResource(hModule, hResource);
    return static_cast<const WORD*>(hTemplate == nullptr ? nullptr : LockResource(hTemplate));
}

} // namespace

bool layout::templateClient(HWND hdlg, const char* pszTemplate, RECT* prcClient)
{
    auto hModule = reinterpret_cast<HMODULE>(GetWindowLongA(hdlg, GWL_HINSTANCE));
    const WORD* pWords = loadTemplate(hModule, pszTemplate);
    if (pWords == nullptr) {
        return false;
    }
    bool fExtended = pWords[0] == EXTENDED_VERSION && pWords[1] == EXTENDED_SIGNATURE;
    const WORD* pSize = pWords + (fExtended ? EXTENDED_WIDTH : PLAIN_WIDTH);
    *prcClient = {0, 0, short(pSize[0]), short(pSize[1])};
    return MapDialogRect(hdlg, prcClient) != 0;
}
