#include "config/SourceListViewController.h"

#include "config/ChanceText.h"
#include "config/DayNames.h"
#include "config/DaysCellView.h"
#include "config/EnabledCellView.h"
#include "config/FolderChooser.h"
#include "config/InterfaceLoader.h"
#include "config/SourceDelegate.h"
#include "platform/Bookmarks.h"
#include "platform/Displays.h"
#include "platform/Files.h"
#include "platform/Log.h"
#include "platform/Sound.h"

#include <QAction>
#include <QCoreApplication>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QLocale>
#include <QPushButton>
#include <QToolButton>

#include <algorithm>
#include <iterator>
#include <limits>
#include <optional>
#include <unordered_set>
#include <utility>

namespace pelmora::config {

namespace {

using sources::SourceEntry;

constexpr const char* kInterfaceFile = "SourceListViewController.ui";

using Identities = std::unordered_set<platform::FileIdentity, platform::FileIdentityHash>;

std::optional<platform::FileIdentity> identityOf(const platform::Files& files,
                                                 const FilePath& path) {
  const auto facts = files.facts(path, platform::FinalLink::follow);
  return facts ? std::optional(facts->identity) : std::nullopt;
}

Identities identitiesOf(const platform::Files& files, const std::vector<SourceEntry>& entries) {
  Identities identities;
  for (const SourceEntry& entry : entries) {
    if (const auto identity = identityOf(files, entry.url)) identities.insert(*identity);
  }
  return identities;
}

}  // namespace

Result<std::unique_ptr<SourceListViewController>> SourceListViewController::load(
    const platform::Services& services, FolderChooser& chooser) {
  const FilePath file = services.resourceFolder / kInterfaceFile;
  auto view = loadInterface(file, {{QStringLiteral("SourceTable"), [](QWidget* parent) -> QWidget* {
                                      return new SourceTable(parent);
                                    }}});
  if (!view) return view.error();
  std::unique_ptr<SourceListViewController> controller(
      new SourceListViewController(services, chooser, *std::move(view)));
  if (const Status connected = controller->connectOutlets(); !connected) {
    return Error{file.bytes() + ": " + connected.error().message};
  }
  controller->viewDidLoad();
  return controller;
}

SourceListViewController::SourceListViewController(const platform::Services& services,
                                                   FolderChooser& chooser,
                                                   std::unique_ptr<QWidget> view)
    : _services(services),
      _chooser(chooser),
      _sourcesController(services.log),
      _view(view.release()) {}

SourceListViewController::~SourceListViewController() {
  delete _menu;
  if (!_view) return;
  if (!_view->parent()) {
    delete _view;
    return;
  }
  // Its window has it, and may go on showing it.
  if (_cellDelegate) _cellDelegate->shouldEndEditing = nullptr;
  if (_sourceTable) {
    _sourceTable->setOwner(nullptr);
    _sourceTable->setModel(nullptr);
  }
  _view->setEnabled(false);
}

Status SourceListViewController::connectOutlets() {
  _sourceTable =
      dynamic_cast<SourceTable*>(_view->findChild<QTableView*>(QStringLiteral("sourceTable")));
  auto* add = _view->findChild<QPushButton*>(QStringLiteral("addButton"));
  auto* remove = _view->findChild<QPushButton*>(QStringLiteral("removeButton"));
  if (!_sourceTable) return Error{"there is no \"sourceTable\""};
  if (!add || !remove) return Error{"there is no \"addButton\" or no \"removeButton\""};
  _changeButton = _view->findChild<QToolButton*>(QStringLiteral("changeButton"));
  if (!_changeButton) return Error{"there is no \"changeButton\""};

  _addAndDeleteSegButtons.setExclusive(false);
  _addAndDeleteSegButtons.addButton(add, kAddSegment);
  _addAndDeleteSegButtons.addButton(remove, kRemoveSegment);
  connect(&_addAndDeleteSegButtons, &QButtonGroup::idClicked, this,
          &SourceListViewController::addOrRemoveFolder);
  connect(_changeButton, &QToolButton::clicked, this,
          [this] { showMenu(_changeButton->mapToGlobal(_changeButton->rect().bottomLeft())); });

  _cellDelegate = new SourceDelegate(_sourceTable);
  _cellDelegate->shouldEndEditing = [this](QLineEdit& field) {
    return controlTextShouldEndEditing(field);
  };
  _sourceTable->setItemDelegate(_cellDelegate);
  _sourceTable->setModel(&_sourcesController);
  _sourceTable->setOwner(this);
  _sourceTable->sizeColumns();
  connect(_sourceTable->selectionModel(), &QItemSelectionModel::selectionChanged, this,
          &SourceListViewController::tableViewSelectionDidChange);
  _sourcesController.sourcesChanged = [this] {
    if (sourcesChanged) sourcesChanged();
  };
  return Done{};
}

void SourceListViewController::viewDidLoad() {
  enableDeleteButton();
  _screensMenuList.append(allScreensText());
  const std::size_t numScreens = _services.displays.screens().size();
  for (std::size_t screen = 1; screen <= numScreens; ++screen) {
    _screensMenuList.append(QString::number(screen));
  }
  _cellDelegate->setScreensMenuList(_screensMenuList);
  makeMenu();
}

/// It belongs to its button, as assistive technology finds no others.
void SourceListViewController::makeMenu() {
  _menu = new SourceMenu(_sourcesController, _screensMenuList, _changeButton);
  _menu->editCell = [this](int row, SourceColumn column) {
    _sourceTable->editCell(SourcesController::indexOf(_sourcesController, row, column));
  };
  _menu->removeSources = [this] { removeSelectedFolders(); };
  connect(_menu, &QMenu::aboutToShow, this, &SourceListViewController::fillMenu);
  _changeButton->setMenu(_menu);
}

const std::vector<SourceEntry>& SourceListViewController::sources() const {
  return _sourcesController.content();
}

void SourceListViewController::setSources(std::vector<SourceEntry> sources) {
  _sourcesController.setContent(std::move(sources));
  enableDeleteButton();
}

std::vector<QWidget*> SourceListViewController::controls() const {
  if (!_sourceTable) return {};
  return {_sourceTable, _addAndDeleteSegButtons.button(kAddSegment),
          _addAndDeleteSegButtons.button(kRemoveSegment), _changeButton};
}

void SourceListViewController::setStatus(const FilePath& url, SourceStatus status) {
  _sourcesController.setStatus(url, status);
}

void SourceListViewController::addOrRemoveFolder(int selectedSegment) {
  if (selectedSegment == kAddSegment) addNewFolder();
  if (selectedSegment == kRemoveSegment) removeSelectedFolders();
}

void SourceListViewController::addNewFolder() {
  if (!_view) return;
  _chooser.chooseFolders(_view->window(),
                         [self = QPointer(this)](const std::vector<FilePath>& chosen) {
                           if (self) self->addFolders(chosen);
                         });
}

void SourceListViewController::addFolders(const std::vector<FilePath>& folders) {
  Identities known = identitiesOf(_services.files, sources());
  std::vector<SourceEntry> added;
  for (const FilePath& folder : folders) {
    SourceEntry entry;
    entry.url = folder;
    entry.identity = identityOf(_services.files, folder);
    if (entry.identity && !known.insert(*entry.identity).second) continue;
    added.push_back(std::move(entry));
  }
  if (added.empty()) return;
  const int first = _sourcesController.rowCount();
  _sourcesController.addObjects(std::move(added));
  selectFrom(first);
  enableDeleteButton();
}

void SourceListViewController::selectFrom(int row) {
  if (!_sourceTable) return;
  const int last = _sourcesController.rowCount() - 1;
  QItemSelectionModel& selection = *_sourceTable->selectionModel();
  selection.setCurrentIndex(
      SourcesController::indexOf(_sourcesController, row, SourceColumn::folder),
      QItemSelectionModel::NoUpdate);
  selection.select(QItemSelection(_sourcesController.index(row, 0),
                                  _sourcesController.index(last, kNumSourceColumns - 1)),
                   QItemSelectionModel::ClearAndSelect);
  _sourceTable->revealRow(row);
}

std::vector<int> SourceListViewController::selectedRows() const {
  std::vector<int> rows;
  if (!_sourceTable) return rows;
  for (const QItemSelectionRange& range : _sourceTable->selectionModel()->selection()) {
    for (int row = range.top(); row <= range.bottom(); ++row) rows.push_back(row);
  }
  return rows;
}

void SourceListViewController::removeSelectedFolders() {
  _sourcesController.removeObjects(selectedRows());
  enableDeleteButton();
}

void SourceListViewController::enableDeleteButton() {
  QAbstractButton* remove = _addAndDeleteSegButtons.button(kRemoveSegment);
  if (!remove || !_sourceTable) return;
  const bool hasSelection = _sourceTable->selectionModel()->hasSelection();
  remove->setEnabled(hasSelection);
  _changeButton->setEnabled(hasSelection);
}

void SourceListViewController::tableViewSelectionDidChange() { enableDeleteButton(); }

QWidget* SourceListViewController::viewForTableColumn(SourceColumn column, int row, QWidget* cell) {
  const SourceEntry& entry = sources()[static_cast<std::size_t>(row)];
  switch (column) {
    case SourceColumn::enabled:
      if (!cell) return makeEnabledCell(row);
      static_cast<EnabledCellView*>(cell)->cb().setChecked(entry.enabled);
      return cell;
    case SourceColumn::days:
      if (!cell) return makeDaysCell(row);
      static_cast<DaysCellView*>(cell)->showDays(entry.days);
      return cell;
    default:
      return nullptr;  // painted
  }
}

QWidget* SourceListViewController::makeEnabledCell(int row) {
  auto* cell = new EnabledCellView;
  cell->setSourceDict(_sourcesController.index(row, static_cast<int>(SourceColumn::enabled)));
  cell->cb().setChecked(sources()[static_cast<std::size_t>(row)].enabled);
  connect(&cell->cb(), &QCheckBox::clicked, this, [this, cell](bool isOn) {
    if (cell->sourceDict().isValid()) {
      _sourcesController.setEnabled({cell->sourceDict().row()}, isOn);
    }
  });
  return cell;
}

QWidget* SourceListViewController::makeDaysCell(int row) {
  auto* cell = new DaysCellView;
  cell->fill(_sourcesController.index(row, static_cast<int>(SourceColumn::days)),
             sources()[static_cast<std::size_t>(row)].days);
  cell->chosen = [this, cell](int tag) { dayChosen(*cell, tag); };
  return cell;
}

void SourceListViewController::dayChosen(DaysCellView& sender, int tag) {
  if (!sender.sourceDict().isValid()) return;
  const int row = sender.sourceDict().row();
  std::uint64_t days = sources()[static_cast<std::size_t>(row)].days;
  if (tag >= 0 && tag < kDaysOfWeek) {
    days ^= std::uint64_t{1} << tag;
  } else if (tag == DaysCellView::kEveryDayTag) {
    days = sources::kEveryDay;
  } else if (tag == DaysCellView::kNoDaysTag) {
    days = 0;
  } else {
    return;
  }
  _sourcesController.setDays({row}, days);
  sender.showDays(days);
}

bool SourceListViewController::controlTextShouldEndEditing(QLineEdit& control) {
  constexpr double kNoBound = std::numeric_limits<double>::min();
  double lowest = kNoBound;
  double highest = std::numeric_limits<double>::max();
  if (_sourceTable && _sourceTable->isAncestorOf(&control)) {
    lowest = kLowestChance;
    highest = kHighestChance;
  }
  if (lowest == kNoBound) return true;
  // A number as it is written in the user's language is one here too, where the rest of the module
  // would read what stands before its comma.
  const QString text = withDecimalPoint(control.text(), QLocale());
  if (text != control.text()) control.setText(text);
  const auto corrected = correctedChance(text, lowest, highest);
  if (!corrected) return true;
  _services.sound.beep();
  control.setText(*corrected);
  control.selectAll();
  return false;
}

bool SourceListViewController::mayEndEditing(QWidget& editor) {
  auto* field = qobject_cast<QLineEdit*>(&editor);
  return !field || controlTextShouldEndEditing(*field);
}

bool SourceListViewController::endEditing() { return !_sourceTable || _sourceTable->endEditing(); }

void SourceListViewController::toggleEnabled(int row) {
  _sourcesController.setEnabled({row}, !sources()[static_cast<std::size_t>(row)].enabled);
}

void SourceListViewController::activate(const QModelIndex& index) {
  if (SourcesController::isIn(index, SourceColumn::days)) return openDaysMenu(index.row());
  if (SourcesController::isIn(index, SourceColumn::enabled)) return toggleEnabled(index.row());
  if (SourcesController::isIn(index, SourceColumn::folder) && openFolder) {
    openFolder(sources()[static_cast<std::size_t>(index.row())].url);
  }
}

void SourceListViewController::openDaysMenu(int row) {
  _sourceTable->revealRow(row);
  if (auto* cell = static_cast<DaysCellView*>(_sourceTable->cellAt(SourceColumn::days, row))) {
    cell->openMenu();
  }
}

void SourceListViewController::showMenu(const QPoint& globalPosition) {
  _menu->popup(globalPosition);
}

/// As it is about to open. An edit that may not end yet leaves nothing to choose.
void SourceListViewController::fillMenu() {
  _menu->openFolder = nullptr;
  if (openFolder) {
    _menu->openFolder = [this](int row) {
      openFolder(sources()[static_cast<std::size_t>(row)].url);
    };
  }
  _menu->fill(endEditing() ? selectedRows() : std::vector<int>());
}

bool SourceListViewController::acceptsDrop(const std::vector<FilePath>& paths) {
  return std::any_of(paths.begin(), paths.end(), [this](const FilePath& path) {
    return platform::isDirectory(_services.files, path);
  });
}

void SourceListViewController::drop(const std::vector<FilePath>& paths) {
  std::vector<FilePath> folders;
  std::copy_if(
      paths.begin(), paths.end(), std::back_inserter(folders),
      [this](const FilePath& path) { return platform::isDirectory(_services.files, path); });
  addFolders(folders);
}

plist::Array SourceListViewController::getSourcesForStoringInPrefsMakingSecurityScopedBookmarks(
    bool /*securityScoped*/) const {
  plist::Array stored;
  stored.reserve(sources().size());
  for (const SourceEntry& entry : sources()) {
    auto bookmark = _services.bookmarks.make(entry.url);
    if (!bookmark) {
      _services.log.print("Could not create bookmark for url '%s': %s", entry.url.c_str(),
                          bookmark.error().message.c_str());
      continue;
    }
    stored.emplace_back(sources::storedForm(entry, *std::move(bookmark)));
  }
  return stored;
}

}  // namespace pelmora::config
