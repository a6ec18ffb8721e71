// Whole-file input and buffered output, plain or gzip-compressed.
#pragma once
#include <string>
#include <string_view>

namespace zorvan {

// The contents of a file; gzip-compressed files are uncompressed whatever
// their name. Throws Error(ZRVS_ERR_FILE) naming the file when it cannot
// be read.
std::string read_whole_file(const std::string &path, const char *who);

// Writes a file through a buffer, gzip-compressed when asked. The file is
// created by the constructor; close() reports write errors. A writer that
// is destroyed without close() (an error path) removes the partial file.
class FileWriter {
 public:
  FileWriter(const std::string &path, bool gzip, const char *who);
  ~FileWriter();
  FileWriter(const FileWriter &) = delete;
  FileWriter &operator=(const FileWriter &) = delete;

  FileWriter &operator<<(std::string_view text) {
    buffer_.append(text.data(), text.size());
    if (buffer_.size() >= kFlushSize) flush();
    return *this;
  }
  FileWriter &operator<<(char c) {
    buffer_.push_back(c);
    return *this;
  }
  void close();

 private:
  static constexpr size_t kFlushSize = 1 << 20;
  void flush();
  [[noreturn]] void write_failed();

  std::string path_;
  const char *who_;
  bool gzip_;
  void *handle_ = nullptr;  // FILE* or gzFile
  std::string buffer_;
};

}  // namespace zorvan
