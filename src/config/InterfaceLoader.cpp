#include "config/InterfaceLoader.h"

#include "platform/FileContents.h"

#include <QBuffer>
#include <QByteArray>
#include <QString>
#include <QUiLoader>
#include <QWidget>

#include <cstddef>
#include <utility>

namespace pelmora::config {

namespace {

constexpr std::size_t kLargestFile = 1 << 20;  // bytes

class Loader : public QUiLoader {
 public:
  explicit Loader(const std::map<QString, WidgetMaker>& ownWidgets) : _ownWidgets(ownWidgets) {
    clearPluginPaths();  // the toolkit's widgets and ours, nothing that happens to be installed
  }

  QWidget* createWidget(const QString& className, QWidget* parent, const QString& name) override {
    const auto own = _ownWidgets.find(className);
    if (own == _ownWidgets.end()) return QUiLoader::createWidget(className, parent, name);
    QWidget* widget = own->second(parent);
    widget->setObjectName(name);
    return widget;
  }

 private:
  const std::map<QString, WidgetMaker>& _ownWidgets;
};

}  // namespace

Result<std::unique_ptr<QWidget>> loadInterface(const FilePath& file,
                                               const std::map<QString, WidgetMaker>& ownWidgets) {
  const auto contents = platform::FileContents::read(file, kLargestFile);
  if (!contents) return contents.error();
  const auto bytes = contents->bytes();
  QByteArray text = QByteArray::fromRawData(reinterpret_cast<const char*>(bytes.data()),
                                            static_cast<qsizetype>(bytes.size()));
  QBuffer buffer(&text);
  buffer.open(QIODevice::ReadOnly);
  Loader loader(ownWidgets);
  std::unique_ptr<QWidget> widget(loader.load(&buffer));
  if (!widget) return Error{file.bytes() + ": " + loader.errorString().toStdString()};
  return widget;
}

}  // namespace pelmora::config
