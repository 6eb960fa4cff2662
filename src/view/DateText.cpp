#include "view/DateText.h"

#include <unicode/datefmt.h>
#include <unicode/locid.h>
#include <unicode/unistr.h>

#include <cstdlib>
#include <memory>

namespace pelmora::view {

namespace {

constexpr double kMillisecondsInASecond = 1000;

std::string text(ReferenceTime moment, icu::DateFormat::EStyle date, icu::DateFormat::EStyle time,
                 const std::string& locale) {
  // A name that means nothing would end the program in the library.
  icu::Locale known = icu::Locale::createCanonical(locale.c_str());
  if (known.isBogus()) known = icu::Locale::getRoot();
  const std::unique_ptr<icu::DateFormat> format(
      icu::DateFormat::createDateTimeInstance(date, time, known));
  if (!format) return {};
  icu::UnicodeString written;
  format->format(moment.posixSeconds() * kMillisecondsInASecond, written);
  std::string bytes;
  return written.toUTF8String(bytes);
}

}  // namespace

/// As the C library looks for it, whether or not the program has set its locale.
std::string formatLocale() {
  for (const char* name : {"LC_ALL", "LC_TIME", "LANG"}) {
    const char* value = std::getenv(name);
    if (value && *value) return value;
  }
  return "C";
}

std::string dateAndTimeText(ReferenceTime moment, const std::string& locale) {
  return text(moment, icu::DateFormat::kShort, icu::DateFormat::kMedium, locale);
}

std::string timeText(ReferenceTime moment, const std::string& locale) {
  return text(moment, icu::DateFormat::kNone, icu::DateFormat::kMedium, locale);
}

}  // namespace pelmora::view
