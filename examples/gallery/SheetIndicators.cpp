// Title bars and progress bars with gradations, a slider, a knob and a spinner drawn with arcs, and a
// chart drawn with the curve members on a surface of its own.
#include <cmath>
#include <string>

#include "Controls.h"
#include "Sheets.h"
#include "ulogui/Palette.h"

namespace gallery {

namespace {

constexpr CLR kBlack(0, 0, 0);
constexpr CLR kWhite(255, 255, 255);
constexpr float kTurn = 6.2831855f;
const ULORect kNoClip(0, 0, 0, 0);

ULOString Percent(const Painter& p, int value) {
    ULOString text = p.Text("percent");
    const size_t at = text.find(L"{}");
    if (at != ULOString::npos) {
        text.replace(at, 2, ULOString::FromUtf8(std::to_string(value)));
    }
    return text;
}

void PaintTitleBar(Painter& p, const ULORect& r, bool active) {
    const CLR& top = active ? CLR_ACTIVE_FRAME : CLR_INACTIVE_CAPTION;
    const CLR& bottom = active ? CLR_ACTIVE_CAPTION : CLR_GRADATION_BOTTOM_RIGHT;
    p.dc.FillRectVerticalGradation(&r, &r, top, bottom, 1.0f, 1.0f);
    const ULORect gloss(r.left, r.top, r.right, (r.top + r.bottom) / 2);
    p.dc.FillRectVerticalGradation(&gloss, &gloss, kWhite, kWhite, 0.25f, 0.05f);
    p.dc.DrawPicture(p.Pictures().icons[kIconNew], ULOPoint(r.left + 5, (r.top + r.bottom - 16) / 2),
                     active ? ulogui::eCopyNormal : ulogui::eCopyDarken, 1.0f);
    p.Label(FontRole::Bold, ULORect(r.left + 28, r.top, r.right - 40, r.bottom),
            p.Text(active ? "title.active" : "title.inactive"),
            active ? CLR_ACTIVE_CAPTION_TITLE : CLR_INACTIVE_CAPTION_TITLE);
    const ULORect close(r.right - 30, r.top + 3, r.right - 4, r.bottom - 3);
    if (active) {
        p.dc.FillRectVerticalGradation(&close, &close, CLR(220, 90, 70), CLR(160, 30, 20), 1.0f, 1.0f);
    }
    p.dc.DrawRectAlpha(close, kBlack, 0.4f);
    p.dc.DrawPicture(p.Pictures().close,
                     ULOPoint(close.left + 7, close.top + (close.bottom - close.top - 12) / 2),
                     active ? ulogui::eCopyNormal : ulogui::eCopyDisabled, 1.0f);
    p.dc.Draw3DRect(r, true);
}

void PaintProgress(Painter& p, const ULORect& r, int percent, bool striped) {
    p.dc.FillRect(&r, CLR_GRADATION_LIST_LEFT, 0);
    const ULORect done(r.left + 2, r.top + 2, r.left + 2 + (r.right - r.left - 4) * percent / 100,
                       r.bottom - 2);
    p.dc.FillRectHorizontalGradation(&r, &done, CLR_ACTIVE_FRAME, CLR::Lerp(CLR_ACTIVE_FRAME, kWhite, 0.45f),
                                     0.0f, 0.0f);
    p.dc.FillRectVerticalGradation(&done, &done, kWhite, kWhite, 0.3f, 0.0f);
    if (striped) {
        p.dc.FillRectWithTexture(p.Pictures().stripes, done, ULOPoint(done.left, done.top), 0.25f);
    }
    p.dc.DrawRecessedFrame(r);
}

void PaintSlider(Painter& p, const ULORect& r, int percent) {
    const int y = r.top + 10;
    const ULORect track(r.left + 6, y, r.right - 6, y + 4);
    p.dc.FillRect(&track, CLR_GRADATION_LIST_LEFT, 0);
    const int x = track.left + (track.right - track.left) * percent / 100;
    const ULORect filled(track.left, track.top, x, track.bottom);
    p.dc.FillRectVerticalGradation(&filled, &filled, CLR::Lerp(CLR_ACTIVE_FRAME, kWhite, 0.4f),
                                   CLR_ACTIVE_FRAME, 1.0f, 1.0f);
    p.dc.DrawRecessedFrame(ULORect(track.left - 1, track.top - 1, track.right + 1, track.bottom + 1));
    for (int k = 0; k <= 10; ++k) {
        const int tx = track.left + (track.right - track.left) * k / 10;
        p.dc.DrawVerticalLineAlpha(ULOPoint(tx, y + 14), k % 5 ? 4 : 7, kWhite, 0.6f);
    }
    p.dc.DrawPicture(p.Pictures().thumb, ULOPoint(x - 6, y - 6), ulogui::eCopyHighlight, 1.0f);
    PaintCaption(p, ULORect(r.left, y + 22, r.right, y + 38), Percent(p, percent));
}

ULOPoint OnCircle(ULOPoint centre, float radius, float angle) {
    return ULOPoint(centre.x + static_cast<int>(std::lround(radius * std::cos(angle))),
                    centre.y + static_cast<int>(std::lround(radius * std::sin(angle))));
}

// A gauge: a track over the upper half turn, the value along it, ticks and a needle. Arcs never
// include their segments next to angle 0 (the +x axis), so the track ends there rather than
// crossing it.
void PaintGauge(Painter& p, ULOPoint centre, int percent) {
    using DC = ULOTrueColorDCBase;
    const float half = kTurn / 2.0f;
    const float value = half * percent / 100.0f;
    p.dc.DrawArc(CLR(50, 50, 55), kNoClip, centre, 34.0f, half, half, 7.0f, DC::eRadiusIsMiddle, true);
    p.dc.DrawArc(CLR::Lerp(CLR_ACTIVE_FRAME, kWhite, 0.3f), kNoClip, centre, 34.0f, half, value, 7.0f,
                 DC::eRadiusIsMiddle, true);
    for (int k = 0; k <= 10; ++k) {
        const float angle = half + half * k / 10.0f;
        p.dc.DrawLineAlpha(OnCircle(centre, k % 5 ? 25.0f : 22.0f, angle), OnCircle(centre, 28.0f, angle),
                           kWhite, 0.7f);
    }
    p.dc.DrawLineAlpha(centre, OnCircle(centre, 27.0f, half + value), CLR(255, 120, 80), 1.0f);
    p.dc.DrawLineAlpha(ULOPoint(centre.x, centre.y + 1),
                       OnCircle(ULOPoint(centre.x, centre.y + 1), 27.0f, half + value), CLR(255, 120, 80),
                       0.6f);
    const ULOPoint hub(centre.x - 6, centre.y - 6);
    p.dc.DrawMask(p.Pictures().radio[kRadioDisc], CLR(200, 200, 205), hub,
                  ULORect(hub.x, hub.y, hub.x + 13, hub.y + 13), 1.0f);
}

// A busy spinner: eight segments fading behind the leading one (each starting past the +x axis).
void PaintSpinner(Painter& p, ULOPoint centre) {
    for (int k = 0; k < 8; ++k) {
        const CLR colour = CLR::Lerp(CLR_GRADATION_TOP_LEFT, kWhite, (k + 1) / 8.0f);
        p.dc.DrawArc(colour, kNoClip, centre, 18.0f, (k + 0.25f) * kTurn / 8.0f, kTurn / 12.0f, 6.0f,
                     ULOTrueColorDCBase::eRadiusIsMiddle, true);
    }
}

// The chart is drawn on a surface of its own size and put on the sheet with BlitToTrueColor, as a
// host paints a control apart and then puts it in its window.
void PaintChart(Painter& p, const ULORect& r) {
    const int w = r.right - r.left, h = r.bottom - r.top, base = h / 2;
    ULOTrueColorDCBase chart(ULORect(0, 0, w, h), false, true);
    const ULORect all(0, 0, w, h);
    chart.FillRectVerticalGradation(&all, &all, CLR(30, 34, 44), CLR(18, 20, 26), 1.0f, 1.0f);
    for (int y = h / 8; y < h; y += h / 4) {
        chart.DrawHorizontalLineRelative(ULOPoint(0, y), w, CLR(25, 25, 25), 2, 3);
    }
    ULOArray_NOSTL<double> values(static_cast<size_t>(w));
    for (int i = 0; i < w; ++i) {
        values[static_cast<size_t>(i)] =
            base - h * (0.28 * std::sin(i * 0.045) + 0.14 * std::sin(i * 0.17 + 1.0));
    }
    chart.FillBackGroundfX(w, values, ULOPoint(0, base), CLR(60, 140, 220), CLR(220, 90, 60),
                           CLR(200, 200, 200), 0.55f);
    chart.TraceCurvefX(w, values, CLR(235, 240, 255), 1.0f);
    chart.DrawRect(all, CLR(90, 90, 100));
    chart.BlitToTrueColor(&p.dc, &r, nullptr, ulogui::eCopyNormal);
}

}  // namespace

void PaintIndicatorsSheet(Painter& p, const ULORect& sheet) {
    PaintTitleBar(p, ULORect(12, 40, sheet.right - 12, 66), true);
    PaintTitleBar(p, ULORect(12, 72, sheet.right - 12, 98), false);

    PaintHeading(p, ULORect(12, 108, 250, 128), p.Text("progress.heading"));
    PaintCaption(p, ULORect(12, 132, 200, 148), p.Text("progress.label"), 0);
    PaintCaption(p, ULORect(200, 132, 250, 148), Percent(p, 64), kTextRight);
    PaintProgress(p, ULORect(12, 150, 250, 166), 64, true);
    PaintProgress(p, ULORect(12, 174, 250, 190), 30, false);

    PaintHeading(p, ULORect(12, 200, 250, 220), p.Text("slider.heading"));
    PaintSlider(p, ULORect(12, 226, 250, 270), 70);

    PaintHeading(p, ULORect(270, 108, 380, 128), p.Text("knob.heading"));
    PaintGauge(p, ULOPoint(325, 178), 70);
    PaintCaption(p, ULORect(270, 188, 380, 204), Percent(p, 70));
    PaintHeading(p, ULORect(398, 108, 508, 128), p.Text("spinner.heading"));
    PaintSpinner(p, ULOPoint(453, 168));

    PaintHeading(p, ULORect(270, 222, 508, 242), p.Text("chart.heading"));
    PaintChart(p, ULORect(270, 248, 508, 318));
}

}  // namespace gallery
