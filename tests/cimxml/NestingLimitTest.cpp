// Reference values nested deeper than the parser takes them, or too long as
// text: each is refused with its line, and the rest of the document is read.
#include "support/Fixtures.h"

namespace orvtest {
namespace {

using NestingLimitTest = TParserFixture;

const std::string kKey = "<QUALIFIER NAME=\"Key\" TYPE=\"boolean\"><VALUE>true</VALUE></QUALIFIER>";

/// R { [Key] R REF Ref; [Key] string S; }
std::string Schema() {
  return Objects({"<CLASS NAME=\"R\"><PROPERTY.REFERENCE NAME=\"Ref\" REFERENCECLASS=\"R\">" +
                  kKey + "</PROPERTY.REFERENCE><PROPERTY NAME=\"S\" TYPE=\"string\">" + kKey +
                  "</PROPERTY></CLASS>"});
}

/// depth references of R, each the key Ref of the one around it; the
/// innermost has the key S.
std::string Nested(std::size_t depth, const std::string &text) {
  std::string open, close;
  for (std::size_t level = 1; level < depth; ++level) {
    open += "<VALUE.REFERENCE><INSTANCENAME CLASSNAME=\"R\"><KEYBINDING NAME=\"Ref\">";
    close += "</KEYBINDING></INSTANCENAME></VALUE.REFERENCE>";
  }
  return open + "<VALUE.REFERENCE><INSTANCENAME CLASSNAME=\"R\"><KEYBINDING NAME=\"S\"><KEYVALUE>" +
         text + "</KEYVALUE></KEYBINDING></INSTANCENAME></VALUE.REFERENCE>" + close;
}

std::string Instance(const std::string &reference, const std::string &key) {
  return "<INSTANCE CLASSNAME=\"R\"><PROPERTY.REFERENCE NAME=\"Ref\">\n" + reference +
         "</PROPERTY.REFERENCE><PROPERTY NAME=\"S\" TYPE=\"string\"><VALUE>" + key +
         "</VALUE></PROPERTY></INSTANCE>";
}

/// How many references the value holds, one inside another.
std::size_t Levels(TCIMValue value) {
  std::size_t levels = 0;
  for (; value.GetType() == kCIMTypeReference && !value.IsNull(); ++levels)
    value = value.GetReference().GetKeyValue("Ref");
  return levels;
}

TEST_F(NestingLimitTest, RefusedReferencesLeaveNullAndTheRestIsRead) {
  const std::string tooDeep = Err("Reference nested more than 16 deep", 2);
  const struct {
    std::size_t depth;
    std::string text;
    std::vector<std::string> log;
    std::size_t levels;
  } cases[] = {
      {16, "x", {}, 16},
      {17, "x", {tooDeep}, 16},
      {100000, "x", {tooDeep}, 16},
      // Backslashes double per level: the sixth reference from the top
      // would be longer than 1 MiB.
      {16,
       std::string(1000, '\\'),
       {Err("Reference longer than 1048576 bytes as text", 2), Ended(kORVStatusInvalidDocument, 2)},
       5},
  };
  for (const auto &c : cases) {
    SCOPED_TRACE(c.depth);
    Reset({Schema()});
    const TResult result =
        Parse(Objects({Instance(Nested(c.depth, c.text), "a"), Instance(Nested(1, "y"), "b")}));
    EXPECT_EQ(Log(), c.log);
    ASSERT_EQ(result.instances.size(), 2u);
    EXPECT_EQ(Levels(result.instances[0]->GetPropertyValue("Ref")), c.levels);
    EXPECT_EQ(Levels(result.instances[1]->GetPropertyValue("Ref")), 1u);
  }
}

} // namespace
} // namespace orvtest
