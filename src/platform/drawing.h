// Drawing into a device context of the system, where it has such. Only the sources of this folder know which
// system it is.
#pragma once

#include <cstdint>

namespace qv::platform {

struct DevicePoint {
  double x, y;
};

// False where there are no device contexts: nothing below draws then.
bool hasDeviceContexts() noexcept;

// A device context while it is drawn into; what it was before is put back. Colours are 0xAARRGGBB; what is
// not opaque is mixed with the background. Everything answers false when the system refuses.
class Device {
 public:
  Device(void* context, std::uint32_t background) noexcept;
  ~Device();  // NOLINT(performance-trivially-destructible): where there are device contexts it is none
  Device(const Device&) = delete;
  Device& operator=(const Device&) = delete;
  bool ok() const noexcept { return saved_ != 0; }

  // dash: 0 solid, 1 dashed, 2 dotted
  bool polyline(const DevicePoint* points, int count, std::uint32_t colour, double width, int dash) noexcept;
  bool rectangle(double x, double y, double width, double height, std::uint32_t fill) noexcept;
  bool polygon(const DevicePoint* points, int count, std::uint32_t fill) noexcept;
  // UTF-8, from its left end on the base line.
  bool text(double x, double y, const char* text, const char* font, double size, bool bold,
            std::uint32_t colour) noexcept;
  bool extent(const char* text, const char* font, double size, bool bold, double* width) noexcept;
  bool clip(double x, double y, double width, double height) noexcept;

 private:
  std::uint32_t mixed(std::uint32_t colour) const noexcept;

  void* context_;
  std::uint32_t background_;
  int saved_ = 0;
};

}  // namespace qv::platform
