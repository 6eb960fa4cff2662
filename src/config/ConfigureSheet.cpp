#include "config/ConfigureSheet.h"

#include "config/InterfaceLoader.h"
#include "filtereditor/PredicateEditor.h"
#include "platform/Log.h"
#include "platform/MetadataQuery.h"
#include "platform/predicate/PredicateArchive.h"
#include "platform/PreferencesStore.h"
#include "platform/Sound.h"
#include "sources/PMSourceList.h"
#include "view/ModuleDefaults.h"
#include "view/PelmoraView.h"

#include <QCheckBox>
#include <QComboBox>
#include <QCoreApplication>
#include <QDialog>
#include <QDialogButtonBox>
#include <QDoubleSpinBox>
#include <QGridLayout>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QSlider>

#include <algorithm>
#include <cmath>
#include <optional>

namespace pelmora::config {

namespace {

constexpr double kLeastDelay = 0.5;  // seconds
constexpr int kMostNamed = 10;       // sources that are missing
constexpr std::size_t kMostSuggestions = 200;

bool isOn(std::int64_t state) { return state != 0; }

std::optional<double> sizeIn(const plist::Dictionary& stored, const char* key) {
  constexpr double kLargest = 16'384;
  const auto found = stored.find(key);
  const double size = found == stored.end() ? 0 : found->second.doubleValue();
  return size >= 1 && size <= kLargest ? std::optional(size) : std::nullopt;
}

}  // namespace

ConfigureSheet::ConfigureSheet(view::PelmoraView& view, FolderChooser& chooser, QWidget* parent)
    : _view(view), _services(view.services()), _chooser(chooser), _parent(parent) {}

ConfigureSheet::~ConfigureSheet() = default;

// Opening -----------------------------------------------------------------------------------------

QDialog* ConfigureSheet::configureSheet() {
  if (!_configWindow && !loadWindow()) {
    alertOfFailure();
    return nullptr;
  }
  platform::PreferencesStore& preferences = _services.preferences;
  const auto list = _view.sourceList();
  list->cancelOperations();
  list->unloadSources();
  list->loadSourcesFromPrefs(preferences, false, false);
  if (!embedSourceList()) {
    list->unloadSources();
    alertOfFailure();
    return nullptr;
  }
  _sourceListViewController->setSources(list->sources()->entries());
  showMissingSources(list->missingSources());
  fillControls();
  fillFilter();
  restoreSize();
  _isOpen = true;
  return _configWindow.get();
}

bool ConfigureSheet::loadWindow() {
  auto loaded = loadInterface(
      _services.resourceFolder / "ConfigWindow.ui",
      {{"PredicateEditor", [](QWidget* of) { return new filtereditor::PredicateEditor(of); }}});
  if (!loaded) {
    _services.log.print("Pelmora: %s", loaded.error().message.c_str());
    return false;
  }
  _configWindow.reset(qobject_cast<QDialog*>(loaded->get()));
  if (_configWindow) {
    loaded->release();
    _configWindow->setParent(_parent, _configWindow->windowFlags());
  }
  if (_configWindow && findOutlets()) {
    linkControls();
    return true;
  }
  _services.log.write("Pelmora: The interface file 'ConfigWindow' lacks a control.");
  _configWindow.reset();
  return false;
}

bool ConfigureSheet::findOutlets() {
  bool isWhole = true;
  const auto find = [&](auto*& outlet, const char* name) {
    outlet = _configWindow->findChild<std::remove_reference_t<decltype(outlet)>>(name);
    isWhole = isWhole && outlet != nullptr;
  };
  find(_sourceListViewParent, "sourceListViewParent");
  find(_missingSourcesNotice, "missingSourcesNotice");
  find(_polaroidCB, "polaroidCB");
  find(_showiTunesTrackCB, "showiTunesTrackCB");
  find(_numImagesLabel, "numImagesLabel");
  find(_numImagesStepper, "numImagesStepper");
  find(_delayField, "delayField");
  find(_iTunesTypePop, "iTunesTypePop");
  find(_predEd, "predEd");
  return isWhole && _configWindow->findChild<QDialogButtonBox*>("buttons") != nullptr;
}

void ConfigureSheet::linkControls() {
  _predEd->setSuggest([this](const std::string& attribute, auto answer) {
    _services.metadata.suggestValues(attribute, kMostSuggestions, std::move(answer));
  });
  connect(_showiTunesTrackCB, &QCheckBox::toggled, this,
          [this](bool isChecked) { _showiTunesTrackState = isChecked ? 1 : 0; });
  connect(_showiTunesTrackCB, &QCheckBox::toggled, _iTunesTypePop, &QWidget::setEnabled);
  connect(_numImagesStepper, &QSlider::valueChanged, this,
          [this](int value) { _numImagesLabel->setText(QString::number(value)); });
  const QStringList tags = _iTunesTypePop->property("tags").toStringList();
  for (int i = 0; i < std::min<int>(_iTunesTypePop->count(), static_cast<int>(tags.size())); ++i) {
    _iTunesTypePop->setItemData(i, tags[i].toLongLong());
  }
  const auto* buttons = _configWindow->findChild<QDialogButtonBox*>("buttons");
  connect(buttons, &QDialogButtonBox::accepted, this, &ConfigureSheet::onOK);
  connect(buttons, &QDialogButtonBox::rejected, this, &ConfigureSheet::onCancel);
  // Escape, and the window manager's button.
  connect(_configWindow.get(), &QDialog::rejected, this, [this] {
    if (_isOpen) onCancel();
  });
}

/// Each opening has a controller of its own. The views of earlier ones stay where they are, below
/// this one's; they are hidden, so that neither keys nor screen readers find them.
bool ConfigureSheet::embedSourceList() {
  auto controller = SourceListViewController::load(_services, _chooser);
  if (!controller) {
    _services.log.print("Pelmora: %s", controller.error().message.c_str());
    return false;
  }
  auto* layout = qobject_cast<QGridLayout*>(_sourceListViewParent->layout());
  if (!layout) {
    layout = new QGridLayout(_sourceListViewParent);
    layout->setContentsMargins(0, 0, 0, 0);
  }
  if (_sourceListViewController) _sourceListViewController->view()->hide();
  _sourceListViewController = *std::move(controller);
  layout->addWidget(_sourceListViewController->view(), 0, 0);
  _sourceListViewController->view()->show();
  // The dialog was finished without it; its controls would come after the buttons.
  QWidget* before = _missingSourcesNotice;
  for (QWidget* control : _sourceListViewController->controls()) {
    QWidget::setTabOrder(before, control);
    before = control;
  }
  return true;
}

void ConfigureSheet::fillControls() {
  const platform::PreferencesStore& preferences = _services.preferences;
  _polaroidCB->setChecked(isOn(preferences.integerForKey("UsePolaroid")));
  const std::int64_t showsTrack = preferences.integerForKey("ShowiTunesTrack");
  _showiTunesTrackCB->setChecked(isOn(showsTrack));
  _iTunesTypePop->setEnabled(isOn(showsTrack));
  _showiTunesTrackState = showsTrack;
  const std::int64_t numImages = preferences.integerForKey("NumImages");
  _numImagesStepper->setValue(static_cast<int>(std::clamp<std::int64_t>(
      numImages, _numImagesStepper->minimum(), _numImagesStepper->maximum())));
  _numImagesLabel->setText(QString::number(numImages));
  _storedDelay = preferences.doubleForKey("Delay");
  if (!std::isfinite(_storedDelay)) _storedDelay = view::kDefaultDelay;
  _delayField->setMinimum(kLeastDelay);
  _delayField->setValue(_storedDelay);
  _shownDelay = _delayField->value();
  const QVariant type = static_cast<qlonglong>(preferences.integerForKey("iTunesTrackType"));
  if (const int item = _iTunesTypePop->findData(type); item >= 0) {
    _iTunesTypePop->setCurrentIndex(item);
  }
}

void ConfigureSheet::fillFilter() {
  const auto stored = _services.preferences.objectForKey("FilterPredicate");
  if (const auto* archive = stored ? stored->get<plist::Bytes>() : nullptr) {
    if (const auto predicate = platform::predicate::readPredicateArchive(*archive)) {
      _predEd->setObjectValue(*predicate);
      return;
    }
  }
  // Rows of an earlier opening were dropped with it.
  _predEd->setObjectValue(platform::predicate::Compound{});
  _predEd->addRow();
}

void ConfigureSheet::restoreSize() {
  const auto stored = _services.preferences.dictionaryForKey("ConfigWindowSize");
  if (!stored) return;
  const auto width = sizeIn(*stored, "Width");
  const auto height = sizeIn(*stored, "Height");
  if (width && height) {
    _configWindow->resize(static_cast<int>(*width), static_cast<int>(*height));
  }
}

void ConfigureSheet::showMissingSources(const std::vector<std::string>& problems) {
  _missingSourcesNotice->setVisible(!problems.empty());
  if (problems.empty()) return;
  QString text = QCoreApplication::translate(
      "Settings", "These folders cannot be found. OK takes them out of the list:");
  const auto named = std::min<std::size_t>(problems.size(), kMostNamed);
  for (std::size_t i = 0; i < named; ++i) text += "\n• " + QString::fromStdString(problems[i]);
  if (named < problems.size()) text += "\n…";
  _missingSourcesNotice->setText(text);
}

void ConfigureSheet::alertOfFailure() {
  _services.log.write("Pelmora: Pelmora: Failed to load configuration window.");
  _services.sound.beep();
  QMessageBox alert(QMessageBox::Critical, "Pelmora",
                    QCoreApplication::translate("Settings", "Failed to load configuration window."),
                    QMessageBox::NoButton, _parent);
  alert.addButton(QCoreApplication::translate("Settings", "Damn"), QMessageBox::AcceptRole);
  alert.exec();
}

// Ending ------------------------------------------------------------------------------------------

void ConfigureSheet::onOK() {
  if (!_sourceListViewController->endEditing()) return;
  platform::PreferencesStore& preferences = _services.preferences;
  const bool isDelayUntouched = _delayField->value() == _shownDelay && _storedDelay >= kLeastDelay;
  preferences.setObject(
      "Sources",
      _sourceListViewController->getSourcesForStoringInPrefsMakingSecurityScopedBookmarks(false));
  preferences.setObject("UsePolaroid", _polaroidCB->isChecked() ? 1 : 0);
  preferences.setObject("ShowiTunesTrack", _showiTunesTrackState);
  preferences.setObject("NumImages",
                        static_cast<std::int64_t>(_numImagesLabel->text().toLongLong()));
  preferences.setObject("Delay", isDelayUntouched ? _storedDelay : _delayField->value());
  preferences.setObject("iTunesTrackType",
                        static_cast<std::int64_t>(_iTunesTypePop->currentData().toLongLong()));
  storeSize();
  storeFilter();
  end(kOK);
}

void ConfigureSheet::onCancel() {
  storeSize();
  end(kCancel);
}

/// What the window manager puts around it is no part of the sheet.
void ConfigureSheet::storeSize() {
  const QSize size = _configWindow ? _configWindow->size() : QSize(0, 0);
  _services.preferences.setObject(
      "ConfigWindowSize", plist::Dictionary{{"Width", static_cast<double>(size.width())},
                                            {"Height", static_cast<double>(size.height())}});
}

void ConfigureSheet::storeFilter() {
  const auto predicate = _predEd->predicate();
  const auto archive = platform::predicate::writePredicateArchive(
      predicate.value_or(platform::predicate::Compound{}));
  if (archive) {
    _services.preferences.setObject("FilterPredicate", *archive);
  } else {
    _services.log.print("Error archiving filter predicate: %s", archive.error().message.c_str());
  }
}

void ConfigureSheet::end(ReturnCode code) {
  const Status stored = _services.preferences.synchronize();
  if (const auto list = _view.sourceList()) list->unloadSources();
  _isOpen = false;
  _configWindow->hide();
  sheetEnded(code);
  if (!stored) warnOfLoss(stored.error());
}

/// Without waiting for an answer: the program may be about to end.
void ConfigureSheet::warnOfLoss(const Error& problem) {
  auto* warning =
      new QMessageBox(QMessageBox::Warning, "Pelmora",
                      QCoreApplication::translate("Settings", "The settings could not be saved.") +
                          "\n" + QString::fromStdString(problem.message),
                      QMessageBox::Ok, _parent);
  warning->setAttribute(Qt::WA_DeleteOnClose);
  warning->open();
}

}  // namespace pelmora::config
