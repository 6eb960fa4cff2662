#pragma once

#include "shared/FilePath.h"

#include <QDBusConnection>
#include <QObject>
#include <QString>
#include <QVariantMap>

#include <functional>
#include <optional>
#include <vector>

namespace pelmora::desktop {

/// The desktop's own chooser of folders, behind its portal.
/// Thread: the one that made it, which has an event loop. Errors: what the portal says is
/// untrusted; anything but the answer that was asked for counts as having none to offer.
class PortalFileChooser : public QObject {
  Q_OBJECT
 public:
  /// The folders that were chosen, none when that was cancelled; nullopt where there is no chooser.
  using Chosen = std::function<void(std::optional<std::vector<FilePath>>)>;
  struct Request {
    QString parentWindow;  // as portals name windows, "" for none
    QString title;
  };

  explicit PortalFileChooser(const QDBusConnection& bus) : _bus(bus) {}
  ~PortalFileChooser() override;

  /// Asks the user. While they are being asked, nothing else is, and the answer is none at once.
  void chooseFolders(const Request& request, Chosen chosen);
  [[nodiscard]] bool isAsking() const { return _chosen != nullptr; }

  /// Takes the question back: its dialog goes, and nothing was chosen.
  void cancel();

  /// How long to wait for a portal to say that it is one, in milliseconds.
  static constexpr int kPatience = 2000;

 private Q_SLOTS:
  void responded(unsigned int response, const QVariantMap& results);

 private:
  void open(const Request& request);
  void close();
  void finish(const std::optional<std::vector<FilePath>>& folders);
  void listen(bool isOn);

  QDBusConnection _bus;
  QString _handle;             // of the request, while there is one
  Chosen _chosen;              // null when the user is asked nothing
  unsigned int _requests = 0;  // so far; the last is the one that the user is asked
};

}  // namespace pelmora::desktop
