#include "decoder/BmpRows.h"

#include "decoder/BmpHeader.h"

#include <gdk-pixbuf/gdk-pixbuf.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <string_view>
#include <utility>

namespace pelmora::decoder {

namespace {

constexpr std::size_t kBlockBytes = 64 << 10;

struct LoaderDeleter {
  void operator()(GdkPixbufLoader* loader) const {
    gdk_pixbuf_loader_close(loader, nullptr);  // it insists, also where that fails
    g_object_unref(loader);
  }
};
using LoaderPointer = std::unique_ptr<GdkPixbufLoader, LoaderDeleter>;

struct PixbufDeleter {
  void operator()(GdkPixbuf* pixbuf) const { g_object_unref(pixbuf); }
};
using PixbufPointer = std::unique_ptr<GdkPixbuf, PixbufDeleter>;

struct ErrorDeleter {
  void operator()(GError* error) const { g_error_free(error); }
};
using ErrorPointer = std::unique_ptr<GError, ErrorDeleter>;

LoaderPointer makeLoader() {
  GError* error = nullptr;
  LoaderPointer loader(gdk_pixbuf_loader_new_with_type("bmp", &error));
  const ErrorPointer owned(error);
  return loader;
}

Error damaged(std::string_view reason) {
  reason = reason.substr(0, reason.find('\n'));
  return Error{"it is damaged (" + std::string(reason) + ")"};
}

Status write(GdkPixbufLoader* loader, std::string_view bytes) {
  GError* error = nullptr;
  const auto* data = reinterpret_cast<const guchar*>(bytes.data());
  const bool isGood = gdk_pixbuf_loader_write(loader, data, bytes.size(), &error) != FALSE;
  const ErrorPointer owned(error);
  if (isGood) return Done{};
  if (g_error_matches(error, GDK_PIXBUF_ERROR, GDK_PIXBUF_ERROR_INSUFFICIENT_MEMORY)) {
    return Error{"there is not enough memory for it"};
  }
  return damaged(error ? error->message : "its reader does not say why");
}

void countRows(GdkPixbufLoader*, int, int, int, int height, int* rows) { *rows += height; }

/// Gives the loader the file block by block until it has told of every row. At the end of a file it
/// would be content with what there is.
Status writeRows(GdkPixbufLoader* loader, int descriptor, const BmpHeader& header, int& rows) {
  g_signal_connect(loader, "area-updated", G_CALLBACK(countRows), &rows);
  if (Status status = write(loader, header.begin); !status) return status;
  std::string block(kBlockBytes, '\0');
  std::int64_t written = 0;
  while (rows < header.size.height) {
    const std::int64_t left = header.rowsBytes - written;
    const auto most = static_cast<std::size_t>(std::min<std::int64_t>(left, kBlockBytes));
    const ssize_t count = pread(descriptor, block.data(), most, header.rowsOffset + written);
    if (count <= 0) return damaged("it is cut short");
    const std::string_view bytes(block.data(), static_cast<std::size_t>(count));
    if (Status status = write(loader, bytes); !status) return status;
    written += count;
  }
  return Done{};
}

Result<PixbufPointer> loadPixels(int descriptor, const BmpHeader& header) {
  int rows = 0;  // outlives the loader, which writes to it
  const LoaderPointer loader = makeLoader();
  if (!loader) return Error{"it is of a kind that is not read"};
  if (Status status = writeRows(loader.get(), descriptor, header, rows); !status) {
    return status.error();
  }
  GdkPixbuf* const pixbuf = gdk_pixbuf_loader_get_pixbuf(loader.get());
  if (!pixbuf || gdk_pixbuf_get_width(pixbuf) != header.size.width ||
      gdk_pixbuf_get_height(pixbuf) != header.size.height ||
      gdk_pixbuf_get_n_channels(pixbuf) < (header.hasAlpha ? 4 : 3)) {
    return damaged("its size is not what it says");
  }
  return PixbufPointer(GDK_PIXBUF(g_object_ref(pixbuf)));
}

/// The first of each pixel's channels: the loader makes four of 32 bits also where they are three.
void copyPixels(const GdkPixbuf* pixbuf, int y, std::span<std::byte> to, int channels) {
  const auto stride = static_cast<std::size_t>(gdk_pixbuf_get_rowstride(pixbuf));
  const auto step = static_cast<std::size_t>(gdk_pixbuf_get_n_channels(pixbuf));
  const auto kept = static_cast<std::size_t>(channels);
  const guint8* from = gdk_pixbuf_read_pixels(pixbuf) + stride * static_cast<std::size_t>(y);
  if (step == kept) {
    std::memcpy(to.data(), from, to.size());
    return;
  }
  for (std::size_t i = 0; i < to.size(); i += kept, from += step) {
    std::memcpy(&to[i], from, kept);
  }
}

class BmpRows final : public RowReader {
 public:
  BmpRows(PixbufPointer pixbuf, bool hasAlpha)
      : _pixbuf(std::move(pixbuf)),
        _format{.size = {gdk_pixbuf_get_width(_pixbuf.get()), gdk_pixbuf_get_height(_pixbuf.get())},
                .hasAlpha = hasAlpha},
        _facts{.format = "BMP", .storedSize = _format.size} {}

  [[nodiscard]] const PictureFacts& facts() const override { return _facts; }
  [[nodiscard]] const RowFormat& format() const override { return _format; }

  [[nodiscard]] Status readRow(std::span<std::byte> row) override {
    if (_next >= _format.size.height) return Error{"it has no more rows"};
    copyPixels(_pixbuf.get(), _next, row, _format.channels());
    ++_next;
    return Done{};
  }

  [[nodiscard]] Status finish() override { return Done{}; }

 private:
  PixbufPointer _pixbuf;
  RowFormat _format;
  PictureFacts _facts;
  int _next = 0;  // row
};

}  // namespace

void startBmp() { makeLoader(); }

Result<std::unique_ptr<RowReader>> openBmp(int descriptor) {
  const Result<BmpHeader> header = readBmpHeader(descriptor);
  if (!header) return header.error();
  Result<PixbufPointer> pixbuf = loadPixels(descriptor, *header);
  if (!pixbuf) return pixbuf.error();
  return std::unique_ptr<RowReader>(
      std::make_unique<BmpRows>(std::move(*pixbuf), header->hasAlpha));
}

}  // namespace pelmora::decoder
