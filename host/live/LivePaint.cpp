#include "host/live/LivePaint.h"

#include "host/live/Gdi.h"
#include "host/live/LiveKeys.h"

#include <algorithm>

namespace host {

namespace {

constexpr COLORREF kClean = RGB(72, 152, 88);
constexpr COLORREF kInterlaced = RGB(208, 112, 32);
constexpr COLORREF kThreshold = RGB(176, 16, 32);
constexpr COLORREF kRegion = RGB(255, 224, 0);
constexpr COLORREF kBlack = RGB(0, 0, 0);
constexpr COLORREF kWhite = RGB(255, 255, 255);
constexpr COLORREF kGrey = RGB(128, 128, 128);
constexpr const wchar_t* kLabels[] = {L"before", L"after"};
constexpr const wchar_t* kCaptions[] = {L"frame", L"combs"};
constexpr wchar_t kHint[] = L"F1: keys";

RECT RectOf(const Box& box) {
    return {box.x, box.y, box.x + box.width, box.y + box.height};
}

void Fill(HDC dc, const Box& box, COLORREF color) {
    const RECT area = RectOf(box);
    const CGdiObject brush(CreateSolidBrush(color));
    FillRect(dc, &area, static_cast<HBRUSH>(brush.Get()));
}

void Frame(HDC dc, const Box& box, COLORREF color) {
    const RECT area = RectOf(box);
    const CGdiObject brush(CreateSolidBrush(color));
    FrameRect(dc, &area, static_cast<HBRUSH>(brush.Get()));
}

Box Grown(const Box& box, int by) {
    return {box.x - by, box.y - by, box.width + 2 * by, box.height + 2 * by};
}

void Text(HDC dc, const Box& box, const std::wstring& text, UINT how = DT_LEFT) {
    RECT area = RectOf(box);
    DrawTextW(dc, text.c_str(), static_cast<int>(text.size()), &area,
              how | DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX | DT_END_ELLIPSIS);
}

// Clips to a box for as long as it lives.
class CClipped {
public:
    CClipped(HDC dc, const Box& box)
        : m_dc(dc)
        , m_saved(SaveDC(dc)) {
        IntersectClipRect(dc, box.x, box.y, box.x + box.width, box.y + box.height);
    }
    CClipped(const CClipped&) = delete;
    CClipped& operator=(const CClipped&) = delete;
    ~CClipped() { RestoreDC(m_dc, m_saved); }

private:
    HDC m_dc;
    int m_saved;
};

void PaintPicture(HDC dc, const View& view, const PictureShape& shape, const std::uint8_t* pixels) {
    BITMAPINFO format{};
    format.bmiHeader.biSize = sizeof format.bmiHeader;
    format.bmiHeader.biWidth = shape.width;
    format.bmiHeader.biHeight = shape.height;
    format.bmiHeader.biPlanes = 1;
    format.bmiHeader.biBitCount = 24;
    const Box& to = view.shown;
    const Box& from = view.source;
    const bool smaller = to.width < from.width || to.height < from.height;
    SetStretchBltMode(dc, smaller ? HALFTONE : COLORONCOLOR); // rows left out would hide the combs, or show false ones
    SetBrushOrgEx(dc, 0, 0, nullptr);
    StretchDIBits(dc, to.x, to.y, to.width, to.height, from.x, shape.height - from.y - from.height, from.width,
                  from.height, pixels, &format, DIB_RGB_COLORS, SRCCOPY);
}

// Its line, and what can be taken hold of at the corners and the middles of the edges.
void PaintRegion(HDC dc, const View& view, const Area& area, int line) {
    const int left = view.WindowX(area.left);
    const int top = view.WindowY(area.top);
    const Box box{left, top, view.WindowX(area.right) - left, view.WindowY(area.bottom) - top};
    Frame(dc, Grown(box, 1), kBlack);
    Frame(dc, box, kRegion);
    const int half = std::max(line / 5, 2);
    for (int i = 0; i < 9; ++i) {
        const Box grip{box.x + box.width * (i % 3) / 2 - half, box.y + box.height * (i / 3) / 2 - half, 2 * half + 1,
                       2 * half + 1};
        if (i != 4) {
            Fill(dc, grip, kBlack);
            Fill(dc, Grown(grip, -1), kRegion);
        }
    }
}

// The part of a picture that is seen: split, each has its side of the divider.
Box PartOf(const CLiveModel& model, int picture) {
    Box part = model.ViewOf(picture).shown;
    if (model.IsSplit()) {
        const int at = model.DividerX() - part.x;
        part = picture == 0 ? Box{part.x, part.y, at, part.height}
                            : Box{part.x + at, part.y, part.width - at, part.height};
    }
    return part;
}

void PaintPictures(HDC dc, int line, const CLiveModel& model, const LiveScene& scene) {
    for (int i = 0; i < 2; ++i) {
        const View view = model.ViewOf(i);
        if (view.IsEmpty() || !scene.pictures[i]) {
            continue;
        }
        const CClipped clipped(dc, PartOf(model, i));
        PaintPicture(dc, view, scene.shape, scene.pictures[i]);
    }
    const View view = model.ViewOf(0);
    if (model.Region().enabled && !view.IsEmpty()) {
        const CClipped clipped(dc, model.IsSplit() ? view.shown : PartOf(model, 0));
        PaintRegion(dc, view, model.Region().area, line);
    }
    if (model.IsSplit()) {
        Fill(dc, {model.DividerX() - 2, view.shown.y, 4, view.shown.height}, kBlack);
        Fill(dc, {model.DividerX() - 1, view.shown.y, 2, view.shown.height}, kWhite);
    }
}

void PaintLabels(HDC dc, const CLiveModel& model) {
    const std::wstring zoom = model.Zoom() == 0 ? L"" : L"    " + std::to_wstring(model.Zoom()) + L":1";
    for (int i = 0; i < 2; ++i) {
        Box label = model.Layout().label[i];
        if (!model.IsSplit()) {
            label.x = model.ViewOf(i).shown.x;
        }
        Text(dc, label, kLabels[i] + zoom, model.IsSplit() && i == 1 ? DT_RIGHT : DT_LEFT);
        Text(dc, model.Layout().caption[i], kCaptions[i]);
    }
}

void PaintSlider(HDC dc, const CLiveModel& model) {
    const Box& box = model.Layout().slider;
    const CPlayback& playback = model.Playback();
    const std::uint64_t frames = model.SliderFrames();
    const int thick = std::max(box.height / 3, 3);
    const Box track{box.x, box.y + (box.height - thick) / 2, box.width, thick};
    Fill(dc, track, kWhite);
    if (playback.IsLooping()) {
        const int from = PlaceOfFrame(playback.In(), frames, box.width);
        const int to = PlaceOfFrame(playback.Out().value_or(frames), frames, box.width);
        Fill(dc, {box.x + from, track.y, std::max(to - from, 1), thick}, GetSysColor(COLOR_HIGHLIGHT));
    }
    Frame(dc, track, kGrey);
    const int width = std::max(box.height / 2, 5);
    const int at = PlaceOfFrame(std::min(playback.Position(), frames), frames, box.width - width);
    const Box thumb{box.x + at, box.y, width, box.height};
    Fill(dc, thumb, GetSysColor(COLOR_BTNFACE));
    Frame(dc, thumb, kBlack);
}

void PaintScale(HDC dc, const Box& bar, const Box& scale) {
    const int wide = 4 * bar.height;
    for (const ScaleMark& mark : ScaleMarks()) {
        const int x = bar.x + static_cast<int>(PlaceOnScale(mark.sensitivity) * (bar.width - 1));
        Fill(dc, {x, bar.y + bar.height, 1, std::max(bar.height / 4, 2)}, kGrey);
        Text(dc, {x - wide / 2, scale.y + bar.height / 5, wide, scale.height}, mark.text, DT_CENTER);
    }
}

// The combs fill the bar up to their count, coloured by the verdict; the threshold stands across it.
void PaintBar(HDC dc, const LiveLayout& layout, const LiveFrame& frame) {
    const Box& bar = layout.bar;
    const auto widthAt = [&bar](double place) { return static_cast<int>(place * (bar.width - 1)); };
    Fill(dc, bar, kWhite);
    Fill(dc, {bar.x, bar.y, widthAt(PlaceOfCount(frame.combs)), bar.height}, frame.interlaced ? kInterlaced : kClean);
    Frame(dc, bar, kGrey);
    PaintScale(dc, bar, layout.scale);
    const int at = bar.x + widthAt(PlaceOnScale(frame.combs.sensitivity));
    const int over = std::max(bar.height / 5, 2);
    Fill(dc, {at - 1, bar.y - over, 3, bar.height + 2 * over}, kThreshold);
}

void PaintStatus(HDC dc, int line, const LiveLayout& layout, const LiveScene& scene) {
    const int hint = 6 * line;
    const Box& first = layout.status[0];
    Text(dc, {first.x, first.y, std::max(first.width - hint, 0), first.height}, scene.status[0]);
    Text(dc, {first.x + first.width - hint, first.y, hint, first.height}, kHint, DT_RIGHT);
    Text(dc, layout.status[1], scene.status[1]);
}

void PaintKeys(HDC dc, const RECT& area, int line) {
    const auto rows = static_cast<int>(KeyHelps().size());
    const int row = line + line / 4;
    const int width = 36 * line;
    const int height = rows * row + 2 * line;
    const Box panel{(static_cast<int>(area.right) - width) / 2,
                    std::max((static_cast<int>(area.bottom) - height) / 2, 0), width, height};
    Fill(dc, panel, GetSysColor(COLOR_INFOBK));
    Frame(dc, panel, kBlack);
    SetTextColor(dc, GetSysColor(COLOR_INFOTEXT));
    int y = panel.y + line;
    for (const KeyHelp& help : KeyHelps()) {
        Text(dc, {panel.x + line, y, 12 * line, row}, help.keys);
        Text(dc, {panel.x + 13 * line, y, 22 * line, row}, help.what);
        y += row;
    }
}

} // namespace

void PaintLive(HDC dc, const RECT& area, int line, const CLiveModel& model, const LiveScene& scene) {
    FillRect(dc, &area, GetSysColorBrush(COLOR_BTNFACE));
    SetBkMode(dc, TRANSPARENT);
    SetTextColor(dc, GetSysColor(COLOR_BTNTEXT));
    PaintLabels(dc, model);
    PaintPictures(dc, line, model, scene);
    PaintSlider(dc, model);
    PaintBar(dc, model.Layout(), scene.frame);
    PaintStatus(dc, line, model.Layout(), scene);
    if (model.ShowsKeys()) {
        PaintKeys(dc, area, line);
    }
}

} // namespace host
