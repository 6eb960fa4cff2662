#include "desktop/PortalFileChooser.h"

#include "desktop/PendingCall.h"

#include <QDBusMessage>
#include <QDBusVariant>

#include <string>
#include <utility>

namespace pelmora::desktop {

namespace {

constexpr const char* kPortal = "org.freedesktop.portal.Desktop";
constexpr const char* kPath = "/org/freedesktop/portal/desktop";
constexpr const char* kFileChooser = "org.freedesktop.portal.FileChooser";
constexpr const char* kRequest = "org.freedesktop.portal.Request";
constexpr unsigned int kVersionWithFolders = 3;
constexpr unsigned int kWasChosen = 0;
constexpr unsigned int kWasCancelled = 1;
constexpr int kUntilChosen = 30'000;  // for the request's own handle, not for the user

bool offersFolders(const QDBusPendingCall& call) {
  if (call.isError() || call.reply().signature() != QLatin1String("v")) return false;
  const QVariant version = call.reply().arguments().constFirst().value<QDBusVariant>().variant();
  return version.toUInt() >= kVersionWithFolders;
}

/// The path of a "file:" URL, byte for byte; empty for any other.
FilePath pathOf(const QString& url) {
  const QByteArray bytes = url.toUtf8();
  const QByteArray scheme("file:///");
  if (!bytes.startsWith(scheme)) return FilePath();
  const QByteArray path = QByteArray::fromPercentEncoding(bytes.mid(scheme.size() - 1));
  return path.contains('\0') ? FilePath() : FilePath(path.toStdString());
}

}  // namespace

PortalFileChooser::~PortalFileChooser() {
  close();
  listen(false);
}

void PortalFileChooser::chooseFolders(const Request& request, Chosen chosen) {
  if (_chosen) return chosen(std::vector<FilePath>());
  _chosen = std::move(chosen);
  const unsigned int asked = ++_requests;
  if (!_bus.isConnected()) return finish(std::nullopt);
  QDBusMessage question =
      QDBusMessage::createMethodCall(kPortal, kPath, "org.freedesktop.DBus.Properties", "Get");
  question << kFileChooser << "version";
  whenFinished(_bus.asyncCall(question, kPatience), this, [this, request, asked](const auto& call) {
    if (!_chosen || asked != _requests) return;  // taken back
    if (!offersFolders(call)) return finish(std::nullopt);
    open(request);
  });
}

void PortalFileChooser::open(const Request& request) {
  const QString token = "pelmora" + QString::number(_requests);
  // Where the answer will come from: told beforehand, so that none is missed.
  _handle =
      QString("%1/request/%2/%3").arg(kPath, _bus.baseService().mid(1).replace('.', '_'), token);
  listen(true);
  QDBusMessage call = QDBusMessage::createMethodCall(kPortal, kPath, kFileChooser, "OpenFile");
  call << request.parentWindow << request.title
       << QVariantMap{{"handle_token", token}, {"multiple", true}, {"directory", true}};
  whenFinished(_bus.asyncCall(call, kUntilChosen), this,
               [this, handle = _handle](const auto& answer) {
                 if (answer.isError() && _chosen && handle == _handle) finish(std::nullopt);
               });
}

void PortalFileChooser::cancel() {
  if (!_chosen) return;
  close();
  finish(std::vector<FilePath>());
}

/// Without an answer, as nobody waits for one.
void PortalFileChooser::close() {
  if (_handle.isEmpty()) return;
  _bus.send(QDBusMessage::createMethodCall(kPortal, _handle, kRequest, "Close"));
}

void PortalFileChooser::responded(unsigned int response, const QVariantMap& results) {
  if (!_chosen) return;
  if (response != kWasChosen && response != kWasCancelled) return finish(std::nullopt);
  std::vector<FilePath> folders;
  if (response == kWasChosen) {
    for (const QString& url : results.value("uris").toStringList()) {
      if (FilePath path = pathOf(url); !path.empty()) folders.push_back(std::move(path));
    }
  }
  finish(folders);
}

void PortalFileChooser::finish(const std::optional<std::vector<FilePath>>& folders) {
  listen(false);
  // It may ask for folders again.
  std::exchange(_chosen, nullptr)(folders);
}

void PortalFileChooser::listen(bool isOn) {
  if (_handle.isEmpty()) return;
  if (isOn) {
    _bus.connect(QString(), _handle, kRequest, "Response", this,
                 SLOT(responded(unsigned int, QVariantMap)));
    return;
  }
  _bus.disconnect(QString(), _handle, kRequest, "Response", this,
                  SLOT(responded(unsigned int, QVariantMap)));
  _handle.clear();
}

}  // namespace pelmora::desktop
