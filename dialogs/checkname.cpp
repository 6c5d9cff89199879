#include "dialogs/checkname.h"

bool fXferDandDCheckSource(const dialogs::Dialog* pDialog, const char* pszName)
{
    if (GetFileAttributesA(pszName) == INVALID_FILE_ATTRIBUTES) {
        return dialogs::reportFailure(pDialog, GetLastError());
    }
    return true;
}

bool fXferDandDCheckTarget(const dialogs::Dialog* pDialog, const char* pszName)
{
    DWORD dwAttributes = GetFileAttributesA(pszName);
    if (dwAttributes == INVALID_FILE_ATTRIBUTES) {
        DWORD dwError = GetLastError();
        return dwError == ERROR_FILE_NOT_FOUND || dialogs::reportFailure(pDialog, dwError);
    }
    if ((dwAttributes & FILE_ATTRIBUTE_READONLY) != 0) {
        return dialogs::reportFailure(pDialog, ERROR_ACCESS_DENIED);
    }
    if ((dwAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0) {
        return dialogs::reportFailure(pDialog, ERROR_CANNOT_MAKE);
    }
    return true;
}
