#include "xml/Mending.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "platform/posix/TemporaryFolder.h"

namespace wenlolib::tests {
namespace {

using xml::mend;

struct Case {
  std::string text;
  std::string mended;
};

const std::vector<Case>& cases() {
  static const std::vector<Case> all = {
      {"", ""},
      {"plain", "plain"},
      {"&", "&amp;"},
      {"A & B", "A &amp; B"},
      {"A&B", "A&amp;B"},
      {"&&", "&amp;&amp;"},
      {"&;", "&amp;;"},
      {"&amp;", "&amp;"},
      {"&lt;&gt;&quot;&apos;", "&lt;&gt;&quot;&apos;"},
      {"&AMP;", "&amp;AMP;"},
      {"&amp", "&amp;amp"},
      {"&nbsp;", "&amp;nbsp;"},
      {"&#65;&#x41;", "&#65;&#x41;"},
      {"&#xaF;&#xfA;&#x9;&#9;", "&#xaF;&#xfA;&#x9;&#9;"},
      {"&#x7F;&#x80;&#x7FF;&#x800;&#xFFFD;&#x10000;&#x10FFFF;",
       "&#x7F;&#x80;&#x7FF;&#x800;&#xFFFD;&#x10000;&#x10FFFF;"},
      // The longest that is taken for a reference, and one character more.
      {"&#" + std::string(60, '0') + "65;", "&#" + std::string(60, '0') + "65;"},
      {"&#" + std::string(61, '0') + "65;", "&amp;#" + std::string(61, '0') + "65;"},
      {"&#;", "&amp;#;"},
      {"&#x;", "&amp;#x;"},
      {"&#xG;", "&amp;#xG;"},
      {"&#6a;", "&amp;#6a;"},
      {"&#X41;", "&amp;#X41;"},
      {"&amp;&", "&amp;&amp;"},
      {"& amp;", "&amp; amp;"},
      {"<", "&lt;"},
      {"a < b", "a &lt; b"},
      {"a <b", "a <b"},
      {"<b>x</b>", "<b>x</b>"},
      {"<=", "&lt;="},
      {"<<b></b>", "&lt;<b></b>"},
      {"</", "&lt;/"},
      {"</ b>", "&lt;/ b>"},
      {"<!-- c -->", "<!-- c -->"},
      {"<?pi?>", "<?pi?>"},
      {"<ü/>", "<ü/>"},
      {"<z/><A/><Z/>", "<z/><A/><Z/>"},
      {">", ">"},
      {"\"'", "\"'"},
      {"a<b&c", "a<b&amp;c"},
      {"]]>", "]]&gt;"},
      {"a]]>b", "a]]&gt;b"},
      {"]", "]"},
      {"]]", "]]"},
      {"]] >", "]] >"},
      {"]>", "]>"},
      {"]]&gt;", "]]&gt;"},
      {"]]]>", "]]]&gt;"},
      {"]]>]]>", "]]&gt;]]&gt;"},
      {"<b c=\"]]>\">]]></b>", "<b c=\"]]&gt;\">]]&gt;</b>"},
      // The inside of a section, a comment or an instruction is not mended, up to its own end.
      {"<![CDATA[x]]>", "<![CDATA[x]]>"},
      {"<![CDATA[x]]>]]>", "<![CDATA[x]]>]]&gt;"},
      {"<![CDATA[x & y < z]]>&", "<![CDATA[x & y < z]]>&amp;"},
      {"<![CDATA[]]]]>]]>", "<![CDATA[]]]]>]]&gt;"},
      {"<![CDATA[<!--]]>]]>", "<![CDATA[<!--]]>]]&gt;"},
      {"<!-- a]]>b & < -->]]>", "<!-- a]]>b & < -->]]&gt;"},
      {"<!-- <![CDATA[ -->]]>", "<!-- <![CDATA[ -->]]&gt;"},
      {"<!-->]]>-->]]>", "<!-->]]>-->]]&gt;"},
      {"<?p a]]>b & < ?>]]>", "<?p a]]>b & < ?>]]&gt;"},
      {"<?>]]>?>]]>", "<?>]]>?>]]&gt;"},
      {"<!x & ]]>", "<!x &amp; ]]&gt;"},
      {"<![CDATA[x & ]] >", "<![CDATA[x & ]] >"},  // never ends
      {"<!-- & ->", "<!-- & ->"},
      {"<?p & >", "<?p & >"},
  };
  return all;
}

TEST(Mending, EscapesWhatBeginsNothingAndNothingElse) {
  for (const Case& each : cases()) {
    EXPECT_EQ(mend(each.text), each.mended) << each.text;
  }
}

TEST(Mending, LeavesMendedTextAlone) {
  for (const Case& each : cases()) {
    EXPECT_EQ(mend(each.mended), each.mended) << each.mended;
  }
}

TEST(Mending, TakesTimeByTheLengthOfItsTextAlone) {
  // So many stray characters that searching the whole rest for each of them would never end.
  const std::string text(2'000'000, '&');
  EXPECT_EQ(mend(text).size(), 5 * text.size());
  for (const std::string piece : {"]", "<?", "<!--", "<![CDATA["}) {
    std::string many;
    for (int i = 0; i < 1'000'000; ++i) many += piece;
    EXPECT_EQ(mend(many), many) << piece;
  }
}

/// The document that the tidy command makes of one with `value` in it; "(refused)" if it refuses.
std::string tidied(const TemporaryFolder& folder, const std::string& value) {
  writeFile(folder / "in", "<a>" + value + "</a>");
  const std::string command = "tidy -xml -q -utf8 --wrap 0 --quote-nbsp no --indent no '" +
                              (folder / "in") + "' > '" + (folder / "out") + "' 2>/dev/null";
  const int status = ::system(command.c_str());
  if (status == -1 || WEXITSTATUS(status) > 1) return "(refused)";
  std::string text = readFile(folder / "out");
  std::erase(text, '\n');  // tidy puts sections, comments and elements on lines of their own
  return text;
}

TEST(Mending, TheTidyCommandMendsStrayCharactersAlike) {
  if (::system("command -v tidy >/dev/null 2>&1") != 0) GTEST_SKIP() << "tidy is not installed";
  const TemporaryFolder folder;
  for (const char* value : {"A & B",
                            "A&B",
                            "a < b",
                            "&&",
                            "x <= y",
                            "R&D < 1",
                            "&amp;",
                            "&lt;",
                            "plain",
                            "a & b & c",
                            "]]>",
                            "a]]>b",
                            "]]]>",
                            "]]]]>",
                            "]]&gt;",
                            "<![CDATA[x]]>]]>",
                            "<![CDATA[x & y < z]]>&",
                            "<b>]]></b>",
                            "<![CDATA[]]]]>]]>",
                            "<![CDATA[<!--]]>]]>",
                            "<!-- a]]>b & < -->]]>",
                            "<!-- <![CDATA[ -->]]>",
                            "<?p a]]>b & < ?>]]>"}) {
    EXPECT_EQ(tidied(folder, value), "<a>" + mend(value) + "</a>") << value;
  }
  EXPECT_EQ(tidied(folder, "<open>"), "(refused)");
}

}  // namespace
}  // namespace wenlolib::tests
