#pragma once

#include <QLineEdit>

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace pelmora::filtereditor {

/// Asks which texts an attribute may have. The answer may come on any thread, late, or never.
using Suggest = std::function<void(const std::string& attribute,
                                   std::function<void(std::vector<std::string>)> answer)>;

/// A field for the text of an attribute. When it gets the focus it asks for suggestions, and offers
/// those in which the text so far stands; Down offers all that there are. Thread: main.
class SuggestingLineEdit : public QLineEdit {
 public:
  explicit SuggestingLineEdit(QWidget* parent = nullptr);
  ~SuggestingLineEdit() override;

  void setSuggest(Suggest suggest) { _suggest = std::move(suggest); }
  /// Suggestions for another one are forgotten.
  void setAttribute(std::string attribute);

 protected:
  void focusInEvent(QFocusEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  struct Mailbox;

  void ask();
  void take(std::uint64_t question, const std::vector<std::string>& values);

  Suggest _suggest;
  std::string _attribute;
  std::uint64_t _question = 0;  // the number of the last one
  const std::shared_ptr<Mailbox> _mailbox;
};

}  // namespace pelmora::filtereditor
