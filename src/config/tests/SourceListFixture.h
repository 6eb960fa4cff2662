#pragma once

#include "config/FolderChooser.h"
#include "config/SourceListViewController.h"
#include "platform/fake/FakeServices.h"
#include "platform/fake/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <QAbstractButton>
#include <QApplication>
#include <QCoreApplication>
#include <QHeaderView>
#include <QLocale>
#include <QTest>

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace pelmora::config {

/// Answers when a test says so.
class FakeFolderChooser : public FolderChooser {
 public:
  void chooseFolders(QWidget* parent, std::function<void(std::vector<FilePath>)> chosen) override {
    parents.push_back(parent);
    answer = std::move(chosen);
  }

  std::vector<QWidget*> parents;
  std::function<void(std::vector<FilePath>)> answer;
};

/// A list of sources in a window that is shown.
class SourceListFixture : public testing::Test {
 protected:
  SourceListFixture() { services.resourceFolder = FilePath(PELMORA_DATA); }

  void load() {
    auto loaded = SourceListViewController::load(services, chooser);
    ASSERT_TRUE(loaded) << loaded.error().message;
    controller = std::move(*loaded);
    controller->sourcesChanged = [this] { ++changes; };
  }

  /// Loads it, and shows folders that need not exist.
  void show(const std::vector<FilePath>& folders) {
    load();
    controller->setSources(entriesOf(folders));
    controller->view()->resize(700, 300);
    controller->view()->show();
    QApplication::setActiveWindow(controller->view());
    table().setFocus();
    QCoreApplication::processEvents();
  }

  static std::vector<sources::SourceEntry> entriesOf(const std::vector<FilePath>& folders) {
    std::vector<sources::SourceEntry> entries;
    for (const FilePath& folder : folders) {
      entries.emplace_back();
      entries.back().url = folder;
    }
    return entries;
  }

  static std::vector<FilePath> numbered(int howMany) {
    std::vector<FilePath> folders;
    for (int i = 0; i < howMany; ++i) folders.emplace_back("/pictures/" + std::to_string(i));
    return folders;
  }

  SourceTable& table() { return *controller->sourceTable(); }
  const sources::SourceEntry& entry(int row) {
    return controller->sources().at(static_cast<std::size_t>(row));
  }
  std::vector<FilePath> urls() {
    std::vector<FilePath> urls;
    for (const sources::SourceEntry& each : controller->sources()) urls.push_back(each.url);
    return urls;
  }
  QModelIndex at(int row, SourceColumn column) {
    return SourcesController::indexOf(controller->sourcesController(), row, column);
  }
  QAbstractButton& button(int segment) {
    return *controller->addAndDeleteSegButtons().button(segment);
  }
  void makeCurrent(int row, SourceColumn column) { table().setCurrentIndex(at(row, column)); }
  void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
    QTest::keyClick(&table(), key, modifiers);
    QCoreApplication::processEvents();
  }
  /// The field that is open in a cell; null without one.
  template <typename T>
  T* field() {
    for (T* each : table().viewport()->findChildren<T*>(QString(), Qt::FindDirectChildrenOnly)) {
      if (each->isVisible()) return each;
    }
    return nullptr;
  }
  QLineEdit* openChance(int row) {
    makeCurrent(row, SourceColumn::chance);
    press(Qt::Key_F2);
    return field<QLineEdit>();
  }
  /// What was replaced or dropped is gone.
  static void settle() {
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }

  platform::TemporaryFolder temporary;
  platform::FakeServices fakes;
  platform::Services services = fakes.services();
  FakeFolderChooser chooser;
  std::unique_ptr<SourceListViewController> controller;
  int changes = 0;
};

}  // namespace pelmora::config
