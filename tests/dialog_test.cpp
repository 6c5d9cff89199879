// The file dialogs, worked as a user does, and what becomes of them when their window goes.
#include "../resources/ids.h"
#include "support/imports.h"
#include "support/input.h"
#include "support/ledger.h"
#include "support/modal.h"
#include "support/pane_window.h"

#include <algorithm>
#include <direct.h>
#include <memory>

namespace {

// A box shows the system's text for an error.
void expectError(HWND hwndBox, DWORD dwError)
{
    char szText[512] = "";
    FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM, nullptr, dwError, 0, szText, sizeof szText, nullptr);
    EXPECT_EQ(textOf(hwndBox), "Korvalen");
    EXPECT_EQ(textOf(hwndBox, 0xFFFF), szText);
}

bool isChecked(HWND hdlg, int id)
{
    return IsDlgButtonChecked(hdlg, id) == BST_CHECKED;
}

// Whatever the ids of the radio buttons are.
void chooseSide(HWND hdlg, int idSide)
{
    for (int id = 101; id <= 105; ++id) {
        if ((SendDlgItemMessageA(hdlg, id, WM_GETDLGCODE, 0, 0) & DLGC_RADIOBUTTON) != 0) {
            CheckDlgButton(hdlg, id, id == idSide ? BST_CHECKED : BST_UNCHECKED);
        }
    }
}

ModalStep choose(int idName, const std::string& name, int idSide)
{
    return [=](HWND hdlg) {
        replaceText(hdlg, idName, name);
        chooseSide(hdlg, idSide);
        return true;
    };
}

Strings contentsOf(HWND hdlg)
{
    Strings texts;
    for (int id = 101; id <= 105; ++id) {
        texts.push_back(textOf(hdlg, id) + (isChecked(hdlg, id) ? "*" : ""));
    }
    return texts;
}

bool isEnabled(HWND hdlg, int id)
{
    return IsWindowEnabled(GetDlgItem(hdlg, id)) != 0;
}

// Types texts one after the other; OK is there for all but the empty ones.
void typeWithOk(HWND hdlg, int id, std::initializer_list<const char*> texts)
{
    for (const char* psz : texts) {
        replaceText(hdlg, id, psz);
        EXPECT_EQ(isEnabled(hdlg, IDOK), *psz != '\0');
    }
}

// Whether the focus has come to an edit control, all of which is selected then.
bool hasCome(HWND hdlg, int id)
{
    DWORD nFrom = 0, nTo = 0;
    SendDlgItemMessageA(hdlg, id, EM_GETSEL, WPARAM(&nFrom), LPARAM(&nTo));
    bool fCome = GetFocus() == GetDlgItem(hdlg, id);
    EXPECT_TRUE(!fCome || (nFrom == 0 && nTo == textOf(hdlg, id).size()));
    return fCome;
}

// Both ways to the help, and a side.
void pressHelpAndSide(HWND hdlg, int idHelp, int idSide)
{
    SendMessageA(hdlg, WM_XFER_HELP, 0, 0);
    pressButton(hdlg, idHelp);
    pressButton(hdlg, idSide);
}

// Goes on in an edit control when the buttons have worked.
ModalStep whenChecked(int idSide, int idEdit)
{
    return [=](HWND hdlg) {
        SetFocus(GetDlgItem(hdlg, idEdit));
        return isChecked(hdlg, idSide);
    };
}

std::vector<DWORD> s_helped;

BOOL WINAPI fakeWinHelp(HWND, LPCSTR, UINT uCommand, ULONG_PTR dwContext)
{
    EXPECT_EQ(uCommand, UINT(HELP_CONTEXT));
    s_helped.push_back(dwContext);
    return TRUE;
}

class Dialog : public PaneWindow {
protected:
    Dialog()
    {
        s_helped.clear();
        m_dir.makeDirs({"other", "other\\deep", "child", "full"});
        m_dir.makeFiles({"a.txt", "b.txt", "name", "name.txt", "q1.log", "q2.log", "q3.log",
                         "other\\a.txt", "other\\b.txt", "full\\x"});
        SetFileAttributesA("q2.log", FILE_ATTRIBUTE_READONLY);
    }

    // Runs the dialog of a command.
    void run(UINT idCommand, std::vector<ModalStep> steps)
    {
        runModal(
            m_hwnd, [=] { command(idCommand); }, std::move(steps));
    }

    // The last steps: OK, and the box of an error, after which the dialog is left by Escape.
    std::vector<ModalStep> accepting(std::vector<ModalStep> steps, DWORD dwError)
    {
        auto before = std::make_shared<std::pair<HWND, Strings>>();
        steps.push_back([=](HWND hwnd) {
            *before = {hwnd, contentsOf(hwnd)};
            pressKey(hwnd, VK_RETURN);
            return true;
        });
        if (dwError != 0) {
            steps.push_back([=](HWND hwnd) {
                const bool fBox = hwnd != before->first;
                if (fBox) {
                    expectError(hwnd, dwError);
                    pressKey(hwnd, VK_RETURN);
                }
                return fBox;
            });
            steps.push_back([=](HWND hwnd) {
                const bool fDialog = hwnd == before->first;
                if (fDialog) {
                    EXPECT_EQ(contentsOf(hwnd), before->second);
                    EXPECT_TRUE(isEnabled(hwnd, IDOK));
                    pressKey(hwnd, VK_ESCAPE);
                }
                return fDialog;
            });
        }
        return steps;
    }

    Strings allRows() const
    {
        Strings all = rows(IDC_DANDD_LOCALFILES), dirs = rows(IDC_DANDD_LOCALDIRS);
        all.insert(all.end(), dirs.begin(), dirs.end());
        std::sort(all.begin(), all.end());
        return all;
    }

private:
    ReplacedImport m_help{library(), "WinHelpA", fakeWinHelp};
    StartedPrograms m_programs;
};

struct Kind {
    UINT idCommand;
    const char* pszCaption;
    int idName, idHelp;
    DWORD dwHelp;
};
const Kind MAKE = {IDM_XFER_MAKEDIR, "Make Directory", IDC_DIR_NAME, IDC_DIR_HELP, 816};
const Kind REMOVE = {IDM_XFER_REMOVEDIR, "Remove Directory", IDC_DIR_NAME, IDC_DIR_HELP, 817};
const Kind CHANGE = {IDM_XFER_CHANGEDIR, "Change Directory", IDC_DIR_NAME, IDC_DIR_HELP, 802};
const Kind VIEW = {IDM_XFER_VIEW, "View File", IDC_VIEW_NAME, IDC_VIEW_HELP, 801};
const Kind ERASE = {IDM_XFER_DELETE, "Delete Files", IDC_DEL_NAME, IDC_DEL_HELP, 813};
constexpr int ID_LOCAL = IDC_DIR_LOCAL;
constexpr int ID_HOST = IDC_DIR_HOST;

struct OneName {
    const Kind& kind;
    int idSide;
    const char* pszName;
    DWORD dwError;          // of the box that the user sees
    const char* pszHeard;   // by the caller, the viewer and KRUTILS
    const char* pszChanged; // what goes from the disk or, with +, comes
};
const OneName ONE_NAMES[] = {
    {MAKE, ID_LOCAL, "new", 0, "local directory made: new", "+new"},
    {MAKE, ID_LOCAL, "other\\new", 0, "local directory made: other\\new", "+other\\new"},
    {MAKE, ID_LOCAL, "child", ERROR_ALREADY_EXISTS, "", ""},
    {MAKE, ID_HOST, "child", 0, "mkdir child|host directory made: child", ""},
    {REMOVE, ID_LOCAL, "child", 0, "local directory removed: child", "child"},
    {REMOVE, ID_LOCAL, "other\\deep", 0, "local directory removed: other\\deep", "other\\deep"},
    {REMOVE, ID_LOCAL, "full", ERROR_DIR_NOT_EMPTY, "", ""},
    {REMOVE, ID_HOST, "one", 0, "rmdir one 0|host directory removed: one", ""},
    {CHANGE, ID_LOCAL, "none", ERROR_FILE_NOT_FOUND, "", ""},
    {CHANGE, ID_HOST, "child", 0, "chdir child 0", ""},
    {VIEW, ID_LOCAL, "a.txt", 0, "a.txt", ""},
    {VIEW, ID_LOCAL, "none", ERROR_FILE_NOT_FOUND, "", ""},
    {VIEW, ID_HOST, "x y", 0, "view x y", ""},
    {ERASE, ID_LOCAL, "A.TXT", 0, "local file deleted: A.TXT", "a.txt"},
    {ERASE, ID_LOCAL, "none", ERROR_FILE_NOT_FOUND, "", ""},
    {ERASE, ID_LOCAL, "other\\a.txt", 0, "local file deleted: other\\a.txt", "other\\a.txt"},
    {ERASE, ID_LOCAL, "other\\?.txt", 0, "local file deleted: a.txt|local file deleted: b.txt",
     "other\\a.txt other\\b.txt"},
    {ERASE, ID_LOCAL, "other/../*.txt", 0,
     "local file deleted: a.txt|local file deleted: b.txt|local file deleted: name.txt",
     "a.txt b.txt name.txt"},
    {ERASE, ID_LOCAL, "none*.", 0, "", ""},
    {ERASE, ID_LOCAL, "none\\*", 0, "", ""},
    {ERASE, ID_LOCAL, "other\\*", ERROR_ACCESS_DENIED, "", ""},
    {ERASE, ID_LOCAL, "q*.log", ERROR_ACCESS_DENIED, "local file deleted: q1.log", "q1.log"},
    {ERASE, ID_HOST, "*.x", 0, "delete *.x|host file deleted: *.x", ""},
};

// Patterns reach the search as they were typed: completed ones would lose a dot at their end.
std::string s_searched;

HANDLE WINAPI notingFindFirst(LPCSTR pszPattern, WIN32_FIND_DATAA* pFind)
{
    s_searched = pszPattern;
    return FindFirstFileA(pszPattern, pFind);
}

class OneNameDialog : public Dialog, public testing::WithParamInterface<size_t> {};

TEST_P(OneNameDialog, DoesItsWorkOrStaysOpen)
{
    const OneName& c = ONE_NAMES[GetParam()];
    SCOPED_TRACE(testing::Message() << c.kind.pszCaption << " " << c.pszName);
    ReplacedImport find(library(), "FindFirstFileA", notingFindFirst);
    open();
    s_searched = "";
    m_dwConfirm = ~0u; // no confirmation is asked for here
    Strings expected = m_dir.names();
    auto start = [&](HWND hdlg) {
        EXPECT_EQ(textOf(hdlg), c.kind.pszCaption);
        EXPECT_TRUE(isChecked(hdlg, ID_LOCAL) && !isChecked(hdlg, ID_HOST));
        EXPECT_EQ(textOf(hdlg, c.kind.idName), "");
        EXPECT_FALSE(isEnabled(hdlg, IDOK));
        typeWithOk(hdlg, c.kind.idName, {c.pszName, "", c.pszName});
        pressHelpAndSide(hdlg, c.kind.idHelp, c.idSide);
        return true;
    };
    std::vector<ModalStep> steps = {start, whenChecked(c.idSide, c.kind.idName)};
    run(c.kind.idCommand, accepting(steps, c.dwError));
    EXPECT_EQ(s_helped, std::vector<DWORD>(2, c.kind.dwHelp));
    std::string all = heard();
    for (const std::string& started : StartedPrograms::take()) {
        all += StartedPrograms::argumentOf(started);
    }
    EXPECT_EQ(all, c.pszHeard);
    if (strpbrk(c.pszName, "*?") != nullptr && c.idSide == ID_LOCAL) {
        EXPECT_EQ(s_searched, c.pszName);
    }
    for (const std::string& change : split(c.pszChanged)) {
        change[0] == '+'
            ? expected.push_back(change.substr(1))
            : void(expected.erase(std::find(expected.begin(), expected.end(), change)));
    }
    std::sort(expected.begin(), expected.end());
    EXPECT_EQ(m_dir.names(), expected);
    // The panes show it already, with nothing left for a refresh.
    const Strings shown = allRows();
    vXferDandDRefreshLocalFiles(m_hwnd);
    EXPECT_EQ(shown, allRows());
    EXPECT_EQ(currentDir(), m_dir.path());
}

INSTANTIATE_TEST_SUITE_P(All, OneNameDialog, testing::Range<size_t>(0, std::size(ONE_NAMES)));

TEST_F(Dialog, AChangeOfDirectoryIsFollowed)
{
    open();
    run(IDM_XFER_CHANGEDIR, accepting({choose(IDC_DIR_NAME, "other", ID_LOCAL)}, 0));
    EXPECT_EQ(currentDir(), m_dir.path("other"));
    EXPECT_EQ(text(IDC_DANDD_LOCALPATH), m_dir.path("other"));
    EXPECT_EQ(rows(IDC_DANDD_LOCALFILES), (Strings{"a.txt", "b.txt"}));
    EXPECT_EQ(heard(), "");
    m_dir.enter();
}

// Also where the mask of the list names the very directory that is shown.
TEST_F(Dialog, ARowGoesWithItsFile)
{
    open();
    type(IDC_DANDD_LOCALFILTER, m_dir.path("*.txt"));
    for (const char* pszName : {"a.txt", "b.*"}) {
        goHome();
        run(IDM_XFER_DELETE, accepting({choose(IDC_DEL_NAME, pszName, ID_LOCAL)}, 0));
        const Strings shown = rows(IDC_DANDD_LOCALFILES);
        goHome();
        EXPECT_EQ(shown, rows(IDC_DANDD_LOCALFILES)) << pszName;
    }
    EXPECT_EQ(rows(IDC_DANDD_LOCALFILES), Strings{"name.txt"});
}

// The user typed with the panes in view: names must not mean files of another directory.
TEST_F(Dialog, ANameMeansTheDirectoryThatIsShown)
{
    const struct {
        UINT idCommand;
        int idName, idSide;
        const char *pszHeard, *pszLeft;
    } cases[] = {
        {IDM_XFER_TRANSFER, IDC_COPY_SOURCE, IDC_COPY_SEND, "send a.txt=a.txt|sent: a.txt",
         "a.txt b.txt"},
        {IDM_XFER_DELETE, IDC_DEL_NAME, ID_LOCAL, "local file deleted: a.txt", "b.txt"},
    };
    open();
    for (const auto& c : cases) {
        goHome();
        auto leave = [&](HWND hdlg) {
            _chdir("other");
            pressKey(hdlg, VK_RETURN);
            return true;
        };
        auto isFollowed = [&](HWND) {
            EXPECT_EQ(heard(), "");
            return text(IDC_DANDD_LOCALPATH) == m_dir.path("other");
        };
        run(c.idCommand, accepting({choose(c.idName, "a.txt", c.idSide), leave, isFollowed}, 0));
        EXPECT_EQ(heard(), c.pszHeard);
        EXPECT_EQ(rows(IDC_DANDD_LOCALFILES), split(c.pszLeft));
        EXPECT_TRUE(m_dir.holds("a.txt"));
    }
    m_dir.enter();
}

struct Confirmed {
    DWORD fSend;
    const char *pszLocal, *pszHost;
    const char* pszTyped; // in place of the target; null for no change
    DWORD dwError;
    const char *pszLocalAfter, *pszHostAfter;
};
const Confirmed CONFIRMED[] = {
    {1, "a.txt", "h", nullptr, 0, "a.txt", "h"},
    {7, "other\\a.txt", "h", "", 0, "other\\a.txt", "other\\a.txt"},
    {1, "other", "", "h2", 0, "other", "h2"},
    {1, "none", "h", nullptr, ERROR_FILE_NOT_FOUND, "", ""},
    {1, "", "h", nullptr, ERROR_PATH_NOT_FOUND, "", ""},
    {0, "b.txt", "h", nullptr, 0, "b.txt", "h"},
    {0, "", "new", nullptr, 0, "new", "new"},
    {0, "b.txt", "new2", "", 0, "new2", "new2"},
    {0, "b.txt", "h", "q2.log", ERROR_ACCESS_DENIED, "", ""},
    {0, "full", "h", nullptr, ERROR_CANNOT_MAKE, "", ""},
    {0, "none\\x", "h", nullptr, ERROR_PATH_NOT_FOUND, "", ""},
};

TEST_F(Dialog, TheCallerHasATransferConfirmed)
{
    open();
    for (const Confirmed& c : CONFIRMED) {
        SCOPED_TRACE(testing::Message() << c.pszLocal << " " << c.pszHost);
        // The buffers as the caller gives them, and as they are to come back.
        std::string names[] = {c.pszLocal, c.pszHost}, expected[2];
        for (int n : {0, 1}) {
            const std::string after = n == 0 ? c.pszLocalAfter : c.pszHostAfter;
            names[n] += std::string(1, '\0') + std::string(299 - names[n].size(), '#');
            expected[n] = c.dwError != 0 ? names[n]
                                         : after + std::string(260 - after.size(), '\0') +
                                               std::string(40, '#');
        }
        int nResult = -1;
        auto start = [&](HWND hdlg) {
            if (!hasCome(hdlg, IDC_COPY_TARGET)) {
                return false;
            }
            EXPECT_TRUE(isChecked(hdlg, c.fSend ? IDC_COPY_SEND : IDC_COPY_RECEIVE));
            EXPECT_EQ(textOf(hdlg, IDC_COPY_SOURCE), c.fSend ? c.pszLocal : c.pszHost);
            EXPECT_EQ(textOf(hdlg, IDC_COPY_TARGET), c.fSend ? c.pszHost : c.pszLocal);
            for (int id : {IDC_COPY_SEND, IDC_COPY_RECEIVE, IDC_COPY_SOURCE}) {
                EXPECT_FALSE(isEnabled(hdlg, id));
            }
            EXPECT_TRUE(isEnabled(hdlg, IDOK));
            if (c.pszTyped != nullptr) {
                replaceText(hdlg, IDC_COPY_TARGET, c.pszTyped);
            }
            pressButton(hdlg, IDC_COPY_HELP);
            return true;
        };
        s_helped.clear();
        auto afterHelp = [&](HWND hdlg) {
            SetFocus(GetDlgItem(hdlg, IDC_COPY_TARGET));
            return !s_helped.empty();
        };
        runModal(
            m_hwnd,
            [&] {
                nResult = fXferDandDConfirmTransfer(m_hwnd, c.fSend, &names[0][0], &names[1][0]);
            },
            accepting({start, afterHelp}, c.dwError));
        EXPECT_EQ(s_helped, std::vector<DWORD>{815});
        EXPECT_EQ(nResult, c.dwError == 0);
        EXPECT_EQ(names[0], expected[0]);
        EXPECT_EQ(names[1], expected[1]);
    }
    EXPECT_EQ(requests(), Strings{});
    EXPECT_EQ(fXferDandDConfirmTransfer(nullptr, 1, nullptr, nullptr), 0);
    EXPECT_EQ(fXferDandDConfirmTransfer(m_hwnd, 1, nullptr, nullptr), 0);
}

struct Typed {
    int idSide;
    const char *pszSource, *pszTarget;
    DWORD dwError;
    const char* pszHeard;
};
const Typed TYPED[] = {
    {IDC_COPY_SEND, "a.txt", "h", 0, "send a.txt=h|sent: a.txt"},
    {IDC_COPY_SEND, "other\\a.txt", "", 0, "send other\\a.txt=other\\a.txt|sent: other\\a.txt"},
    {IDC_COPY_SEND, "none", "h", ERROR_FILE_NOT_FOUND, ""},
    {IDC_COPY_RECEIVE, "h", "new", 0, "receive h=new|received: new"},
    {IDC_COPY_RECEIVE, "h", "", 0, "receive h=h|received: h"},
    {IDC_COPY_RECEIVE, "h", "child", ERROR_CANNOT_MAKE, ""},
};

TEST_F(Dialog, TypedNamesAreTransferred)
{
    open();
    for (const Typed& c : TYPED) {
        SCOPED_TRACE(c.pszSource);
        auto start = [&](HWND hdlg) {
            if (GetFocus() != GetDlgItem(hdlg, IDC_COPY_SEND)) {
                return false;
            }
            EXPECT_TRUE(isChecked(hdlg, IDC_COPY_SEND));
            EXPECT_FALSE(isEnabled(hdlg, IDOK));
            replaceText(hdlg, IDC_COPY_TARGET, c.pszTarget);
            EXPECT_FALSE(isEnabled(hdlg, IDOK));
            typeWithOk(hdlg, IDC_COPY_SOURCE, {"x", "", c.pszSource});
            pressButton(hdlg, c.idSide);
            return true;
        };
        run(IDM_XFER_TRANSFER,
            accepting({start, whenChecked(c.idSide, IDC_COPY_TARGET)}, c.dwError));
        EXPECT_EQ(heard(), c.pszHeard);
    }
    // The blank form starts on sending, whatever was asked for, and tells no direction.
    char szLocal[260] = "", szHost[260] = "";
    runModal(m_hwnd, [&] { EXPECT_EQ(fXferDandDConfirmTransfer(m_hwnd, 0, szLocal, szHost), 0); },
             {[&](HWND hdlg) {
                 EXPECT_TRUE(isChecked(hdlg, IDC_COPY_SEND));
                 pressKey(hdlg, VK_ESCAPE);
                 return true;
             }});
}

// Whatever ends a dialog but an OK that went through is no acceptance.
enum Way { BY_END, BY_DESTRUCTION, BY_QUIT };

TEST_F(Dialog, OnlyAnOkAccepts)
{
    open();
    for (Way way : {BY_END, BY_DESTRUCTION, BY_QUIT}) {
        for (bool fRefused : {false, true}) {
            for (bool fConfirming : {false, true}) {
                SCOPED_TRACE(testing::Message() << way << fRefused << fConfirming);
                char szLocal[260] = "none", szHost[260] = "h";
                HWND hdlgOpen = nullptr;
                auto leave = [&](HWND hdlg) {
                    if (hdlg != hdlgOpen) {
                        return false;
                    }
                    way == BY_END           ? void(EndDialog(hdlg, 0))
                    : way == BY_DESTRUCTION ? void(DestroyWindow(hdlg))
                                            : PostQuitMessage(0);
                    return true;
                };
                auto start = [&](HWND hdlg) {
                    hdlgOpen = hdlg;
                    if (!fConfirming) {
                        replaceText(hdlg, IDC_COPY_SOURCE, "none");
                    }
                    return !fRefused || (pressKey(hdlg, VK_RETURN), true);
                };
                auto box = [&](HWND hwnd) {
                    return hwnd != hdlgOpen && (pressKey(hwnd, VK_RETURN), true);
                };
                auto call = [&] {
                    if (fConfirming) {
                        EXPECT_EQ(fXferDandDConfirmTransfer(m_hwnd, 1, szLocal, szHost), 0);
                    } else {
                        command(IDM_XFER_TRANSFER);
                    }
                };
                runModal(m_hwnd, call,
                         fRefused ? std::vector<ModalStep>{start, box, leave}
                                  : std::vector<ModalStep>{start, leave});
                pumpMessages(); // the end of the program that was asked for
                EXPECT_STREQ(szLocal, "none");
                EXPECT_EQ(heard(), "");
            }
        }
    }
}

struct Renamed {
    int idList;              // where the name is selected
    const char* pszSelected; // also a name too many
    int idSide;              // that is chosen then
    const char *pszOld, *pszNew;
    DWORD dwError;
    const char* pszHeard;
};
const Renamed RENAMED[] = {
    {IDC_DANDD_HOSTFILES, "x", IDC_RENAME_HOST, nullptr, "z", 0,
     "rename x z|host file renamed: x z"},
    {IDC_DANDD_HOSTFILES, "x", IDC_RENAME_HOST, nullptr, nullptr, 0,
     "rename x x|host file renamed: x x"},
    {IDC_DANDD_HOSTFILES, "x", IDC_RENAME_LOCAL, "a.txt", "c.txt", 0,
     "local file renamed: a.txt c.txt"},
    {IDC_DANDD_LOCALFILES, "c.txt", IDC_RENAME_LOCAL, nullptr, "other\\c.txt", 0,
     "local file renamed: c.txt other\\c.txt"},
    {IDC_DANDD_LOCALFILES, "b.txt name", IDC_RENAME_LOCAL, "none", "new", ERROR_FILE_NOT_FOUND, ""},
    {IDC_DANDD_LOCALFILES, "", IDC_RENAME_LOCAL, "b.txt", "name", ERROR_ALREADY_EXISTS, ""},
    {IDC_DANDD_HOSTFILES, "x y", IDC_RENAME_HOST, "", "new", 0,
     "rename  new|host file renamed:  new"},
};

HWND s_hwndMain;

void CALLBACK openAnother(HWND, UINT, UINT_PTR id, DWORD)
{
    char szLocal[XFER_MAX_NAME + 1] = "other";
    char szHost[XFER_MAX_NAME + 1] = "other";
    KillTimer(nullptr, id);
    EXPECT_EQ(fXferDandDConfirmTransfer(s_hwndMain, 0, szLocal, szHost), 0);
}

// Both keep their names in the same fields of the record.
TEST_F(Dialog, ADialogWaitsForTheOneThatOpensOverIt)
{
    open();
    s_hwndMain = m_hwnd;
    HWND hdlgOuter = nullptr;
    run(IDM_XFER_TRANSFER, {[&](HWND hdlg) {
                                hdlgOuter = hdlg;
                                replaceText(hdlg, IDC_COPY_SOURCE, "a.txt");
                                SetTimer(nullptr, 0, 10, openAnother);
                                return true;
                            },
                            [&](HWND hdlg) {
                                EXPECT_TRUE(hdlg == hdlgOuter || !IsWindowEnabled(hdlgOuter));
                                return hdlg != hdlgOuter && (pressButton(hdlg, IDCANCEL), true);
                            },
                            [&](HWND hdlg) {
                                EXPECT_EQ(hdlg, hdlgOuter);
                                pressButton(hdlg, IDOK);
                                return true;
                            }});
    EXPECT_EQ(requests(), Strings{"send a.txt=a.txt"});
}

HWND s_hdlgOuter;

INT_PTR CALLBACK innerProc(HWND hdlg, UINT uMessage, WPARAM, LPARAM)
{
    if (uMessage == WM_INITDIALOG) {
        EXPECT_FALSE(IsWindowEnabled(s_hdlgOuter));
        EndDialog(hdlg, 7);
    }
    return uMessage == WM_INITDIALOG;
}

// A dialog of the caller's, from a callback of one that is open.
TEST_F(Dialog, ADialogIsDisabledUnderThatOfTheCaller)
{
    open();
    for (bool fOff : {false, true}) {
        m_inRequest = [&] {
            s_hdlgOuter = GetActiveWindow();
            EXPECT_EQ(GetWindow(s_hdlgOuter, GW_OWNER), m_hwnd);
            EnableWindow(s_hdlgOuter, !fOff);
            EXPECT_EQ(nXferDandDDialogBoxParam(m_hwnd, "DLGCONFIRM", innerProc, 0), 7);
            EXPECT_EQ(IsWindowEnabled(s_hdlgOuter) != 0, !fOff);
            EXPECT_TRUE(fOff || GetActiveWindow() == s_hdlgOuter);
            EnableWindow(s_hdlgOuter, TRUE);
        };
        run(IDM_XFER_MAKEDIR, accepting({choose(IDC_DIR_NAME, "x", ID_HOST)}, 0));
        EXPECT_EQ(requests(), Strings{"mkdir x"});
    }
    m_inRequest = nullptr;
    // One of the library's that the caller runs is forgotten at its end.
    runModal(
        m_hwnd,
        [&] { nXferDandDDialogBoxParam(m_hwnd, "DLGDEL", fDlgXferDandDDelProc, LPARAM(record())); },
        {[](HWND hdlg) { return EndDialog(hdlg, 0) != 0; }});
    run(IDM_XFER_MAKEDIR, accepting({choose(IDC_DIR_NAME, "x", ID_HOST)}, 0));
    EXPECT_EQ(requests(), Strings{"mkdir x"});
}

// A callback may run a message loop, in which the dialog is still enabled.
TEST_F(Dialog, AnOkIsHandledOnce)
{
    open();
    m_inRequest = [&] { SendMessageA(GetActiveWindow(), WM_COMMAND, IDOK, 0); };
    run(IDM_XFER_MAKEDIR, accepting({choose(IDC_DIR_NAME, "x", ID_HOST)}, 0));
    EXPECT_EQ(requests(), Strings{"mkdir x"});
    m_inRequest = nullptr;
    run(IDM_XFER_MAKEDIR, accepting({choose(IDC_DIR_NAME, "y", ID_HOST)}, 0));
    EXPECT_EQ(requests(), Strings{"mkdir y"});
}

TEST_F(Dialog, AFileIsRenamed)
{
    open();
    feedHost({"x", "y"});
    for (const Renamed& c : RENAMED) {
        SCOPED_TRACE(testing::Message() << c.pszSelected << " on " << c.idSide);
        Strings names = split(c.pszSelected);
        std::string name = names.size() == 1 ? names[0] : "";
        bool fHost = name != "" && c.idList == IDC_DANDD_HOSTFILES;
        selectOnly(c.idList, names);
        auto start = [&](HWND hdlg) {
            if (!hasCome(hdlg, IDC_RENAME_NEWNAME)) {
                return false;
            }
            EXPECT_TRUE(isChecked(hdlg, fHost ? IDC_RENAME_HOST : IDC_RENAME_LOCAL));
            EXPECT_EQ(textOf(hdlg, IDC_RENAME_OLDNAME), name);
            EXPECT_EQ(textOf(hdlg, IDC_RENAME_NEWNAME), name);
            EXPECT_EQ(isEnabled(hdlg, IDOK), name != "");
            if (c.pszOld != nullptr) {
                replaceText(hdlg, IDC_RENAME_OLDNAME, c.pszOld);
                EXPECT_EQ(isEnabled(hdlg, IDOK), name != "");
            }
            if (c.pszNew != nullptr) {
                typeWithOk(hdlg, IDC_RENAME_NEWNAME, {"", c.pszNew});
            }
            pressHelpAndSide(hdlg, IDC_RENAME_HELP, c.idSide);
            return true;
        };
        s_helped.clear();
        run(IDM_XFER_RENAME,
            accepting({start, whenChecked(c.idSide, IDC_RENAME_NEWNAME)}, c.dwError));
        EXPECT_EQ(s_helped, std::vector<DWORD>(2, 814));
        EXPECT_EQ(heard(), c.pszHeard);
    }
    EXPECT_TRUE(m_dir.holds("other\\c.txt") && m_dir.holds("b.txt"));
    EXPECT_EQ(rows(IDC_DANDD_LOCALFILES),
              (Strings{"b.txt", "name", "name.txt", "q1.log", "q2.log", "q3.log"}));
}

// What is typed goes through whole up to the limit, and no further.
TEST_F(Dialog, NamesFillTheirBuffers)
{
    open();
    for (size_t cch : {259u, 260u, 400u}) {
        const std::string one(cch, 'o'), two(cch, 't');
        const std::string oneCut = one.substr(0, 259), twoCut = two.substr(0, 259);
        run(IDM_XFER_RENAME, accepting({choose(IDC_RENAME_OLDNAME, one, IDC_RENAME_HOST),
                                        choose(IDC_RENAME_NEWNAME, two, IDC_RENAME_HOST)},
                                       0));
        const std::string both = oneCut + " " + twoCut;
        EXPECT_EQ(heard(), "rename " + both + "|host file renamed: " + both);
        for (const Kind& kind : {MAKE, REMOVE, CHANGE, VIEW, ERASE}) {
            auto isCut = [&](HWND hdlg) { return textOf(hdlg, kind.idName) == oneCut; };
            run(kind.idCommand, accepting({choose(kind.idName, one, ID_HOST), isCut}, 0));
            EXPECT_EQ(split(requests().at(0))[1], oneCut);
        }
        char szLocal[500] = "other", szHost[500];
        strcpy(szHost, one.c_str());
        runModal(
            m_hwnd, [&] { EXPECT_EQ(fXferDandDConfirmTransfer(m_hwnd, 1, szLocal, szHost), 1); },
            accepting({}, 0));
        EXPECT_EQ(szHost, oneCut);
        recorded();
    }
}

TEST_F(Dialog, TheConfirmationSettingsAreTheCallers)
{
    constexpr int BOXES[] = {IDC_CONFIRM_LOCALREPLACE, IDC_CONFIRM_LOCALDELETE,
                             IDC_CONFIRM_LOCALRMDIR, IDC_CONFIRM_HOSTDELETE,
                             IDC_CONFIRM_HOSTREPLACE};
    open();
    for (DWORD dwFlags : {0u, 1u, 2u, 3u, 4u, 8u, 16u, 31u, ~0u}) {
        for (WORD vk : {WORD(VK_RETURN), WORD(VK_ESCAPE)}) {
            m_dwConfirm = dwFlags;
            auto start = [&](HWND hdlg) {
                for (int n = 0; n < 5; ++n) {
                    EXPECT_EQ(isChecked(hdlg, BOXES[n]), (dwFlags >> n & 1) != 0) << BOXES[n];
                }
                pressButton(hdlg, IDC_CONFIRM_LOCALDELETE);
                return true;
            };
            auto leave = [&](HWND hdlg) {
                bool fDone = isChecked(hdlg, IDC_CONFIRM_LOCALDELETE) == ((dwFlags & 2) == 0);
                if (fDone) {
                    SendMessageA(hdlg, WM_XFER_HELP, 0, 0);
                    pressKey(hdlg, vk);
                }
                return fDone;
            };
            run(IDM_XFER_CONFIRM, {start, leave});
            Strings expected = {"flags"};
            if (vk == VK_RETURN) {
                expected.push_back("flags " + std::to_string((dwFlags & 31) ^ 2));
            }
            EXPECT_EQ(requests(), expected);
        }
    }
    EXPECT_EQ(s_helped, std::vector<DWORD>(18, 818));
}

// Real keys: the order of Tab from where the focus lands, then mnemonics, arrows and Enter.
struct Keys {
    UINT idCommand;
    std::vector<int> stops;
};
const Keys KEYS[] = {
    {IDM_XFER_TRANSFER,
     {IDC_COPY_SEND, IDC_COPY_SOURCE, IDC_COPY_TARGET, IDCANCEL, IDC_COPY_HELP, IDC_COPY_SEND}},
    {IDM_XFER_VIEW, {IDC_VIEW_NAME, IDC_VIEW_LOCAL, IDCANCEL, IDC_VIEW_HELP, IDC_VIEW_NAME}},
    {IDM_XFER_RENAME,
     {IDC_RENAME_NEWNAME, IDC_RENAME_LOCAL, IDCANCEL, IDC_RENAME_HELP, IDC_RENAME_OLDNAME,
      IDC_RENAME_NEWNAME}},
    {IDM_XFER_DELETE, {IDC_DEL_NAME, IDC_DEL_LOCAL, IDCANCEL, IDC_DEL_HELP, IDC_DEL_NAME}},
    {IDM_XFER_MAKEDIR, {IDC_DIR_NAME, IDC_DIR_LOCAL, IDCANCEL, IDC_DIR_HELP, IDC_DIR_NAME}},
    {IDM_XFER_REMOVEDIR, {IDC_DIR_NAME, IDC_DIR_LOCAL, IDCANCEL, IDC_DIR_HELP, IDC_DIR_NAME}},
    {IDM_XFER_CHANGEDIR, {IDC_DIR_NAME, IDC_DIR_LOCAL, IDCANCEL, IDC_DIR_HELP, IDC_DIR_NAME}},
    {IDM_XFER_CONFIRM,
     {IDC_CONFIRM_LOCALDELETE, IDC_CONFIRM_LOCALRMDIR, IDC_CONFIRM_LOCALREPLACE,
      IDC_CONFIRM_HOSTDELETE, IDC_CONFIRM_HOSTREPLACE, IDOK, IDCANCEL, IDC_CONFIRM_HELP,
      IDC_CONFIRM_LOCALDELETE}},
};

// Keys that are typed, in the step that finds the dialog so.
constexpr int ALT = 0x100;

bool typeKeys(const std::vector<int>& keys)
{
    for (int nKey : keys) {
        typeKey(WORD(nKey & 0xFF), (nKey & ALT) != 0);
    }
    return true;
}

ModalStep atFocus(int id, const std::vector<int>& keys)
{
    return [=](HWND hdlg) { return GetFocus() == GetDlgItem(hdlg, id) && typeKeys(keys); };
}

ModalStep atSide(int idSide, const std::vector<int>& keys)
{
    return [=](HWND hdlg) { return isChecked(hdlg, idSide) && typeKeys(keys); };
}

TEST_F(Dialog, RealKeysWork)
{
    open();
    SetForegroundWindow(m_hwnd);
    for (const Keys& keys : KEYS) {
        SCOPED_TRACE(keys.idCommand);
        // The focus settles when the dialog's own timer has come, which is older than these.
        std::vector<ModalStep> steps(3, [](HWND) { return true; });
        for (size_t n = 0; n < keys.stops.size(); ++n) {
            steps.push_back(
                atFocus(keys.stops[n], {n + 1 < keys.stops.size() ? VK_TAB : VK_ESCAPE}));
        }
        run(keys.idCommand, steps);
    }
    EXPECT_EQ(heard(), "flags");
    run(IDM_XFER_MAKEDIR, {atFocus(IDC_DIR_NAME, {'X', 'O' | ALT}), atSide(ID_HOST, {VK_UP}),
                           atSide(ID_LOCAL, {VK_DOWN}), atSide(ID_HOST, {'D' | ALT}),
                           atFocus(IDC_DIR_NAME, {VK_END, 'Y', VK_RETURN})});
    EXPECT_EQ(requests(), Strings{"mkdir xy"});
    // With OK grey Enter does nothing; the mouse works too.
    auto clickAt = [](int id, bool fNow, HWND hdlg) {
        return fNow && (clickWindow(GetDlgItem(hdlg, id)), true);
    };
    run(IDM_XFER_MAKEDIR,
        {atFocus(IDC_DIR_NAME, {VK_RETURN, 'Z'}),
         [=](HWND hdlg) { return clickAt(ID_HOST, textOf(hdlg, IDC_DIR_NAME) == "z", hdlg); },
         [=](HWND hdlg) { return clickAt(IDOK, isChecked(hdlg, ID_HOST), hdlg); }});
    EXPECT_EQ(requests(), Strings{"mkdir z"});
}

TEST_F(Dialog, DialogsOpenInTheMiddleOfTheirWindow)
{
    open();
    for (SIZE size : {SIZE{700, 500}, SIZE{200, 500}, SIZE{700, 60}}) {
        SetWindowPos(m_hwnd, nullptr, 40, 30, size.cx, size.cy, SWP_NOZORDER);
        for (const Keys& keys : KEYS) {
            run(keys.idCommand, {[&](HWND hdlg) {
                    RECT rc, rcParent;
                    GetWindowRect(hdlg, &rc);
                    GetWindowRect(m_hwnd, &rcParent);
                    LONG cx = rcParent.right - rcParent.left - (rc.right - rc.left);
                    LONG cy = rcParent.bottom - rcParent.top - (rc.bottom - rc.top);
                    EXPECT_EQ(rc.left, rcParent.left + std::max(cx, 0L) / 2);
                    EXPECT_EQ(rc.top, rcParent.top + std::max(cy, 0L) / 2);
                    pressKey(hdlg, VK_ESCAPE);
                    return true;
                }});
        }
    }
}

// Where the window would be if it were restored.
TEST_F(Dialog, ADialogOverAnIconCanBeSeen)
{
    open();
    SetWindowPos(m_hwnd, nullptr, 40, 30, 700, 500, SWP_NOZORDER);
    RECT rcOver[2];
    for (bool fIcon : {false, true}) {
        char szLocal[260] = "a.txt", szHost[260] = "h";
        ShowWindow(m_hwnd, fIcon ? SW_MINIMIZE : SW_RESTORE);
        runModal(m_hwnd, [&] { fXferDandDConfirmTransfer(m_hwnd, 1, szLocal, szHost); },
                 {[&](HWND hdlg) {
                     GetWindowRect(hdlg, &rcOver[fIcon]);
                     return EndDialog(hdlg, 0) != 0;
                 }});
    }
    EXPECT_TRUE(EqualRect(&rcOver[0], &rcOver[1])) << rcOver[1].left << ", " << rcOver[1].top;
}

enum Place { IN_DIALOG, IN_BOX, IN_CALLBACK, IN_RECORD };
struct End {
    UINT idCommand;
    int idName, idSide;
    const char* pszName;
    std::vector<Place> places;
};
const End ENDS[] = {
    {IDM_XFER_MAKEDIR, IDC_DIR_NAME, ID_LOCAL, "full", {IN_DIALOG, IN_BOX}},
    {IDM_XFER_MAKEDIR, IDC_DIR_NAME, ID_LOCAL, "new", {IN_RECORD}},
    {IDM_XFER_MAKEDIR, IDC_DIR_NAME, ID_HOST, "x", {IN_CALLBACK, IN_RECORD}},
    {IDM_XFER_REMOVEDIR, IDC_DIR_NAME, ID_LOCAL, "full", {IN_DIALOG, IN_BOX}},
    {IDM_XFER_REMOVEDIR, IDC_DIR_NAME, ID_LOCAL, "child", {IN_RECORD}},
    {IDM_XFER_REMOVEDIR, IDC_DIR_NAME, ID_HOST, "x", {IN_CALLBACK, IN_RECORD}},
    {IDM_XFER_CHANGEDIR, IDC_DIR_NAME, ID_LOCAL, "none", {IN_DIALOG, IN_BOX}},
    {IDM_XFER_CHANGEDIR, IDC_DIR_NAME, ID_HOST, "x", {IN_CALLBACK}},
    {IDM_XFER_VIEW, IDC_VIEW_NAME, ID_LOCAL, "none", {IN_DIALOG, IN_BOX}},
    {IDM_XFER_VIEW, IDC_VIEW_NAME, ID_HOST, "x", {IN_CALLBACK}},
    {IDM_XFER_DELETE, IDC_DEL_NAME, ID_LOCAL, "none", {IN_DIALOG, IN_BOX}},
    {IDM_XFER_DELETE, IDC_DEL_NAME, ID_LOCAL, "*.*", {IN_BOX}},
    {IDM_XFER_DELETE, IDC_DEL_NAME, ID_LOCAL, "a.txt", {IN_RECORD}},
    {IDM_XFER_DELETE, IDC_DEL_NAME, ID_LOCAL, "?.txt", {IN_RECORD}},
    {IDM_XFER_DELETE, IDC_DEL_NAME, ID_HOST, "x", {IN_RECORD, IN_CALLBACK}},
    {IDM_XFER_RENAME, IDC_RENAME_NEWNAME, IDC_RENAME_LOCAL, "full", {IN_DIALOG, IN_BOX}},
    {IDM_XFER_RENAME, IDC_RENAME_NEWNAME, IDC_RENAME_HOST, "x", {IN_RECORD, IN_CALLBACK}},
    {IDM_XFER_TRANSFER, IDC_COPY_SOURCE, IDC_COPY_SEND, "none", {IN_DIALOG, IN_BOX}},
    {IDM_XFER_TRANSFER, IDC_COPY_SOURCE, IDC_COPY_SEND, "name", {IN_RECORD, IN_CALLBACK}},
    {IDM_XFER_TRANSFER, IDC_COPY_SOURCE, IDC_COPY_RECEIVE, "new", {IN_RECORD, IN_CALLBACK}},
    {IDM_XFER_TRANSFER, IDC_COPY_SOURCE, IDC_COPY_RECEIVE, "full", {IN_BOX}},
    {IDM_XFER_CONFIRM, IDC_CONFIRM_LOCALDELETE, IDC_CONFIRM_LOCALDELETE, "", {IN_DIALOG}},
};

class DialogEnd : public Dialog, public testing::WithParamInterface<size_t> {};

TEST_P(DialogEnd, NothingIsTouchedAfterTheWindowHasGone)
{
    const End& c = ENDS[GetParam()];
    for (Place place : c.places) {
        SCOPED_TRACE(testing::Message() << c.idCommand << " " << c.pszName << " " << place);
        Ledger ledger; // which shows a late touch
        open();
        auto end = [&] { nXferDandDDestroy(m_hwnd); };
        InRecord record(place == IN_RECORD ? std::function<void()>(end) : [] {});
        m_inRequest = place == IN_CALLBACK ? end : std::function<void()>();
        std::vector<ModalStep> steps = {choose(c.idName, c.pszName, c.idSide), [&](HWND hdlg) {
                                            place == IN_DIALOG ? end() : pressKey(hdlg, VK_RETURN);
                                            return true;
                                        }};
        if (place == IN_BOX) {
            steps.push_back(
                [&](HWND hwndBox) { return textOf(hwndBox) == "Korvalen" && (end(), true); });
        }
        run(c.idCommand, steps);
        EXPECT_FALSE(IsWindow(m_hwnd));
        EXPECT_TRUE(IsWindowEnabled(m_parent.hwnd()));
        EXPECT_EQ(ledger.owed(), "");
        m_inRequest = nullptr;
    }
    EXPECT_TRUE(m_dir.holds("b.txt")); // the window went after the first match
}

INSTANTIATE_TEST_SUITE_P(All, DialogEnd, testing::Range<size_t>(0, std::size(ENDS)));

// The flags are asked for before the dialog shows, and set behind its OK.
TEST_F(Dialog, TheWindowCanGoWhenItsFlagsAreAskedFor)
{
    for (int nRequest : {1, 2}) {
        Ledger ledger;
        open();
        int nSeen = 0;
        m_inRequest = [&] {
            if (++nSeen == nRequest) {
                nXferDandDDestroy(m_hwnd);
            }
        };
        run(IDM_XFER_CONFIRM, nRequest == 1 ? std::vector<ModalStep>() : accepting({}, 0));
        EXPECT_EQ(nSeen, nRequest);
        EXPECT_EQ(ledger.owed(), "");
        m_inRequest = nullptr;
    }
}

// All dialogs, left by OK, Escape and the close box, with memory that runs out.
TEST_F(Dialog, NothingIsLeftBehind)
{
    Ledger ledger;
    open();
    const size_t cBefore = Ledger::count();
    for (int nRound = 0; nRound < 3; ++nRound) {
        for (const End& c : ENDS) {
            for (WORD vk : {WORD(VK_RETURN), WORD(VK_ESCAPE)}) {
                if (vk == VK_RETURN && (c.idSide == ID_LOCAL || c.places.back() == IN_BOX)) {
                    continue;
                }
                run(c.idCommand, {choose(c.idName, c.pszName, c.idSide), [&](HWND hdlg) {
                                      ledger.failAt(nRound);
                                      nRound == 1 && vk == VK_ESCAPE
                                          ? void(PostMessageA(hdlg, WM_CLOSE, 0, 0))
                                          : pressKey(hdlg, vk);
                                      return true;
                                  }});
                ledger.failAt(0);
                const std::string done = heard();
                EXPECT_TRUE(vk == VK_RETURN || done == "" || done == "flags") << done;
            }
        }
        EXPECT_EQ(Ledger::count(), cBefore) << Ledger::owed();
    }
    EXPECT_EQ(currentDir(), m_dir.path());
    close();
    EXPECT_EQ(Ledger::owed(), "");
}

} // namespace
