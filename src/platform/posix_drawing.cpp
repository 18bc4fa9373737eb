// POSIX systems have no device contexts.
#include "platform/drawing.h"

namespace qv::platform {

bool hasDeviceContexts() noexcept {
  return false;
}

Device::Device(void* context, std::uint32_t background) noexcept
    : context_(context), background_(background) {}
Device::~Device() = default;

bool Device::polyline(const DevicePoint*, int, std::uint32_t, double, int) noexcept {
  return false;
}
bool Device::rectangle(double, double, double, double, std::uint32_t) noexcept {
  return false;
}
bool Device::polygon(const DevicePoint*, int, std::uint32_t) noexcept {
  return false;
}
bool Device::text(double, double, const char*, const char*, double, bool, std::uint32_t) noexcept {
  return false;
}
bool Device::extent(const char*, const char*, double, bool, double*) noexcept {
  return false;
}
bool Device::clip(double, double, double, double) noexcept {
  return false;
}

}  // namespace qv::platform
