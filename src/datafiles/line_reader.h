// Lines of a text file, read in large blocks.
//
// A line longer than the reader's limit comes in pieces, each of them a line of its own, and its
// newline counts as a character: after a piece that fills the limit exactly, the newline comes as an
// empty line. Carriage returns at the end of a line are dropped on every system, and the end-of-file
// mark of old disks (character 26) ends the file unless the reader takes it for a character.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "core/memory.h"
#include "datafiles/paths.h"

namespace qv::datafiles {

// The longest lines, newline included.
inline constexpr std::size_t kDataLine = 254;
inline constexpr std::size_t kLayoutLine = 79;

inline constexpr char kEndOfFileMark = 26;
enum class EndOfFileMark { kEndsFile, kIsCharacter };

struct Line {
  std::string_view text;         // without the newline; valid until the next call
  bool endsWithNewline = false;  // not so: a piece of a longer line, or the last line of the file

  // Nothing but its newline. Such lines are no records; a line of blanks is one.
  bool isEmpty() const noexcept { return text.empty(); }
};

class LineReader {
 public:
  // Test ok() after construction: not so when the memory is exhausted.
  LineReader(InputFile& file, std::size_t longestLine, EndOfFileMark mark = EndOfFileMark::kEndsFile) noexcept
      : file_(file), longest_(longestLine), mark_(mark), block_(kBlockSize) {}

  bool ok() const noexcept { return block_.ok(); }
  // False at the end of the file and when it cannot be read on, which failed() tells.
  bool next(Line& line) noexcept;
  // Reads over up to `count` lines; the number there was.
  int skip(int count) noexcept;
  bool failed() const noexcept { return failed_; }

  // Where the next line begins, and returning there.
  std::int64_t position() const noexcept { return blockOffset_ + static_cast<std::int64_t>(next_); }
  void seek(std::int64_t position) noexcept;

 private:
  static constexpr std::size_t kBlockSize = std::size_t{1} << 17;

  bool findLineEnd() noexcept;
  void readOn() noexcept;

  InputFile& file_;
  const std::size_t longest_;
  const EndOfFileMark mark_;
  memory::Buffer<char> block_;
  std::int64_t blockOffset_ = 0;  // of the block's first byte in the file
  std::size_t next_ = 0;          // the part of the block not yet handed out: next_ .. end_
  std::size_t end_ = 0;
  bool atEnd_ = false;  // nothing follows the block
  bool failed_ = false;

  // The current line, as far as it is not yet handed out.
  bool inLine_ = false;
  bool newline_ = false;  // found in the block
  std::size_t textEnd_ = 0;
  std::size_t lineEnd_ = 0;
};

}  // namespace qv::datafiles
