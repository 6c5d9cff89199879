// Host command strings: validation, and sending piece by piece.
#include "include/krhaul.h"
#include "shared/text.h"

namespace {

constexpr DWORD PAUSE_MS = 1000;

struct Piece {
    const char* pch;
    LONG cch;
};

// The translation of one template: where its pieces go and what the names are.
struct Translation {
    XferSendProc pfnSend;
    DWORD dwUserData;
    Piece hostName;
    Piece localName;
};

Piece pieceOf(const char* psz)
{
    return {psz, psz == nullptr ? 0 : lstrlenA(psz)};
}

bool isAutomatic(Piece name)
{
    return name.cch == 0 || lstrcmpiA(name.pch, "<Automatic>") == 0;
}

// Sends a piece unless it is empty. Returns false if the callback reported a failure.
bool send(const Translation* pTranslation, Piece piece)
{
    static DWORD s_dwScratch;
    if (piece.cch == 0) {
        return true;
    }
    return pTranslation->pfnSend != nullptr &&
           pTranslation->pfnSend(pTranslation->dwUserData, piece.pch, piece.cch, &s_dwScratch) == 0;
}

bool sendAt(const Translation* pTranslation)
{
    return send(pTranslation, {"@", 1});
}

bool pause(const Translation*)
{
    DWORD dwStart = GetTickCount();
    while (GetTickCount() - dwStart < PAUSE_MS) {
    }
    return true;
}

bool sendHostName(const Translation* pTranslation)
{
    return send(pTranslation, pTranslation->hostName);
}

bool sendLocalName(const Translation* pTranslation)
{
    return send(pTranslation, pTranslation->localName);
}

struct EscapeRow {
    char ch;
    bool (*pfnAct)(const Translation*);
};

constexpr EscapeRow ESCAPES[] = {
    {'@', sendAt},       {'D', pause},         {'d', pause},         {'H', sendHostName},
    {'h', sendHostName}, {'L', sendLocalName}, {'l', sendLocalName},
};

const EscapeRow* findEscape(char ch)
{
    for (const EscapeRow& escape : ESCAPES) {
        if (escape.ch == ch) {
            return &escape;
        }
    }
    return nullptr;
}

// Sends the bytes of a character one by one, and moves to the last of them. The second byte of a
// character can look like the sign that starts an escape.
bool sendPlain(const Translation* pTranslation, const char** ppch)
{
    for (const char* pchEnd = shared::nextChar(*ppch);; ++*ppch) {
        if (!send(pTranslation, {*ppch, 1})) {
            return false;
        }
        if (*ppch + 1 >= pchEnd) {
            return true;
        }
    }
}

const char* findAt(const char* pszText)
{
    return shared::findFirstOf(pszText, "@");
}

} // namespace

int KRHAULAPI nXferTranslateHCS(const char* pszTemplate, const char* pszHostName,
                                const char* pszLocalName, XferSendProc pfnSend, DWORD dwUserData)
{
    Translation translation = {pfnSend, dwUserData, pieceOf(pszHostName), pieceOf(pszLocalName)};
    if (isAutomatic(translation.hostName)) {
        translation.hostName = translation.localName;
    }
    for (const char* pch = pszTemplate; pch != nullptr && *pch != '\0'; ++pch) {
        bool fSent = true;
        if (*pch != '@') {
            fSent = sendPlain(&translation, &pch);
        } else if (*++pch == '\0') {
            break;
        } else if (const EscapeRow* pEscape = findEscape(*pch)) {
            fSent = pEscape->pfnAct(&translation);
        } else {
            pch = shared::nextChar(pch) - 1;
        }
        if (!fSent) {
            return -1;
        }
    }
    return 0;
}

int KRHAULAPI fXferValidHCS(const char* pszTemplate, DWORD* pdwPosition)
{
    DWORD dwIgnored;
    DWORD* pdwOut = pdwPosition != nullptr ? pdwPosition : &dwIgnored;
    *pdwOut = 0;
    if (pszTemplate == nullptr) {
        return 1;
    }
    for (const char* pch = findAt(pszTemplate); pch != nullptr; pch = findAt(pch + 2)) {
        if (findEscape(pch[1]) == nullptr) {
            *pdwOut = DWORD(pch + 1 - pszTemplate);
            return 0;
        }
    }
    return 1;
}
