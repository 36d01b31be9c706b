#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>

#include "hedro34/platform/expat_document.h"
#include "hedro34/platform/refusal.h"
#include "tests/support.h"

namespace hedro34::testing {
namespace {

using ::testing::HasSubstr;

std::string repeated(std::string_view text, std::size_t times) {
  std::string result;
  for (std::size_t i = 0; i < times; ++i) result += text;
  return result;
}

// A node and what is in it as one text: an element as "name", its attributes as "[a=1 b=2]" and its children as "(x y)", a
// text node as its value in quotes.
std::string shape(IXMLDOMNode& node) {
  const auto attributes = node.attributes();
  if (!attributes) return "'" + to_utf8(to_text(node.nodeTypedValue())) + "'";
  std::string result = to_utf8(node.nodeName());
  for (std::int32_t i = 0; i < attributes->length(); ++i) {
    const auto each = attributes->item(i);
    result += (i == 0 ? "[" : " ") + to_utf8(each->nodeName()) + "=" + to_utf8(to_text(each->nodeValue()));
  }
  if (attributes->length() > 0) result += "]";
  const auto children = node.childNodes();
  for (std::int32_t i = 0; i < children->length(); ++i) result += (i == 0 ? "(" : " ") + shape(*children->item(i));
  return result + (children->length() > 0 ? ")" : "");
}

std::string shape(ExpatDocument& document, StringView root) {
  const auto element = document.selectSingleNode(root);
  return element ? shape(*element) : to_line(last_refusal());
}

Ref<ExpatDocument> parsed(std::string_view xml) {
  auto document = make<ExpatDocument>();
  EXPECT_TRUE(document->parse(xml)) << to_line(last_refusal());
  return document;
}

struct ShapeRow {
  const char* what;
  std::string xml;
  const char* shape;
};

TEST(Xml, KeepsElementsAttributesAndText) {
  const ShapeRow rows[] = {
      {"an empty element", "<a/>", "a"},
      {"an element without content", "<a></a>", "a"},
      {"children in order", "<a>1<b>2</b>3<c/>4</a>", "a('1' b('2') '3' c '4')"},
      {"one child with several of its own", "<a><b><c/><d/><e/></b></a>", "a(b(c d e))"},
      {"several children of which one has several", "<a><b/><c>1<d/></c><e/></a>", "a(b c('1' d) e)"},
      {"blanks between elements", "<a>\n <b/>\r\n\t<c/> </a>", "a(b c)"},
      {"blanks around text", "<a> x <b/>\ny</a>", "a(' x ' b '\ny')"},
      {"blanks as the only content", "<a> \t\r\n </a>", "a"},
      {"blanks as character references", "<a>&#32;&#9;<b/>&#x0A;&#13;</a>", "a(b)"},
      {"a no-break space is no white space here", "<a>&#160;</a>", "a('\u00A0')"},
      {"line ends become line feeds", "<a>1\r\n2\r3\n4</a>", "a('1\n2\n3\n4')"},
      {"character references", "<a>&lt;&amp;&gt;&quot;&apos;&#x20AC;&#128512;</a>", "a('<&>\"'\u20AC\U0001F600')"},
      {"a comment does not split text", "<a>x<!-- - -->y</a>", "a('xy')"},
      {"an instruction does not split text", "<a>x<?p q?>y</a>", "a('xy')"},
      {"blanks join across a comment", "<a> <!-- - --> </a>", "a"},
      {"blanks join text across a comment", "<a> <!-- - -->x</a>", "a(' x')"},
      {"comments and instructions make no node", "<?p?><!-- --><a><!-- --><b/><?p q?></a><!-- --><?p?>", "a(b)"},
      {"a CDATA section is a node of its own", "<a>x<![CDATA[<y>&amp;]]>z</a>", "a('x' '<y>&amp;' 'z')"},
      {"CDATA sections side by side", "<a><![CDATA[1]]><![CDATA[2]]></a>", "a('1' '2')"},
      {"a blank CDATA section", "<a><![CDATA[ \n]]></a>", "a(' \n')"},
      {"an empty CDATA section", "<a><![CDATA[]]></a>", "a('')"},
      {"blanks around a CDATA section", "<a> <![CDATA[]]> <b/></a>", "a('' b)"},
      {"text around a blank CDATA section", "<a>x<![CDATA[ ]]>y</a>", "a('x' ' ' 'y')"},
      {"attributes in order", "<a b='1' a='2' c=''><b x='3'/></a>", "a[b=1 a=2 c=](b[x=3])"},
      {"white space in attributes", "<a b=' 1\t2\n3&#10;4&#13;&#9; '/>", "a[b= 1 2 3\n4\r\t ]"},
      {"namespaces", "<a xmlns='u' xmlns:p='v'><p:b p:x='1'/></a>", "a[xmlns=u xmlns:p=v](p:b[p:x=1])"},
      {"an undeclared prefix", "<a><p:b/></a>", "a(p:b)"},
      {"entities merge into text", "<!DOCTYPE a [<!ENTITY e 'y&#38;amp;'>]><a>x&e;z</a>", "a('xy&z')"},
      {"entities inside entities", "<!DOCTYPE a [<!ENTITY e '1'><!ENTITY f '&e;2&e;'>]><a>&f;</a>", "a('121')"},
      {"an entity with elements", "<!DOCTYPE a [<!ENTITY e 'y<b>z</b> '>]><a>x&e;<c/></a>", "a('xy' b('z') c)"},
      {"an entity of blanks", "<!DOCTYPE a [<!ENTITY e ' '>]><a>&e;<b/> &e;x</a>", "a(b '  x')"},
      {"an entity with a CDATA section", "<!DOCTYPE a [<!ENTITY e '<![CDATA[ ]]>'>]><a>x&e;</a>", "a('x' ' ')"},
      {"an entity in an attribute", "<!DOCTYPE a [<!ENTITY e '1'>]><a b='0&e;2'/>", "a[b=012]"},
      {"the first of two declarations", "<!DOCTYPE a [<!ENTITY e '1'><!ENTITY e '2'>]><a>&e;</a>", "a('1')"},
      {"default attributes",
       "<!DOCTYPE a [<!ATTLIST b x CDATA 'd' y (m|n) 'm' z CDATA #IMPLIED w CDATA #FIXED '1'>]>"
       "<a><b/><b y='n'/><c/></a>",
       "a(b[x=d y=m w=1] b[y=n x=d w=1] c)"},
      {"attributes of a type that is no CDATA", "<!DOCTYPE a [<!ATTLIST a x NMTOKENS #IMPLIED>]><a x='  m   n '/>",
       "a[x=m n]"},
      {"an unread declaration makes unknown entities empty", "<!DOCTYPE a SYSTEM 'none.dtd'><a>x&e;y</a>", "a('xy')"},
  };
  for (const auto& row : rows) {
    auto document = make<ExpatDocument>();
    document->parse(row.xml);
    EXPECT_EQ(shape(*document, u"a"), row.shape) << row.what << ": " << row.xml;
  }
}

TEST(Xml, NodesAnswerByTheirKind) {
  const auto document = parsed("<p:a q:x='1&lt;' y=''>s<b>t<c>u<![CDATA[ v]]></c><!-- w --></b>\n<:d/><e:/></p:a>");
  const auto root = document->selectSingleNode(u"p:a");
  ASSERT_TRUE(root);
  const auto attributes = root->attributes();
  const auto children = root->childNodes();
  ASSERT_EQ(children->length(), 4);
  const struct {
    const char* what;
    Ref<IXMLDOMNode> node;
    const char16_t* name;
    const char16_t* base;
    const char16_t* typed;
    Variant value;
    bool has_attributes;
  } rows[] = {
      {"an element", root, u"p:a", u"a", u"stu v", Variant(), true},
      {"an element inside", children->item(1), u"b", u"b", u"tu v", Variant(), true},
      {"nothing before the colon", children->item(2), u":d", u":d", u"", Variant(), true},
      {"nothing behind the colon", children->item(3), u"e:", u"e:", u"", Variant(), true},
      {"a text", children->item(0), u"#text", u"", u"s", u"s", false},
      {"an attribute", attributes->item(0), u"q:x", u"x", u"1<", u"1<", false},
      {"an empty attribute", attributes->item(1), u"y", u"y", u"", u"", false},
  };
  for (const auto& row : rows) {
    ASSERT_TRUE(row.node) << row.what;
    EXPECT_EQ(to_utf8(row.node->nodeName()), to_utf8(row.name)) << row.what;
    EXPECT_EQ(to_utf8(row.node->baseName()), to_utf8(row.base)) << row.what;
    EXPECT_EQ(row.node->nodeTypedValue(), Variant(row.typed)) << row.what;
    EXPECT_EQ(row.node->nodeValue(), row.value) << row.what;
    EXPECT_EQ(static_cast<bool>(row.node->attributes()), row.has_attributes) << row.what;
    ASSERT_TRUE(row.node->childNodes()) << row.what;
    if (row.has_attributes) continue;
    EXPECT_EQ(row.node->childNodes()->length(), 0) << row.what;
  }
}

TEST(Xml, ListsAndMapsAnswerNothingOutside) {
  const auto document = parsed("<a x='1' X='2'><b/>t<c/></a>");
  const auto root = document->selectSingleNode(u"a");
  for (const auto& list : {root->childNodes(), document->getElementsByTagName(u"a")->item(0)->childNodes()}) {
    EXPECT_EQ(list->length(), 3);
    EXPECT_FALSE(list->item(-1));
    EXPECT_FALSE(list->item(3));
    EXPECT_EQ(to_utf8(list->item(2)->nodeName()), "c");
    EXPECT_EQ(to_utf8(list->nextNode()->nodeName()), "b") << "`item` does not move the place of `nextNode`";
    EXPECT_EQ(to_utf8(list->nextNode()->nodeName()), "#text");
    EXPECT_EQ(to_utf8(list->nextNode()->nodeName()), "c");
    EXPECT_FALSE(list->nextNode());
    EXPECT_FALSE(list->nextNode());
  }
  const auto attributes = root->attributes();
  EXPECT_EQ(attributes->length(), 2);
  EXPECT_FALSE(attributes->item(-1));
  EXPECT_FALSE(attributes->item(2));
  EXPECT_EQ(attributes->getNamedItem(u"X")->nodeValue(), Variant(u"2"));
  EXPECT_EQ(attributes->getNamedItem(u"x")->nodeValue(), Variant(u"1"));
  EXPECT_FALSE(attributes->getNamedItem(u"y"));
  EXPECT_FALSE(attributes->getNamedItem(u""));
  const auto none = root->childNodes()->item(0)->attributes();
  EXPECT_EQ(none->length(), 0);
  EXPECT_FALSE(none->getNamedItem(u"x"));
}

TEST(Xml, FindsElementsByName) {
  const auto document =
      parsed("<a><q n='1'><q n='2'/></q><Q n='3'/><p:q n='4'/><b><c><q n='5'/></c></b><q n='6'/></a>");
  const struct {
    const char16_t* name;
    const char* numbers;
  } rows[] = {{u"q", "1256"}, {u"Q", "3"}, {u"p:q", "4"}, {u"x", ""}, {u"", ""}, {u"#text", ""}, {u"n", ""}};
  for (const auto& row : rows) {
    const auto list = document->getElementsByTagName(row.name);
    std::string numbers;
    while (const auto node = list->nextNode()) numbers += to_utf8(to_text(node->attributes()->item(0)->nodeValue()));
    EXPECT_EQ(numbers, row.numbers) << to_utf8(row.name);
    EXPECT_EQ(list->length(), static_cast<std::int32_t>(numbers.size())) << to_utf8(row.name);
  }
  EXPECT_EQ(document->getElementsByTagName(u"a")->length(), 1) << "the document element counts";
  EXPECT_TRUE(document->selectSingleNode(u"a"));
  EXPECT_FALSE(document->selectSingleNode(u"A"));
  EXPECT_FALSE(document->selectSingleNode(u"q"));
  EXPECT_FALSE(document->selectSingleNode(u""));
}

TEST(Xml, HandlesOutliveTheDocumentAndItsNextContent) {
  auto document = parsed("<a><b x='1'>t</b></a>");
  const auto node = document->getElementsByTagName(u"b")->item(0);
  ASSERT_TRUE(document->parse("<c/>"));
  EXPECT_EQ(shape(*document, u"c"), "c");
  EXPECT_FALSE(document->selectSingleNode(u"a"));
  document = nullptr;
  EXPECT_EQ(shape(*node), "b[x=1]('t')");
}

TEST(Xml, ARefusedDocumentIsEmpty) {
  const auto document = parsed("<a><b/></a>");
  EXPECT_FALSE(document->parse("<a><b></a>"));
  EXPECT_FALSE(document->selectSingleNode(u"a"));
  EXPECT_EQ(document->getElementsByTagName(u"b")->length(), 0);
  EXPECT_FALSE(document->getElementsByTagName(u"b")->nextNode());
  EXPECT_EQ(last_refusal().kind, Refusal::Kind::Malformed);
  EXPECT_TRUE(document->parse("<a/>"));
  EXPECT_EQ(last_refusal().kind, Refusal::Kind::None);
  const auto fresh = expat_documents().document();
  fresh->set_async(false);
  EXPECT_FALSE(fresh->selectSingleNode(u"a"));
  EXPECT_EQ(fresh->getElementsByTagName(u"a")->length(), 0);
}

TEST(Xml, RefusesWhatIsMalformedAndSaysWhere) {
  const std::string declared = "<!DOCTYPE a [<!ENTITY e SYSTEM 'e.xml'><!ENTITY r '&r;'>]>\n";
  const struct {
    const char* what;
    std::string xml;
    std::int64_t line;
    std::int64_t column;
    const char* reason;
  } rows[] = {
      {"nothing", "", 1, 1, "there is no element"},
      {"zeros", std::string(5000, '\0'), 1, 1, ""},
      {"blanks", "\n\n ", 3, 2, "there is no element"},
      {"no XML", "hello", 1, 1, "markup"},
      {"JSON", "{\"a\": 1}", 1, 1, "not well-formed"},
      {"a start only", "<a>\n<b>", 2, 4, "the document ends inside an element"},
      {"half a tag", "<a>\n <b x='", 2, 2, "the document ends inside what starts here"},
      {"half a comment", "<a><!-- b</a>", 1, 4, "the document ends inside what starts here"},
      {"half a CDATA section", "<a><![CDATA[b</a>", 1, 18, "CDATA"},
      {"the wrong end tag", "<a>\n <b></c>\n</a>", 2, 7, "the end tag does not match the start tag"},
      {"an end tag in another case", "<a></A>", 1, 6, "the end tag does not match the start tag"},
      {"columns count characters", "<a>\u00E9\u20AC\U0001F600</b>", 1, 9, "the end tag does not match the start tag"},
      {"two document elements", "<a/>\n<b/>", 2, 1, "something stands behind the document element"},
      {"text behind the document element", "<a/>x", 1, 5, "something stands behind the document element"},
      {"an attribute without quotes", "<a b=1/>", 1, 6, "not well-formed"},
      {"an attribute twice", "<a b='1' b='2'/>", 1, 10, "two attributes"},
      {"a less-than sign in an attribute", "<a b='<'/>", 1, 7, "not well-formed"},
      {"a lone ampersand", "<a>b & c</a>", 1, 7, "not well-formed"},
      {"the end of a CDATA section in text", "<a>]]></a>", 1, 6, "not well-formed"},
      {"a control character", "<a>b\x01</a>", 1, 5, "not well-formed"},
      {"a reference to no character", "<a>\n&#0;</a>", 2, 1, "stands for no character"},
      {"a reference to half a character", "<a>&#xD800;</a>", 1, 4, "stands for no character"},
      {"an undeclared entity", "<a>&nbsp;</a>", 1, 4, "the entity is not declared"},
      {"an entity in itself", declared + "<a>&r;</a>", 2, 4, "the entity refers to itself"},
      {"an external entity in an attribute", declared + "<a b='&e;'/>", 2, 7, "external entity"},
      {"a blank before the declaration", " <?xml version='1.0'?><a/>", 1, 2, "the XML declaration is not at the start"},
      {"an unknown encoding", "<?xml version='1.0' encoding='klingon'?><a/>", 1, 31, "unknown encoding"},
      {"bytes that are not UTF-8", "<a>\xC3(</a>", 1, 4, "not well-formed"},
      {"an overlong form", "<a>\xC0\x80</a>", 1, 4, "not well-formed"},
      {"a surrogate in UTF-8", "<a>\xED\xA0\x80</a>", 1, 4, "not well-formed"},
      {"half a character at the end", "<a>\xE2\x82", 1, 4, "the document ends inside a character"},
      {"another encoding than declared", "<?xml version='1.0' encoding='UTF-16'?><a/>", 1, 31, "encoding"},
  };
  for (const auto& row : rows) {
    auto document = make<ExpatDocument>();
    ASSERT_FALSE(document->parse(row.xml)) << row.what;
    const Refusal& refusal = last_refusal();
    EXPECT_EQ(refusal.kind, Refusal::Kind::Malformed) << row.what;
    EXPECT_EQ(refusal.line, row.line) << row.what << ": " << refusal.reason;
    EXPECT_EQ(refusal.column, row.column) << row.what << ": " << refusal.reason;
    EXPECT_THAT(refusal.reason, HasSubstr(row.reason)) << row.what;
    EXPECT_FALSE(refusal.reason.empty()) << row.what;
  }
}

// A text in UTF-16 bytes.
std::string utf16(StringView text, bool big_endian) {
  std::string bytes;
  for (const char16_t unit : text) {
    const auto high = static_cast<char>(unit >> 8);
    const auto low = static_cast<char>(unit & 0xFF);
    bytes += big_endian ? high : low;
    bytes += big_endian ? low : high;
  }
  return bytes;
}

std::string declared(std::string_view encoding, std::string_view content) {
  return "<?xml version='1.0' encoding='" + std::string(encoding) + "'?><a>" + std::string(content) + "</a>";
}

TEST(Xml, ReadsEncodings) {
  const StringView wide = u"\uFEFF<?xml version='1.0' encoding='Utf-16'?><a>\u00E9\u20AC\U0001F600</a>";
  const StringView plain = u"<?xml version='1.0' encoding='UTF-16LE'?><a>\u20AC</a>";
  const struct {
    const char* what;
    std::string bytes;
    const char16_t* text;
  } rows[] = {
      {"UTF-8 without a declaration", "<a>\u00E9\u20AC\U0001F600</a>", u"\u00E9\u20AC\U0001F600"},
      {"UTF-8 with a mark", "\xEF\xBB\xBF<a>\u00E9</a>", u"\u00E9"},
      {"UTF-8 with mark and declaration", "\xEF\xBB\xBF" + declared("utf-8", "\u00E9"), u"\u00E9"},
      {"UTF-16, big end first", utf16(wide, true), u"\u00E9\u20AC\U0001F600"},
      {"UTF-16, little end first", utf16(wide, false), u"\u00E9\u20AC\U0001F600"},
      {"UTF-16 without a mark", utf16(plain, false), u"\u20AC"},
      {"ISO-8859-1", declared("ISO-8859-1", "\x80\x9F\xA0\xE9\xFF"), u"\u0080\u009F\u00A0\u00E9\u00FF"},
      {"iso-8859-1", declared("iso-8859-1", "\xE9"), u"\u00E9"},
      {"US-ASCII", declared("us-Ascii", "plain"), u"plain"},
      {"windows-1252, lower half", declared("windows-1252", "A~\x7F"), u"A~\u007F"},
      {"windows-1252, Latin half", declared("windows-1252", "\xA0\xE9\xFF"), u"\u00A0\u00E9\u00FF"},
      {"windows-1252, 0x80 to 0x8E", declared("Windows-1252", "\x80\x82\x83\x84\x85\x86\x87\x88\x89\x8A\x8B\x8C\x8E"),
       u"\u20AC\u201A\u0192\u201E\u2026\u2020\u2021\u02C6\u2030\u0160\u2039\u0152\u017D"},
      {"windows-1252, 0x91 to 0x9F",
       declared("WINDOWS-1252", "\x91\x92\x93\x94\x95\x96\x97\x98\x99\x9A\x9B\x9C\x9E\x9F"),
       u"\u2018\u2019\u201C\u201D\u2022\u2013\u2014\u02DC\u2122\u0161\u203A\u0153\u017E\u0178"},
  };
  const Folder folder;
  for (const auto& row : rows) {
    auto document = make<ExpatDocument>();
    EXPECT_TRUE(document->load(folder.write("encoded.xml", row.bytes))) << row.what << ": " << to_line(last_refusal());
    const auto root = document->selectSingleNode(u"a");
    ASSERT_TRUE(root) << row.what;
    EXPECT_EQ(root->nodeTypedValue(), Variant(row.text)) << row.what << ": " << shape(*root);
  }
  for (const char* byte : {"\x81", "\x8D", "\x8F", "\x90", "\x9D"}) {
    auto document = make<ExpatDocument>();
    EXPECT_FALSE(document->parse(declared("windows-1252", byte))) << "undefined byte";
    EXPECT_EQ(last_refusal().column, 49);
  }
  auto document = make<ExpatDocument>();
  EXPECT_FALSE(document->parse(declared("us-ascii", "\xE9"))) << "beyond ASCII";
  ASSERT_TRUE(document->parse("<?xml version='1.0' encoding='windows-1252'?><\xE9t\xE9 \xFC='\x80'/>"));
  EXPECT_EQ(shape(*document, u"\u00E9t\u00E9"), "\u00E9t\u00E9[\u00FC=\u20AC]");
}

TEST(Xml, LoadsByPath) {
  const Folder folder;
  folder.write("plain.xml", "<plain/>");
  folder.write("a\\b.xml", "<backslash/>");
  std::filesystem::create_directory(to_utf8(folder.path("inner")));
  folder.write("inner/c.xml", "<inner/>");
  std::filesystem::create_directory(to_utf8(folder.path("a")));
  folder.write("a/b.xml", "<slash/>");
  const auto with_backslashes = [](String path) {
    std::replace(path.begin(), path.end(), u'/', u'\\');
    return path;
  };
  const struct {
    const char* what;
    String path;
    const char16_t* root;  // empty where the file is not read
  } rows[] = {
      {"a plain path", folder.path("plain.xml"), u"plain"},
      {"a path with backslashes only", with_backslashes(folder.path("inner/c.xml")), u"inner"},
      {"both separators", folder.path("inner\\c.xml"), u"inner"},
      {"many backslashes in one name", with_backslashes(folder.path(repeated("./", 200) + "inner/c.xml")), u"inner"},
      {"a name with a backslash is taken as it stands", folder.path("a\\b.xml"), u"backslash"},
      {"a missing file", folder.path("none.xml"), u""},
      {"a missing folder", folder.path("none\\c.xml"), u""},
      {"a file taken for a folder", folder.path("plain.xml/c.xml"), u""},
      {"a folder", folder.path("inner"), u""},
      {"the empty path", u"", u""},
      {"a path with a zero", folder.path("plain.xml") + String(1, u'\0'), u""},
  };
  for (const auto& row : rows) {
    auto document = make<ExpatDocument>();
    const StringView root = row.root;
    EXPECT_EQ(document->load(row.path), !root.empty()) << row.what << ": " << last_refusal().reason;
    if (!root.empty()) {
      EXPECT_TRUE(document->selectSingleNode(root)) << row.what;
      continue;
    }
    EXPECT_EQ(last_refusal().kind, Refusal::Kind::Unreadable) << row.what;
    EXPECT_EQ(last_refusal().path, row.path) << row.what;
    EXPECT_EQ(last_refusal().line, 0) << row.what;
    EXPECT_NE(last_refusal().reason, "") << row.what;
  }
  auto document = make<ExpatDocument>();
  const String broken = folder.write("broken.xml", "<a>\n<");
  EXPECT_FALSE(document->load(broken));
  EXPECT_EQ(last_refusal().kind, Refusal::Kind::Malformed);
  EXPECT_EQ(last_refusal().path, broken);
  EXPECT_EQ(last_refusal().line, 2);
}

TEST(Xml, FetchesNothingOutsideTheFile) {
  const Folder folder;
  const std::string secret = to_utf8(folder.write("secret", "secret"));
  folder.write("outside.dtd", "<!ENTITY e 'outside'><!ATTLIST a x CDATA 'outside'>");
  const ShapeRow rows[] = {
      {"an absolute path", "<!DOCTYPE a [<!ENTITY e SYSTEM '" + secret + "'>]><a>x&e;y<b/>&e;</a>", "a('xy' b)"},
      {"an address", "<!DOCTYPE a [<!ENTITY e SYSTEM 'file://" + secret + "'>]><a>&e;</a>", "a"},
      {"a path beside the file", "<!DOCTYPE a [<!ENTITY e SYSTEM 'secret'>]><a>&e;</a>", "a"},
      {"a public name", "<!DOCTYPE a [<!ENTITY e PUBLIC 'p' 'secret'>]><a>&e;</a>", "a"},
      {"an external subset", "<!DOCTYPE a SYSTEM 'outside.dtd'><a>x&e;</a>", "a('x')"},
      {"a parameter entity", "<!DOCTYPE a [<!ENTITY % p SYSTEM 'outside.dtd'> %p;]><a>x&e;</a>", "a('x')"},
  };
  for (const auto& row : rows) {
    auto document = make<ExpatDocument>();
    document->load(folder.write("inside.xml", row.xml));
    EXPECT_EQ(shape(*document, u"a"), row.shape) << row.what;
  }
}

TEST(Xml, BoundsTheDepthOfElements) {
  auto document = make<ExpatDocument>();
  ASSERT_TRUE(document->parse(repeated("<a>", 1000) + "x" + repeated("</a>", 1000))) << to_line(last_refusal());
  EXPECT_EQ(document->getElementsByTagName(u"a")->length(), 1000);
  EXPECT_EQ(document->selectSingleNode(u"a")->nodeTypedValue(), Variant(u"x"));
  ASSERT_TRUE(document->parse("<r>" + repeated("<a><b/></a>", 3000) + "</r>")) << "one beside the other is not deep";
  for (const std::size_t depth : {std::size_t{1001}, std::size_t{1'000'000}}) {
    EXPECT_FALSE(document->parse(repeated("<a>", depth) + repeated("</a>", depth)));
    EXPECT_EQ(last_refusal().kind, Refusal::Kind::Malformed);
    EXPECT_EQ(last_refusal().column, 3001) << "the tag of the element that is too deep";
    EXPECT_EQ(last_refusal().reason, "elements are nested more than 1,000 deep");
  }
  EXPECT_FALSE(document->parse(repeated("<a>", 1000) + "<b/>")) << "an empty element counts as well";
  EXPECT_EQ(last_refusal().column, 3001);
}

TEST(Xml, RefusesDocumentsThatBlowUp) {
  std::string laughs = "<!DOCTYPE a [<!ENTITY e0 'ha'>";
  for (int i = 1; i < 40; ++i) {
    const std::string inner = "&e" + std::to_string(i - 1) + ";";
    laughs += "<!ENTITY e" + std::to_string(i) + " '" + repeated(inner, 10) + "'>";
  }
  std::string chain = "<!DOCTYPE a [<!ENTITY e0 'x'>";
  for (int i = 1; i < 50'000; ++i) {
    chain += "<!ENTITY e" + std::to_string(i) + " '&e" + std::to_string(i - 1) + ";'>";
  }
  const std::string kilobytes(20'000, 'x');
  const std::string defaults = "<!DOCTYPE a [<!ATTLIST b x CDATA '" + kilobytes + "'>]><a>";
  std::string many_defaults = "<!DOCTYPE a [";
  for (int i = 0; i < 1000; ++i) many_defaults += "<!ATTLIST b x" + std::to_string(i) + " CDATA ''>";
  const struct {
    const char* what;
    std::string xml;
    const char* reason;  // empty where the document is read
  } rows[] = {
      {"entities of entities", laughs + "]><a>&e39;</a>", "blow the document up"},
      {"entities of entities in an attribute", laughs + "]><a b='&e39;'/>", "blow the document up"},
      {"one long entity often", "<!DOCTYPE a [<!ENTITY e '" + kilobytes + "'>]><a>" + repeated("&e;", 9000) + "</a>",
       "blow the document up"},
      {"a long default attribute often", defaults + repeated("<b/>", 9000) + "</a>", "blow the document up"},
      {"many default attributes often", many_defaults + "]><a>" + repeated("<b/>", 9000) + "</a>",
       "blow the document up"},
      {"a long chain of entities", chain + "]><a>&e49999;</a>", ""},
      {"a long default attribute a few times", defaults + repeated("<b/>", 20) + "</a>", ""},
  };
  for (const auto& row : rows) {
    auto document = make<ExpatDocument>();
    EXPECT_EQ(document->parse(row.xml), *row.reason == '\0') << row.what << ": " << to_line(last_refusal());
    EXPECT_THAT(last_refusal().kind == Refusal::Kind::None ? "" : last_refusal().reason, HasSubstr(row.reason))
        << row.what;
  }
}

TEST(Xml, ReadsLargeParts) {
  const std::string large = repeated("0123456789", 2'000'000);
  auto document = make<ExpatDocument>();
  ASSERT_TRUE(document->parse("<a b='" + large + "'/>"));
  EXPECT_TRUE(document->selectSingleNode(u"a")->attributes()->item(0)->nodeValue() == Variant(from_utf8(large)));
  ASSERT_TRUE(document->parse("<a>" + large + "<!--" + large + "-->x</a>"));
  EXPECT_EQ(document->selectSingleNode(u"a")->childNodes()->length(), 1) << "comments and chunks do not split text";
  EXPECT_TRUE(document->selectSingleNode(u"a")->nodeTypedValue() == Variant(from_utf8(large + "x")));
}

TEST(Xml, ReachesEachOfManyNodes) {
  constexpr std::int32_t count = 30'000;
  std::string xml = "<r>";
  for (std::int32_t i = 0; i < count; ++i) {
    const std::string number = std::to_string(i);
    xml += "<e" + number + " a='" + number + "'>" + repeated("<b/>", static_cast<std::size_t>(i % 4)) + number + "</e" +
           number + ">\n";
  }
  const auto document = parsed(xml + "</r>");
  const auto children = document->selectSingleNode(u"r")->childNodes();
  ASSERT_EQ(children->length(), count);
  for (std::int32_t i = count - 1; i >= 0; --i) {
    const auto node = children->item(i);
    const std::string number = std::to_string(i);
    ASSERT_EQ(to_utf8(node->nodeName()), "e" + number);
    ASSERT_EQ(node->nodeTypedValue(), Variant(from_utf8(number)));
    ASSERT_EQ(node->attributes()->getNamedItem(u"a")->nodeValue(), Variant(from_utf8(number)));
    ASSERT_EQ(node->childNodes()->length(), i % 4 + 1);
    ASSERT_EQ(node->childNodes()->item(i % 4)->baseName(), u"");
  }
  EXPECT_EQ(document->getElementsByTagName(u"b")->length(), count / 4 * 6);
}

}  // namespace
}  // namespace hedro34::testing
