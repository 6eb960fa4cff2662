#include <gtest/gtest.h>
#include <QGuiApplication>

#include <memory>

namespace pelmora {

namespace {

// Fonts need an application.
class GuiEnvironment : public testing::Environment {
 public:
  void SetUp() override { _application = std::make_unique<QGuiApplication>(_count, _arguments); }
  void TearDown() override { _application.reset(); }

 private:
  int _count = 1;
  char _name[6] = "tests";
  char* _arguments[2] = {_name, nullptr};
  std::unique_ptr<QGuiApplication> _application;
};

[[maybe_unused]] const testing::Environment* const kEnvironment =
    testing::AddGlobalTestEnvironment(new GuiEnvironment);

}  // namespace

}  // namespace pelmora
