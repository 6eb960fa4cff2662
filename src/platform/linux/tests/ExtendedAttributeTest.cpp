#include "platform/linux/ExtendedAttribute.h"

#include "platform/fake/TemporaryFolder.h"

#include <sys/xattr.h>

#include <gtest/gtest.h>

#include <cerrno>

namespace pelmora::platform {

TEST(ExtendedAttribute, isReadWhole) {
  const TemporaryFolder temporary;
  const FilePath file = temporary.write("file");
  const std::string value("a\0b\xFF", 4);
  if (::setxattr(file.c_str(), "user.test", value.data(), value.size(), 0) != 0) {
    ASSERT_EQ(errno, EOPNOTSUPP);  // this filesystem keeps none
    return;
  }
  EXPECT_EQ(extendedAttribute(file, "user.test"), value);
  EXPECT_EQ(extendedAttribute(temporary.link("link", "file"), "user.test"), value);
  EXPECT_EQ(extendedAttribute(file, "user.other"), std::nullopt);
}

TEST(ExtendedAttribute, isNoneWhereNothingIsThere) {
  const TemporaryFolder temporary;
  EXPECT_EQ(extendedAttribute(temporary.path() / "nothing", "user.test"), std::nullopt);
  EXPECT_EQ(extendedAttribute(temporary.write("file"), "no.such.namespace"), std::nullopt);
}

}  // namespace pelmora::platform
