#include "TaggedPhotos.h"

#include "Canvas.h"
#include "Trees.h"

#include "shared/Geometry.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>
#include <exiv2/exiv2.hpp>

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

namespace pelmora::bench {

namespace {

constexpr int kKinds = 200;
constexpr int kFoldersInAParent = 100;
constexpr int kCanvasWidth = 3000;
constexpr int kCanvasHeight = 2000;

struct Camera {
  const char* make;
  const char* model;
  const char* lens;
};
constexpr std::array kCameras{
    Camera{"NIKON CORPORATION", "NIKON D750", "24.0-120.0 mm f/4.0"},
    Camera{"Canon", "Canon EOS 80D", "EF-S18-135mm f/3.5-5.6 IS USM"},
    Camera{"SONY", "ILCE-7M3", "FE 24-105mm F4 G OSS"},
    Camera{"FUJIFILM", "X-T3", "XF18-55mmF2.8-4 R LM OIS"},
    Camera{"Apple", "iPhone 12", "iPhone 12 back dual wide camera 4.2mm f/1.6"},
    Camera{"Panasonic", "DMC-GX8", "LUMIX G VARIO 12-60/F3.5-5.6"},
    Camera{"samsung", "SM-G991B", "Samsung S5KGN1"},
};

struct Place {
  const char* city;
  const char* country;
  int latitude;  // minutes of arc
  int longitude;
};
constexpr std::array kPlaces{
    Place{"Lisboa", "Portugal", 2323, -548},      Place{"Rügen", "Deutschland", 3265, 804},
    Place{"San Sebastián", "España", 2599, -119}, Place{"Málaga", "España", 2203, -265},
    Place{"San Francisco", "USA", 2266, -7345},   Place{"Genève", "Suisse", 2772, 369},
    Place{"Wien", "Österreich", 2892, 982},       Place{"Roma", "Italia", 2514, 749},
    Place{"Kraków", "Polska", 3003, 1196},        Place{"京都", "日本", 2101, 8146},
    Place{"Valparaíso", "Chile", -1983, -4297},
};

constexpr std::array kKeywords{"beach",  "family",   "holiday", "mountains", "Ostsee",  "garden",
                               "sunset", "birthday", "bicycle", "cat",       "concert", "snow",
                               "forest", "wedding",  "train",   "café",      "harbour"};
constexpr std::array kTags{"Red", "Holiday", "To print", "Família", "Grün,Best of"};
constexpr std::array kPeople{"Ana Sousa", "Jörg Müller", "Marie Lefèvre"};

// What each copy has in its own way, of these lengths.
constexpr std::string_view kTitleMark = "000000 of the archive";
constexpr const char* kDateMark = "1999:12:31 23:59:59";

struct Kind {
  std::string bytes;
  std::vector<std::size_t> titles;  // where the marks are
  std::vector<std::size_t> dates;
};

void mustBe(bool works, const FilePath& file) {
  if (works) return;
  std::perror(file.c_str());
  std::exit(1);
}

std::string inArc(int minutes) {
  return std::to_string(std::abs(minutes) / 60) + "/1 " + std::to_string(std::abs(minutes) % 60) +
         "/1 1234/100";
}

void tagPlace(Exiv2::ExifData& exif, const Place& place) {
  exif["Exif.GPSInfo.GPSVersionID"] = "2 3 0 0";
  exif["Exif.GPSInfo.GPSLatitudeRef"] = place.latitude < 0 ? "S" : "N";
  exif["Exif.GPSInfo.GPSLatitude"] = inArc(place.latitude);
  exif["Exif.GPSInfo.GPSLongitudeRef"] = place.longitude < 0 ? "W" : "E";
  exif["Exif.GPSInfo.GPSLongitude"] = inArc(place.longitude);
  exif["Exif.GPSInfo.GPSAltitudeRef"] = "0";
  exif["Exif.GPSInfo.GPSAltitude"] = "431/10";
  exif["Exif.GPSInfo.GPSTimeStamp"] = "14/1 23/1 10/1";
  exif["Exif.GPSInfo.GPSDateStamp"] = "2019:07:14";
}

void tagByCamera(Exiv2::ExifData& exif, const Camera& camera, int kind, PixelSize size) {
  for (const char* key :
       {"Exif.Image.DateTime", "Exif.Photo.DateTimeOriginal", "Exif.Photo.DateTimeDigitized"}) {
    exif[key] = kDateMark;
  }
  exif["Exif.Image.Make"] = camera.make;
  exif["Exif.Image.Model"] = camera.model;
  exif["Exif.Image.Orientation"] = std::uint16_t{1};
  exif["Exif.Image.XResolution"] = "300/1";
  exif["Exif.Image.YResolution"] = "300/1";
  exif["Exif.Image.ResolutionUnit"] = std::uint16_t{2};
  exif["Exif.Image.Software"] = "darktable 4.2.1";
  exif["Exif.Image.Artist"] = kPeople[static_cast<std::size_t>(kind) % kPeople.size()];
  exif["Exif.Photo.ExposureTime"] = "1/" + std::to_string(60 + kind);
  exif["Exif.Photo.FNumber"] = std::to_string(18 + kind % 80) + "/10";
  exif["Exif.Photo.ExposureProgram"] = std::uint16_t{3};
  exif["Exif.Photo.ISOSpeedRatings"] = static_cast<std::uint16_t>(100 << kind % 6);
  exif["Exif.Photo.ExifVersion"] = "48 50 51 48";
  exif["Exif.Photo.OffsetTimeOriginal"] = "+02:00";
  exif["Exif.Photo.ComponentsConfiguration"] = "1 2 3 0";
  exif["Exif.Photo.ShutterSpeedValue"] = "6906/1000";
  exif["Exif.Photo.ApertureValue"] = "4/1";
  exif["Exif.Photo.ExposureBiasValue"] = "-1/3";
  exif["Exif.Photo.MaxApertureValue"] = "4/1";
  exif["Exif.Photo.MeteringMode"] = std::uint16_t{5};
  exif["Exif.Photo.LightSource"] = std::uint16_t{0};
  exif["Exif.Photo.Flash"] = static_cast<std::uint16_t>(kind % 5 == 0 ? 9 : 16);
  exif["Exif.Photo.FocalLength"] = std::to_string(24 + kind % 90) + "/1";
  exif["Exif.Photo.SubSecTimeOriginal"] = "42";
  exif["Exif.Photo.FlashpixVersion"] = "48 49 48 48";
  exif["Exif.Photo.ColorSpace"] = std::uint16_t{1};
  exif["Exif.Photo.PixelXDimension"] = static_cast<std::uint32_t>(size.width);
  exif["Exif.Photo.PixelYDimension"] = static_cast<std::uint32_t>(size.height);
  exif["Exif.Photo.SensingMethod"] = std::uint16_t{2};
  exif["Exif.Photo.CustomRendered"] = std::uint16_t{0};
  exif["Exif.Photo.ExposureMode"] = std::uint16_t{0};
  exif["Exif.Photo.WhiteBalance"] = std::uint16_t{0};
  exif["Exif.Photo.FocalLengthIn35mmFilm"] = static_cast<std::uint16_t>(24 + kind % 90);
  exif["Exif.Photo.SceneCaptureType"] = std::uint16_t{0};
  exif["Exif.Photo.BodySerialNumber"] = "6025431";
  exif["Exif.Photo.LensModel"] = camera.lens;
}

void tagByPerson(Exiv2::Image& image, const Place& place, int kind) {
  Exiv2::IptcData& iptc = image.iptcData();
  Exiv2::XmpData& xmp = image.xmpData();
  const std::string title = std::string("No. ") + std::string(kTitleMark);
  iptc["Iptc.Envelope.CharacterSet"] = "\x1B%G";
  iptc["Iptc.Application2.ObjectName"] = title;
  iptc["Iptc.Application2.City"] = place.city;
  iptc["Iptc.Application2.CountryName"] = place.country;
  iptc["Iptc.Application2.Caption"] = "On the way, with everybody.";
  xmp["Xmp.dc.title"] = "lang=\"x-default\" " + title;
  xmp["Xmp.dc.creator"] = kPeople[static_cast<std::size_t>(kind) % kPeople.size()];
  xmp["Xmp.dc.description"] = "lang=\"x-default\" On the way, with everybody.";
  xmp["Xmp.photoshop.City"] = place.city;
  xmp["Xmp.photoshop.Country"] = place.country;
  xmp["Xmp.xmp.Rating"] = std::to_string(kind % 6);
  xmp["Xmp.xmp.CreatorTool"] = "darktable 4.2.1";
  xmp["Xmp.xmpMM.DocumentID"] = "xmp.did:5f2b7c1e-0000-4000-8000-00000000abcd";
  for (int i = 0; i < 1 + kind % 4; ++i) {
    const char* const keyword =
        kKeywords[static_cast<std::size_t>(kind * 3 + i) % kKeywords.size()];
    const auto value = Exiv2::Value::create(Exiv2::string);
    value->read(keyword);
    iptc.add(Exiv2::IptcKey("Iptc.Application2.Keywords"), value.get());
    xmp["Xmp.dc.subject"] = keyword;  // one more
  }
}

std::string paintedBytes(const VipsPointer& canvas, int kind, PixelSize size) {
  VipsImage* part = nullptr;
  mustWork(vips_crop(canvas.get(), &part, kind * 37 % (kCanvasWidth - size.width),
                     kind * 53 % (kCanvasHeight - size.height), size.width, size.height, nullptr));
  const VipsPointer picture(part);
  void* bytes = nullptr;
  std::size_t length = 0;
  mustWork(vips_jpegsave_buffer(picture.get(), &bytes, &length, "Q", 75, "strip", 1, nullptr));
  std::string result(static_cast<const char*>(bytes), length);
  g_free(bytes);
  return result;
}

std::vector<std::size_t> placesOf(std::string_view part, const std::string& bytes) {
  std::vector<std::size_t> places;
  for (std::size_t at = bytes.find(part); at != std::string::npos; at = bytes.find(part, at + 1)) {
    places.push_back(at);
  }
  return places;
}

Kind makeKind(const VipsPointer& canvas, int number) {
  const auto index = static_cast<std::size_t>(number);
  const PixelSize size{240 + number % 5 * 40, 180 + number % 4 * 30};
  const std::string painted = paintedBytes(canvas, number, size);
  const auto image = Exiv2::ImageFactory::open(reinterpret_cast<const Exiv2::byte*>(painted.data()),
                                               static_cast<long>(painted.size()));
  image->readMetadata();
  const Place& place = kPlaces[index % kPlaces.size()];
  tagByCamera(image->exifData(), kCameras[index % kCameras.size()], number, size);
  if (number % 3 == 0) tagPlace(image->exifData(), place);
  if (number % 4 != 1) tagByPerson(*image, place, number);
  image->writeMetadata();
  Exiv2::BasicIo& io = image->io();
  io.open();
  io.seek(0, Exiv2::BasicIo::beg);
  Kind kind{std::string(io.size(), '\0'), {}, {}};
  io.read(reinterpret_cast<Exiv2::byte*>(kind.bytes.data()), static_cast<long>(kind.bytes.size()));
  kind.titles = placesOf(kTitleMark, kind.bytes);
  kind.dates = placesOf(kDateMark, kind.bytes);
  return kind;
}

/// Makes the kind's bytes those of this very photograph.
void individualize(Kind& kind, int number) {
  char title[16];
  std::snprintf(title, sizeof title, "%06d", number);
  for (const std::size_t at : kind.titles) kind.bytes.replace(at, 6, title);
  char date[32];
  std::snprintf(date, sizeof date, "%04d:%02d:%02d %02d:%02d:%02d", 2005 + number / 5000 % 20,
                1 + number / 400 % 12, 1 + number % 28, number / 7 % 24, number / 3 % 60,
                number % 60);
  for (const std::size_t at : kind.dates) kind.bytes.replace(at, 19, date);
}

std::string nameOf(int n) {
  if (n % 10 != 3) return cameraName(n);
  char name[64];
  std::snprintf(name, sizeof name, "Été à la plage %04d.jpg", n);
  return name;
}

/// Whether a tag was taken that this one was to have.
bool write(const FilePath& file, const std::string& bytes, const char* tags) {
  const int descriptor = open(file.c_str(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, 0600);
  mustBe(descriptor >= 0, file);
  mustBe(::write(descriptor, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size()),
         file);
  const bool isTagged =
      tags && fsetxattr(descriptor, "user.xdg.tags", tags, std::string_view(tags).size(), 0) == 0;
  mustBe(!tags || isTagged || errno == ENOTSUP, file);
  close(descriptor);
  return isTagged;
}

}  // namespace

std::vector<FilePath> TaggedPhotos::files() const {
  std::vector<FilePath> files;
  for (const FilePath& folder : folders) {
    for (int n = 0; n < filesInEach; ++n) files.push_back(folder / nameOf(n));
  }
  return files;
}

TaggedPhotos makeTaggedPhotos(const FilePath& root, int folders, int filesInEach) {
  const VipsPointer canvas = makeCanvas(kCanvasWidth, kCanvasHeight);
  std::vector<Kind> kinds;
  for (int i = 0; i < kKinds; ++i) kinds.push_back(makeKind(canvas, i));
  TaggedPhotos photos{.folders = {}, .filesInEach = filesInEach};
  int number = 0;
  for (int i = 0; i < folders; ++i) {
    const FilePath parent = root / ("year" + std::to_string(i / kFoldersInAParent));
    if (i % kFoldersInAParent == 0) mkdir(parent.c_str(), 0700);
    const FilePath folder = parent / ("event " + std::to_string(i % kFoldersInAParent));
    mkdir(folder.c_str(), 0700);
    for (int n = 0; n < filesInEach; ++n, ++number) {
      // Neighbours are of different kinds, and folders of different ones.
      Kind& kind = kinds[static_cast<std::size_t>(number * 7 + i) % kKinds];
      individualize(kind, number);
      const auto tag = static_cast<std::size_t>(number / 10) % kTags.size();
      const char* const tags = number % 10 == 4 ? kTags[tag] : nullptr;
      if (write(folder / nameOf(n), kind.bytes, tags)) photos.hasTags = true;
    }
    photos.folders.push_back(folder);
  }
  sync();
  return photos;
}

}  // namespace pelmora::bench
