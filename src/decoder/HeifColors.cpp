#include "decoder/HeifColors.h"

#include <libheif/heif.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdint>
#include <memory>

namespace pelmora::decoder {

namespace {

struct ContextDeleter {
  void operator()(heif_context* context) const { heif_context_free(context); }
};
struct HandleDeleter {
  void operator()(heif_image_handle* handle) const { heif_image_handle_release(handle); }
};
struct ColorsDeleter {
  void operator()(heif_color_profile_nclx* colors) const { heif_nclx_color_profile_free(colors); }
};

/// Reads by `pread`, as others read by the descriptor's own offset.
struct Reading {
  int descriptor;
  std::int64_t size;
  std::int64_t offset = 0;
};

Reading& reading(void* data) { return *static_cast<Reading*>(data); }

std::int64_t position(void* data) { return reading(data).offset; }

int readBytes(void* bytes, std::size_t size, void* data) {
  Reading& from = reading(data);
  auto* to = static_cast<char*>(bytes);
  while (size > 0) {
    const ssize_t count = pread(from.descriptor, to, size, from.offset);
    if (count <= 0) return 1;
    from.offset += count;
    to += count;
    size -= static_cast<std::size_t>(count);
  }
  return 0;
}

int seekTo(std::int64_t offset, void* data) {
  reading(data).offset = offset;
  return 0;
}

heif_reader_grow_status hasSize(std::int64_t size, void* data) {
  return size <= reading(data).size ? heif_reader_grow_status_size_reached
                                    : heif_reader_grow_status_size_beyond_eof;
}

}  // namespace

VideoColors heifColors(int descriptor) {
  struct stat facts {};
  if (fstat(descriptor, &facts) != 0) return {};
  Reading source{descriptor, facts.st_size};
  heif_reader reader{};
  reader.reader_api_version = 1;
  reader.get_position = position;
  reader.read = readBytes;
  reader.seek = seekTo;
  reader.wait_for_file_size = hasSize;
  const std::unique_ptr<heif_context, ContextDeleter> context(heif_context_alloc());
  if (!context || heif_context_read_from_reader(context.get(), &reader, &source, nullptr).code !=
                      heif_error_Ok) {
    return {};
  }
  heif_image_handle* image = nullptr;
  if (heif_context_get_primary_image_handle(context.get(), &image).code != heif_error_Ok) return {};
  const std::unique_ptr<heif_image_handle, HandleDeleter> handle(image);
  heif_color_profile_nclx* found = nullptr;
  if (heif_image_handle_get_nclx_color_profile(image, &found).code != heif_error_Ok) return {};
  const std::unique_ptr<heif_color_profile_nclx, ColorsDeleter> colors(found);
  return {.primaries = found->color_primaries, .transfer = found->transfer_characteristics};
}

}  // namespace pelmora::decoder
