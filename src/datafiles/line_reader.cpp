#include "datafiles/line_reader.h"

#include <cstring>

namespace qv::datafiles {

namespace {

std::size_t withoutCarriageReturns(const char* text, std::size_t begin, std::size_t end) noexcept {
  while (end > begin && text[end - 1] == '\r') --end;
  return end;
}

}  // namespace

// Moves the rest of the block to its front and fills it up.
void LineReader::readOn() noexcept {
  char* bytes = block_.data();
  end_ -= next_;
  std::memmove(bytes, bytes + next_, end_);
  blockOffset_ += static_cast<std::int64_t>(next_);
  next_ = 0;

  const std::size_t wanted = block_.count() - end_;
  std::size_t got = file_.read(bytes + end_, wanted);
  atEnd_ = got < wanted;
  failed_ = atEnd_ && file_.failed();
  const void* mark =
      mark_ == EndOfFileMark::kEndsFile ? std::memchr(bytes + end_, kEndOfFileMark, got) : nullptr;
  if (mark) {
    got = static_cast<std::size_t>(static_cast<const char*>(mark) - (bytes + end_));
    atEnd_ = true;
  }
  end_ += got;
}

// Finds where the line that begins at next_ ends; of a line longer than the block, how much of it is
// certainly text. False at the end of the file.
bool LineReader::findLineEnd() noexcept {
  const char* bytes = block_.data();
  for (std::size_t searched = 0;;) {
    const std::size_t from = next_ + searched;
    if (const void* found = std::memchr(bytes + from, '\n', end_ - from)) {
      const auto newline = static_cast<std::size_t>(static_cast<const char*>(found) - bytes);
      newline_ = true;
      textEnd_ = withoutCarriageReturns(bytes, next_, newline);
      lineEnd_ = newline + 1;
      return true;
    }
    searched = end_ - next_;
    const bool full = searched == block_.count();
    if (atEnd_ || full) {
      newline_ = false;
      textEnd_ = withoutCarriageReturns(bytes, next_, end_);
      // Carriage returns that fill a whole block end no line that anyone wrote: they are text.
      if (full && textEnd_ - next_ < longest_) textEnd_ = end_;
      lineEnd_ = atEnd_ ? end_ : textEnd_;
      return textEnd_ > next_;
    }
    readOn();
  }
}

bool LineReader::next(Line& line) noexcept {
  if (!inLine_ && !findLineEnd()) return false;
  const std::size_t length = textEnd_ - next_;
  line.text = {block_.data() + next_, std::min(length, longest_)};
  line.endsWithNewline = newline_ && length < longest_;
  if (length < longest_) {
    next_ = lineEnd_;
    inLine_ = false;
  } else {
    next_ += longest_;
    // Without the newline in the block, a rest shorter than a piece may be continued in the file.
    inLine_ = newline_ || textEnd_ - next_ >= longest_;
  }
  return true;
}

int LineReader::skip(int count) noexcept {
  Line line;
  int skipped = 0;
  while (skipped < count && next(line)) ++skipped;
  return skipped;
}

void LineReader::seek(std::int64_t position) noexcept {
  inLine_ = false;
  if (position >= blockOffset_ && position <= blockOffset_ + static_cast<std::int64_t>(end_)) {
    next_ = static_cast<std::size_t>(position - blockOffset_);
    return;
  }
  next_ = end_ = 0;
  blockOffset_ = position;
  failed_ = !file_.seek(position);
  atEnd_ = failed_;
}

}  // namespace qv::datafiles
