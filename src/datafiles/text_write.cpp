// Writing plain text to an output.
#include <cstdio>

#include "core/output_file.h"
#include "qvlib60/datafiles.h"

namespace {

int writeText(const char* text, const char* ending, const char* output, int append) noexcept {
  if (!text || !output) return QV_INVALID_PARM;
  qv::OutputFile out(output, append != 0);
  if (!out.ok()) return QV_FILE_OPEN;
  std::fputs(text, out.stream());
  std::fputs(ending, out.stream());
  return out.finish() ? QV_OK : QV_FILE_WRITE;
}

}  // namespace

extern "C" {

int QVCALL qvTXTwrite(const char* text, const char* output, int append) noexcept {
  return writeText(text, "", output, append);
}

int QVCALL qvTXTwriteline(const char* text, const char* output, int append) noexcept {
  return writeText(text, "\n", output, append);
}

}  // extern "C"
