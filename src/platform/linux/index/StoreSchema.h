#pragma once

#include "platform/linux/index/SqliteDatabase.h"
#include "platform/metadata/FileMetadata.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace pelmora::platform {

// The tables of the store, made from the table of attributes:
//
//   folders  id, path, used (the day)
//   files    id, which is the revision; folder, name, the stamp, folded (the name), and a column
//            for each attribute, with another for texts as they are folded
//
// Texts are BLOBs of their bytes: compared byte by byte, whatever they hold. Several values are one
// text, with `kBetween` before, between and after them. Dates are seconds since 2001.

constexpr char kBetween = '\x1F';

/// What of a text is asked for: itself, or as it is without case and diacritics.
enum class TextForm : std::uint8_t { raw, folded };

/// A column that holds an attribute.
struct StoredColumn {
  std::size_t attribute = 0;
  TextForm form = TextForm::raw;
};

/// In the order in which they stand in the table, after `kStampColumns`.
[[nodiscard]] std::span<const StoredColumn> storedColumns();
inline constexpr const char* kStampColumns = "name, inode, bytes, changeSeconds, changeNanoseconds";

/// The statements that make the tables.
[[nodiscard]] std::span<const std::string> schemaStatements();
/// Tells apart what is not to be taken for the same: the tables, the attributes and what they are
/// read from, the version of Unicode by which texts are folded.
[[nodiscard]] int schemaVersion();

[[nodiscard]] std::string nameOf(const StoredColumn& column);

// What paths are made of: parameters of every statement that asks for them.
constexpr int kFolderPrefixParameter = 3;  // the path of the folder, with a slash behind it
constexpr int kFoldedPrefixParameter = 4;  // the same, folded

/// The SQL that gives an attribute of a file; names and paths are not stored as attributes.
[[nodiscard]] std::string expressionOf(std::size_t attribute, TextForm form);
[[nodiscard]] bool isName(std::size_t attribute);
[[nodiscard]] bool isPath(std::size_t attribute);

/// Without case and diacritics, as the folded columns are.
[[nodiscard]] std::string foldedForStore(std::string_view text);

/// An attribute's values as one text; each folded, if asked for.
[[nodiscard]] std::string joinedTexts(std::span<const predicate::Constant> values, TextForm form);
/// The values of an attribute in a column; none where there is something else than was stored.
[[nodiscard]] std::vector<predicate::Constant> valuesIn(const SqlValue& stored,
                                                        std::size_t attribute);

}  // namespace pelmora::platform
