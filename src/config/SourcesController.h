#pragma once

#include "config/ChanceValueTransformer.h"
#include "config/ScreensValueTransformer.h"
#include "shared/FilePath.h"
#include "sources/SourceEntry.h"

#include <QAbstractTableModel>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <unordered_map>
#include <vector>

namespace pelmora::config {

/// The columns of the list of sources, from the leading edge.
enum class SourceColumn : int { enabled, folder, pictures, days, chance, screens };
inline constexpr int kNumSourceColumns = 6;

/// What is known of a source's folder while its list is shown.
struct SourceStatus {
  std::optional<std::size_t> pictures;  // found in it so far
  bool isGone = false;

  bool operator==(const SourceStatus&) const = default;
};

/// The sources that are being edited, one a row. Edits change its copies of the entries at once.
/// Thread: main. Ownership: the log outlives it. Errors: rows and values that it cannot use are
/// ignored.
class SourcesController : public QAbstractTableModel {
 public:
  // Beside the toolkit's roles:
  static constexpr int kIsGoneRole = Qt::UserRole;         // bool, of the folder
  static constexpr int kIsEnabledRole = Qt::UserRole + 1;  // bool, of the row
  static constexpr int kDaysRole = Qt::UserRole + 2;       // days mask, of the row

  explicit SourcesController(platform::Log& log, QObject* parent = nullptr);

  [[nodiscard]] const std::vector<sources::SourceEntry>& content() const { return _content; }
  /// Replaces all rows, and forgets what is known of their folders.
  void setContent(std::vector<sources::SourceEntry> content);
  /// Appends rows.
  void addObjects(std::vector<sources::SourceEntry> entries);
  /// Removes rows, given in any order.
  void removeObjects(std::vector<int> rows);

  // Edits of several rows, which are announced as one. Those that are no rows are left out.
  void setEnabled(const std::vector<int>& rows, bool enabled);
  void setDays(const std::vector<int>& rows, std::uint64_t days);
  /// Adds the days of a mask, or takes them away.
  void changeDays(const std::vector<int>& rows, std::uint64_t days, bool isUsed);
  /// What was typed into a column with fields.
  void setTyped(const std::vector<int>& rows, SourceColumn column, const QString& typed);
  /// Of the folder, in whichever row it is.
  void setStatus(const FilePath& url, SourceStatus status);

  [[nodiscard]] static QModelIndex indexOf(const QAbstractItemModel& model, int row,
                                           SourceColumn column) {
    return model.index(row, static_cast<int>(column));
  }
  [[nodiscard]] static bool isIn(const QModelIndex& index, SourceColumn column) {
    return index.isValid() && index.column() == static_cast<int>(column);
  }

  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
  [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation,
                                    int role) const override;
  [[nodiscard]] Qt::ItemFlags flags(const QModelIndex& index) const override;
  bool setData(const QModelIndex& index, const QVariant& value, int role) override;

  /// Called after rows were added or removed, and after an entry was edited; not by `setContent`.
  std::function<void()> sourcesChanged;

 private:
  [[nodiscard]] bool hasRow(int row) const;
  [[nodiscard]] SourceStatus statusOf(const sources::SourceEntry& entry) const;
  [[nodiscard]] QString shownText(const sources::SourceEntry& entry, SourceColumn column) const;
  [[nodiscard]] QString toolTip(const sources::SourceEntry& entry, SourceColumn column) const;
  [[nodiscard]] QString accessibleText(const sources::SourceEntry& entry,
                                       SourceColumn column) const;
  void setChance(sources::SourceEntry& entry, const QString& typed) const;
  void setScreens(sources::SourceEntry& entry, const QString& typed) const;
  void edit(const std::vector<int>& rows, SourceColumn first, SourceColumn last,
            const std::function<void(sources::SourceEntry&)>& change);
  void announce();

  ChanceValueTransformer _chances;
  ScreensValueTransformer _screens;
  std::vector<sources::SourceEntry> _content;
  std::unordered_map<FilePath, SourceStatus> _statuses;
};

/// What the user reads for every screen.
[[nodiscard]] QString allScreensText();

}  // namespace pelmora::config
