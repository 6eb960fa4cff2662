#include <gtest/gtest.h>
#include <QApplication>

#include <memory>

namespace pelmora {

namespace {

// Widgets need an application.
class WidgetEnvironment : public testing::Environment {
 public:
  void SetUp() override { _application = std::make_unique<QApplication>(_count, _arguments); }
  void TearDown() override { _application.reset(); }

 private:
  int _count = 1;
  char _name[6] = "tests";
  char* _arguments[2] = {_name, nullptr};
  std::unique_ptr<QApplication> _application;
};

[[maybe_unused]] const testing::Environment* const kEnvironment =
    testing::AddGlobalTestEnvironment(new WidgetEnvironment);

}  // namespace

}  // namespace pelmora
