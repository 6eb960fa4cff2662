#include "decoder/JpegDecompressor.h"

#include "decoder/PictureLimits.h"

#include <cerrno>
#include <cstring>

#include <jerror.h>
#include <unistd.h>

namespace pelmora::decoder {

namespace {

/// Whether a warning tells of picture data that is damaged, and filled up with grey.
bool isOfDamage(int code) {
  switch (code) {
    case JWRN_ARITH_BAD_CODE:
    case JWRN_BOGUS_PROGRESSION:
    case JWRN_HIT_MARKER:
    case JWRN_HUFF_BAD_CODE:
    case JWRN_JPEG_EOF:
    case JWRN_MUST_RESYNC:
    case JWRN_NOT_SEQUENTIAL:
      return true;
    default:
      return false;
  }
}

/// Whether an error says that the file is a JPEG of a kind that the library does not read.
bool isOfKind(int code) {
  switch (code) {
    case JERR_ARITH_NOTIMPL:
    case JERR_BAD_PRECISION:
    case JERR_CONVERSION_NOTIMPL:
    case JERR_FRACT_SAMPLE_NOTIMPL:
    case JERR_CCIR601_NOTIMPL:
    case JERR_NOT_COMPILED:
    case JERR_NOTIMPL:
    case JERR_SOF_UNSUPPORTED:
      return true;
    default:
      return false;
  }
}

void ignore(j_common_ptr) {}
void ignoreSource(j_decompress_ptr) {}

}  // namespace

JpegDecompressor::JpegDecompressor(int descriptor)
    : _descriptor(descriptor),
      _buffer(std::make_unique_for_overwrite<Buffer>()),
      _segment(std::make_unique_for_overwrite<Buffer>()) {
  _info.err = jpeg_std_error(&_errors);
  _errors.error_exit = failed;
  _errors.emit_message = warned;
  _errors.output_message = ignore;
  _info.client_data = this;
  // What fails here fails each later step too.
  if (!run([this] { jpeg_create_decompress(&_info); })) return;
  _source.init_source = ignoreSource;
  _source.fill_input_buffer = fill;
  _source.skip_input_data = skip;
  _source.resync_to_restart = jpeg_resync_to_restart;
  _source.term_source = ignoreSource;
  _info.src = &_source;
  _progress.progress_monitor = progressed;
  _info.progress = &_progress;
  _info.mem->max_memory_to_use = kMaxHeldBytes + kMaxHeldBytes / 8;
  jpeg_set_marker_processor(&_info, JPEG_APP0 + 1, readApp1);
  jpeg_set_marker_processor(&_info, JPEG_APP0 + 2, readApp2);
}

JpegDecompressor::~JpegDecompressor() { jpeg_destroy_decompress(&_info); }

JpegDecompressor& JpegDecompressor::of(void* info) {
  return *static_cast<JpegDecompressor*>(static_cast<j_common_ptr>(info)->client_data);
}

void JpegDecompressor::escape() { _longjmp(_escape, 1); }

void JpegDecompressor::escapeWithReason(const char* what) {
  std::array<char, JMSG_LENGTH_MAX> reason{};
  _errors.format_message(reinterpret_cast<j_common_ptr>(&_info), reason.data());
  std::snprintf(_message.data(), _message.size(), "%s (%s)", what, reason.data());
  escape();
}

void JpegDecompressor::failed(j_common_ptr info) {
  const int code = info->err->msg_code;
  of(info).escapeWithReason(isOfKind(code) ? "it is a JPEG of an unknown kind" : "it is damaged");
}

void JpegDecompressor::warned(j_common_ptr info, int level) {
  if (level < 0 && isOfDamage(info->err->msg_code)) of(info).escapeWithReason("it is damaged");
}

void JpegDecompressor::progressed(j_common_ptr info) {
  JpegDecompressor& self = of(info);
  if (self._info.input_scan_number <= kMaxJpegScans) return;
  std::snprintf(self._message.data(), self._message.size(),
                "it is stored in more than %d passes, which would take too long", kMaxJpegScans);
  self.escape();
}

boolean JpegDecompressor::fill(j_decompress_ptr info) {
  JpegDecompressor& self = of(info);
  ssize_t count = 0;
  do {
    count = read(self._descriptor, self._buffer->data(), kBufferSize);
  } while (count < 0 && errno == EINTR);
  if (count <= 0) {
    std::snprintf(self._message.data(), self._message.size(), "%s%s",
                  count == 0 ? "it is cut short" : "it cannot be read: ",
                  count == 0 ? "" : std::strerror(errno));
    self.escape();
  }
  self._source.next_input_byte = self._buffer->data();
  self._source.bytes_in_buffer = static_cast<std::size_t>(count);
  return TRUE;
}

void JpegDecompressor::skip(j_decompress_ptr info, long count) {
  jpeg_source_mgr& source = of(info)._source;
  std::size_t left = count > 0 ? static_cast<std::size_t>(count) : 0;
  while (left > source.bytes_in_buffer) {
    left -= source.bytes_in_buffer;
    fill(info);
  }
  source.next_input_byte += left;
  source.bytes_in_buffer -= left;
}

JOCTET JpegDecompressor::nextByte() {
  if (_source.bytes_in_buffer == 0) fill(&_info);
  --_source.bytes_in_buffer;
  return *_source.next_input_byte++;
}

std::span<const JOCTET> JpegDecompressor::readSegment() {
  const std::size_t high = nextByte();
  const std::size_t length = high << 8 | nextByte();
  // The length counts its own two bytes.
  const std::size_t count = length > 2 ? length - 2 : 0;
  for (std::size_t i = 0; i < count; ++i) (*_segment)[i] = nextByte();
  return {_segment->data(), count};
}

boolean JpegDecompressor::readApp1(j_decompress_ptr info) {
  JpegDecompressor& self = of(info);
  self._metadata.takeApp1(self.readSegment());
  return TRUE;
}

boolean JpegDecompressor::readApp2(j_decompress_ptr info) {
  JpegDecompressor& self = of(info);
  self._metadata.takeApp2(self.readSegment());
  return TRUE;
}

}  // namespace pelmora::decoder
