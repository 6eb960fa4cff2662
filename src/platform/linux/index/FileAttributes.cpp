#include "platform/linux/index/FileAttributes.h"

#include "platform/linux/ExtendedAttribute.h"
#include "platform/linux/FileTags.h"
#include "platform/metadata/ContentTypes.h"
#include "platform/PlainText.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <charconv>
#include <optional>
#include <string>
#include <vector>

namespace pelmora::platform {

namespace {

using metadata::FileMetadata;
using predicate::Constant;

constexpr const char* kComment = "user.xdg.comment";
constexpr const char* kRating = "user.baloo.rating";

static_assert(kMaxTagBytes == metadata::kMaxTextBytes && kMaxTags == metadata::kMaxValues);

IndexStamp stampOf(const struct stat& status) {
  return {status.st_ino, status.st_size, status.st_ctim.tv_sec, status.st_ctim.tv_nsec};
}

ReferenceTime timeOf(const statx_timestamp& time) {
  return ReferenceTime::fromPosix(time.tv_sec, static_cast<long>(time.tv_nsec));
}

std::vector<Constant> constants(const std::vector<std::string>& texts) {
  return {texts.begin(), texts.end()};
}

/// Of a rating of the desktop's, which counts halves of stars; 0 is none.
std::optional<std::int64_t> starsOf(std::string_view rating) {
  std::int64_t halves = 0;
  const auto [end, error] = std::from_chars(rating.data(), rating.data() + rating.size(), halves);
  const bool isNumber = error == std::errc() && end == rating.data() + rating.size();
  if (!isNumber || halves < 1 || halves > 10) return std::nullopt;
  return halves / 2;
}

void setExtended(int file, FileMetadata& metadata) {
  const std::vector<std::string> names = extendedAttributeNames(file);
  const auto value = [&](const char* name) {
    const bool isThere = std::find(names.begin(), names.end(), name) != names.end();
    return isThere ? extendedAttribute(file, name) : std::nullopt;
  };
  metadata.set("kMDItemUserTags", constants(tagsOfAttributes(value)));
  if (const auto comment = value(kComment)) {
    const std::string text = plainText(*comment, metadata::kMaxTextBytes);
    if (!text.empty()) metadata.set("kMDItemFinderComment", {text});
  }
  if (const auto rating = value(kRating)) {
    if (const auto stars = starsOf(*rating)) metadata.set("kMDItemStarRating", {*stars});
  }
}

void setType(std::string_view name, FileMetadata& metadata) {
  const metadata::ContentType* const type = metadata::contentTypeOfName(name);
  if (!type) return;
  metadata.set("kMDItemKind", {std::string(type->kind)});
  metadata.set("kMDItemContentType", {std::string(type->name)});
  std::vector<Constant> tree;
  for (const std::string_view one : metadata::contentTypeTree(*type)) {
    tree.emplace_back(std::string(one));
  }
  metadata.set("kMDItemContentTypeTree", std::move(tree));
}

void setDates(const struct statx& facts, FileMetadata& metadata) {
  if ((facts.stx_mask & STATX_BTIME) != 0) {
    metadata.set("kMDItemFSCreationDate", {timeOf(facts.stx_btime)});
  }
  metadata.set("kMDItemFSContentChangeDate", {timeOf(facts.stx_mtime)});
  metadata.set("kMDItemContentModificationDate", {timeOf(facts.stx_mtime)});
}

}  // namespace

std::optional<IndexStamp> stampOf(int folder, const char* name) {
  struct stat status {};
  if (::fstatat(folder, name, &status, 0) != 0 || !S_ISREG(status.st_mode)) return std::nullopt;
  return stampOf(status);
}

std::optional<FileAttributes> fileAttributes(int file, std::string_view name) {
  struct statx facts {};
  const int result = ::statx(file, "", AT_EMPTY_PATH, STATX_BASIC_STATS | STATX_BTIME, &facts);
  if (result != 0 || !S_ISREG(facts.stx_mode)) return std::nullopt;
  FileAttributes attributes;
  attributes.stamp = {facts.stx_ino, static_cast<std::int64_t>(facts.stx_size),
                      facts.stx_ctime.tv_sec, facts.stx_ctime.tv_nsec};
  attributes.metadata.set("kMDItemFSSize", {attributes.stamp.bytes});
  setDates(facts, attributes.metadata);
  setType(name, attributes.metadata);
  setExtended(file, attributes.metadata);
  return attributes;
}

FileMetadata joined(FileMetadata ofFile, const FileMetadata& embedded) {
  // What is in the file is what it is, whatever its name says.
  const auto type = *metadata::attributeNamed("kMDItemContentType");
  const bool hasOwnType = embedded.all().contains(type);
  const auto table = metadata::attributeTable();
  for (const auto& [attribute, values] : embedded.all()) {
    const bool isOfType = table[attribute].name.starts_with("kMDItemContentType") ||
                          table[attribute].name == "kMDItemKind";
    const bool isKnown = ofFile.all().contains(attribute);
    if (!isKnown || (isOfType && hasOwnType)) ofFile.set(attribute, values);
  }
  return ofFile;
}

}  // namespace pelmora::platform
