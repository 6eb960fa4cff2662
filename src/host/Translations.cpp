#include "host/Translations.h"

#include "host/ResourceFolder.h"

#include <QCoreApplication>
#include <QFile>
#include <QGuiApplication>
#include <QLibraryInfo>

namespace pelmora::host {

namespace {

/// For the country; where there is none, the translator finds that of the language.
QString fileOf(const char* name, const QLocale& locale) {
  return QString("%1_%2").arg(QLatin1String(name), locale.name());
}

}  // namespace

Translations::Translations(const QLocale& locale, const QStringList& languages) {
  const QString folder = QFile::decodeName((resourceFolder() / "translations").c_str());
  const QString toolkit = QLibraryInfo::path(QLibraryInfo::TranslationsPath);
  for (const QString& language : languages) {
    const QLocale each(language);
    if (each.language() == QLocale::English) break;  // as the texts are
    if (!_own.load(fileOf("pelmora", each), folder)) continue;
    QCoreApplication::installTranslator(&_own);
    if (_toolkit.load(fileOf("qtbase", each), toolkit)) {
      QCoreApplication::installTranslator(&_toolkit);
    }
    break;
  }
  QGuiApplication::setLayoutDirection(locale.textDirection());
}

Translations::~Translations() {
  QCoreApplication::removeTranslator(&_toolkit);
  QCoreApplication::removeTranslator(&_own);
}

}  // namespace pelmora::host
