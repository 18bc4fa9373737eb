// Error texts and the message box.
#include <cstdio>
#include <cstring>

#include "platform/platform.h"
#include "qvlib60/core.h"

namespace {

// The first text is spelt so on purpose: callers compare with it.
constexpr const char* kTexts[] = {
    "Sucessfull", "Invalid Parm", "File Open",      "Malloc",           "File Read", "File Write",
    "File Seek",  "File Exists",  "File Not Found", "Record Not Found", "Unknown",
};

const char* textOf(int code) noexcept {
  return kTexts[code > 0 || code < QV_UNKNOWN ? -QV_UNKNOWN : -code];
}

}  // namespace

extern "C" {

int QVCALL qvErrDesc(int code, char* buf) noexcept {
  if (!buf) return QV_INVALID_PARM;
  const char* text = textOf(code);
  const std::size_t length = std::strlen(text);
  std::memcpy(buf, text, length + 1);
  return static_cast<int>(length);
}

int QVCALL qvErrMessageBox(int code, const char* text) noexcept {
  char message[1024];
  std::snprintf(message, sizeof message, "%s %s", textOf(code), text ? text : "");
  return qv::platform::errorBox("Error", message);
}

}  // extern "C"
