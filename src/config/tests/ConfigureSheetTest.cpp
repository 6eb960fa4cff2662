#include "config/ConfigureSheet.h"

#include "config/tests/ConfigureSheetFixture.h"
#include "filtereditor/PredicateEditor.h"
#include "platform/predicate/PredicateArchive.h"
#include "platform/predicate/PredicateText.h"
#include "view/ModuleDefaults.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QSlider>

#include <gmock/gmock.h>

#include <cmath>

namespace pelmora::config {

namespace {

using platform::predicate::Predicate;
using testing::ElementsAre;
using testing::HasSubstr;

class ConfigureSheetTest : public ConfigureSheetFixture {
 protected:
  /// Of the filter, as they are seen.
  [[nodiscard]] int numRows() const {
    int rows = 0;
    for (const QLineEdit* text : sheet->predEd()->findChildren<QLineEdit*>()) {
      if (text->accessibleName() == "Text" && text->isVisible()) ++rows;
    }
    return rows;
  }
};

}  // namespace

TEST_F(ConfigureSheetTest, opensOnWhatIsStored) {
  store("UsePolaroid", 0);
  store("ShowiTunesTrack", 1);
  store("NumImages", 12);
  store("Delay", 7.5);
  store("iTunesTrackType", 2);
  open();
  EXPECT_TRUE(sheet->hasConfigureSheet());
  EXPECT_FALSE(outlet<QCheckBox>("polaroidCB").isChecked());
  EXPECT_TRUE(outlet<QCheckBox>("showiTunesTrackCB").isChecked());
  EXPECT_EQ(outlet<QLabel>("numImagesLabel").text(), "12");
  EXPECT_EQ(outlet<QSlider>("numImagesStepper").value(), 12);
  EXPECT_EQ(outlet<QDoubleSpinBox>("delayField").value(), 7.5);
  EXPECT_EQ(outlet<QDoubleSpinBox>("delayField").minimum(), 0.5);
  EXPECT_EQ(outlet<QComboBox>("iTunesTypePop").currentData().toInt(), 2);
}

TEST_F(ConfigureSheetTest, opensOnTheDefaultsOfAFreshStore) {
  open();
  EXPECT_TRUE(outlet<QCheckBox>("polaroidCB").isChecked());
  EXPECT_FALSE(outlet<QCheckBox>("showiTunesTrackCB").isChecked());
  EXPECT_EQ(outlet<QLabel>("numImagesLabel").text(), "5");
  EXPECT_EQ(outlet<QDoubleSpinBox>("delayField").value(), 4);
  EXPECT_EQ(outlet<QComboBox>("iTunesTypePop").currentData().toInt(), 1);
}

TEST_F(ConfigureSheetTest, hasAnItemForEachStyleOfTheLabel) {
  open();
  auto& pop = outlet<QComboBox>("iTunesTypePop");
  ASSERT_EQ(pop.count(), 3);
  EXPECT_EQ(pop.itemData(pop.findText("Fades in and out")).toInt(), 1);
  EXPECT_EQ(pop.itemData(pop.findText("Flies around")).toInt(), 2);
  EXPECT_EQ(pop.itemData(pop.findText("Stands still")).toInt(), 0);
}

TEST_F(ConfigureSheetTest, storesAllInItsOrderOnOK) {
  storeSources({temporary.mkdir("a").bytes()});
  open();
  outlet<QCheckBox>("polaroidCB").click();
  outlet<QCheckBox>("showiTunesTrackCB").click();
  outlet<QSlider>("numImagesStepper").setValue(9);
  outlet<QDoubleSpinBox>("delayField").setValue(2.5);
  outlet<QComboBox>("iTunesTypePop").setCurrentText("Flies around");
  int ended = -1;
  sheet->sheetEnded = [&ended](ConfigureSheet::ReturnCode code) { ended = code; };
  (void)fakes.preferences.takeWritten();
  const int before = fakes.preferences.synchronizations();
  click(QDialogButtonBox::Ok);
  EXPECT_THAT(fakes.preferences.takeWritten(),
              ElementsAre("Sources", "UsePolaroid", "ShowiTunesTrack", "NumImages", "Delay",
                          "iTunesTrackType", "ConfigWindowSize", "FilterPredicate"));
  EXPECT_EQ(fakes.preferences.synchronizations(), before + 1);
  EXPECT_EQ(stored("Sources").get<plist::Array>()->size(), 1U);
  EXPECT_EQ(stored("UsePolaroid"), plist::Value(0));
  EXPECT_EQ(stored("ShowiTunesTrack"), plist::Value(1));
  EXPECT_EQ(stored("NumImages"), plist::Value(9));
  EXPECT_EQ(stored("Delay"), plist::Value(2.5));
  EXPECT_EQ(stored("iTunesTrackType"), plist::Value(2));
  EXPECT_EQ(ended, ConfigureSheet::kOK);
  EXPECT_FALSE(sheet->configWindow()->isVisible());
}

TEST_F(ConfigureSheetTest, storesItsSizeAloneOnCancel) {
  const plist::Dictionary before = fakes.preferences.storedValues();
  open();
  outlet<QCheckBox>("polaroidCB").click();
  outlet<QSlider>("numImagesStepper").setValue(9);
  sheet->configWindow()->resize(900, 800);
  int ended = -1;
  sheet->sheetEnded = [&ended](ConfigureSheet::ReturnCode code) { ended = code; };
  click(QDialogButtonBox::Cancel);
  plist::Dictionary wanted = before;
  wanted["ConfigWindowSize"] = plist::Dictionary{{"Width", 900.0}, {"Height", 800.0}};
  EXPECT_EQ(fakes.preferences.storedValues(), wanted);
  EXPECT_EQ(ended, ConfigureSheet::kCancel);
}

TEST_F(ConfigureSheetTest, isCancelledByEscapeOnce) {
  open();
  int ended = 0;
  sheet->sheetEnded = [&ended](ConfigureSheet::ReturnCode) { ++ended; };
  QTest::keyClick(sheet->configWindow(), Qt::Key_Escape);
  EXPECT_EQ(ended, 1);
  EXPECT_FALSE(sheet->configWindow()->isVisible());
}

TEST_F(ConfigureSheetTest, dropsTheEditsOfACancelledOpening) {
  open();
  const auto first = sheet->predEd()->predicate();
  outlet<QSlider>("numImagesStepper").setValue(9);
  sheet->predEd()->addRow();
  EXPECT_NE(sheet->predEd()->predicate(), first);
  click(QDialogButtonBox::Cancel);
  open();
  EXPECT_EQ(outlet<QLabel>("numImagesLabel").text(), "5");
  EXPECT_EQ(sheet->predEd()->predicate(), first);
  EXPECT_EQ(numRows(), 1);
}

TEST_F(ConfigureSheetTest, hasItsDesignedSizeUntilOneIsStored) {
  open();
  const QSize designed = sheet->configWindow()->size();
  EXPECT_EQ(designed, QSize(760, 720));  // as in its file
  EXPECT_FALSE(fakes.preferences.storedValues().contains("ConfigWindowSize"));
  click(QDialogButtonBox::Cancel);
  EXPECT_EQ(stored("ConfigWindowSize").get<plist::Dictionary>()->at("Width"),
            plist::Value(static_cast<double>(designed.width())));
}

TEST_F(ConfigureSheetTest, hasTheStoredSize) {
  store("ConfigWindowSize", plist::Dictionary{{"Width", 911.0}, {"Height", 833.0}});
  open();
  EXPECT_EQ(sheet->configWindow()->size(), QSize(911, 833));
}

TEST_F(ConfigureSheetTest, ignoresASizeThatNoWindowHas) {
  open();
  const QSize designed = sheet->configWindow()->size();
  click(QDialogButtonBox::Cancel);
  for (const double size : {0.0, -5.0, 1e9}) {
    store("ConfigWindowSize", plist::Dictionary{{"Width", size}, {"Height", size}});
    open();
    EXPECT_EQ(sheet->configWindow()->size(), designed);
    click(QDialogButtonBox::Cancel);
  }
}

TEST_F(ConfigureSheetTest, takesTheNumberOfPicturesFromItsLabel) {
  store("NumImages", 400);  // more than the stepper goes to
  open();
  EXPECT_EQ(outlet<QLabel>("numImagesLabel").text(), "400");
  click(QDialogButtonBox::Ok);
  EXPECT_EQ(stored("NumImages"), plist::Value(400));
  open();
  QTest::keyClick(&outlet<QSlider>("numImagesStepper"), Qt::Key_Home);
  EXPECT_EQ(outlet<QLabel>("numImagesLabel").text(), "1");
  click(QDialogButtonBox::Ok);
  EXPECT_EQ(stored("NumImages"), plist::Value(1));
}

TEST_F(ConfigureSheetTest, keepsADelayThatItsFieldOnlyRounds) {
  store("Delay", 2.123);
  open();
  click(QDialogButtonBox::Ok);
  EXPECT_EQ(stored("Delay"), plist::Value(2.123));
  store("Delay", 0.1);
  open();
  click(QDialogButtonBox::Ok);
  EXPECT_EQ(stored("Delay"), plist::Value(0.5));
}

TEST_F(ConfigureSheetTest, takesADelayThatIsNoNumberAsTheDefault) {
  store("Delay", std::nan(""));
  open();
  click(QDialogButtonBox::Ok);
  EXPECT_EQ(stored("Delay"), plist::Value(view::kDefaultDelay));
}

TEST_F(ConfigureSheetTest, keepsTheStateOfTheTrackThatWasStored) {
  store("ShowiTunesTrack", 2);
  open();
  EXPECT_TRUE(outlet<QCheckBox>("showiTunesTrackCB").isChecked());
  EXPECT_EQ(sheet->showiTunesTrackState(), 2);
  click(QDialogButtonBox::Ok);
  EXPECT_EQ(stored("ShowiTunesTrack"), plist::Value(2));
}

TEST_F(ConfigureSheetTest, showsOneEmptyRowWithoutAFilterAndStoresIt) {
  open();
  EXPECT_EQ(numRows(), 1);
  click(QDialogButtonBox::Ok);
  const auto predicate =
      platform::predicate::readPredicateArchive(*stored("FilterPredicate").get<plist::Bytes>());
  ASSERT_TRUE(predicate);
  EXPECT_EQ(*predicate, sheet->predEd()->predicate());
  EXPECT_THAT(platform::predicate::textOf(*predicate), HasSubstr("CONTAINS"));
}

TEST_F(ConfigureSheetTest, showsTheStoredFilterAndStoresItAgain) {
  const Predicate filter =
      platform::predicate::parsePredicate("kMDItemCity ==[cd] \"Paris\"").value();
  const plist::Bytes archive = platform::predicate::writePredicateArchive(filter).value();
  store("FilterPredicate", archive);
  open();
  EXPECT_EQ(sheet->predEd()->predicate(), filter);
  click(QDialogButtonBox::Ok);
  EXPECT_EQ(stored("FilterPredicate"), plist::Value(archive));
}

TEST_F(ConfigureSheetTest, keepsAFilterThatItCannotShow) {
  const Predicate filter = platform::predicate::parsePredicate("kMDItemPixelWidth > 3000").value();
  const plist::Bytes archive = platform::predicate::writePredicateArchive(filter).value();
  store("FilterPredicate", archive);
  open();
  click(QDialogButtonBox::Ok);
  EXPECT_EQ(stored("FilterPredicate"), plist::Value(archive));
}

TEST_F(ConfigureSheetTest, startsWithAnEmptyRowWhereTheStoredFilterCannotBeRead) {
  store("FilterPredicate", plist::Bytes{1, 2, 3});
  const std::size_t lines = fakes.log.lines().size();
  open();
  EXPECT_EQ(platform::predicate::textOf(*sheet->predEd()->predicate()).find("CONTAINS") ==
                std::string::npos,
            false);
  for (std::size_t i = lines; i < fakes.log.lines().size(); ++i) {
    EXPECT_THAT(fakes.log.lines()[i], testing::Not(HasSubstr("filter")));
  }
}

TEST_F(ConfigureSheetTest, leavesTheStoredFilterWhereTheNewOneCannotBeArchived) {
  const plist::Bytes archive = platform::predicate::writePredicateArchive(
                                   platform::predicate::parsePredicate("a == 'b'").value())
                                   .value();
  store("FilterPredicate", archive);
  open();
  platform::predicate::Compound without;
  without.type = platform::predicate::CompoundType::negation;
  sheet->predEd()->setObjectValue(without);  // a negation of nothing
  click(QDialogButtonBox::Ok);
  EXPECT_EQ(stored("FilterPredicate"), plist::Value(archive));
  EXPECT_THAT(fakes.log.lines(),
              testing::Contains(testing::StartsWith("Error archiving filter predicate: ")));
}

TEST_F(ConfigureSheetTest, saysWhenItsWindowCannotBeLoaded) {
  for (const char* interfaceFile : {"", "<ui", "<ui version=\"4.0\"/>"}) {
    temporary.write("ConfigWindow.ui", interfaceFile);
    services.resourceFolder = temporary.path();
    const auto before = fakes.sound.beeps();
    answerAlert();
    EXPECT_EQ(sheet->configureSheet(), nullptr);
    EXPECT_EQ(alertText, "Failed to load configuration window.");
    EXPECT_EQ(alertButton, "Damn");
    EXPECT_EQ(fakes.sound.beeps(), before + 1);
    EXPECT_EQ(fakes.log.lines().back(), "Pelmora: Pelmora: Failed to load configuration window.");
  }
}

TEST_F(ConfigureSheetTest, saysWhenTheListOfItsSourcesCannotBeLoaded) {
  open();
  click(QDialogButtonBox::Cancel);
  services.resourceFolder = temporary.path();
  answerAlert();
  EXPECT_EQ(sheet->configureSheet(), nullptr);
  EXPECT_EQ(alertButton, "Damn");
  EXPECT_EQ(view.sourceList()->numLoaders(), 0);
}

TEST_F(ConfigureSheetTest, saysWhenTheSettingsCannotBeSaved) {
  open();
  bool hasEnded = false;
  sheet->sheetEnded = [&hasEnded](ConfigureSheet::ReturnCode) { hasEnded = true; };
  fakes.preferences.failToSynchronize("No space left on device");
  click(QDialogButtonBox::Ok);
  EXPECT_TRUE(hasEnded);
  auto* alert = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
  ASSERT_NE(alert, nullptr);
  EXPECT_THAT(alert->text().toStdString(), HasSubstr("No space left on device"));
  QTest::mouseClick(alert->button(QMessageBox::Ok), Qt::LeftButton);
}

TEST_F(ConfigureSheetTest, canChooseAStyleOnlyWhileTheTrackIsShown) {
  open();
  EXPECT_FALSE(outlet<QComboBox>("iTunesTypePop").isEnabled());
  outlet<QCheckBox>("showiTunesTrackCB").click();
  EXPECT_TRUE(outlet<QComboBox>("iTunesTypePop").isEnabled());
}

}  // namespace pelmora::config
