#include "check.h"

#include <algorithm>

namespace langcheck {

namespace {

// A device context for measuring, with the fonts that a dialog meets and the size of its
// units, which come from the dialog's own font.
struct Measure {
    HDC hdc;
    HFONT dialogFont;
    HFONT stripFont;
    int cxBase, cyBase;
};

int textWidth(const Measure& measure, HGDIOBJ font, const std::string& text)
{
    RECT rc = {};
    const HGDIOBJ oldFont = SelectObject(measure.hdc, font);
    DrawTextA(measure.hdc, text.c_str(), static_cast<int>(text.size()), &rc,
              DT_CALCRECT | DT_SINGLELINE);
    SelectObject(measure.hdc, oldFont);
    return rc.right;
}

int textHeight(const Measure& measure, HGDIOBJ font, const std::string& text, int width)
{
    RECT rc = {0, 0, width, 0};
    const HGDIOBJ oldFont = SelectObject(measure.hdc, font);
    DrawTextA(measure.hdc, text.c_str(), static_cast<int>(text.size()), &rc,
              DT_CALCRECT | DT_WORDBREAK);
    SelectObject(measure.hdc, oldFont);
    return rc.right > width ? MAXLONG : rc.bottom;
}

HFONT makeDialogFont(HDC hdc, const Dialog& dialog)
{
    const int height = -MulDiv(dialog.pointSize, GetDeviceCaps(hdc, LOGPIXELSY), 72);
    return CreateFontA(height, 0, 0, 0, FW_DONTCARE, FALSE, FALSE, FALSE, DEFAULT_CHARSET,
                       OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS, PROOF_QUALITY, FF_DONTCARE,
                       dialog.face.c_str());
}

// The same font as that in which the library paints the message strip.
HFONT makeStripFont(HDC hdc)
{
    TEXTMETRICA metrics;
    GetTextMetricsA(hdc, &metrics);
    return CreateFontA(-8, metrics.tmAveCharWidth, 0, 0, FW_THIN, FALSE, FALSE, FALSE,
                       DEFAULT_CHARSET, OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS, DEFAULT_QUALITY,
                       DEFAULT_PITCH, "MS Sans Serif");
}

Measure openMeasure(const Dialog& dialog)
{
    static const char LETTERS[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
    constexpr int LETTER_COUNT = 52;
    Measure measure = {};
    measure.hdc = CreateCompatibleDC(nullptr);
    measure.stripFont = makeStripFont(measure.hdc);
    measure.dialogFont = makeDialogFont(measure.hdc, dialog);
    SIZE size = {};
    TEXTMETRICA metrics = {};
    const HGDIOBJ oldFont = SelectObject(measure.hdc, measure.dialogFont);
    GetTextExtentPoint32A(measure.hdc, LETTERS, LETTER_COUNT, &size);
    GetTextMetricsA(measure.hdc, &metrics);
    SelectObject(measure.hdc, oldFont);
    measure.cxBase = (size.cx / (LETTER_COUNT / 2) + 1) / 2;
    measure.cyBase = metrics.tmHeight;
    return measure;
}

void closeMeasure(const Measure& measure)
{
    DeleteObject(measure.dialogFont);
    DeleteObject(measure.stripFont);
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
int widthBesideText(const Control& control)
{
    constexpr int BUTTON_FRAME = 8;
    constexpr int CHECK_PICTURE = 18;
    constexpr int GROUP_EDGES = 18;
    constexpr int COMBO_FRAME = 8;
    if (control.className == "COMBOBOX")
        return GetSystemMetrics(SM_CXVSCROLL) + COMBO_FRAME;
    if (control.className != "BUTTON")
        return 0;
    if (isGroupBox(control))
        return GROUP_EDGES;
    return isPushButton(control) ? BUTTON_FRAME : CHECK_PICTURE;
}

bool wraps(const Control& control)
{
    return control.className == "STATIC" && (control.style & STATIC_TYPES) <= SS_RIGHT;
}

bool showsText(const Control& control)
{
    return control.className == "BUTTON" || wraps(control) ||
           (control.className == "STATIC" && (control.style & STATIC_TYPES) == SS_LEFTNOWORDWRAP);
}

bool textFits(const Measure& measure, const Control& control, HGDIOBJ font, const std::string& text)
{
    const int width = xPixels(measure, control.cx) - widthBesideText(control);
    if (wraps(control))
        return textHeight(measure, font, text, width) <= yPixels(measure, control.cy);
    return textWidth(measure, font, text) <= width;
}

void checkOwnText(const Subject& subject, const Measure& measure, const Control& control)
{
    const bool isFixed = (flagsOf(*subject.row, control) & CONTROL_FIXEDFONT) != 0;
    const HGDIOBJ font = isFixed ? GetStockObject(ANSI_FIXED_FONT) : measure.dialogFont;
    if (showsText(control) && !textFits(measure, control, font, control.text))
        found(subject.check, "%s: \"%s\" doesn't fit its control", subject.row->name,
              control.text.c_str());
}

void checkFit(const Subject& subject, const Measure& measure, const FitRow& fit)
{
    const std::string text =
        fit.idString ? readString(subject.check->module, fit.idString, nullptr) : fit.sample;
    for (const Control& control : subject.dialog.controls) {
        if (control.id == fit.idControl && !textFits(measure, control, measure.dialogFont, text))
            found(subject.check, "%s: \"%s\" doesn't fit %s", fit.templateName, text.c_str(),
                  controlName(subject, control).c_str());
    }
}

// The line is painted in the system's font, some pixels below the upper edge, and needs as many
// below it, but for one or two that no height in dialog units could avoid.
void checkBarHeight(const Subject& subject, const Measure& measure, const Control& control)
{
    constexpr int TEXT_MARGIN = 2;
    constexpr int TOLERANCE = 2;
    TEXTMETRICA metrics = {};
    const HGDIOBJ oldFont = SelectObject(measure.hdc, GetStockObject(SYSTEM_FONT));
    GetTextMetricsA(measure.hdc, &metrics);
    SelectObject(measure.hdc, oldFont);
    const int border = (control.style & WS_BORDER) ? 2 * GetSystemMetrics(SM_CYBORDER) : 0;
    const int height = yPixels(measure, control.cy) - border;
    const int least = static_cast<int>(metrics.tmHeight) + 2 * TEXT_MARGIN;
    if (height < least || height > least + TOLERANCE)
        found(subject.check, "%s: %s is %d pixels high within its border instead of %d to %d",
              subject.row->name, controlName(subject, control).c_str(), height, least,
              least + TOLERANCE);
}

void checkFits(const Subject& subject, const Measure& measure)
{
    for (const Control& control : subject.dialog.controls) {
        checkOwnText(subject, measure, control);
        if (flagsOf(*subject.row, control) & CONTROL_BAR)
            checkBarHeight(subject, measure, control);
    }
    for (const FitRow& fit : FITS) {
        if (lstrcmpA(fit.templateName, subject.row->name) == 0)
            checkFit(subject, measure, fit);
    }
}

// Versions below 4 have no font of its own for captions.
HFONT makeCaptionFont()
{
    NONCLIENTMETRICSA metrics = {};
    metrics.cbSize = sizeof metrics;
    return SystemParametersInfoA(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0)
               ? CreateFontIndirectA(&metrics.lfCaptionFont)
               : nullptr;
}

void checkCaption(const Subject& subject, const Measure& measure)
{
    constexpr int TEXT_MARGIN = 4;
    const Dialog& dialog = subject.dialog;
    const int buttons = (dialog.style & (WS_MINIMIZEBOX | WS_MAXIMIZEBOX)) ? 3 : 1;
    const int icon = (dialog.style & DS_MODALFRAME) ? 0 : GetSystemMetrics(SM_CXSIZE);
    const int width =
        xPixels(measure, dialog.cx) - buttons * GetSystemMetrics(SM_CXSIZE) - icon - TEXT_MARGIN;
    HFONT font = makeCaptionFont();
    if (textWidth(measure, font ? font : GetStockObject(SYSTEM_FONT), dialog.caption) > width)
        found(subject.check, "%s: the caption \"%s\" doesn't fit the dialog", subject.row->name,
              dialog.caption.c_str());
    if (hasControlCharacters(dialog.caption, ""))
        found(subject.check, "%s: the caption has a line end or a tab", subject.row->name);
    if (font)
        DeleteObject(font);
}

// 800 by 600 pixels in dialog units of the usual font.
void checkOnScreen(const Subject& subject)
{
    const RECT screen = {0, 0, 800 * 4 / 6, 600 * 8 / 13};
    const Dialog& dialog = subject.dialog;
    if (dialog.x < screen.left || dialog.y < screen.top || dialog.x + dialog.cx > screen.right ||
        dialog.y + dialog.cy > screen.bottom)
        found(subject.check, "%s: the dialog lies outside a screen of 800 by 600 pixels",
              subject.row->name);
}

} // namespace

RECT rectOf(const Control& control)
{
    constexpr int CLOSED_COMBO = 13;
    const bool isCombo = control.className == "COMBOBOX" && control.cy > CLOSED_COMBO;
    return {control.x, control.y, control.x + control.cx,
            control.y + (isCombo ? CLOSED_COMBO : control.cy)};
}

namespace {

bool holds(const RECT& outer, const RECT& inner)
{
    return inner.left >= outer.left && inner.top >= outer.top && inner.right <= outer.right &&
           inner.bottom <= outer.bottom;
}

bool mayOverlap(const TemplateRow& row, WORD id1, WORD id2)
{
    for (const OverlapRow& allowed : OVERLAPS) {
        if (lstrcmpA(allowed.templateName, row.name) == 0 &&
            ((allowed.id1 == id1 && allowed.id2 == id2) ||
             (allowed.id1 == id2 && allowed.id2 == id1)))
            return true;
    }
    return false;
}

bool collide(const TemplateRow& row, const Control& a, const Control& b)
{
    const RECT rcA = rectOf(a);
    const RECT rcB = rectOf(b);
    RECT rcBoth;
    if (!IntersectRect(&rcBoth, &rcA, &rcB) || mayOverlap(row, a.id, b.id))
        return false;
    return !(isGroupBox(a) && holds(rcA, rcB)) && !(isGroupBox(b) && holds(rcB, rcA));
}

void checkPlaces(const Subject& subject)
{
    const Dialog& dialog = subject.dialog;
    const RECT rcDialog = {0, 0, dialog.cx, dialog.cy};
    for (size_t i = 0; i < dialog.controls.size(); i++) {
        const Control& control = dialog.controls[i];
        if (!holds(rcDialog, rectOf(control)))
            found(subject.check, "%s: %s lies outside the dialog", subject.row->name,
                  controlName(subject, control).c_str());
        for (size_t k = 0; k < i; k++) {
            if (collide(*subject.row, dialog.controls[k], control))
                found(subject.check, "%s: %s and %s overlap", subject.row->name,
                      controlName(subject, dialog.controls[k]).c_str(),
                      controlName(subject, control).c_str());
        }
    }
}

// How far a control lies to the side of a label or under it, on its row or in its column; far away
// anywhere else.
int distance(const RECT& label, const RECT& control)
{
    const LONG dx = std::max(control.left - label.right, label.left - control.right);
    const LONG dy = std::max(control.top - label.bottom, label.top - control.bottom);
    return dx > 0 && dy > 0 ? MAXLONG : static_cast<int>(std::max({dx, dy, 0L}));
}

// A label is nearest to the control that it belongs to by the order.
void checkLabelPlace(const Subject& subject, const Control& label, const Control& own)
{
    const int ownDistance = distance(rectOf(label), rectOf(own));
    for (const Control& other : subject.dialog.controls) {
        if (isLabelled(other) && (other.style & WS_VISIBLE) &&
            distance(rectOf(label), rectOf(other)) < ownDistance)
            found(subject.check, "%s: the label \"%s\" of %s lies beside %s", subject.row->name,
                  label.text.c_str(), controlName(subject, own).c_str(),
                  controlName(subject, other).c_str());
    }
}

void checkLabelPlaces(const Subject& subject)
{
    const std::vector<Control>& controls = subject.dialog.controls;
    for (size_t i = 0; i < controls.size(); i++) {
        const int label = isLabelled(controls[i]) ? labelOf(subject.dialog, i) : -1;
        const bool isShown = (controls[i].style & WS_VISIBLE) != 0;
        if (label >= 0 && isShown && !(flagsOf(*subject.row, controls[i]) & CONTROL_NOLABEL))
            checkLabelPlace(subject, controls[static_cast<size_t>(label)], controls[i]);
    }
}

bool fitsStrip(const Subject& subject, const Measure& measure, UINT idString, int width)
{
    const std::string text = readString(subject.check->module, idString, nullptr);
    return textWidth(measure, measure.stripFont, text) <= width;
}

void checkStripTexts(const Subject& subject, const Measure& measure)
{
    constexpr int TEXT_MARGIN = 3;
    const int width = 2 * (xPixels(measure, subject.dialog.cx) / 3) - TEXT_MARGIN;
    const auto check = [&](const auto& row) {
        if (!fitsStrip(subject, measure, row.id, width))
            found(subject.check, "%s doesn't fit the message strip",
                  stringName(*subject.check, row).c_str());
    };
    for (const StringRow& row : STRINGS) {
        if (row.flags & STRING_STRIP)
            check(row);
    }
    for (const CommandRow& row : COMMANDS)
        check(row);
}

// The library paints the strip along the bottom; its left box takes two thirds of the width
// and shows the texts with 3 pixels of room before them.
void checkStrip(const Subject& subject, const Measure& measure)
{
    constexpr int STRIP_EDGES = 12;
    TEXTMETRICA metrics = {};
    const HGDIOBJ oldFont = SelectObject(measure.hdc, measure.stripFont);
    GetTextMetricsA(measure.hdc, &metrics);
    SelectObject(measure.hdc, oldFont);
    const int top = yPixels(measure, subject.dialog.cy) - static_cast<int>(metrics.tmHeight) -
                    static_cast<int>(metrics.tmExternalLeading) - STRIP_EDGES;
    for (const Control& control : subject.dialog.controls) {
        if (yPixels(measure, rectOf(control).bottom) > top)
            found(subject.check, "%s: %s lies on the message strip", subject.row->name,
                  controlName(subject, control).c_str());
    }
    checkStripTexts(subject, measure);
}

} // namespace

void checkLook(const Subject& subject)
{
    if (subject.dialog.pointSize == 0) {
        found(subject.check, "%s: no font", subject.row->name);
        return;
    }
    const Measure measure = openMeasure(subject.dialog);
    checkFits(subject, measure);
    checkCaption(subject, measure);
    checkOnScreen(subject);
    checkPlaces(subject);
    checkLabelPlaces(subject);
    if (subject.row->flags & TEMPLATE_STRIP)
        checkStrip(subject, measure);
    closeMeasure(measure);
}

} // namespace langcheck
