#include "decoder/VipsLibrary.h"

#include "decoder/VipsPointers.h"

#include <libheif/heif.h>
#include <vips/vector.h>

#include <string_view>

namespace pelmora::decoder {

namespace {

/// The readers that are used, as their class names begin.
constexpr const char* kReaders[] = {
    "VipsForeignLoadJpeg",  "VipsForeignLoadPng",  "VipsForeignLoadWebp", "VipsForeignLoadTiff",
    "VipsForeignLoadNsgif", "VipsForeignLoadHeif", "VipsForeignLoadJxl"};

GLogWriterOutput swallow(GLogLevelFlags, const GLogField*, gsize, gpointer) {
  return G_LOG_WRITER_HANDLED;
}
void swallowOld(const gchar*, GLogLevelFlags, const gchar*, gpointer) {}

/// Warnings about odd but readable files would go to standard error, several lines a file.
void silenceLogs() {
  static bool done = false;
  if (done) return;  // GLib ends the process when its writer is set twice
  done = true;
  g_log_set_writer_func(swallow, nullptr, nullptr);
  g_log_set_default_handler(swallowOld, nullptr);
}

}  // namespace

Error damagedPicture() {
  char* said = vips_error_buffer_copy();
  std::string_view reason(said);
  reason = reason.substr(0, reason.find('\n'));
  const auto says = [reason](std::string_view words) {
    return reason.find(words) != std::string_view::npos;
  };
  Error error{says("nsupported")      ? "it is of a kind that is not read"
              : says("out of memory") ? "there is not enough memory for it"
                                      : "it is damaged"};
  if (!reason.empty()) error.message += " (" + std::string(reason) + ")";
  g_free(said);
  return error;
}

Status startVips() {
  silenceLogs();
  if (vips_init("pelmora-decoder") != 0) return Error{"the picture library cannot be started"};
  // No picture is decoded twice, and one at a time is enough for a saver.
  vips_cache_set_max(0);
  vips_concurrency_set(1);
  // Its just-in-time compiler wants memory to write and run, for work that is not done with it.
  vips_vector_set_enabled(FALSE);
  vips_operation_block_set("VipsForeignLoad", TRUE);
  for (const char* reader : kReaders) vips_operation_block_set(reader, FALSE);
  heif_init(nullptr);  // finds its plugins, where it has any
  (void)fallbackCmykProfile();
  return Done{};
}

std::string fallbackCmykProfile() {
  static const std::string bytes = [] {
    VipsBlob* blob = nullptr;
    if (vips_profile_load("cmyk", &blob, nullptr) != 0 || !blob) return std::string();
    std::size_t size = 0;
    const void* data = vips_blob_get(blob, &size);
    std::string copy(static_cast<const char*>(data), size);
    vips_area_unref(VIPS_AREA(blob));
    return copy;
  }();
  return bytes;
}

}  // namespace pelmora::decoder
