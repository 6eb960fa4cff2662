#include "filtereditor/AttributeNames.h"

#include <QCoreApplication>

#include <array>

namespace pelmora::filtereditor {

namespace {

constexpr std::array kNames = {
    AttributeName{"kMDItemFSName", QT_TRANSLATE_NOOP("Settings", "File name")},
    AttributeName{"kMDItemUserTags", QT_TRANSLATE_NOOP("Settings", "Tags")},
    AttributeName{"kMDItemKeywords", QT_TRANSLATE_NOOP("Settings", "Keywords")},
    AttributeName{"kMDItemTitle", QT_TRANSLATE_NOOP("Settings", "Title")},
    AttributeName{"kMDItemDescription", QT_TRANSLATE_NOOP("Settings", "Description")},
    AttributeName{"kMDItemKind", QT_TRANSLATE_NOOP("Settings", "Kind")},
    AttributeName{"kMDItemPath", QT_TRANSLATE_NOOP("Settings", "Folder and name")},
    AttributeName{"kMDItemCity", QT_TRANSLATE_NOOP("Settings", "City")},
    AttributeName{"kMDItemStateOrProvince", QT_TRANSLATE_NOOP("Settings", "State or province")},
    AttributeName{"kMDItemCountry", QT_TRANSLATE_NOOP("Settings", "Country")},
    AttributeName{"kMDItemNamedLocation", QT_TRANSLATE_NOOP("Settings", "Place")},
    AttributeName{"kMDItemAuthors", QT_TRANSLATE_NOOP("Settings", "Author")},
    AttributeName{"kMDItemCopyright", QT_TRANSLATE_NOOP("Settings", "Copyright")},
    AttributeName{"kMDItemAcquisitionModel", QT_TRANSLATE_NOOP("Settings", "Camera")},
    AttributeName{"kMDItemAcquisitionMake", QT_TRANSLATE_NOOP("Settings", "Camera maker")},
    AttributeName{"kMDItemLensModel", QT_TRANSLATE_NOOP("Settings", "Lens")},
    AttributeName{"kMDItemHeadline", QT_TRANSLATE_NOOP("Settings", "Headline")},
    AttributeName{"kMDItemSubject", QT_TRANSLATE_NOOP("Settings", "Subject")},
    AttributeName{"kMDItemComment", QT_TRANSLATE_NOOP("Settings", "Comment")},
    AttributeName{"kMDItemFinderComment", QT_TRANSLATE_NOOP("Settings", "Comment on file")},
    AttributeName{"kMDItemCreator", QT_TRANSLATE_NOOP("Settings", "Program")},
    AttributeName{"kMDItemColorSpace", QT_TRANSLATE_NOOP("Settings", "Color space")},
    AttributeName{"kMDItemContentType", QT_TRANSLATE_NOOP("Settings", "Content type")},
    AttributeName{"kMDItemContentTypeTree", QT_TRANSLATE_NOOP("Settings", "Content types")},
    AttributeName{"kMDItemDisplayName", QT_TRANSLATE_NOOP("Settings", "Name as shown")},
};

}  // namespace

QString AttributeName::translated() const { return QCoreApplication::translate("Settings", text); }

std::span<const AttributeName> attributeNames() { return kNames; }

}  // namespace pelmora::filtereditor
