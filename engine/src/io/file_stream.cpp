// File input and output through zlib (which reads plain files unchanged).
#include "io/file_stream.h"

#include <zlib.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "core/errors.h"
#include "zorvan/zrvs.h"

namespace zorvan {

namespace {
std::string system_reason() { return errno ? std::strerror(errno) : "unknown reason"; }
}  // namespace

std::string read_whole_file(const std::string &path, const char *who) {
  errno = 0;
  gzFile in = gzopen(path.c_str(), "rb");
  if (!in) fail(ZRVS_ERR_FILE, "%s: cannot open '%s': %s", who, path.c_str(), system_reason().c_str());
  std::string text;
  char chunk[1 << 16];
  for (;;) {
    int n = gzread(in, chunk, sizeof chunk);
    if (n < 0) {
      int code = 0;
      std::string reason = gzerror(in, &code);
      gzclose(in);
      fail(ZRVS_ERR_FILE, "%s: cannot read '%s': %s", who, path.c_str(), reason.c_str());
    }
    if (n == 0) break;
    text.append(chunk, static_cast<size_t>(n));
  }
  // A truncated compressed file ends with an error that gzread may only
  // report at the end.
  int code = 0;
  const char *reason = gzerror(in, &code);
  if (code != Z_OK && code != Z_BUF_ERROR) {
    std::string why = reason;
    gzclose(in);
    fail(ZRVS_ERR_FILE, "%s: cannot read '%s': %s", who, path.c_str(), why.c_str());
  }
  int closed = gzclose(in);
  if (closed == Z_BUF_ERROR)
    fail(ZRVS_ERR_FILE, "%s: cannot read '%s': the compressed data ends early", who,
         path.c_str());
  if (closed != Z_OK)
    fail(ZRVS_ERR_FILE, "%s: cannot read '%s': the compressed data is corrupt", who, path.c_str());
  return text;
}

FileWriter::FileWriter(const std::string &path, bool gzip, const char *who)
    : path_(path), who_(who), gzip_(gzip) {
  errno = 0;
  handle_ = gzip ? static_cast<void *>(gzopen(path.c_str(), "wb"))
                 : static_cast<void *>(std::fopen(path.c_str(), "wb"));
  if (!handle_)
    fail(ZRVS_ERR_FILE, "%s: cannot create '%s': %s", who, path.c_str(), system_reason().c_str());
}

FileWriter::~FileWriter() {
  if (!handle_) return;
  if (gzip_)
    gzclose(static_cast<gzFile>(handle_));
  else
    std::fclose(static_cast<FILE *>(handle_));
  std::remove(path_.c_str());
}

void FileWriter::write_failed() {
  std::string reason = system_reason();
  fail(ZRVS_ERR_FILE, "%s: cannot write '%s': %s", who_, path_.c_str(), reason.c_str());
}

void FileWriter::flush() {
  if (buffer_.empty()) return;
  errno = 0;
  bool ok;
  if (gzip_)
    ok = gzwrite(static_cast<gzFile>(handle_), buffer_.data(),
                 static_cast<unsigned>(buffer_.size())) == static_cast<int>(buffer_.size());
  else
    ok = std::fwrite(buffer_.data(), 1, buffer_.size(), static_cast<FILE *>(handle_)) ==
         buffer_.size();
  if (!ok) write_failed();
  buffer_.clear();
}

void FileWriter::close() {
  flush();
  void *h = handle_;
  handle_ = nullptr;
  errno = 0;
  bool ok = gzip_ ? gzclose(static_cast<gzFile>(h)) == Z_OK
                  : std::fclose(static_cast<FILE *>(h)) == 0;
  if (!ok) {
    std::remove(path_.c_str());
    write_failed();
  }
}

}  // namespace zorvan
