#pragma once

#include "shared/FilePath.h"
#include "shared/Result.h"

#include <functional>
#include <map>
#include <memory>

class QString;
class QWidget;

namespace pelmora::config {

/// Makes a widget of the program's own that an interface file names by its class.
using WidgetMaker = std::function<QWidget*(QWidget* parent)>;

/// The widgets that an interface file describes, texts in the user's language. Thread: main.
/// Errors: a file that is missing, or that describes no widget.
[[nodiscard]] Result<std::unique_ptr<QWidget>> loadInterface(
    const FilePath& file, const std::map<QString, WidgetMaker>& ownWidgets = {});

}  // namespace pelmora::config
