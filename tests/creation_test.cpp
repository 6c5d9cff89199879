// The life of a transfer window: what its creation takes, what its end gives back, and how it
// survives an end in the middle of something.
#include "../resources/ids.h"
#include "../toolbar/toolbar.h"
#include "../transfer/window/record.h"
#include "support/ledger.h"
#include "support/looks.h"
#include "support/refusal.h"

#include <algorithm>
#include <string.h>

namespace {

// The platform refuses to make the toolbar, so that the dialog fails half made.
LRESULT CALLBACK refuseToolbar(int nCode, WPARAM wParam, LPARAM lParam)
{
    char szClass[20] = "";
    GetClassNameA(reinterpret_cast<HWND>(wParam), szClass, sizeof szClass);
    if (nCode == HCBT_CREATEWND && strcmp(szClass, "KRTOOLBR") == 0) {
        return 1;
    }
    return CallNextHookEx(nullptr, nCode, wParam, lParam);
}

class Creation : public PaneWindow {
protected:
    // Makes a window in vain; fBox tells whether the user has to hear of it.
    void expectFailure(const char* pszLanguage, bool fBox)
    {
        HGLOBAL hRecord = m_hEnglish;
        EXPECT_EQ(hdlgXferDandDLangCreate2(pszLanguage, "", m_parent.hwnd(), &hRecord, 0,
                                           &m_callbacks, 0),
                  nullptr);
        EXPECT_EQ(hRecord, m_hEnglish);
        EXPECT_EQ(Ledger::owed(), "");
        EXPECT_EQ(m_refusals.take(), std::vector<HWND>(fBox, m_parent.hwnd()));
    }

    void useAllOfIt()
    {
        nXferDandDClearHostFileList(m_hwnd);
        vXferDandDPrintWorkingDir(m_hwnd, "host", "/host");
        nXferDandDAddHostSubDir(m_hwnd, "dir");
        nXferDandDAddHostFileName(m_hwnd, "file");
        vXferDandDSetBusyState(m_hwnd, 0);
        vXferDandDInfoLine(m_hwnd, "entry");
        vXferDandDDisplayDILText(m_hwnd, "text");
        for (LONG nTotal : {0, 100}) {
            vXferDandDSetThermometer(m_hwnd, nTotal);
            vXferDandDUpdateThermometer(m_hwnd, 50);
            UpdateWindow(m_hwnd);
        }
        SendMessageA(m_hwnd, WM_INITMENUPOPUP, WPARAM(GetSubMenu(GetMenu(m_hwnd), 1)), 1);
        for (DWORD nMode : {1u, 0u}) {
            setMode(nMode);
            setClientSize(500 + LONG(nMode) * 100, 400);
            RedrawWindow(m_hwnd, nullptr, nullptr,
                         RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN | RDW_UPDATENOW);
        }
        ShowWindow(m_hwnd, SW_MINIMIZE);
        ShowWindow(m_hwnd, SW_RESTORE);
        pumpMessages();
    }

private:
    Refusals m_refusals;
};

TEST_F(Creation, FailuresLeaveNothing)
{
    char szBare[] = "XFRBARE.DLL";
    char szFolder[MAX_PATH];
    GetModuleFileNameA(library(), szFolder, sizeof szFolder);
    const std::string folder(szFolder, strrchr(szFolder, '\\') + 1);
    Ledger ledger;
    expectFailure("NO", false);
    expectFailure(nullptr, false);
    // A module without templates.
    ASSERT_TRUE(CopyFileA((folder + "KRUTILS.DLL").c_str(), (folder + szBare).c_str(), FALSE));
    expectFailure("BARE", false);
    EXPECT_TRUE(DeleteFileA((folder + szBare).c_str()));
    {
        ReplacedImport info(
            library(), "GetClassInfoA",
            +[](HINSTANCE, LPCSTR, WNDCLASSA*) WINAPI -> BOOL { return FALSE; });
        ReplacedImport reg(
            library(), "RegisterClassA", +[](const WNDCLASSA*) WINAPI -> ATOM { return 0; });
        expectFailure("EN", true);
    }
    HHOOK hhook = SetWindowsHookExA(WH_CBT, refuseToolbar, nullptr, GetCurrentThreadId());
    expectFailure("EN", false);
    UnhookWindowsHookEx(hhook);
    // All that was refused works now.
    create();
    close();
    EXPECT_EQ(ledger.owed(), "");
}

TEST_F(Creation, EveryAllocationCanFail)
{
    // The record, the list of temporary files and the toolbar: without them there is no window.
    constexpr int NEEDED = 3;
    int nFailing = 0;
    Ledger ledger;
    do {
        SCOPED_TRACE(testing::Message() << "allocation " << ++nFailing);
        ledger.failAt(nFailing);
        if (nFailing <= NEEDED) {
            expectFailure("EN", nFailing == 1);
        } else {
            create();
            useAllOfIt();
            EXPECT_NE(ledger.owed(), "");
            EXPECT_TRUE(Refusals::take().empty());
            close();
            ASSERT_EQ(ledger.owed(), "");
        }
    } while (ledger.hasFailed());
    EXPECT_GT(nFailing, NEEDED + 5);
}

TEST_F(Creation, ReadsTheTableByItsSize)
{
    constexpr DWORD BEHIND_VIEW_MODE = offsetof(HostCallbacks, pfnViewModeChanged) + 4;
    const struct {
        DWORD cbSize;
        bool fHasViewMode;
    } cases[] = {
        {0, false}, {3, false},        {BEHIND_VIEW_MODE - 4, false}, {BEHIND_VIEW_MODE, true},
        {56, true}, {0xFFFFFFFF, true}};
    // The table ends where its page ends: the library must not read on.
    auto pPages = static_cast<BYTE*>(VirtualAlloc(nullptr, 0x2000, MEM_RESERVE, PAGE_NOACCESS));
    VirtualAlloc(pPages, 0x1000, MEM_COMMIT, PAGE_READWRITE);
    for (const auto& c : cases) {
        SCOPED_TRACE(c.cbSize);
        BYTE* pTable = pPages + 0x1000 - std::max(4u, std::min(unsigned(c.cbSize), 56u)) / 4 * 4;
        memcpy(pTable, &m_callbacks, size_t(pPages + 0x1000 - pTable));
        memcpy(pTable, &c.cbSize, sizeof c.cbSize);
        m_modes.clear();
        m_hwnd = hdlgXferDandDCreate2("", m_parent.hwnd(), nullptr, DWORD(this),
                                      reinterpret_cast<HostCallbacks*>(pTable), 1);
        EXPECT_EQ(*reinterpret_cast<DWORD*>(pTable), sizeof(HostCallbacks));
        // Read once: what happens to it now is the caller's business.
        memset(pTable, 0xCC, size_t(pPages + 0x1000 - pTable));
        EXPECT_TRUE(waitUntil([&] { return IsWindowVisible(item(IDC_DANDD_COMMANDLINE)); }));
        pumpMessages();
        EXPECT_EQ(m_modes.size(), c.fHasViewMode ? 1u : 0u);
        close();
    }
    VirtualFree(pPages, 0, MEM_RELEASE);
    m_hwnd = hdlgXferDandDCreate2(nullptr, nullptr, nullptr, 0, nullptr, 0);
    EXPECT_NE(m_hwnd, nullptr);
    EXPECT_EQ(textOf(m_hwnd), "");
}

TEST_F(Creation, OwnerIsAParentThatHasOneItself)
{
    HWND hwndOwned = CreateWindowA("STATIC", "", WS_POPUP, 0, 0, 9, 9, m_parent.hwnd(), nullptr,
                                   nullptr, nullptr);
    HWND hwndChild = CreateWindowA("STATIC", "", WS_CHILD, 0, 0, 9, 9, m_parent.hwnd(), nullptr,
                                   nullptr, nullptr);
    const struct {
        HWND hwndParent, hwndOwner;
    } cases[] = {{nullptr, nullptr},
                 {m_parent.hwnd(), nullptr},
                 {hwndOwned, hwndOwned},
                 {hwndChild, m_parent.hwnd()}}; // the platform takes its top-level window
    for (const auto& c : cases) {
        m_hwnd = createOnly(c.hwndParent);
        EXPECT_EQ(GetWindow(m_hwnd, GW_OWNER), c.hwndOwner);
        EXPECT_EQ(textOf(m_hwnd), "Title");
        close();
    }
}

TEST_F(Creation, TheFirstModeComesWithTheMessageLoop)
{
    for (DWORD nAsked : {0u, 1u, 2u}) {
        SCOPED_TRACE(nAsked);
        const bool fPanes = nAsked == 0;
        const UINT idChecked = fPanes ? IDM_XFER_TWOPANE : IDM_XFER_COMMANDLINE;
        const UINT idUnchecked = fPanes ? IDM_XFER_COMMANDLINE : IDM_XFER_TWOPANE;
        m_modes.clear();
        m_hwnd = createOnly(m_parent.hwnd(), nAsked);
        EXPECT_TRUE(m_modes.empty());
        EXPECT_EQ(buttonState(m_hwnd, idUnchecked), TOOLSTATE_CHECKED) << "at first";
        MSG msg;
        ASSERT_TRUE(PeekMessageA(&msg, m_hwnd, WM_COMMAND, WM_COMMAND, PM_NOREMOVE));
        EXPECT_EQ(msg.wParam, idChecked);
        EXPECT_EQ(msg.lParam, 0);
        EXPECT_TRUE(waitUntil([&] { return !m_modes.empty(); }));
        pumpMessages();
        EXPECT_EQ(m_modes, std::vector<DWORD>{fPanes ? 0u : 1u});
        EXPECT_EQ(GetFocus(), item(fPanes ? IDC_DANDD_LOCALFILTER : IDC_DANDD_COMMANDLINE));
        EXPECT_EQ(IsWindowVisible(item(IDC_DANDD_LOCALDIRS)) != 0, fPanes);
        EXPECT_EQ(tell(IDC_DANDD_LOCALDIRS, LB_GETCOUNT, 0, 0) > 0, fPanes);
        EXPECT_EQ(buttonState(m_hwnd, idChecked) & TOOLSTATE_CHECKED, TOOLSTATE_CHECKED);
        EXPECT_EQ(buttonState(m_hwnd, idUnchecked) & TOOLSTATE_CHECKED, 0);
        EXPECT_EQ(itemState(m_hwnd, idChecked) & MF_CHECKED, UINT(MF_CHECKED));
        EXPECT_EQ(itemState(m_hwnd, idUnchecked) & MF_CHECKED, 0u);
        close();
    }
}

BOOL WINAPI refusePost(HWND, UINT, WPARAM, LPARAM)
{
    return FALSE;
}

// A queue that is full takes no command for later.
TEST_F(Creation, TheFirstModeComesAtOnceIfItCannotWait)
{
    ReplacedImport post(library(), "PostMessageA", refusePost);
    for (DWORD nMode : {0u, 1u}) {
        m_modes.clear();
        m_hwnd = createOnly(m_parent.hwnd(), nMode);
        EXPECT_EQ(m_modes, std::vector<DWORD>{nMode});
        EXPECT_EQ(IsWindowVisible(item(IDC_DANDD_COMMANDLINE)) != 0, nMode == 1);
        EXPECT_EQ(tell(IDC_DANDD_LOCALDIRS, LB_GETCOUNT, 0, 0) > 0, nMode == 0);
        close();
    }
}

TEST_F(Creation, EndsInTheMiddleAreSurvived)
{
    Ledger ledger;
    for (DWORD nMode : {0u, 1u}) {
        // From inside the callback of the first mode.
        m_whenModeChanges = [&] { nXferDandDDestroy(m_hwnd); };
        create(nMode);
        EXPECT_FALSE(IsWindow(m_hwnd));
        EXPECT_EQ(ledger.owed(), "");
        m_whenModeChanges = nullptr;
        // When a control loses the focus because its mode ends.
        create(nMode);
        {
            Subclassed window(m_hwnd, [&](UINT uMessage, WPARAM wParam, LPARAM) {
                if (uMessage == WM_COMMAND && HIWORD(wParam) == EN_KILLFOCUS) {
                    nXferDandDDestroy(m_hwnd);
                }
                return false;
            });
            setMode(1 - nMode);
        }
        EXPECT_FALSE(IsWindow(m_hwnd));
        EXPECT_EQ(ledger.owed(), "");
    }
}

TEST_F(Creation, AWindowThatDiesBeforeItIsReadyIsNone)
{
    Ledger ledger;
    int cKilled = 0;
    Subclassed parent(m_parent.hwnd(), [&](UINT uMessage, WPARAM wParam, LPARAM lParam) {
        if (uMessage == WM_ACTIVATE && LOWORD(wParam) == WA_INACTIVE && lParam != 0) {
            ++cKilled;
            nXferDandDDestroy(reinterpret_cast<HWND>(lParam));
        }
        return false;
    });
    SetForegroundWindow(m_parent.hwnd());
    SetActiveWindow(m_parent.hwnd());
    expectFailure("EN", false);
    EXPECT_EQ(cKilled, 1);
}

// Runs in the procedure of a dialog, when it starts.
std::function<void(HWND)> s_inDialog;
INT_PTR CALLBACK dialogProc(HWND hdlg, UINT uMessage, WPARAM, LPARAM lParam)
{
    if (uMessage == WM_INITDIALOG) {
        EXPECT_EQ(lParam, 42);
        s_inDialog(hdlg);
        return 1;
    }
    return 0;
}

class Modal : public Creation {
protected:
    Modal()
        : m_hwndMiddle(child("STATIC", m_parent.hwnd())), m_hwndInner(child("EDIT", m_hwndMiddle))
    {
    }

    static HWND child(const char* pszClass, HWND hwndParent)
    {
        return CreateWindowA(pszClass, "", WS_CHILD | WS_VISIBLE, 0, 0, 99, 99, hwndParent, nullptr,
                             nullptr, nullptr);
    }

    // Which of the chain is enabled, innermost first.
    std::string enabled() const
    {
        std::string state;
        for (HWND hwnd : {m_hwndInner, m_hwndMiddle, m_parent.hwnd()}) {
            state += IsWindowEnabled(hwnd) ? 'e' : '-';
        }
        return state;
    }

    INT_PTR run(const char* pszTemplate = "DLGCONFIRM") const
    {
        return nXferDandDDialogBoxParam(m_hwnd, pszTemplate, dialogProc, 42);
    }

    HWND m_hwndMiddle, m_hwndInner;
};

TEST_F(Modal, DisablesTheParentsAndRestoresThem)
{
    for (HWND hwndParent : {m_hwndInner, m_parent.hwnd(), HWND(nullptr)}) {
        for (HWND hwndOff : {HWND(nullptr), m_hwndMiddle, m_parent.hwnd()}) {
            m_hwnd = createOnly(hwndParent);
            EnableWindow(hwndOff, FALSE);
            const std::string before = enabled();
            std::string inside;
            s_inDialog = [&](HWND hdlg) {
                inside = enabled();
                EXPECT_EQ(GetWindow(hdlg, GW_OWNER), m_hwnd);
                EXPECT_FALSE(IsWindowEnabled(m_hwnd));
                EndDialog(hdlg, 7);
            };
            EXPECT_EQ(run(), 7);
            EXPECT_EQ(inside, hwndParent == m_hwndInner ? "---"
                              : hwndParent == nullptr   ? before
                                                        : before.substr(0, 2) + "-");
            EXPECT_EQ(enabled(), before);
            EXPECT_TRUE(IsWindowEnabled(m_hwnd));
            EXPECT_EQ(run("NOSUCH"), -1);
            EXPECT_EQ(run(nullptr), -1);
            EXPECT_EQ(nXferDandDDialogBoxParam(m_hwnd, "DLGCONFIRM", nullptr, 42), -1);
            EXPECT_EQ(enabled(), before);
            EnableWindow(hwndOff, TRUE);
            close();
        }
    }
}

HWND s_hwndDoomed;
void CALLBACK destroyDoomed(HWND, UINT, UINT_PTR id, DWORD)
{
    KillTimer(nullptr, id);
    nXferDandDDestroy(s_hwndDoomed);
}

TEST_F(Modal, TheWindowCanEndMeanwhile)
{
    // In a timer, while the dialog's own loop runs.
    Ledger ledger;
    s_hwndDoomed = m_hwnd = createOnly(m_hwndInner);
    s_inDialog = [](HWND) { SetTimer(nullptr, 0, 10, destroyDoomed); };
    run();
    EXPECT_FALSE(IsWindow(m_hwnd));
    EXPECT_EQ(enabled(), "eee");
    EXPECT_EQ(ledger.owed(), "");

    // When a parent hears that it is disabled, before there is a dialog.
    m_hwnd = createOnly(m_hwndInner);
    Subclassed middle(m_hwndMiddle, [&](UINT uMessage, WPARAM wParam, LPARAM) {
        if (uMessage == WM_ENABLE && !wParam) {
            nXferDandDDestroy(m_hwnd);
        }
        return false;
    });
    s_inDialog = [](HWND hdlg) { EndDialog(hdlg, 7); };
    EXPECT_EQ(run(), -1);
    EXPECT_EQ(enabled(), "eee");
    EXPECT_EQ(ledger.owed(), "");
}

INT_PTR CALLBACK emptyProc(HWND, UINT, WPARAM, LPARAM)
{
    return 0;
}

// A dialog of somebody else, with what looks like a record.
HWND foreignDialog(void* pUser)
{
    struct {
        DLGTEMPLATE head;
        WORD wMenu, wClass, wTitle;
    } dialog = {{WS_POPUP, 0, 0, 0, 0, 9, 9}, 0, 0, 0};
    HWND hwnd = CreateDialogIndirectParamA(nullptr, &dialog.head, nullptr, emptyProc, 0);
    SetWindowLongA(hwnd, DWL_USER, reinterpret_cast<LONG>(pUser));
    return hwnd;
}

void callEverything(HWND hwnd)
{
    EXPECT_EQ(nXferDandDAddHostFileName(hwnd, "a"), 0);
    EXPECT_EQ(nXferDandDRemoveHostFileName(hwnd, "a"), 0);
    EXPECT_EQ(nXferDandDAddHostSubDir(hwnd, "a"), 0);
    EXPECT_EQ(nXferDandDRemoveHostSubDir(hwnd, "a"), 0);
    EXPECT_EQ(nXferDandDClearHostFileList(hwnd), 0);
    EXPECT_EQ(nXferDandDClearHostFileInfo(hwnd, 15), 0);
    EXPECT_EQ(nXferDandDAddLocalFileName(hwnd, "a"), 0);
    EXPECT_EQ(nXferDandDGetFileTypeSelection(hwnd), 0);
    s_inDialog = [](HWND hdlg) { EndDialog(hdlg, 7); };
    EXPECT_EQ(nXferDandDDialogBoxParam(hwnd, "DLGCONFIRM", dialogProc, 42), -1);
    vXferDandDPrintWorkingDir(hwnd, "a", "a");
    vXferDandDSetTitle(hwnd, "Other");
    vXferDandDSetFocus(hwnd);
    vXferDandDRefreshLocalFiles(hwnd);
    vXferDandDSetBusyState(hwnd, 0);
    vXferDandDSetFileTypeSelection(hwnd, 1);
    vXferDandDDisplayDILText(hwnd, "a");
    vXferDandDSetThermometer(hwnd, 1);
    vXferDandDUpdateThermometer(hwnd, 1);
    vXferDandDInfoLine(hwnd, "a");
    for (auto pfn : {lHFileListProc, lLFileListProc, lHDirListProc, lLDirListProc, lInfoLineProc}) {
        pfn(hwnd, WM_GETDLGCODE, 0, 0);
    }
    EXPECT_EQ(nXferDandDDestroy(hwnd), 0);
}

TEST_F(Creation, OtherWindowsAreLeftAlone)
{
    create();
    HWND hwndGone = m_hwnd;
    close();
    create();
    HGLOBAL hBlock = GlobalAlloc(GPTR, 0x4000);
    auto pRecord = reinterpret_cast<void*>(GetWindowLongA(m_hwnd, DWL_USER));
    HWND dialogs[] = {foreignDialog(nullptr), foreignDialog(reinterpret_cast<void*>(1)),
                      foreignDialog(hBlock), foreignDialog(pRecord)};
    std::vector<HWND> windows(std::begin(dialogs), std::end(dialogs));
    for (HWND hwnd : {HWND(nullptr), hwndGone, reinterpret_cast<HWND>(0x123456), GetDesktopWindow(),
                      m_parent.hwnd(), item(IDC_DANDD_INFOLINE)}) {
        windows.push_back(hwnd);
    }
    SetFocus(m_parent.hwnd());
    for (HWND hwnd : windows) {
        SCOPED_TRACE(hwnd);
        const std::string title = textOf(hwnd);
        callEverything(hwnd);
        EXPECT_EQ(textOf(hwnd), title);
        EXPECT_EQ(GetFocus(), m_parent.hwnd());
    }
    EXPECT_EQ(buttonState(m_hwnd, IDM_XFER_TRANSFER), 0);
    for (HWND hwnd : dialogs) {
        EXPECT_TRUE(IsWindow(hwnd));
        DestroyWindow(hwnd);
    }
    GlobalFree(hBlock);
}

// The exported procedures of the file dialogs, in a dialog of somebody else.
TEST_F(Creation, OtherDialogsAreLeftAlone)
{
    const DLGPROC procedures[] = {fDlgXferDandDTranProc,  fDlgXferDandDRenProc,
                                  fDlgXferDandDDelProc,   fDlgXferDandDMkdirProc,
                                  fDlgXferDandDRmdirProc, fDlgXferDandDConfirmProc};
    constexpr BYTE FILL = 0x5A;
    std::vector<BYTE> block(0x4000, FILL);
    HWND hwnd = foreignDialog(block.data());
    for (DLGPROC pfn : procedures) {
        EXPECT_EQ(pfn(hwnd, WM_COMMAND, IDCANCEL, 0), 0) << &pfn - procedures;
        pfn(hwnd, WM_INITDIALOG, 0, reinterpret_cast<LPARAM>(block.data()));
        EXPECT_EQ(pfn(hwnd, WM_COMMAND, IDCANCEL, 0), 0) << &pfn - procedures;
    }
    EXPECT_EQ(std::count(block.begin(), block.end(), FILL), int(block.size()));
    DestroyWindow(hwnd);
}

TEST_F(Creation, DISABLED_OldPlatform)
{
    ASSERT_LT(LOBYTE(GetVersion()), 4);
    Ledger ledger;
    HGLOBAL hRecord = nullptr;
    m_hwnd = hdlgXferDandDCreate2("Old", m_parent.hwnd(), &hRecord, DWORD(this), &m_callbacks, 0);
    ASSERT_NE(m_hwnd, nullptr);
    EXPECT_TRUE(waitUntil([&] { return !m_modes.empty(); }));
    EXPECT_EQ(static_cast<XferWindowRecord*>(GlobalLock(hRecord))->viewTempFiles, nullptr);
    GlobalUnlock(hRecord);
    EXPECT_EQ(SendMessageA(m_hwnd, WM_GETICON, ICON_BIG, 0), 0);
    useAllOfIt();
    close();
    EXPECT_EQ(ledger.owed(), "");
}

// The case above for real, in a program of which the platform says that it is an old one.
TEST_F(Creation, WorksOnVersionsBelow4)
{
    if (!isUnderWine()) {
        GTEST_SKIP() << "Only Wine can pass for an old version.";
    }
    EXPECT_EQ(runOnOldPlatform("*OldPlatform"), 0u);
    // The platform of this program has the icon.
    create();
    EXPECT_NE(SendMessageA(m_hwnd, WM_GETICON, ICON_BIG, 0), 0);
}

} // namespace
