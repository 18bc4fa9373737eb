// The text output of a report, listing or chart, opened by the name that the caller gave.
#pragma once

#include <cstdio>
#include <utility>

#include "core/text.h"

namespace qv {

// What the name "STDOUT" (in any case) means: standard output, or a file of that name like any
// other.
enum class StdoutName { kStandardOutput, kFile };

// Opens for appending or truncates. Closed by finish() or at the end of its life; standard output is
// flushed instead and stays open. Test ok() after construction: a file that cannot be opened is -2.
class OutputFile {
 public:
  OutputFile(const char* name, bool append, StdoutName rule = StdoutName::kStandardOutput) noexcept {
    isStdout_ = rule == StdoutName::kStandardOutput && compareNoCase(name, "STDOUT") == 0;
    stream_ = isStdout_ ? stdout : std::fopen(name, append ? "at" : "wt");
  }
  ~OutputFile() {
    if (stream_) finish();
  }
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;

  bool ok() const noexcept { return stream_ != nullptr; }
  std::FILE* stream() const noexcept { return stream_; }

  // Writes out what is buffered and closes; false when some of the text could not be written.
  bool finish() noexcept {
    std::FILE* stream = std::exchange(stream_, nullptr);
    const bool failed = std::ferror(stream) != 0;
    const int status = isStdout_ ? std::fflush(stream) : std::fclose(stream);
    return status == 0 && !failed;
  }

 private:
  std::FILE* stream_ = nullptr;
  bool isStdout_ = false;
};

}  // namespace qv
