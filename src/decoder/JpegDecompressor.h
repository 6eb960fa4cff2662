#pragma once

#include "decoder/JpegMetadata.h"
#include "shared/Result.h"

#include <array>
#include <csetjmp>
#include <cstdio>  // the library's header uses it without saying so
#include <memory>

#include <jpeglib.h>

namespace pelmora::decoder {

/// The most passes of a progressive JPEG that are read. Cameras and encoders make up to about 16; a
/// few megabytes with hundreds of passes keep every decoder busy for minutes.
constexpr int kMaxJpegScans = 40;

/// The JPEG library's decompressor, reading from a descriptor, with the errors as we want them:
/// as values, silent, and also for damage that the library would paint over. More than
/// `kMaxJpegScans` passes and more memory than `PictureLimits` grants are errors too; nothing is
/// put into temporary files. Of APP1 and APP2 segments it keeps what `JpegMetadata` does.
/// Thread: one. Ownership: not of the descriptor. After an error nothing more can be done with it.
class JpegDecompressor {
 public:
  explicit JpegDecompressor(int descriptor);
  ~JpegDecompressor();
  JpegDecompressor(const JpegDecompressor&) = delete;
  JpegDecompressor& operator=(const JpegDecompressor&) = delete;

  [[nodiscard]] jpeg_decompress_struct& info() { return _info; }
  [[nodiscard]] const JpegMetadata& metadata() const { return _metadata; }

  /// Runs `step`, which calls the library. When that finds an error it leaves `step` where it
  /// stands, so no object with a destructor may live in it.
  template <typename Step>
  [[nodiscard]] Status run(Step step);

 private:
  static constexpr std::size_t kBufferSize = 65536;
  using Buffer = std::array<JOCTET, kBufferSize>;

  /// Back to `run`, with `_message` set.
  [[noreturn]] void escape();
  [[noreturn]] void escapeWithReason(const char* what);
  JOCTET nextByte();
  std::span<const JOCTET> readSegment();

  static JpegDecompressor& of(void* info);
  static void failed(j_common_ptr info);
  static void warned(j_common_ptr info, int level);
  static void progressed(j_common_ptr info);
  static boolean fill(j_decompress_ptr info);
  static void skip(j_decompress_ptr info, long count);
  static boolean readApp1(j_decompress_ptr info);
  static boolean readApp2(j_decompress_ptr info);

  jpeg_decompress_struct _info{};
  jpeg_error_mgr _errors{};
  jpeg_source_mgr _source{};
  jpeg_progress_mgr _progress{};
  jmp_buf _escape{};
  std::array<char, 2 * JMSG_LENGTH_MAX> _message{};  // not empty: it has failed
  int _descriptor;
  std::unique_ptr<Buffer> _buffer;
  std::unique_ptr<Buffer> _segment;
  JpegMetadata _metadata;
};

template <typename Step>
Status JpegDecompressor::run(Step step) {
  // Without the signal mask, whose saving would be a system call for every row.
  if (_message[0] != '\0' || _setjmp(_escape) != 0) return Error{_message.data()};
  step();
  return Done{};
}

}  // namespace pelmora::decoder
