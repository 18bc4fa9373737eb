// Windows: GDI.
#include <windows.h>

#include <algorithm>
#include <cmath>

#include "platform/drawing.h"

namespace qv::platform {

namespace {

// An object that is selected while it is used, and deleted behind that.
class Selected {
 public:
  Selected(HDC dc, HGDIOBJ object, bool own = true) noexcept
      : dc_(dc), object_(object), own_(own), before_(object ? SelectObject(dc, object) : nullptr) {}
  ~Selected() {
    if (before_) SelectObject(dc_, before_);
    if (object_ && own_) DeleteObject(object_);
  }
  Selected(const Selected&) = delete;
  Selected& operator=(const Selected&) = delete;
  bool ok() const noexcept { return before_ != nullptr; }

 private:
  HDC dc_;
  HGDIOBJ object_;
  bool own_;
  HGDIOBJ before_;
};

COLORREF colourRef(std::uint32_t colour) noexcept {
  return RGB((colour >> 16) & 255u, (colour >> 8) & 255u, colour & 255u);
}

int pixel(double v) noexcept {
  constexpr double kFar = 1e7;
  return static_cast<int>(std::floor(std::clamp(v, -kFar, kFar) + 0.5));
}
// A line's coordinate: the pixel that it runs through.
int cell(double v) noexcept {
  return pixel(std::floor(v));
}

HFONT fontOf(double size, bool bold) noexcept {
  return CreateFontW(-std::max(pixel(size), 1), 0, 0, 0, bold ? FW_BOLD : FW_NORMAL, FALSE, FALSE, FALSE,
                     DEFAULT_CHARSET, OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS, CLEARTYPE_QUALITY,
                     VARIABLE_PITCH | FF_SWISS, L"Arial");
}

constexpr int kLongestText = 512;
int wide(const char* text, wchar_t (&out)[kLongestText]) noexcept {
  return std::max(0, MultiByteToWideChar(CP_UTF8, 0, text, -1, out, kLongestText) - 1);
}

constexpr int kPiece = 1024;

}  // namespace

bool hasDeviceContexts() noexcept {
  return true;
}

Device::Device(void* context, std::uint32_t background) noexcept
    : context_(context), background_(background) {
  saved_ = context ? SaveDC(static_cast<HDC>(context)) : 0;
  if (saved_ == 0) return;
  SetBkMode(static_cast<HDC>(context), TRANSPARENT);
  SetTextAlign(static_cast<HDC>(context), TA_LEFT | TA_BASELINE);
  SetPolyFillMode(static_cast<HDC>(context), WINDING);
}

Device::~Device() {
  if (saved_) RestoreDC(static_cast<HDC>(context_), saved_);
}

std::uint32_t Device::mixed(std::uint32_t colour) const noexcept {
  const std::uint32_t alpha = colour >> 24;
  std::uint32_t out = 0;
  for (const int shift : {0, 8, 16}) {
    const std::uint32_t part =
        ((colour >> shift) & 255u) * alpha + ((background_ >> shift) & 255u) * (255u - alpha);
    out |= part / 255u << shift;
  }
  return out;
}

// In pieces: old systems draw long lines wrongly.
bool Device::polyline(const DevicePoint* points, int count, std::uint32_t colour, double width,
                      int dash) noexcept {
  const HDC dc = static_cast<HDC>(context_);
  LOGBRUSH brush = {BS_SOLID, colourRef(mixed(colour)), 0};
  const DWORD style = dash == 1 ? PS_DASH : dash == 2 ? PS_DOT : PS_SOLID;
  const DWORD pen = PS_GEOMETRIC | PS_ENDCAP_FLAT | PS_JOIN_ROUND | style;
  const Selected selected(
      dc, ExtCreatePen(pen, static_cast<DWORD>(std::max(pixel(width), 1)), &brush, 0, nullptr));
  if (!selected.ok()) return false;
  POINT piece[kPiece];
  for (int from = 0; from + 1 < count; from += kPiece - 1) {
    const int n = std::min(kPiece, count - from);
    for (int i = 0; i < n; ++i) piece[i] = {cell(points[from + i].x), cell(points[from + i].y)};
    if (!Polyline(dc, piece, n)) return false;
  }
  return true;
}

bool Device::rectangle(double x, double y, double width, double height, std::uint32_t fill) noexcept {
  const HDC dc = static_cast<HDC>(context_);
  const RECT rect = {pixel(x), pixel(y), std::max(pixel(x + width), pixel(x) + 1),
                     std::max(pixel(y + height), pixel(y) + 1)};
  const HBRUSH brush = CreateSolidBrush(colourRef(mixed(fill)));
  if (!brush) return false;
  const bool done = FillRect(dc, &rect, brush) != 0;
  DeleteObject(brush);
  return done;
}

bool Device::polygon(const DevicePoint* points, int count, std::uint32_t fill) noexcept {
  const HDC dc = static_cast<HDC>(context_);
  const Selected brush(dc, CreateSolidBrush(colourRef(mixed(fill)))),
      pen(dc, GetStockObject(NULL_PEN), false);
  if (!brush.ok() || !BeginPath(dc)) return false;
  bool done = MoveToEx(dc, pixel(points[0].x), pixel(points[0].y), nullptr) != 0;
  for (int i = 1; i < count && done; ++i) done = LineTo(dc, pixel(points[i].x), pixel(points[i].y)) != 0;
  return CloseFigure(dc) && EndPath(dc) && FillPath(dc) && done;
}

bool Device::text(double x, double y, const char* text, const char*, double size, bool bold,
                  std::uint32_t colour) noexcept {
  const HDC dc = static_cast<HDC>(context_);
  const Selected font(dc, fontOf(size, bold));
  wchar_t characters[kLongestText];
  const int length = wide(text, characters);
  if (!font.ok()) return false;
  SetTextColor(dc, colourRef(mixed(colour)));
  return TextOutW(dc, pixel(x), pixel(y), characters, length) != 0;
}

bool Device::extent(const char* text, const char*, double size, bool bold, double* width) noexcept {
  const HDC dc = static_cast<HDC>(context_);
  const Selected font(dc, fontOf(size, bold));
  wchar_t characters[kLongestText];
  const int length = wide(text, characters);
  SIZE measured = {};
  if (!font.ok() || !GetTextExtentPoint32W(dc, characters, length, &measured)) return false;
  *width = measured.cx;
  return true;
}

bool Device::clip(double x, double y, double width, double height) noexcept {
  const HDC dc = static_cast<HDC>(context_);
  const HRGN region = CreateRectRgn(pixel(x), pixel(y), pixel(x + width) + 1, pixel(y + height) + 1);
  if (!region) return false;
  const bool done = SelectClipRgn(dc, region) != ERROR;
  DeleteObject(region);
  return done;
}

}  // namespace qv::platform
