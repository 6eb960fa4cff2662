#include "host/SettingsWindow.h"

#include "host/EndingSignals.h"
#include "platform/MetadataQuery.h"
#include "sources/PMFolder.h"
#include "sources/PMSourceList.h"
#include "view/PelmoraView.h"

#include <QCoreApplication>
#include <QDesktopServices>
#include <QFile>
#include <QHBoxLayout>
#include <QIcon>
#include <QLabel>
#include <QLocale>
#include <QPushButton>
#include <QScreen>
#include <QUrl>
#include <QVBoxLayout>

namespace pelmora::host {

namespace {

constexpr double kProgressInterval = 0.5;  // seconds

void openInFileManager(const FilePath& folder) {
  const UnblockedSignals forTheFileManager;
  QDesktopServices::openUrl(QUrl::fromLocalFile(QFile::decodeName(folder.c_str())));
}

}  // namespace

SettingsWindow::SettingsWindow(config::FolderChooser& chooser, bool verbose)
    : _scheduler(_clock),
      _linuxServices({.clock = &_clock,
                      .scheduler = &_scheduler,
                      .displays = &_displays,
                      .sound = &_sound,
                      .verbose = verbose,
                      .sessionBus = true}),
      _services(_linuxServices.services()),
      _preview(std::make_unique<PreviewWidget>(_clock, this)),
      _session(_services) {
  makeParts();
  startPreview();
  _sheet = std::make_unique<config::ConfigureSheet>(_session.view(0), chooser, this);
  _sheet->sheetEnded = [this](config::ConfigureSheet::ReturnCode) { optionsEnded(); };
  _scheduler.every(kProgressInterval, [this] { showProgress(); });
  showProgress();
}

SettingsWindow::~SettingsWindow() {
  _linuxServices.giveUpWaiting();
  _counter.reset();
  _preview->resized = [] {};
  _session.stop();
}

void SettingsWindow::makeParts() {
  setWindowFlags(Qt::Window);  // it is the whole program
  setWindowTitle(QCoreApplication::translate("Settings", "Pelmora Screen Saver"));
  setWindowIcon(QIcon::fromTheme("pelmora", QIcon::fromTheme("preferences-desktop-screensaver")));
  _preview->setAccessibleName(QCoreApplication::translate("Settings", "Preview"));
  _status = new QLabel(this);
  _status->setAccessibleName(QCoreApplication::translate("Settings", "Progress"));
  _options = new QPushButton(QCoreApplication::translate("Settings", "&Options…"), this);
  _options->setDefault(true);
  auto* close = new QPushButton(QCoreApplication::translate("Settings", "&Close"), this);
  connect(_options, &QPushButton::clicked, this, [this] { openOptions(); });
  connect(close, &QPushButton::clicked, this, &QDialog::reject);

  auto* bottom = new QHBoxLayout;
  bottom->addWidget(_status, 1);
  bottom->addWidget(_options);
  bottom->addWidget(close);
  auto* rows = new QVBoxLayout(this);
  rows->addWidget(_preview.get(), 1);
  rows->addLayout(bottom);
}

void SettingsWindow::startPreview() {
  const Size size{static_cast<double>(_preview->sizeHint().width()),
                  static_cast<double>(_preview->sizeHint().height())};
  _session.start({{.frame = {{0, 0}, size},
                   .scale = _preview->devicePixelRatioF(),
                   .display = _displays.displayOf(screen()),
                   .isPreview = true,
                   .presenter = _preview.get()}});
  _scheduler.setEndOfTurn([this] { _session.commit(); });
  _preview->resized = [this] {
    _session.resize(
        0, {static_cast<double>(_preview->width()), static_cast<double>(_preview->height())},
        _preview->devicePixelRatioF());
    _session.commit();
  };
  _session.startFrames();
}

void SettingsWindow::openOptions() {
  QDialog* window = _sheet->configureSheet();
  if (!window) {
    // The list may have been emptied for it.
    _session.restart();
    _session.commit();
    return;
  }
  _options->setEnabled(false);
  window->setWindowModality(Qt::WindowModal);
  watchSources();
  window->show();
}

void SettingsWindow::optionsEnded() {
  _counter.reset();
  _options->setEnabled(true);
  _session.restart();
  _session.commit();
}

void SettingsWindow::watchSources() {
  config::SourceListViewController& list = *_sheet->sourceListViewController();
  list.openFolder = openInFileManager;
  _counter = std::make_unique<config::SourceCounter>(
      _services, [&list](const FilePath& folder, const config::SourceCounter::Count& count) {
        list.setStatus(folder, {.pictures = count.pictures, .isGone = count.isGone});
      });
  const auto count = [this, &list] {
    std::vector<FilePath> folders;
    for (const sources::SourceEntry& source : list.sources()) folders.push_back(source.url);
    if (_counter) _counter->add(folders);
  };
  list.sourcesChanged = count;
  count();
}

void SettingsWindow::showProgress() { _status->setText(progress()); }

QString SettingsWindow::progress() const {
  const QLocale locale;
  const auto list = _session.view(0).sourceList();
  if (!list || !_options->isEnabled()) return {};
  std::size_t pictures = 0;
  const auto records = list->dirItems();
  for (const auto& record : records) pictures += record->filenames->size();
  const bool isWalking = list->enumQueue().operationCount() > 0;
  const platform::IndexProgress index = _services.metadata.progress();
  if (records.empty() && !isWalking) {
    return QCoreApplication::translate("Settings",
                                       "No pictures were found. Options lets you choose folders.");
  }
  QString text = isWalking ? QCoreApplication::translate("Settings", "Looking for pictures…") + "  "
                           : QString();
  text += QCoreApplication::translate("Settings", "Folders: %1  Pictures: %2")
              .arg(locale.toString(static_cast<qulonglong>(records.size())),
                   locale.toString(static_cast<qulonglong>(pictures)));
  if (index.foldersToDo > 0) {
    text += "  " + QCoreApplication::translate("Settings", "Filter: %1 folders to read")
                       .arg(locale.toString(static_cast<qulonglong>(index.foldersToDo)));
  }
  return text;
}

}  // namespace pelmora::host
