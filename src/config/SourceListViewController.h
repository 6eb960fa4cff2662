#pragma once

#include "config/SourceMenu.h"
#include "config/SourcesController.h"
#include "config/SourceTable.h"
#include "platform/PropertyList.h"
#include "platform/Services.h"
#include "shared/Result.h"
#include "sources/SourceEntry.h"

#include <QButtonGroup>
#include <QLineEdit>
#include <QObject>
#include <QPointer>
#include <QStringList>
#include <QWidget>

#include <functional>
#include <memory>
#include <vector>

class QToolButton;

namespace pelmora::config {

class DaysCellView;
class FolderChooser;
class SourceDelegate;

/// The table in which the user edits the list of folders. Nothing that is edited is stored before
/// the sheet asks for it. Thread: main. Ownership: `services` and the chooser outlive it. The view
/// is its own until it is put into a window, which then owns it; a view that outlives its
/// controller is empty and does nothing. Errors: a folder that is in the list already, or that is
/// dropped and is none, is left out; a chance beyond its bounds beeps, and is corrected before it
/// is taken.
class SourceListViewController : public QObject, private SourceTableOwner {
 public:
  // What stands at the ids of `addAndDeleteSegButtons`.
  static constexpr int kAddSegment = 0;
  static constexpr int kRemoveSegment = 1;

  /// Reads "SourceListViewController.ui" from the resource folder.
  [[nodiscard]] static Result<std::unique_ptr<SourceListViewController>> load(
      const platform::Services& services, FolderChooser& chooser);
  ~SourceListViewController() override;

  [[nodiscard]] QWidget* view() const { return _view; }

  /// The entries as they are edited by now.
  [[nodiscard]] const std::vector<sources::SourceEntry>& sources() const;
  void setSources(std::vector<sources::SourceEntry> sources);
  [[nodiscard]] SourcesController& sourcesController() { return _sourcesController; }
  [[nodiscard]] SourceTable* sourceTable() const { return _sourceTable; }
  /// The choices for the screens: all, and the number of each display there was at the start.
  [[nodiscard]] const QStringList& screensMenuList() const { return _screensMenuList; }
  /// All that take the focus, in their order; none when the view is gone.
  [[nodiscard]] std::vector<QWidget*> controls() const;
  [[nodiscard]] QButtonGroup& addAndDeleteSegButtons() { return _addAndDeleteSegButtons; }

  /// Shows how many pictures there are in a source's folder, or that it is gone.
  void setStatus(const FilePath& url, SourceStatus status);

  void viewDidLoad();
  /// What the button at `selectedSegment` does.
  void addOrRemoveFolder(int selectedSegment);
  /// Asks for folders, and adds them.
  void addNewFolder();
  /// Adds folders to the list, and selects them. What is in the list already, also by another path,
  /// is left out.
  void addFolders(const std::vector<FilePath>& folders);
  void removeSelectedFolders() override;
  /// Enables what acts on the selected folders.
  void enableDeleteButton();
  /// The item with that tag was chosen in the cell's menu.
  void dayChosen(DaysCellView& sender, int tag);
  /// A widget for the cell, filled, or null for columns that have none. An existing `cell` only
  /// gets the row's values.
  QWidget* viewForTableColumn(SourceColumn column, int row, QWidget* cell) override;
  void tableViewSelectionDidChange();
  /// Whether a field may end editing. A chance beyond its bounds may not: a beep sounds, and the
  /// field holds the nearer bound.
  bool controlTextShouldEndEditing(QLineEdit& control);
  /// Ends an edit that is open, for the sheet to ask before it stores or closes. False where that
  /// was refused: the sheet then stays as it is.
  bool endEditing();

  /// The entries as they are stored. One whose bookmark cannot be made is logged, and left out.
  /// Bookmarks are the same with and without security scope: this system knows none.
  [[nodiscard]] plist::Array getSourcesForStoringInPrefsMakingSecurityScopedBookmarks(
      bool securityScoped) const;

  /// Called after folders were added or removed, and after each edit; not by `setSources`.
  std::function<void()> sourcesChanged;
  /// Shows a folder in the desktop's file manager. Without it there is no such item in the menu.
  std::function<void(const FilePath&)> openFolder;

 private:
  SourceListViewController(const platform::Services& services, FolderChooser& chooser,
                           std::unique_ptr<QWidget> view);
  Status connectOutlets();
  void makeMenu();
  void fillMenu();

  bool mayEndEditing(QWidget& editor) override;
  void toggleEnabled(int row) override;
  void activate(const QModelIndex& index) override;
  void showMenu(const QPoint& globalPosition) override;
  [[nodiscard]] bool acceptsDrop(const std::vector<FilePath>& paths) override;
  void drop(const std::vector<FilePath>& paths) override;

  [[nodiscard]] std::vector<int> selectedRows() const;
  void selectFrom(int row);
  void openDaysMenu(int row);
  QWidget* makeDaysCell(int row);
  QWidget* makeEnabledCell(int row);

  const platform::Services& _services;
  FolderChooser& _chooser;
  SourcesController _sourcesController;
  QButtonGroup _addAndDeleteSegButtons;  // the buttons are in the view
  QStringList _screensMenuList;
  QPointer<QWidget> _view;
  QToolButton* _changeButton = nullptr;    // in the view
  QPointer<SourceTable> _sourceTable;      // in the view
  QPointer<SourceDelegate> _cellDelegate;  // in the view
  QPointer<SourceMenu> _menu;              // the button's
};

}  // namespace pelmora::config
