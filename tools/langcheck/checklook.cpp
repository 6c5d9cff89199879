#include "check.h"

namespace {

// A device context for measuring, with the fonts that a dialog meets and the size of its
// units, which come from the dialog's own font.
struct Measure {
    HDC hdc;
    HFONT hfontDialog;
    HFONT hfontStrip;
    int cxBase, cyBase;
};

int textWidth(const Measure& measure, HGDIOBJ hfont, const std::string& text)
{
    RECT rc = {};
    const HGDIOBJ hfontOld = SelectObject(measure.hdc, hfont);
    DrawTextA(measure.hdc, text.c_str(), static_cast<int>(text.size()), &rc,
              DT_CALCRECT | DT_SINGLELINE);
    SelectObject(measure.hdc, hfontOld);
    return rc.right;
}

int textHeight(const Measure& measure, HGDIOBJ hfont, const std::string& text, int width)
{
    RECT rc = {0, 0, width, 0};
    const HGDIOBJ hfontOld = SelectObject(measure.hdc, hfont);
    DrawTextA(measure.hdc, text.c_str(), static_cast<int>(text.size()), &rc,
              DT_CALCRECT | DT_WORDBREAK);
    SelectObject(measure.hdc, hfontOld);
    return rc.right > width ? MAXLONG : rc.bottom;
}

HFONT dialogFont(HDC hdc, const LangDialog& dialog)
{
    const int height = -MulDiv(dialog.nPointSize, GetDeviceCaps(hdc, LOGPIXELSY), 72);
    return CreateFontA(height, 0, 0, 0, FW_DONTCARE, FALSE, FALSE, FALSE, DEFAULT_CHARSET,
                       OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS, PROOF_QUALITY, FF_DONTCARE,
                       dialog.face.c_str());
}

// The same font as that in which the library paints the message strip.
HFONT stripFont(HDC hdc)
{
    TEXTMETRICA metrics;
    GetTextMetricsA(hdc, &metrics);
    return CreateFontA(-8, metrics.tmAveCharWidth, 0, 0, FW_THIN, FALSE, FALSE, FALSE,
                       DEFAULT_CHARSET, OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS, DEFAULT_QUALITY,
                       DEFAULT_PITCH, "MS Sans Serif");
}

Measure openMeasure(const LangDialog& dialog)
{
    static const char LETTERS[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
    constexpr int CLETTERS = 52;
    Measure measure = {};
    measure.hdc = CreateCompatibleDC(nullptr);
    measure.hfontStrip = stripFont(measure.hdc);
    measure.hfontDialog = dialogFont(measure.hdc, dialog);
    SIZE size = {};
    TEXTMETRICA metrics = {};
    const HGDIOBJ hfontOld = SelectObject(measure.hdc, measure.hfontDialog);
    GetTextExtentPoint32A(measure.hdc, LETTERS, CLETTERS, &size);
    GetTextMetricsA(measure.hdc, &metrics);
    SelectObject(measure.hdc, hfontOld);
    measure.cxBase = (size.cx / (CLETTERS / 2) + 1) / 2;
    measure.cyBase = metrics.tmHeight;
    return measure;
}

void closeMeasure(const Measure& measure)
{
    DeleteObject(measure.hfontDialog);
    DeleteObject(measure.hfontStrip);
    DeleteDC(measure.hdc);
}

int xPixels(const Measure& measure, int units)
{
    return MulDiv(units, measure.cxBase, 4);
}

int yPixels(const Measure& measure, int units)
{
    return MulDiv(units, measure.cyBase, 8);
}

// What a control needs beside its text: frames, the picture of a check box or radio button,
// the arrow of a combo box.
int widthBesideText(const LangDlgControl& control)
{
    constexpr int BUTTON_FRAME = 8;
    constexpr int CHECK_PICTURE = 18;
    constexpr int GROUP_EDGES = 18;
    constexpr int COMBO_FRAME = 8;
    if (control.className == "COMBOBOX")
        return GetSystemMetrics(SM_CXVSCROLL) + COMBO_FRAME;
    if (control.className != "BUTTON")
        return 0;
    if (fLangIsGroupBox(control))
        return GROUP_EDGES;
    return fLangIsPushButton(control) ? BUTTON_FRAME : CHECK_PICTURE;
}

bool wraps(const LangDlgControl& control)
{
    return control.className == "STATIC" && (control.style & LANG_STATICTYPE) <= SS_RIGHT;
}

bool showsText(const LangDlgControl& control)
{
    return control.className == "BUTTON" || wraps(control) ||
           (control.className == "STATIC" &&
            (control.style & LANG_STATICTYPE) == SS_LEFTNOWORDWRAP);
}

bool textFits(const Measure& measure, const LangDlgControl& control, HGDIOBJ hfont,
              const std::string& text)
{
    const int width = xPixels(measure, control.cx) - widthBesideText(control);
    if (wraps(control))
        return textHeight(measure, hfont, text, width) <= yPixels(measure, control.cy);
    return textWidth(measure, hfont, text) <= width;
}

void checkOwnText(LangCheck* check, const LangTemplateRow& row, const Measure& measure,
                  const LangDlgControl& control)
{
    const LangControlRow* found = pLangControlRow(row, control.id);
    const bool fFixed = found && (found->flags & LANGCTL_FIXEDFONT);
    const HGDIOBJ hfont = fFixed ? GetStockObject(ANSI_FIXED_FONT) : measure.hfontDialog;
    if (showsText(control) && !textFits(measure, control, hfont, control.text))
        vLangFound(check, "%s: \"%s\" doesn't fit its control", row.name, control.text.c_str());
}

void checkFit(LangCheck* check, const LangFitRow& fit, const Measure& measure,
              const LangDialog& dialog)
{
    const std::string text = fit.idString ? strLangString(check, fit.idString) : fit.sample;
    for (const LangDlgControl& control : dialog.controls) {
        if (control.id == fit.idControl && !textFits(measure, control, measure.hfontDialog, text))
            vLangFound(check, "%s: \"%s\" doesn't fit control %u", fit.templateName, text.c_str(),
                       control.id);
    }
}

void checkFits(LangCheck* check, const LangTemplateRow& row, const Measure& measure,
               const LangDialog& dialog)
{
    for (const LangDlgControl& control : dialog.controls)
        checkOwnText(check, row, measure, control);
    for (int i = 0; i < g_cLangFits; i++) {
        if (lstrcmpA(g_langFits[i].templateName, row.name) == 0)
            checkFit(check, g_langFits[i], measure, dialog);
    }
}

// In dialog units. The height of a combo box is that with its list open; closed it is as high
// as an edit line.
RECT rectOf(const LangDlgControl& control)
{
    constexpr int CLOSED_COMBO = 13;
    const bool fCombo = control.className == "COMBOBOX" && control.cy > CLOSED_COMBO;
    return {control.x, control.y, control.x + control.cx,
            control.y + (fCombo ? CLOSED_COMBO : control.cy)};
}

bool holds(const RECT& outer, const RECT& inner)
{
    return inner.left >= outer.left && inner.top >= outer.top && inner.right <= outer.right &&
           inner.bottom <= outer.bottom;
}

bool mayOverlap(const LangTemplateRow& row, WORD id1, WORD id2)
{
    for (int i = 0; i < g_cLangOverlaps; i++) {
        const LangOverlapRow& allowed = g_langOverlaps[i];
        if (lstrcmpA(allowed.templateName, row.name) == 0 &&
            ((allowed.id1 == id1 && allowed.id2 == id2) ||
             (allowed.id1 == id2 && allowed.id2 == id1)))
            return true;
    }
    return false;
}

bool collide(const LangTemplateRow& row, const LangDlgControl& a, const LangDlgControl& b)
{
    const RECT rcA = rectOf(a);
    const RECT rcB = rectOf(b);
    RECT rcBoth;
    if (!IntersectRect(&rcBoth, &rcA, &rcB) || mayOverlap(row, a.id, b.id))
        return false;
    return !(fLangIsGroupBox(a) && holds(rcA, rcB)) && !(fLangIsGroupBox(b) && holds(rcB, rcA));
}

void checkPlaces(LangCheck* check, const LangTemplateRow& row, const LangDialog& dialog)
{
    const RECT rcDialog = {0, 0, dialog.cx, dialog.cy};
    for (size_t i = 0; i < dialog.controls.size(); i++) {
        const LangDlgControl& control = dialog.controls[i];
        if (!holds(rcDialog, rectOf(control)))
            vLangFound(check, "%s: control %u lies outside the dialog", row.name, control.id);
        for (size_t k = 0; k < i; k++) {
            if (collide(row, dialog.controls[k], control))
                vLangFound(check, "%s: controls %u and %u overlap", row.name, dialog.controls[k].id,
                           control.id);
        }
    }
}

bool fitsStrip(const LangCheck* check, const Measure& measure, UINT idString, int width)
{
    return textWidth(measure, measure.hfontStrip, strLangString(check, idString)) <= width;
}

// The library paints the strip along the bottom; its left box takes two thirds of the width
// and shows the texts with 3 pixels of room before them.
void checkStrip(LangCheck* check, const LangTemplateRow& row, const Measure& measure,
                const LangDialog& dialog)
{
    constexpr int STRIP_EDGES = 12;
    constexpr int TEXT_MARGIN = 3;
    TEXTMETRICA metrics = {};
    const HGDIOBJ hfontOld = SelectObject(measure.hdc, measure.hfontStrip);
    GetTextMetricsA(measure.hdc, &metrics);
    SelectObject(measure.hdc, hfontOld);
    const int top = yPixels(measure, dialog.cy) - static_cast<int>(metrics.tmHeight) -
                    static_cast<int>(metrics.tmExternalLeading) - STRIP_EDGES;
    for (const LangDlgControl& control : dialog.controls) {
        if (yPixels(measure, rectOf(control).bottom) > top)
            vLangFound(check, "%s: control %u lies on the message strip", row.name, control.id);
    }
    const int width = 2 * (xPixels(measure, dialog.cx) / 3) - TEXT_MARGIN;
    for (int i = 0; i < g_cLangStrings; i++) {
        const LangStringRow& string = g_langStrings[i];
        if ((string.flags & LANGSTR_STRIP) && !fitsStrip(check, measure, string.id, width))
            vLangFound(check, "string %u doesn't fit the message strip", string.id);
    }
    for (int i = 0; i < g_cLangCommands; i++) {
        if (!fitsStrip(check, measure, g_langCommands[i].id, width))
            vLangFound(check, "string %u doesn't fit the message strip", g_langCommands[i].id);
    }
}

} // namespace

void vLangCheckLook(LangCheck* check, const LangTemplateRow& row, const LangDialog& dialog)
{
    if (dialog.nPointSize == 0) {
        vLangFound(check, "%s: no font", row.name);
        return;
    }
    const Measure measure = openMeasure(dialog);
    checkFits(check, row, measure, dialog);
    checkPlaces(check, row, dialog);
    if (row.flags & LANGDLG_STRIP)
        checkStrip(check, row, measure, dialog);
    closeMeasure(measure);
}
