#pragma once

#include <QLocale>
#include <QStringList>
#include <QTranslator>

namespace pelmora::host {

/// The texts of the program in the user's language, as long as it lives: the module's own from its
/// data folder, and the toolkit's. Languages that there are no texts for read English.
/// Thread: GUI. A QCoreApplication must be there.
class Translations {
 public:
  explicit Translations(const QLocale& locale = QLocale())
      : Translations(locale, locale.uiLanguages()) {}
  /// The user's languages, the first choice first.
  Translations(const QLocale& locale, const QStringList& languages);
  ~Translations();
  Translations(const Translations&) = delete;
  Translations& operator=(const Translations&) = delete;

 private:
  QTranslator _own;
  QTranslator _toolkit;
};

}  // namespace pelmora::host
