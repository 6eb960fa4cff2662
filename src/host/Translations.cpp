#include "host/Translations.h"

#include "host/ResourceFolder.h"

#include <QCoreApplication>
#include <QFile>
#include <QGuiApplication>
#include <QLibraryInfo>

namespace pelmora::host {

Translations::Translations(const QLocale& locale) {
  const QString folder = QFile::decodeName((resourceFolder() / "translations").c_str());
  if (_own.load(locale, "pelmora", "_", folder)) QCoreApplication::installTranslator(&_own);
  const QString toolkit = QLibraryInfo::path(QLibraryInfo::TranslationsPath);
  if (_toolkit.load(locale, "qtbase", "_", toolkit)) {
    QCoreApplication::installTranslator(&_toolkit);
  }
  QGuiApplication::setLayoutDirection(locale.textDirection());
}

Translations::~Translations() {
  QCoreApplication::removeTranslator(&_toolkit);
  QCoreApplication::removeTranslator(&_own);
}

}  // namespace pelmora::host
